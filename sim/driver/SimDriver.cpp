// The simulated programmer as a driver: what the program loads when no driver for a real box is
// installed.
#include <QApplication>
#include <QObject>
#include <QtGlobal>
#include <cstdio>
#include <memory>

#include "link/LoggingDevice.h"
#include "rk31/DeviceDriver.h"
#include "sim/SimulatedProgrammer.h"
#include "sim/bench/SimulationBench.h"

namespace rk31::sim {

class SimDriver : public QObject, public DeviceDriver {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID RK31_DEVICE_DRIVER_IID FILE "sim.json")
    Q_INTERFACES(rk31::DeviceDriver)

  public:
    SimDriver() {
        // The bench's window must go while the application still exists; the driver object
        // itself lives until the library is unloaded.
        if (QCoreApplication* app = QCoreApplication::instance()) {
            connect(app, &QCoreApplication::aboutToQuit, this, [this] { m_bench.reset(); });
        }
    }

    std::shared_ptr<QZ7734Device> create(const QString& /*progId*/) override {
        const Simulation& sim = simulation();
        return WrapWithLog(CreateSimulatedDevice(sim.box), sim.traffic);
    }

    PortProber* ports() override { return simulation().ports.get(); }

    DeviceBench* bench() override {
        // The bench is a window: a program without widgets has none.
        if (!m_bench && qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr) {
            m_bench = std::make_unique<SimulationBench>(simulation());
        }
        return m_bench.get();
    }

  private:
    // One box for the life of the process, from RK31_SIM, over a latency of 30 ms so that the
    // wait windows are seen as with a real box.
    const Simulation& simulation() {
        if (!m_simulation.box) {
            SimConfig base;
            base.latencyMs = 30;
            QStringList errors;
            const SimConfig config =
                ParseSimConfig(qEnvironmentVariable("RK31_SIM"), &errors, base);
            for (const QString& error : errors) {
                std::fprintf(stderr, "%s\n", qPrintable(error));
            }
            m_simulation = {std::make_shared<SimulatedBox>(config),
                            std::make_shared<SimulatedPorts>(config.programmerPort),
                            std::make_shared<TrafficRecorder>()};
        }
        return m_simulation;
    }

    Simulation m_simulation;
    std::unique_ptr<SimulationBench> m_bench;
};

}  // namespace rk31::sim

#include "SimDriver.moc"
