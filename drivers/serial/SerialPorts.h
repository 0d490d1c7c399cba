#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QStringList>

#include "rk31/PortProber.h"
#include "serial/SerialSettings.h"

namespace rk31::serial {

// The COM ports of the serial driver: port n is the n-th device path, first those the settings
// name, then the machine's USB-serial (ttyUSB*) and ACM (ttyACM*) devices in name order. The
// machine's devices are looked up again when the last look is over a second old: an adapter
// plugged in shows at the next probe, and the sixteen ports of one probe cost one look.
class SerialPorts : public PortProber {
  public:
    static constexpr int kOtherError = 8002;

    explicit SerialPorts(SerialSettings settings) : m_settings(std::move(settings)) {}

    QStringList paths() const;
    // The device path of COM n, empty when there is none.
    QString path(int port) const;

    bool isOpenHere(int /*port*/) const override { return false; }
    int open(int port) override;
    void close(int /*port*/) override {}
    QString portName(int port) const override { return path(port); }

  private:
    QStringList devices() const;

    SerialSettings m_settings;
    mutable QStringList m_devices;
    mutable QElapsedTimer m_lookedAt;
};

}  // namespace rk31::serial
