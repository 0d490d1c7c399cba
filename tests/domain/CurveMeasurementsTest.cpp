#include <gtest/gtest.h>

#include "domain/CurveMeasurements.h"

using namespace rk31;

namespace {

// Part#1 flat at 50 %VDD all the way round; Part#2 without a curve.
CurveTables FlatPart1() {
    CurveTables curves{};
    curves[0][0] = {0, 50};
    curves[0][1] = {360, 50};
    return curves;
}

}  // namespace

TEST(SweepAngles, StepsThroughOneTurnFromZero) {
    const struct {
        int step;
        std::size_t count;
        double last;
    } cases[] = {
        {10, 36, 350},
        {1, 360, 359},
        {30, 12, 330},
        {7, 52, 357},
        // Held to 1..30.
        {0, 360, 359},
        {-5, 360, 359},
        {45, 12, 330},
    };
    for (const auto& c : cases) {
        const auto angles = SweepAngles(c.step);
        ASSERT_EQ(angles.size(), c.count) << c.step;
        EXPECT_EQ(angles.front(), 0) << c.step;
        EXPECT_EQ(angles.back(), c.last) << c.step;
    }
}

TEST(MeasurementSummary, LargestDeviationPerPartInTheOrderShown) {
    const AngleReading near{100, 50.3f};
    const AngleReading below{200, 47.0f};
    const AngleReading noCurve{10, 5};
    const struct {
        const char* name;
        std::vector<int> parts;
        PartReadings readings;
        QString text;
    } cases[] = {
        {"nothing measured", {0, 1}, {}, "No measurements yet."},
        {"one point on the curve",
         {0},
         {{{near}, {}}},
         "Part#1, 1 point: largest deviation 0.30 %VDD at 100.00 deg (within tolerance)"},
        {"below the curve, by its size",
         {0},
         {{{near, below}, {}}},
         "Part#1, 2 points: largest deviation 3.00 %VDD at 200.00 deg (outside the tolerance)"},
        {"no curve drawn",
         {0, 1},
         {{{}, {noCurve}}},
         "Part#2, 1 point: none where the curve is drawn"},
        {"both parts, Part#2 shown first",
         {1, 0},
         {{{near}, {noCurve}}},
         "Part#2, 1 point: none where the curve is drawn\n"
         "Part#1, 1 point: largest deviation 0.30 %VDD at 100.00 deg (within tolerance)"},
        {"a part not shown is left out", {1, 7}, {{{below}, {}}}, "No measurements yet."},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(MeasurementSummary(c.parts, FlatPart1(), c.readings), c.text) << c.name;
    }
}

TEST(MeasuredCsvLines, OneRowPerReadingOfThePartsShown) {
    const PartReadings readings{{{{100, 50.3f}, {200.126, 47}}, {{10, 5}}}};
    EXPECT_EQ(MeasuredCsvLines({1, 0}, readings),
              QStringList(
                  {"2,measured,10.00,5.00", "1,measured,100.00,50.30", "1,measured,200.13,47.00"}));
    EXPECT_EQ(MeasuredCsvLines({1, -1}, readings), QStringList({"2,measured,10.00,5.00"}));
    EXPECT_TRUE(MeasuredCsvLines({0, 1}, {}).isEmpty());
}
