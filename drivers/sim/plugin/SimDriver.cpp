// The simulated programmer as the plugin the program loads when no driver for a real box is
// installed.
#include <QCoreApplication>
#include <QObject>

#include "rk31/DeviceDriver.h"
#include "sim/SimulatedProgrammer.h"

namespace rk31::sim {

class SimDriver : public QObject, public SimulatedProgrammer {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID RK31_DEVICE_DRIVER_IID FILE "sim.json")
    Q_INTERFACES(rk31::DeviceDriver)

  public:
    SimDriver() : SimulatedProgrammer(SimConfigFromEnvironment()) {
        // The driver object lives until the library is unloaded, after the application.
        if (QCoreApplication* app = QCoreApplication::instance()) {
            connect(app, &QCoreApplication::aboutToQuit, this, [this] { releaseBench(); });
        }
    }
};

}  // namespace rk31::sim

#include "SimDriver.moc"
