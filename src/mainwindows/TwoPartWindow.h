#pragma once

#include <QHash>
#include <QWidget>
#include <functional>
#include <memory>

#include "chipsession/WindowContext.h"
#include "params/FieldValidation.h"
#include "shell/widgets/WidgetControlView.h"

class QAbstractButton;
class QGridLayout;
class QGroupBox;
class QLineEdit;

namespace rk31 {

// The multi-point main window for both parts. One implementation serves both variants: with a
// supply per part every session command is a button of its part, with one common supply they
// are single buttons acting on both parts.
class TwoPartWindow : public QWidget, public WindowUi {
    Q_OBJECT
  public:
    TwoPartWindow(WindowFamily family, const QString& className, QWidget* parent = nullptr);
    ~TwoPartWindow() override;

    WindowContext& context() { return *m_ctx; }
    ControlView& view() { return m_view; }

    // WindowUi
    std::unique_ptr<WaitWindow> createWaitWindow(const QString& text) override;
    void processEvents() override;
    std::int16_t choosePort() override;
    bool confirmCommLock() override;
    void showAbout(const QString& hardwareVersion) override;
    void showLinearGraph(std::int16_t part, std::int16_t count, std::int16_t part2,
                         std::int16_t count2) override;
    void showRealTimeDisplay(std::int16_t part, std::int16_t num) override;
    void showAdvanced(std::int16_t part, std::int16_t num) override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void buildUi();
    QWidget* buildTopBar();
    QGroupBox* buildPartFrame(int part);
    void addSessionButtons(QGridLayout* grid, int row, int index);
    QLineEdit* addBox(const QString& name, int index, const QString& text, Field field);
    QAbstractButton* addButton(const QString& name, int index, const QString& caption,
                               std::function<void()> handler);
    void wire();

    // Runs an event handler: a device call that fails as a whole is reported and the action
    // abandoned, leaving the controls refreshed.
    void run(const std::function<void()>& handler);

    const bool m_oneSupply;
    WidgetControlView m_view;
    std::unique_ptr<WindowContext> m_ctx;
    QHash<QObject*, std::pair<Field, int>> m_validatedBoxes;
};

}  // namespace rk31
