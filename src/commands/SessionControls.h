#pragma once

#include <cstdint>

namespace rk31 {

struct WindowContext;

// The session commands of the main windows. In the one-supply window the part argument is
// ignored: its single buttons act on both parts.

// The two-part windows' load: session reset, lists, open-time validation.
void TwoPartWindowLoad(WindowContext& ctx);
// Power On (supply reading and chip check) or Power Off, by the button's caption.
void PowerCommand(WindowContext& ctx, std::int16_t part);
void NewDevice(WindowContext& ctx, std::int16_t part);
void CommLockCommand(WindowContext& ctx, std::int16_t part);
void AboutCommand(WindowContext& ctx);
// The point windows' preparation of a fresh part (part < 0: both parts); runs once per
// power-up.
void PrepareDevice(WindowContext& ctx, int part);

// The point windows' buttons when a part may be started: Set point A, or Power On in the
// windows that have it; Set point B waits for point A.
void ReadyPointButtons(WindowContext& ctx);

// After a command was abandoned because a device call failed as a whole: the power captions, the
// point windows' powered flag, the enabled controls and the status line follow the chip states
// as recorded, which are what the device really reached.
void AfterDeviceFailure(WindowContext& ctx);

}  // namespace rk31
