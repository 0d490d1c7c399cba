#pragma once

#include <QTimer>
#include <QWidget>
#include <array>

#include "sim/SimulatedProgrammer.h"

class QLabel;
class QLineEdit;

namespace rk31::sim {

class DiePanel;
class FaultsPanel;
class MagnetPanel;
class TrafficPanel;

// The simulated programmer's bench: the magnet, both dies, the faults and the device traffic of
// one simulation, steered live through the simulator's public interface. Everything runs on the
// GUI thread; it refreshes on its own timer while shown, and the traffic is recorded from the
// moment it exists, shown or not.
class ProgrammerBench : public QWidget {
    Q_OBJECT
  public:
    static constexpr int kRefreshMs = 50;  // at most 20 refreshes a second

    explicit ProgrammerBench(Simulation simulation, QWidget* parent = nullptr);

    void refresh();
    // The RK31_SIM text that starts a simulator as this one is now.
    QString simText() const;
    // Puts simText() on the clipboard.
    void copySimText();
    TrafficPanel& traffic() { return *m_traffic; }
    // Modest: beside a main window about 1070 pixels wide on a 1920 x 1080 screen, and on a
    // 1366 x 768 one whole.
    QSize sizeHint() const override;

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    QWidget* scenarioBar();
    void showFaultsOn();

    Simulation m_simulation;
    QTimer m_timer;
    MagnetPanel* m_magnet = nullptr;
    std::array<DiePanel*, 2> m_dies{};
    FaultsPanel* m_faults = nullptr;
    TrafficPanel* m_traffic = nullptr;
    QLabel* m_faultsOn = nullptr;
    QLineEdit* m_simText = nullptr;
    QLabel* m_copied = nullptr;
    QLabel* m_chip = nullptr;
};

}  // namespace rk31::sim
