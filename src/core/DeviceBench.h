#pragma once

#include "rk31/DeviceBench.h"

namespace rk31 {

// The installed bench, or nullptr when the device in use is not the simulated programmer.
DeviceBench* InstalledDeviceBench();
// For the life of the bench; nullptr removes it.
void InstallDeviceBench(DeviceBench* bench);

}  // namespace rk31
