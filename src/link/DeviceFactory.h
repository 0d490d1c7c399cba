#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "link/QZ7734Device.h"

namespace rk31 {

inline constexpr const char* kDeviceProgId = "QZ7734Module.QZ7734Device";

using DeviceCreator = std::function<std::shared_ptr<QZ7734Device>()>;

// Creates device-access objects by ProgID: from a creator registered in the process (a test's,
// the simulated programmer a test installs; returning nullptr models a component that cannot be
// created), else from the driver the DriverCatalog chooses. When RK31_DEVICE_LOG names a file,
// every created object is wrapped so that each call is appended to that file.
class DeviceFactory {
  public:
    static void Register(const QString& progId, DeviceCreator creator);
    static void Unregister(const QString& progId);
    // nullptr when the creator or driver yields nothing; throws DeviceError when neither a
    // creator nor a driver provides the ProgID.
    static std::shared_ptr<QZ7734Device> Create(const QString& progId);
};

}  // namespace rk31
