// Holding a measured output against the drawn curve: where it is read, how far it may lie off,
// and which angles a verify turns the magnet to.
#include <gtest/gtest.h>

#include "domain/Curve.h"
#include "domain/CurveCheck.h"

using namespace rk31;

namespace {

// Clamp low to 40 degrees, a slope of 0.5 %VDD per degree up to 200, clamp high up to DP at
// 260, a jump down and 20 %VDD to the seam.
CurveRows Drawn() {
    CurveRows rows{};
    const std::int16_t ends[][2] = {{0, 5},    {40, 5},   {40, 5},   {200, 85}, {200, 85},
                                    {260, 85}, {260, 85}, {260, 20}, {260, 20}, {360, 20}};
    for (std::size_t i = 0; i < std::size(ends); ++i) {
        rows[i] = {ends[i][0], ends[i][1]};
    }
    return rows;
}

constexpr double kSlopeTolerance = kDacStep + 0.5 + 0.25;  // half a degree of a 0.5 slope
constexpr double kFlatTolerance = kDacStep + 0.5;

}  // namespace

TEST(CurveLevelAt, AlongEverySegmentAndNowhereElse) {
    const CurveRows rows = Drawn();
    const struct {
        double angle;
        std::optional<double> level;
    } cases[] = {
        {0, 5},
        {2, 5},
        {40, 5},
        {41, 5.5},
        {120, 45},
        {199.5, 84.75},
        {230, 85},
        {259.9, 85},
        {300, 20},
        {360, 20},
        {360.5, std::nullopt},
        {-1, std::nullopt},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(CurveLevelAt(rows, c.angle), c.level) << c.angle;
    }
    EXPECT_EQ(CurveLevelAt(CurveRows{}, 100), std::nullopt);
}

TEST(CompareWithCurve, ToleranceSeamJumpAndBlankChip) {
    const CurveRows rows = Drawn();
    const struct {
        const char* name;
        double angle, measured;
        double expected, tolerance;
        bool passed, blankWouldPass;
    } cases[] = {
        {"on the slope", 120, 45.7, 45, kSlopeTolerance, true, false},
        {"off the slope", 120, 45.8, 45, kSlopeTolerance, false, false},
        {"below it", 120, 44.2, 45, kSlopeTolerance, false, false},
        {"clamp low: a blank chip would pass", 20, 5, 5, kFlatTolerance, true, true},
        {"clamp high", 230, 84.6, 85, kFlatTolerance, true, false},
        // 20 at 360 and 5 at 0: the seam is a jump too, and either end passes beside it.
        {"just under the seam reads the curve's 360", 359.8, 20, 20, kFlatTolerance + 15, true,
         true},
        {"just over it reads the curve's 0", 0.2, 5.3, 5, kFlatTolerance + 15, true, true},
        {"beside the jump either end passes", 259.8, 20, 85, kFlatTolerance + 65, true, false},
        {"an output out of the measurable range", 230, -0.1, 85, kFlatTolerance, false, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto compared = CompareWithCurve(rows, c.angle, c.measured);
        ASSERT_TRUE(compared);
        EXPECT_DOUBLE_EQ(compared->expected, c.expected);
        EXPECT_NEAR(compared->tolerance, c.tolerance, 1e-9);
        EXPECT_EQ(compared->passed, c.passed);
        EXPECT_EQ(compared->blankWouldPass, c.blankWouldPass);
    }
    EXPECT_FALSE(CompareWithCurve(rows, 100, 101).value().passed) << "above the ADC's range";
    EXPECT_FALSE(CompareWithCurve(CurveRows{}, 100, 50)) << "no curve, nothing to compare";
}

TEST(ProvingAngles, PointsBothSidesOfDpAndSegmentMiddles) {
    EXPECT_EQ(ProvingAngles(Drawn()), (std::vector<double>{20, 40, 120, 200, 230, 257, 263, 310}));
    EXPECT_TRUE(ProvingAngles(CurveRows{}).empty());
    // One flat segment is still proven at eight angles round the turn.
    CurveRows flat{};
    flat[0] = {0, 50};
    flat[1] = {360, 50};
    const std::vector<double> angles = ProvingAngles(flat);
    ASSERT_EQ(angles.size(), 8u);
    EXPECT_TRUE(std::is_sorted(angles.begin(), angles.end()));
    EXPECT_GE(angles.front(), 0);
    EXPECT_LT(angles.back(), 360);
}

TEST(LargestDeviation, FurthestBeyondItsToleranceAndNotTheJump) {
    const CurveRows rows = Drawn();
    const auto off = LargestDeviation(rows, {{120, 45}, {230, 80}, {310, 20.3}});
    ASSERT_TRUE(off);
    EXPECT_EQ(off->angle, 230);
    EXPECT_EQ(off->expected, 85);
    EXPECT_FALSE(off->passed);
    // The far end of the jump is no deviation; the slope's small one is the largest.
    const auto near = LargestDeviation(rows, {{259.8, 20}, {120, 45.5}});
    ASSERT_TRUE(near);
    EXPECT_EQ(near->angle, 120);
    EXPECT_TRUE(near->passed);
    EXPECT_FALSE(LargestDeviation(CurveRows{}, {{120, 45}}));
}

TEST(CurveCsvLines, OnlyTheTwoPartsHaveRows) {
    const CurveTables curves{Drawn(), Drawn()};
    const QString header = QStringLiteral("part,segment,angle_deg,level_pct_vdd");
    EXPECT_EQ(CurveCsvLines(curves, {-1, 2}), QStringList{header});
    EXPECT_EQ(CurveCsvLines(curves, {1}).size(), 1 + 2 * 5);
}
