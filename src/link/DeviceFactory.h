#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "link/QZ7734Device.h"

namespace rk31 {

inline constexpr const char* kDeviceProgId = "QZ7734Module.QZ7734Device";

using DeviceCreator = std::function<std::shared_ptr<QZ7734Device>()>;

// Creates device-access objects by ProgID. The program registers its built-in simulated
// programmer; a test may register its own creator (returning nullptr models a component that
// cannot be created). When RK31_DEVICE_LOG names a file, every created object is wrapped so that
// each call is appended to that file.
class DeviceFactory {
  public:
    static void Register(const QString& progId, DeviceCreator creator);
    static void Unregister(const QString& progId);
    // nullptr when nothing is registered under the ProgID or the creator yields nothing.
    static std::shared_ptr<QZ7734Device> Create(const QString& progId);
};

}  // namespace rk31
