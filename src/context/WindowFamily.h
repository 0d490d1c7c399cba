#pragma once

namespace rk31 {

// The windows differ in their ranges and in which corrections they announce, so every rule
// takes the family of the window it runs in.
enum class WindowFamily {
    TwoPartTwoSupplies,  // MainForm2Parts2Src
    TwoPartOneSupply,    // MainForm2Parts1Src
    OnePartPoint,        // MainForm2PointsProgramming, ...WithPwr, MainForm1PointProgramming
    DualPoint,           // MainForm2PointsProgrammingforDual, ...WithPwr
};

inline bool IsTwoPartFamily(WindowFamily family) {
    return family == WindowFamily::TwoPartTwoSupplies || family == WindowFamily::TwoPartOneSupply;
}

}  // namespace rk31
