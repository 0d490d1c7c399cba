#pragma once

#include <QString>
#include <stdexcept>

namespace rk31 {

// A device call that fails as a whole (no programmer, no object, a refused operation) throws
// this; every event handler catches it at its top, shows description() and abandons the action.
class DeviceError : public std::runtime_error {
  public:
    explicit DeviceError(const QString& description)
        : std::runtime_error(description.toStdString()), m_description(description) {}

    const QString& description() const noexcept { return m_description; }

  private:
    QString m_description;
};

}  // namespace rk31
