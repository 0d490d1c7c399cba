#include "link/DeviceFactory.h"

#include <QHash>
#include <QtGlobal>
#include <cstdio>

#include "link/LoggingDevice.h"

namespace rk31 {

namespace {

QHash<QString, DeviceCreator>& creators() {
    static QHash<QString, DeviceCreator> map;
    return map;
}

// One log per process and file name, shared by every object created while it is set.
std::shared_ptr<DeviceLog> logFromEnvironment() {
    static QString openedPath;
    static std::shared_ptr<DeviceLog> log;
    const QString path = qEnvironmentVariable("RK31_DEVICE_LOG");
    if (path.isEmpty()) {
        return nullptr;
    }
    if (path != openedPath) {
        openedPath = path;
        log = std::make_shared<DeviceLog>(path);
        if (!log->isOpen()) {
            std::fprintf(stderr, "RK31_DEVICE_LOG: cannot open %s for appending\n",
                         qPrintable(path));
        }
    }
    return log->isOpen() ? log : nullptr;
}

}  // namespace

void DeviceFactory::Register(const QString& progId, DeviceCreator creator) {
    creators().insert(progId, std::move(creator));
}

void DeviceFactory::Unregister(const QString& progId) { creators().remove(progId); }

std::shared_ptr<QZ7734Device> DeviceFactory::Create(const QString& progId) {
    const auto it = creators().constFind(progId);
    if (it == creators().constEnd() || !*it) {
        return nullptr;
    }
    return WrapWithLog((*it)(), logFromEnvironment());
}

}  // namespace rk31
