#include "link/DeviceFactory.h"

#include <QHash>
#include <QtGlobal>
#include <cstdio>

#include "drivers/DriverCatalog.h"
#include "link/LoggingDevice.h"
#include "rk31/DeviceDriver.h"
#include "rk31/DeviceError.h"

namespace rk31 {

namespace {

QHash<QString, DeviceCreator>& creators() {
    static QHash<QString, DeviceCreator> map;
    return map;
}

// Opened afresh for every created object: a log that was deleted or moved while the program runs
// is then created again at the next connect, instead of the traffic going on into a file that
// nobody can see any more.
std::shared_ptr<DeviceLog> logFromEnvironment() {
    const QString path = qEnvironmentVariable("RK31_DEVICE_LOG");
    if (path.isEmpty()) {
        return nullptr;
    }
    auto log = std::make_shared<DeviceLog>(path);
    if (!log->isOpen()) {
        std::fprintf(stderr, "RK31_DEVICE_LOG: cannot open %s for appending\n", qPrintable(path));
        return nullptr;
    }
    return log;
}

}  // namespace

void DeviceFactory::Register(const QString& progId, DeviceCreator creator) {
    creators().insert(progId, std::move(creator));
}

void DeviceFactory::Unregister(const QString& progId) {
    creators().remove(progId);
}

std::shared_ptr<QZ7734Device> DeviceFactory::Create(const QString& progId) {
    const auto it = creators().constFind(progId);
    std::shared_ptr<QZ7734Device> device;
    if (it != creators().constEnd()) {
        device = *it ? (*it)() : nullptr;
    } else {
        DriverCatalog& drivers = DriverCatalog::instance();
        DeviceDriver* driver = drivers.driverFor(progId);
        if (driver == nullptr) {
            throw DeviceError(NoDriverMessage(progId, drivers.folders()));
        }
        device = driver->create(progId);
    }
    // No object, no log file: a component that cannot be created leaves nothing behind.
    return device ? WrapWithLog(std::move(device), logFromEnvironment()) : nullptr;
}

}  // namespace rk31
