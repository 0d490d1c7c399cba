// A driver whose metadata names no ProgID.
#include <rk31/DeviceDriver.h>
#include <QObject>

class EmptyDriver : public QObject, public rk31::DeviceDriver {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID RK31_DEVICE_DRIVER_IID FILE "empty.json")
    Q_INTERFACES(rk31::DeviceDriver)

  public:
    std::shared_ptr<rk31::QZ7734Device> create(const QString&) override { return nullptr; }
};

#include "EmptyDriver.moc"
