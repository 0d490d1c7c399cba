#pragma once

#include <cstdint>

namespace rk31 {

struct WindowContext;

// What the point windows do to a fresh part and around each programming. `part` is the part, or
// kBothParts in the dual windows.

// Connect or Disconnect, by the button's caption, and the set-point buttons that follow it.
void PointConnectCommand(WindowContext& ctx);
// The preparation of a fresh part: supply reading, identification, solver cleared, EEPROM
// programmed, calibration read. Runs once per power-up.
void PrepareDevice(WindowContext& ctx, std::int16_t part);
// Powers the part off when the window powered it, and clears the powered flag.
void PowerOffIfPowered(WindowContext& ctx, std::int16_t part);
// The buttons when a part may be started: Set point A, or Power On in the windows that have it;
// Set point B waits for point A.
void ReadyPointButtons(WindowContext& ctx);
// The Program action with two taught points: load, solve, write the buffer, program the EEPROM.
// True when the part (both parts) ended with a programmed EEPROM.
bool PointProgramAction(WindowContext& ctx, std::int16_t part);

// After a command was abandoned because a device call failed as a whole: the powered flag and
// the buttons follow the chip states as recorded, which are what the device really reached.
void PointAfterDeviceFailure(WindowContext& ctx);

}  // namespace rk31
