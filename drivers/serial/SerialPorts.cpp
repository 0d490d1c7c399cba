#include "serial/SerialPorts.h"

#include <QSerialPort>
#include <QSerialPortInfo>
#include <algorithm>

namespace rk31::serial {

QStringList SerialPorts::devices() const {
    constexpr qint64 kFreshMs = 1000;
    if (m_lookedAt.isValid() && m_lookedAt.elapsed() < kFreshMs) {
        return m_devices;
    }
    m_devices.clear();
    for (const QSerialPortInfo& info : QSerialPortInfo::availablePorts()) {
        const QString name = info.portName();
        if (name.startsWith(QStringLiteral("ttyUSB")) ||
            name.startsWith(QStringLiteral("ttyACM"))) {
            m_devices << info.systemLocation();
        }
    }
    std::sort(m_devices.begin(), m_devices.end());
    m_lookedAt.start();
    return m_devices;
}

QStringList SerialPorts::paths() const {
    QStringList paths = m_settings.ports;
    if (!m_settings.scanDevices) {
        return paths;
    }
    for (const QString& path : devices()) {
        if (!paths.contains(path)) {
            paths << path;
        }
    }
    return paths;
}

QString SerialPorts::path(int port) const {
    return port >= 1 ? paths().value(port - 1) : QString();
}

int SerialPorts::open(int port) {
    const QString where = path(port);
    if (where.isEmpty()) {
        return kOtherError;
    }
    QSerialPort line(where);
    if (line.open(QIODevice::ReadWrite)) {
        return 0;
    }
    // Another program holding the port is what a lock or an exclusive open says.
    return line.error() == QSerialPort::PermissionError ? kPortAlreadyOpen : kOtherError;
}

}  // namespace rk31::serial
