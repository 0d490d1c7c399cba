#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "device/CallsInProgress.h"
#include "domain/CurveTypes.h"
#include "rk31/QZ7734Device.h"

namespace rk31 {

class Prompts;

// Chip states of a part as the program records them (never read back from the chip).
enum ChipStateValue : std::int32_t { PowerOff = 0, AdcMode = 1, OwiMode = 2 };

// The session record every window of the program shares: the device-access object, the chip
// state of each part, the lock flags, the connection and the DAC calibration values, and the
// rounded images and curves of the last solve.
class DeviceSession {
  public:
    // Makes the device-access object of a connect: nullptr when the component yields none; a
    // DeviceError when nothing can provide it.
    using DeviceMaker = std::function<std::shared_ptr<QZ7734Device>()>;

    explicit DeviceSession(DeviceMaker make) : m_make(std::move(make)) {}

    // The device-access object; throws DeviceError("Programmer is not connected!") when empty.
    QZ7734Device& device() const;
    bool hasDevice() const { return static_cast<bool>(m_device); }
    std::shared_ptr<QZ7734Device> deviceObject() const { return m_device; }
    // The access objects the device hands out; a DeviceError when it hands out none.
    std::shared_ptr<MemoryAccess> memoryAccess() const;
    std::shared_ptr<SolverAccess> solverAccess() const;

    // Whether a call of the device object or of its access objects is under way. A driver that
    // waits on a line lets timers run meanwhile: a timer that calls the device (the real-time
    // display) skips its turn while this is true. Counted by the wrapper the application puts
    // around every device object it creates (calls()).
    bool callInProgress() const { return m_calls->any(); }
    const std::shared_ptr<CallsInProgress>& calls() const { return m_calls; }

    // Creates the component and opens the channel on the COM port. Errors raised while doing
    // so propagate to the caller.
    void ConnectProgrammer(std::int16_t port, Prompts& prompts);
    void DisconnectProgrammer();

    // What every main window's load does first; the two-part windows also clear CommLocked.
    void ResetForWindowLoad(bool clearCommLocked);

    std::array<std::int32_t, 2> ChipState{};
    std::array<bool, 2> CommLocked{};
    // Where a part really is while a refused change to OWI mode has it recorded in OWI mode.
    std::array<std::optional<std::int32_t>, 2> RefusedOwiFrom{};
    std::int32_t ProgrammerConnected = 0;
    std::array<float, 2> K{kDefaultK, kDefaultK};
    std::array<float, 2> B{};
    float sysoffset = 0;

    RoundedImages rounded;
    CurveTables CurveTable{};

    static constexpr float kDefaultK = static_cast<float>(1.0 / 3.6);

  private:
    DeviceMaker m_make;
    std::shared_ptr<QZ7734Device> m_device;
    std::shared_ptr<CallsInProgress> m_calls = std::make_shared<CallsInProgress>();
};

}  // namespace rk31
