#pragma once

#include <QString>
#include <functional>

namespace rk31 {

struct WindowContext;

// What sets the five teach-in windows apart from one another.
struct PointWindowTraits {
    bool bothParts = false;    // both parts side by side instead of one part chosen in PartSel
    bool powerButton = false;  // a Power On button prepares the part(s) instead of Set point A
    bool offsets = false;      // point B and DP follow from offsets against point A

    bool operator==(const PointWindowTraits&) const = default;
};

// The switches' variants: "/2" and "/4" one part, "/3" and "/5" both parts, the ones with a
// power button being "/4" and "/5"; "/6" one part with offsets.
inline constexpr PointWindowTraits kTwoPoints{false, false, false};
inline constexpr PointWindowTraits kTwoPointsDual{true, false, false};
inline constexpr PointWindowTraits kTwoPointsWithPower{false, true, false};
inline constexpr PointWindowTraits kTwoPointsDualWithPower{true, true, false};
inline constexpr PointWindowTraits kOnePoint{false, false, true};

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
