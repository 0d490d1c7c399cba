#pragma once

#include <QDateTime>
#include <QFile>
#include <QStringList>
#include <memory>

#include "link/QZ7734Device.h"

namespace rk31 {

// One call to a device object as the traffic shows it.
struct DeviceCall {
    QDateTime at;           // when it returned (or threw)
    QString operation;      // "ReadMemory"
    QStringList arguments;  // the inputs: "0", "48"
    QString outcome;        // the out-values ("data=1FF"), or the description of the failure
    bool threw = false;
};

// "ReadMemory(0, 48) -> data=1FF", "GetMemoryAccess()", "ReadAngle(7) !! <description>".
QString DeviceCallText(const DeviceCall& call);
// The call as the device log writes it: its time (ISO 8601 with milliseconds), a blank, its text.
QString DeviceLogLine(const DeviceCall& call);

// Whoever takes the calls of a wrapped device object: the log file, a live view.
class DeviceTrafficSink {
  public:
    virtual ~DeviceTrafficSink() = default;
    // While nobody listens, the wrapper passes calls through without describing them.
    virtual bool listening() const { return true; }
    virtual void write(const DeviceCall& call) = 0;
};

// The traffic log a support engineer asks for: one line per call (time, operation, arguments,
// out-values) appended to a file, flushed at once so that nothing is lost when the program ends
// abruptly.
class DeviceLog : public DeviceTrafficSink {
  public:
    explicit DeviceLog(const QString& path);
    bool isOpen() const { return m_file.isOpen(); }
    void write(const DeviceCall& call) override;

  private:
    QFile m_file;
};

// A device object whose every call, and every call of the access objects it hands out, goes to
// `sink` once it has returned or thrown.
std::shared_ptr<QZ7734Device> WrapWithLog(std::shared_ptr<QZ7734Device> device,
                                          std::shared_ptr<DeviceTrafficSink> sink);

}  // namespace rk31
