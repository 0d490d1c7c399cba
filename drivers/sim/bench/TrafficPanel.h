#pragma once

#include <QGroupBox>
#include <memory>

#include "sim/TrafficRecorder.h"

class QLabel;
class QLineEdit;
class QPushButton;
class QSortFilterProxyModel;
class QTableView;

namespace rk31::sim {

class TrafficModel;

// The device calls as they happen, the same calls and texts as RK31_DEVICE_LOG: pause, clear,
// a filter over every column, and Save… to a text file in the log's own format. A line above
// the calls says how many it could not keep.
class TrafficPanel : public QGroupBox {
    Q_OBJECT
  public:
    explicit TrafficPanel(std::shared_ptr<TrafficRecorder> traffic, QWidget* parent = nullptr);

    // Takes what the recorder gathered, unless paused.
    void refresh();
    // The rows the view shows (the filter applied), as the device log writes them.
    QStringList shownLines() const;
    // Writes the shown rows; says in the panel whether that worked. False when it did not.
    bool saveTo(const QString& path);

  private:
    void chooseFileAndSave();
    void clear();
    void showMissed();

    std::shared_ptr<TrafficRecorder> m_traffic;
    TrafficModel* m_model = nullptr;
    QSortFilterProxyModel* m_filtered = nullptr;
    QTableView* m_view = nullptr;
    QLineEdit* m_filter = nullptr;
    QPushButton* m_pause = nullptr;
    QLabel* m_missed = nullptr;
    QLabel* m_status = nullptr;
    QString m_lastFile;
};

}  // namespace rk31::sim
