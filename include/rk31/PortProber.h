#pragma once

#include <QString>

namespace rk31 {

// The serial-port control the port dialog probes with. open() answers 0 when the port opened
// (it is closed again at once), kPortAlreadyOpen when another program holds it, any other
// number for other errors.
inline constexpr int kPortAlreadyOpen = 8005;

class PortProber {
  public:
    virtual ~PortProber() = default;
    // Whether this control itself holds the port open.
    virtual bool isOpenHere(int port) const = 0;
    virtual int open(int port) = 0;
    virtual void close(int port) = 0;
    // Where port n leads, for a person to tell the ports apart ("/dev/ttyUSB0"); empty where
    // there is nothing to say.
    virtual QString portName(int /*port*/) const { return {}; }
};

}  // namespace rk31
