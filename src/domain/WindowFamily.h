#pragma once

#include <QString>

namespace rk31 {

// The windows differ in their ranges and in which corrections they announce, so every rule
// takes the family of the window it runs in.
enum class WindowFamily {
    TwoPartTwoSupplies,  // MainForm2Parts2Src
    TwoPartOneSupply,    // MainForm2Parts1Src
    OnePartPoint,        // MainForm2PointsProgramming, ...WithPwr, MainForm1PointProgramming
    DualPoint,           // MainForm2PointsProgrammingforDual, ...WithPwr
};

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

inline bool IsTwoPartFamily(WindowFamily family) {
    return family == WindowFamily::TwoPartTwoSupplies || family == WindowFamily::TwoPartOneSupply;
}

inline WindowFamily FamilyOf(const PointWindowTraits& traits) {
    return traits.bothParts ? WindowFamily::DualPoint : WindowFamily::OnePartPoint;
}

// The switch that starts a window of `family` (with `traits` for a point window): "/0" to "/6".
inline QString SwitchOf(WindowFamily family, const PointWindowTraits& traits = {}) {
    switch (family) {
        case WindowFamily::TwoPartOneSupply:
            return QStringLiteral("/0");
        case WindowFamily::TwoPartTwoSupplies:
            return QStringLiteral("/1");
        case WindowFamily::OnePartPoint:
        case WindowFamily::DualPoint:
            break;
    }
    if (traits.offsets) {
        return QStringLiteral("/6");
    }
    return QStringLiteral("/%1").arg(2 + (traits.bothParts ? 1 : 0) + (traits.powerButton ? 2 : 0));
}

}  // namespace rk31
