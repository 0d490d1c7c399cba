#pragma once

#include <QString>
#include <QStringList>

namespace rk31::serial {

// How the serial driver reaches its boxes, read once when the driver is loaded.
struct SerialSettings {
    // Device paths offered before the USB-serial and ACM devices found on the machine: COM1 is
    // the first of all, COM2 the second, and so on (RK31_SERIAL_PORTS, separated by ':').
    QStringList ports;
    qint32 baud = 115200;  // RK31_SERIAL_BAUD
    // How long a box may take to answer beyond the time the bytes take on the line
    // (RK31_SERIAL_TIMEOUT_MS).
    int timeoutMs = 1000;
    // Whether the devices found on the machine are offered after `ports`.
    bool scanDevices = true;
};

// The settings from the environment; a value that is not a positive number is reported on
// standard error and the default kept.
SerialSettings SerialSettingsFromEnvironment();

}  // namespace rk31::serial
