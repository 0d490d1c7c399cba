#pragma once

class QWidget;

namespace rk31 {

// The simulated programmer's bench, as the product's windows know it. Installing one says that
// the device objects the program creates are the simulated programmer's: every main window
// then shows a badge that opens it. With any other device nothing is installed, and neither the
// badge nor the bench exists.
class DeviceBench {
  public:
    virtual ~DeviceBench() = default;
    // Shows the bench, one per process, beside `window`; raises it where it is when it is open.
    virtual void open(QWidget* window) = 0;
};

// The installed bench, or nullptr when the device in use is not the simulated programmer.
DeviceBench* InstalledDeviceBench();
// For the life of the bench; nullptr removes it.
void InstallDeviceBench(DeviceBench* bench);

}  // namespace rk31
