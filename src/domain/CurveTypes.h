#pragma once

#include <array>
#include <cstdint>

namespace rk31 {

// The rounded images of the last loaded and solved inputs, read by the curve calculation and
// the plots. Angles of 500 mark points that are not in use.
struct RoundedImages {
    std::array<std::array<std::int16_t, 8>, 2> RoundedPoints{};
    std::array<std::int16_t, 2> RoundedDP{};
    std::array<std::int16_t, 2> RoundedClampHigh{};
    std::array<std::int16_t, 2> RoundedClampLow{};
    std::array<bool, 2> PointsReversed{};
};

// One part's plotted transfer curve: rows 2k and 2k+1 are the ends of segment k (angle,
// level); row 40 stays (0, 0); the first all-zero segment ends the list.
using CurveRows = std::array<std::array<std::int16_t, 2>, 41>;
using CurveTables = std::array<CurveRows, 2>;

}  // namespace rk31
