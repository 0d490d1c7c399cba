#include <gtest/gtest.h>

#include "domain/Formats.h"

using namespace rk31;

TEST(Formats, TypedTextIsRoundedAsTyped) {
    const struct {
        const char* text;
        int decimals;
        const char* out;
    } cases[] = {
        {"5", 2, "5.00"},
        {".5", 2, "0.50"},
        {"0.125", 2, "0.13"},
        {"2.675", 2, "2.68"},
        {"123.456", 2, "123.46"},
        {"1E2", 2, "100.00"},
        {"-0.25", 4, "-0.2500"},
        {"359.995", 2, "360.00"},
        {"4.9996", 3, "5.000"},
        {"-0.001", 2, "0.00"},
        {"1E-7", 4, "0.0000"},
        {"99.999", 2, "100.00"},
        {" 7 ", 2, "7.00"},
        {"abc", 2, "abc"},
        {"", 2, ""},
        {"12345678901234567890", 2, "12345678901234567890.00"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(FormatText(c.text, c.decimals), c.out) << c.text;
    }
}

TEST(Formats, SinglesUseTheirShortestDecimal) {
    EXPECT_EQ(FormatSingle(10.004f, 2), "10.00");
    EXPECT_EQ(FormatSingle(190.0f, 2), "190.00");
    EXPECT_EQ(FormatSingle(2.675f, 2), "2.68");  // binary value is below 2.675
    EXPECT_EQ(FormatSingle(4.9876f, 3), "4.988");
    EXPECT_EQ(FormatDouble(50.5 * 3.6, 2), "181.80");
}

TEST(Formats, DefaultTextOfNumbers) {
    EXPECT_EQ(SingleText(static_cast<float>(1 / 3.6)), "0.2777778");
    EXPECT_EQ(SingleText(0.0f), "0");
    EXPECT_EQ(SingleText(101.0f), "101");
    EXPECT_EQ(SingleText(-150.5f), "-150.5");
    EXPECT_EQ(SingleText(12345678.0f), "1.234568E+07");
    EXPECT_EQ(SingleText(0.00001f), "1E-05");
    EXPECT_EQ(SingleText(0.0001f), "0.0001");
    EXPECT_EQ(SingleText(1234567.0f), "1234567");
    EXPECT_EQ(DoubleText(1.1 + 0.25), "1.35");
    EXPECT_EQ(DoubleText(15.75), "15.75");
}
