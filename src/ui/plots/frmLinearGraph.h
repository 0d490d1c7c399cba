#pragma once

#include <QDialog>
#include <array>
#include <cstdint>

class QLabel;
class QLineEdit;

namespace rk31 {

class DeviceSession;
class MeasurePanel;
class Prompts;
class TransferCurvePlot;
struct MeasureSeams;

// The Linear Graph window: the rounded values of one part or both, the transfer curve that
// they describe, and the chip measured against it. It is created, initialised and shown modally
// per use; showing it computes the curves from the rounded images that the solver has just
// written, so it never shows stale ones, and its measurements go with it.
class frmLinearGraph : public QDialog {
    Q_OBJECT
  public:
    // Measures through the window that opens it; an exported picture names `source` (the
    // window's switch) as where it comes from.
    explicit frmLinearGraph(const MeasureSeams& seams, const QString& source = QString(),
                            QWidget* parent = nullptr);

    // count2 = 0 and part2 = 0: `part` alone; otherwise Part#1 with `count` points and Part#2
    // with `count2`. Only the low four bits of a count are used.
    void Init(std::int16_t part, std::int16_t count, std::int16_t part2, std::int16_t count2);

    std::int16_t firstPart() const { return m_firstPart; }
    std::int16_t firstCount() const { return m_firstCount; }
    std::int16_t secondCount() const { return m_secondCount; }

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    void Load();
    void fillColumn(int column, std::int16_t part);

    DeviceSession& m_session;
    Prompts& m_prompts;
    QString m_source;
    std::int16_t m_firstPart = 0;
    std::int16_t m_firstCount = 0;
    std::int16_t m_secondCount = 0;
    bool m_loaded = false;

    // Rows: high, low, dpdisp, A, B, C, D; columns: first part, Part#2.
    static constexpr int kRows = 7;
    std::array<std::array<QLineEdit*, 2>, kRows> m_boxes{};
    QLabel* m_part2Head = nullptr;
    TransferCurvePlot* m_plot = nullptr;
    MeasurePanel* m_measure = nullptr;
    QString m_lastExport;
};

}  // namespace rk31
