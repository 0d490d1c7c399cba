#pragma once

#include <QString>
#include <functional>

#include "domain/WindowFamily.h"

namespace rk31 {

struct WindowContext;

// The window's load: session reset, the open-time validation, the part list, the set-point
// buttons (and Power On) disabled until a connect, the powered flag cleared.
void PointWindowLoad(WindowContext& ctx, const PointWindowTraits& traits);
// Power On: prepares the chosen part (both parts in the dual window).
void PointPowerOnCommand(WindowContext& ctx, const PointWindowTraits& traits);
// Set point A: captures point A and puts the DP half a turn away (with offsets: point B and the
// DP at their offsets from A).
void SetPointACommand(WindowContext& ctx, const PointWindowTraits& traits);
// Set point B ("Program" with offsets): captures point B, programs the part(s), powers them
// off and recomputes their curve, whatever the programming reported. True when the part(s)
// ended with a programmed EEPROM.
// The batch programmer runs the same action on the points of a settings file: it keeps the
// stored point B and checks the programmed part before it is powered off.
struct SetPointBOptions {
    bool capturePointB = true;
    // Between programming and powering off, with what the programming reported.
    std::function<void(bool programmed)> beforePowerOff;
};
bool SetPointBCommand(WindowContext& ctx, const PointWindowTraits& traits,
                      const SetPointBOptions& options = {});
// Get DP: the DP half a turn away from the sensed angle of the part(s).
void PointGetDPCommand(WindowContext& ctx, const PointWindowTraits& traits);
// The offset boxes' lost-focus rule: corrected without a message.
void OffsetLeft(WindowContext& ctx, const QString& box);

}  // namespace rk31
