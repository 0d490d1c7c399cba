#pragma once

#include <QString>
#include <QStringList>
#include <QtPlugin>
#include <memory>

#include "rk31/DeviceBench.h"
#include "rk31/DeviceTraffic.h"
#include "rk31/PortProber.h"
#include "rk31/QZ7734Device.h"
#include "rk31/Station.h"

// The version after the slash changes whenever anything in the rk31/ headers changes in a way
// that breaks a built driver; the program refuses a driver built for another version.
#define RK31_DEVICE_DRIVER_IID_PREFIX "org.rk31gui.DeviceDriver/"
#define RK31_DEVICE_DRIVER_IID RK31_DEVICE_DRIVER_IID_PREFIX "4"

namespace rk31 {

// A programmer driver: a Qt plugin (a shared library) whose root object implements this
// interface. Its metadata file names the driver and the ProgIDs it provides, so that the
// program can choose a driver without loading the others:
//   { "Name": "mybox", "ProgIDs": [ "QZ7734Module.QZ7734Device" ] }
// A driver that must not replace the simulated programmer just by being installed (one for a
// line that may have no box behind it) adds "OnlyWhenNamed": true; it serves only when
// RK31_DRIVER names it.
// Everything runs on the program's GUI thread.
class DeviceDriver {
  public:
    virtual ~DeviceDriver() = default;

    // A new device-access object for one connect, or nullptr when it cannot be made. Called for
    // the ProgIDs the metadata names only.
    virtual std::shared_ptr<QZ7734Device> create(const QString& progId) = 0;
    // The serial ports the port dialog probes; nullptr leaves the dialog without ports. Owned by
    // the driver, alive as long as the driver is loaded.
    virtual PortProber* ports() { return nullptr; }
    // A window of the driver's own, or nullptr. Owned by the driver. Only asked for by programs
    // that show windows.
    virtual DeviceBench* bench() { return nullptr; }
    // Where the driver wants every call of its device objects as the program logs it (for a live
    // view of its own), or nullptr. Owned by the driver.
    virtual DeviceTrafficSink* traffic() { return nullptr; }
    // The station's magnet fixture and chip feeder, or nullptr where it has none. Owned by the
    // driver.
    virtual MagnetFixture* fixture() { return nullptr; }
    virtual ChipFeeder* feeder() { return nullptr; }
};

}  // namespace rk31

Q_DECLARE_INTERFACE(rk31::DeviceDriver, RK31_DEVICE_DRIVER_IID)
