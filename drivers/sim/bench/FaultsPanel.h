#pragma once

#include <QGroupBox>
#include <functional>
#include <memory>
#include <vector>

#include "sim/SimulatedBox.h"

class QGridLayout;

namespace rk31::sim {

// Every setting RK31_SIM knows beyond the magnet and the port, switched on the running box (the
// RK31_SIM name in each control's tip); the simulator reads them at the next device call. The
// faults that are on stand out.
class FaultsPanel : public QGroupBox {
    Q_OBJECT
  public:
    explicit FaultsPanel(std::shared_ptr<SimulatedBox> box, QWidget* parent = nullptr);

    // Shows what the box holds now (a die locked by CommLock, settings changed by a test).
    void refresh();

  signals:
    // A setting was changed here.
    void switched();

  private:
    void addPartSwitches(QGridLayout* grid, int& row);
    void addValues(QGridLayout* grid, int& row);

    std::shared_ptr<SimulatedBox> m_box;
    // Each brings one control in line with the box, without echoing the change back.
    std::vector<std::function<void()>> m_refreshers;
};

}  // namespace rk31::sim
