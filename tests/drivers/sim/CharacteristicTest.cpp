#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "sim/Characteristic.h"

namespace rk31::sim {
namespace {

Characteristic Points(std::vector<std::pair<double, double>> points, double low, double high,
                      double dp) {
    Characteristic c;
    c.clampLow = low;
    c.clampHigh = high;
    c.dp = dp;
    c.blank = false;
    // Unused points repeat the last used angle with level 0, as the program sends them.
    for (std::size_t k = 0; k < 4; ++k) {
        const auto& p = points[std::min(k, points.size() - 1)];
        c.angle[k] = p.first;
        c.level[k] = k < points.size() ? p.second : 0;
    }
    return c;
}

TEST(Characteristic, LevelAtMagnetAngle) {
    const Characteristic twoPoints = Points({{100, 20}, {200, 80}}, 10, 90, 300);
    const Characteristic wrapping = Points({{350, 20}, {10, 80}}, 0, 100, 180);
    const Characteristic four = Points({{100, 20}, {150, 40}, {250, 60}, {300, 80}}, 5, 95, 20);
    // clang-format off
    const struct { const char* name; Characteristic c; double magnet, level; } cases[] = {
        {"between the points", twoPoints, 150, 50},
        {"beyond B up to clamp high", twoPoints, 250, 90},
        {"before A down to clamp low", twoPoints, 50, 10},
        {"just before the jump at DP", twoPoints, 299, 90},
        {"at DP the curve starts over", twoPoints, 300, 10},
        {"points through 360/0", wrapping, 0, 50},
        {"points through 360/0, past B", wrapping, 15, 95},
        {"four points, C to D", four, 275, 70},
        {"four points, before A", four, 80, 12},
        {"four points, past D", four, 330, 92},
        {"equal levels", Points({{100, 50}, {200, 50}}, 5, 95, 0), 300, 50},
        {"B sent past 360", Points({{355, 20}, {365, 25}}, 5, 95, 180), 0, 22.5},
        {"one used point: a flat line", Points({{100, 30}}, 10, 90, 0), 0, 30},
        {"0 and 360 are one angle", Points({{0, 30}, {360, 70}}, 10, 90, 0), 180, 30},
        {"blank holds clamp low", Characteristic{}, 123, 5},
        {"no point A: blank", Characteristic::FromBuffer({{1, 12.0}, {2, 88.0}}), 0, 12},
    };
    // clang-format on
    for (const auto& c : cases) {
        EXPECT_NEAR(c.c.Level(c.magnet), c.level, 1e-9) << c.name;
    }
    EXPECT_TRUE(Characteristic::FromBuffer({{1, 12.0}, {2, 88.0}}).blank);
}

TEST(Characteristic, DacCodesStayInTwelveBits) {
    EXPECT_EQ(std::tuple(DacCode(-5), DacCode(100), DacCode(150)), std::tuple(0, 4095, 4095));
    EXPECT_EQ(Quantise(50), 2048 / 4095.0 * 100);
}

}  // namespace
}  // namespace rk31::sim
