#pragma once

#include <cstdint>

namespace rk31 {

struct WindowContext;

// The session commands of the two-part windows. In the one-supply window the part argument is
// ignored: its single buttons act on both parts.

// The window's load: session reset, lists, open-time validation.
void TwoPartWindowLoad(WindowContext& ctx);
// Connect or Disconnect, by the button's caption, and the controls that follow the connection.
void TwoPartConnectCommand(WindowContext& ctx);
// Power On (supply reading and chip check) or Power Off, by the button's caption.
void PowerCommand(WindowContext& ctx, std::int16_t part);
void NewDevice(WindowContext& ctx, std::int16_t part);
void CommLockCommand(WindowContext& ctx, std::int16_t part);

// After a command was abandoned because a device call failed as a whole: the power captions, the
// enabled controls and the status line follow the chip states as recorded, which are what the
// device really reached.
void TwoPartAfterDeviceFailure(WindowContext& ctx);

}  // namespace rk31
