#include "sim/SimulatedProgrammer.h"

#include <QtGlobal>
#include <cstdio>

#include "link/DeviceFactory.h"
#include "link/LoggingDevice.h"

namespace rk31::sim {

Simulation InstallSimulation(const SimConfig& config) {
    Simulation simulation{std::make_shared<SimulatedBox>(config),
                          std::make_shared<SimulatedPorts>(config.programmerPort),
                          std::make_shared<TrafficRecorder>()};
    DeviceFactory::Register(QString::fromLatin1(kDeviceProgId),
                            [box = simulation.box, traffic = simulation.traffic] {
                                return WrapWithLog(CreateSimulatedDevice(box), traffic);
                            });
    return simulation;
}

Simulation InstallSimulationFromEnvironment() {
    SimConfig base;
    base.latencyMs = 30;
    QStringList errors;
    const SimConfig config = ParseSimConfig(qEnvironmentVariable("RK31_SIM"), &errors, base);
    for (const QString& error : errors) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
    }
    return InstallSimulation(config);
}

}  // namespace rk31::sim
