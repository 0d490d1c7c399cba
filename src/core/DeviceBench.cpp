#include "core/DeviceBench.h"

namespace rk31 {

namespace {

DeviceBench*& installed() {
    static DeviceBench* bench = nullptr;
    return bench;
}

}  // namespace

DeviceBench* InstalledDeviceBench() {
    return installed();
}

void InstallDeviceBench(DeviceBench* bench) {
    installed() = bench;
}

}  // namespace rk31
