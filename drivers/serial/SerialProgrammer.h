#pragma once

#include <memory>

#include "rk31/DeviceDriver.h"
#include "serial/SerialLine.h"
#include "serial/SerialPorts.h"
#include "serial/SerialSettings.h"

namespace rk31::serial {

// A device-access object talking the box protocol over a serial line. OpenChannel(n) opens the
// device path of COM n, checks the box's protocol version, and passes the OpenChannel on; every
// other call is one request and one answer. CloseChannel always closes the port, also when the
// box no longer answers.
//
// A failure of the line reaches the program the way the call reports failures: OpenChannel and
// ProgramEEPROM through `failed` (why, on standard error), every other call as a DeviceError
// naming the port and the cause. A box's own DeviceError arrives with its description unchanged.
std::shared_ptr<QZ7734Device> CreateSerialDevice(const SerialSettings& settings,
                                                 std::shared_ptr<SerialPorts> ports,
                                                 std::shared_ptr<SerialLine::Counts> counts = {});

// The serial driver: its ports and device objects over one set of settings.
class SerialProgrammer : public DeviceDriver {
  public:
    explicit SerialProgrammer(SerialSettings settings);

    std::shared_ptr<QZ7734Device> create(const QString& progId) override;
    PortProber* ports() override { return m_ports.get(); }

  private:
    SerialSettings m_settings;
    std::shared_ptr<SerialPorts> m_ports;
};

}  // namespace rk31::serial
