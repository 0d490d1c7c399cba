#include <gtest/gtest.h>

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
    const Characteristic fourPoints =
        Points({{100, 20}, {150, 40}, {250, 60}, {300, 80}}, 5, 95, 20);
    const Characteristic flat = Points({{100, 50}, {200, 50}}, 5, 95, 0);
    const Characteristic past360 = Points({{355, 20}, {365, 25}}, 5, 95, 180);
    const struct {
        const char* name;
        const Characteristic& c;
        double magnet, level;
    } cases[] = {
        {"between the points", twoPoints, 150, 50},
        {"beyond B up to clamp high", twoPoints, 250, 90},
        {"before A down to clamp low", twoPoints, 50, 10},
        {"just before the jump at DP", twoPoints, 299, 90},
        {"at DP the curve starts over", twoPoints, 300, 10},
        {"points through 360/0", wrapping, 0, 50},
        {"points through 360/0, past B", wrapping, 15, 95},
        {"four points, C to D", fourPoints, 275, 70},
        {"four points, before A", fourPoints, 80, 12},
        {"four points, past D", fourPoints, 330, 92},
        {"equal levels", flat, 300, 50},
        {"B sent past 360", past360, 0, 22.5},
    };
    for (const auto& c : cases) {
        EXPECT_NEAR(c.c.Level(c.magnet), c.level, 1e-9) << c.name;
    }
}

TEST(Characteristic, BlankAndDegenerateCurves) {
    const Characteristic blank;
    EXPECT_EQ(blank.Level(123), 5);
    // Every point at one angle: one used point, a flat line at its level.
    const Characteristic single = Points({{100, 30}}, 10, 90, 0);
    EXPECT_EQ(single.Level(0), 30);
    // 0 and 360 are one angle, so B is not a second point.
    const Characteristic sameAngle = Points({{0, 30}, {360, 70}}, 10, 90, 0);
    EXPECT_EQ(sameAngle.Level(180), 30);
}

TEST(Characteristic, FromBufferTakesIdsAndStaysBlankWithoutPointA) {
    const Characteristic clampsOnly = Characteristic::FromBuffer({{1, 12.0}, {2, 88.0}});
    EXPECT_TRUE(clampsOnly.blank);
    EXPECT_EQ(clampsOnly.Level(0), 12);
    const Characteristic c = Characteristic::FromBuffer(
        {{1, 10}, {2, 90}, {3, 300}, {4, 20}, {8, 100}, {5, 80}, {9, 200}, {14, 1}});
    EXPECT_FALSE(c.blank);
    EXPECT_EQ(c.polarity, 1);
    EXPECT_EQ(c.Level(150), 50);
}

TEST(Characteristic, DacQuantisation) {
    EXPECT_EQ(DacCode(0), 0);
    EXPECT_EQ(DacCode(100), 4095);
    EXPECT_EQ(DacCode(-5), 0);
    EXPECT_EQ(DacCode(150), 4095);
    EXPECT_NEAR(Quantise(50), 50, 100.0 / 4095 / 2);
    EXPECT_EQ(Quantise(50), 2048 / 4095.0 * 100);
}

}  // namespace
}  // namespace rk31::sim
