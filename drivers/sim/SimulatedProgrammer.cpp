#include "sim/SimulatedProgrammer.h"

#include <QApplication>

#include "sim/bench/SimulationBench.h"

namespace rk31::sim {

Simulation::Simulation(const SimConfig& config)
    : box(std::make_shared<SimulatedBox>(config)),
      ports(std::make_shared<SimulatedPorts>(config.programmerPort)),
      traffic(std::make_shared<TrafficRecorder>()) {}

SimulatedProgrammer::SimulatedProgrammer(const SimConfig& config) : m_simulation(config) {}

SimulatedProgrammer::~SimulatedProgrammer() = default;

std::shared_ptr<QZ7734Device> SimulatedProgrammer::create(const QString& /*progId*/) {
    return CreateSimulatedDevice(m_simulation.box);
}

PortProber* SimulatedProgrammer::ports() {
    return m_simulation.ports.get();
}

DeviceBench* SimulatedProgrammer::bench() {
    // The bench is a window: a program without widgets has none.
    if (!m_bench && qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr) {
        m_bench = std::make_unique<SimulationBench>(m_simulation);
    }
    return m_bench.get();
}

DeviceTrafficSink* SimulatedProgrammer::traffic() {
    return m_simulation.traffic.get();
}

MagnetFixture* SimulatedProgrammer::fixture() {
    return m_simulation.box->config.fixture ? &m_fixture : nullptr;
}

std::optional<double> SimulatedProgrammer::Fixture::turnTo(double degrees) {
    if (m_box.config.fixtureFail) {
        return std::nullopt;
    }
    m_box.setMagnetAngle(degrees, 0);
    return m_box.magnetAngle();
}

void SimulatedProgrammer::releaseBench() {
    m_bench.reset();
}

}  // namespace rk31::sim
