#pragma once

#include "rk31/DeviceBench.h"

namespace rk31 {

// The installed bench, or nullptr when the driver in use offers none.
DeviceBench* InstalledDeviceBench();
// For the life of the bench; nullptr removes it.
void InstallDeviceBench(DeviceBench* bench);

}  // namespace rk31
