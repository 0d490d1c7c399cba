#pragma once

#include <QRect>
#include <memory>

#include "rk31/DeviceBench.h"
#include "sim/SimulatedProgrammer.h"

namespace rk31::sim {

class ProgrammerBench;

// The bench of a simulation, the simulated programmer's DeviceBench. The window is only built
// when first opened; the traffic is recorded from the start.
class SimulationBench : public DeviceBench {
  public:
    explicit SimulationBench(Simulation simulation);
    ~SimulationBench() override;
    SimulationBench(const SimulationBench&) = delete;
    SimulationBench& operator=(const SimulationBench&) = delete;

    void open(QWidget* window) override;
    // Nullptr until first opened.
    ProgrammerBench* window() const { return m_window.get(); }

  private:
    Simulation m_simulation;
    std::unique_ptr<ProgrammerBench> m_window;
};

// Where a window of `size` (frame included) goes beside the frame `main` within `screen` (the
// screen's available area): right of it, else left, else below, else above; else against an
// edge of the screen over as little of it as can be. Shrunk to the screen when larger.
QRect PlaceBench(const QRect& main, const QSize& size, const QRect& screen);

}  // namespace rk31::sim
