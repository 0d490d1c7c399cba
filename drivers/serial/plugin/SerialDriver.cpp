// The serial driver as the plugin the program loads when RK31_DRIVER names it.
#include <QObject>

#include "rk31/DeviceDriver.h"
#include "serial/SerialProgrammer.h"

namespace rk31::serial {

class SerialDriver : public QObject, public SerialProgrammer {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID RK31_DEVICE_DRIVER_IID FILE "serial.json")
    Q_INTERFACES(rk31::DeviceDriver)

  public:
    SerialDriver() : SerialProgrammer(SerialSettingsFromEnvironment()) {}
};

}  // namespace rk31::serial

#include "SerialDriver.moc"
