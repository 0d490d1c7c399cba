#pragma once

#include <QFile>
#include <functional>
#include <memory>
#include <vector>

#include "device/CallsInProgress.h"
#include "rk31/DeviceTraffic.h"

namespace rk31 {

// The traffic log a support engineer asks for: one line per call (time, operation, arguments,
// out-values) appended to a file, flushed at once so that nothing is lost when the program ends
// abruptly.
class DeviceLog : public DeviceTrafficSink {
  public:
    // `failed` hears, once, why the log could not be opened or a line could not be written: a
    // log with holes is worse than none, so the program must be able to say so.
    explicit DeviceLog(const QString& path, std::function<void(const QString&)> failed = nullptr);
    bool isOpen() const { return m_file.isOpen(); }
    void write(const DeviceCall& call) override;

  private:
    void fail();

    QFile m_file;
    std::function<void(const QString&)> m_failed;
};

// Hands every call to each of several sinks, describing it once, so that they all show the same
// call at the same moment.
class TrafficTee : public DeviceTrafficSink {
  public:
    explicit TrafficTee(std::vector<std::shared_ptr<DeviceTrafficSink>> sinks)
        : m_sinks(std::move(sinks)) {}
    bool listening() const override;
    void write(const DeviceCall& call) override;

  private:
    std::vector<std::shared_ptr<DeviceTrafficSink>> m_sinks;
};

// A device object whose every call, and every call of the access objects it hands out, goes to
// `sink` (when given) once it has returned or thrown, and counts in `calls` (when given) while
// it runs.
std::shared_ptr<QZ7734Device> WrapWithLog(std::shared_ptr<QZ7734Device> device,
                                          std::shared_ptr<DeviceTrafficSink> sink,
                                          std::shared_ptr<CallsInProgress> calls = nullptr);

}  // namespace rk31
