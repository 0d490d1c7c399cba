#pragma once

#include <QFile>
#include <memory>

#include "link/QZ7734Device.h"

namespace rk31 {

// The traffic log a support engineer asks for: wraps any device object and appends one line per
// call (time, operation, arguments, out-values) to a file, flushed at once so that nothing is
// lost when the program ends abruptly.
class DeviceLog {
  public:
    explicit DeviceLog(const QString& path);
    bool isOpen() const { return m_file.isOpen(); }
    void write(const QString& line);

  private:
    QFile m_file;
};

std::shared_ptr<QZ7734Device> WrapWithLog(std::shared_ptr<QZ7734Device> device,
                                          std::shared_ptr<DeviceLog> log);

}  // namespace rk31
