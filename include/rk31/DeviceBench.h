#pragma once

class QWidget;

namespace rk31 {

// A window of its own that a driver may offer beside the main windows (the simulated
// programmer's bench). While one is installed every main window shows a badge that opens it;
// a driver without one leaves neither badge nor bench.
class DeviceBench {
  public:
    virtual ~DeviceBench() = default;
    // Shows the bench, one per process, beside `window`; raises it where it is when it is open.
    virtual void open(QWidget* window) = 0;
};

}  // namespace rk31
