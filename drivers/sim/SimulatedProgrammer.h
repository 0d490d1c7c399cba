#pragma once

#include <map>
#include <memory>

#include "rk31/DeviceDriver.h"
#include "rk31/PortProber.h"
#include "sim/SimConfig.h"
#include "sim/SimulatedBox.h"
#include "sim/SimulatedDevice.h"
#include "sim/TrafficRecorder.h"

namespace rk31::sim {

// The simulated COM ports the port dialog probes: COM1 has the programmer (the port the dialog
// preselects), COM2 is held by another program, COM3 opens but has nothing behind it; every
// other port fails to open.
class SimulatedPorts : public PortProber {
  public:
    static constexpr int kOtherError = 8002;

    // The programmer's port opens, wherever RK31_SIM has put it.
    explicit SimulatedPorts(int programmerPort = 1);
    bool isOpenHere(int port) const override;
    int open(int port) override;
    void close(int port) override;

    // port -> open result (0 opens, kPortAlreadyOpen held elsewhere, other numbers fail);
    // a port not listed fails with kOtherError.
    std::map<int, int> results;

  private:
    std::map<int, bool> m_open;
};

// The box, the ports and the traffic view of one simulation: a new box built from `config`.
struct Simulation {
    explicit Simulation(const SimConfig& config);

    std::shared_ptr<SimulatedBox> box;
    std::shared_ptr<SimulatedPorts> ports;
    std::shared_ptr<TrafficRecorder> traffic;
};

class SimulationBench;

// The simulated programmer as a programmer driver: every device object it creates talks to the
// one box of its simulation, its ports are the simulated ones, the program's device traffic
// goes to its recorder, and its bench is a window over the simulation. It is also a station: its
// fixture turns the box's magnet (unless the configuration has a hand turn it), and its feeder
// puts a fresh blank chip in the socket. The plugin the program loads is this driver over
// RK31_SIM; a test builds it over the configuration it needs.
class SimulatedProgrammer : public DeviceDriver {
  public:
    explicit SimulatedProgrammer(const SimConfig& config);
    ~SimulatedProgrammer() override;
    SimulatedProgrammer(const SimulatedProgrammer&) = delete;
    SimulatedProgrammer& operator=(const SimulatedProgrammer&) = delete;

    std::shared_ptr<QZ7734Device> create(const QString& progId) override;
    PortProber* ports() override;
    // Made on first asking, and only in a program with windows.
    DeviceBench* bench() override;
    DeviceTrafficSink* traffic() override;
    MagnetFixture* fixture() override;
    ChipFeeder* feeder() override { return &m_feeder; }

    const Simulation& simulation() const { return m_simulation; }
    SimulatedBox& box() { return *m_simulation.box; }
    // The bench's window goes; it must go while the application still exists.
    void releaseBench();

  private:
    class Fixture : public MagnetFixture {
      public:
        explicit Fixture(SimulatedBox& box) : m_box(box) {}
        std::optional<double> turnTo(double degrees) override;

      private:
        SimulatedBox& m_box;
    };
    class Feeder : public ChipFeeder {
      public:
        explicit Feeder(SimulatedBox& box) : m_box(box) {}
        bool nextChip() override { return m_box.newChip(); }

      private:
        SimulatedBox& m_box;
    };

    Simulation m_simulation;
    Fixture m_fixture{*m_simulation.box};
    Feeder m_feeder{*m_simulation.box};
    std::unique_ptr<SimulationBench> m_bench;
};

}  // namespace rk31::sim
