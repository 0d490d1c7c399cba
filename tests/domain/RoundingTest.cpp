#include <gtest/gtest.h>

#include "domain/Rounding.h"

using namespace rk31;

TEST(Rounding, HalvesGoToTheEvenNeighbour) {
    const struct {
        double in;
        int out;
    } cases[] = {{2.5, 2},   {3.5, 4},    {0.5, 0},  {-0.5, 0},  {-1.5, -2},   {82.5, 82},
                 {83.5, 84}, {2.4999, 2}, {2.51, 3}, {-2.5, -2}, {359.6, 360}, {0.0, 0}};
    for (const auto& c : cases) {
        EXPECT_EQ(RoundToInt16(c.in), c.out) << c.in;
        EXPECT_EQ(RoundToInt32(c.in), c.out) << c.in;
    }
}

TEST(Rounding, OutOfRangeSaturates) {
    EXPECT_EQ(RoundToInt16(40000.0), 32767);
    EXPECT_EQ(RoundToInt16(-40000.0), -32768);
    EXPECT_EQ(RoundToInt16(32767.4), 32767);
    EXPECT_EQ(RoundToInt32(1e12), 2147483647);
    EXPECT_EQ(RoundToInt32(-1e12), -2147483647 - 1);
    EXPECT_EQ(RoundToInt16(std::numeric_limits<double>::quiet_NaN()), 0);
}
