#include <gtest/gtest.h>

#include "domain/NumberText.h"
#include "domain/Validation.h"
#include "support/ScriptedPrompts.h"

using namespace rk31;

namespace {

constexpr auto T2 = WindowFamily::TwoPartTwoSupplies;
constexpr auto T1 = WindowFamily::TwoPartOneSupply;
constexpr auto P1 = WindowFamily::OnePartPoint;
constexpr auto PD = WindowFamily::DualPoint;

// A text beyond the Single range keeps 0, and the box shows that 0 in the field's format.
QString huge(int decimals) {
    return QStringLiteral("0.") + QString(decimals, u'0');
}

const QString Overflow = QStringLiteral("Wrong Float Data Input Detected : 1E50 !!!");
const QString Invalid = QStringLiteral("Input is Invalid! Restoring to default… Please try again!");

// A box left with `text`: the messages in order, the box's new text and the value kept.
// clang-format off
struct Case { WindowFamily family; int part, point; QString text; QStringList messages; QString box; float value; };
// clang-format on

template <typename Rule>
void check(const char* name, Rule rule, const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        test::ScriptedPrompts prompts;
        const Validated result = rule(c, prompts);
        const auto where = ::testing::Message()
                           << name << " family " << static_cast<int>(c.family) << " part " << c.part
                           << " point " << c.point << " text \"" << c.text.toStdString() << '"';
        EXPECT_EQ(prompts.messages, c.messages) << where;
        EXPECT_EQ(result.text, c.box) << where;
        EXPECT_EQ(result.value, c.value) << where;
    }
}

}  // namespace

TEST(Validation, DP) {
    const QString invalid = "Part#1: : DP " + Invalid;
    // clang-format off
    check("DP", [](const Case& c, Prompts& p) { return ValidateDP(c.text, c.family, c.part, p); }, {
        {T2, 0, 0, "360", {"Part#1: : DP Input cannot be more than or equal to 360! Using 359.99 instead!"}, "359.99", 359.99f},
        {T1, 1, 0, "360", {"Part#2: : DP Input cannot be more than or equal to 360! Using 359.99 instead!"}, "359.99", 359.99f},
        {P1, 0, 0, "360", {}, "359.99", 359.99f},
        {T2, 0, 0, "359.99", {}, "359.99", 359.99f},
        {T2, 0, 0, "-1", {"Part#1: : DP Input cannot be less than 0! Using 0 instead!"}, "0", 0},
        {T2, 0, 0, "0", {}, "0.00", 0},
        {T2, 0, 0, "1e2", {invalid}, "260.00", 260},
        {T2, 0, 0, "1E2", {}, "100.00", 100},
        {T2, 0, 0, "abc", {invalid}, "260.00", 260},
        {T2, 0, 0, "", {invalid}, "260.00", 260},
        {PD, 0, 0, "abc", {}, "260.00", 260},
        {T2, 0, 0, "123.456", {}, "123.46", 123.456f},
        {T2, 0, 0, "1E50", {Overflow}, huge(2), 0},
    });
    // clang-format on
}

TEST(Validation, Clamps) {
    // clang-format off
    check("ClampHigh", [](const Case& c, Prompts& p) { return ValidateClampHigh(c.text, c.family, c.part, p); }, {
        {T2, 0, 0, "0", {}, "0.00", 0},
        {T1, 0, 0, "0", {}, "0.01", 0.01f},
        {T2, 0, 0, "-1", {}, "0", 0},
        {T1, 0, 0, "-1", {}, "0.01", 0.01f},
        {T1, 0, 0, "150", {}, "100.00", 100},
        {PD, 0, 0, "150", {}, "100.00", 100},
        {T1, 0, 0, "", {"Part#1: : Clamp High " + Invalid}, "95.00", 95},
        {P1, 0, 0, "abc", {}, "95.00", 95},
        {T1, 0, 0, "1E50", {Overflow}, "0.01", 0.01f},
        {T2, 0, 0, "1E50", {Overflow}, huge(2), 0},
        {T2, 0, 0, "95.555", {}, "95.56", 95.555f},
    });
    check("ClampLow", [](const Case& c, Prompts& p) { return ValidateClampLow(c.text, c.family, c.part, p); }, {
        {T2, 0, 0, "150", {}, "100", 100},
        {T1, 0, 0, "150", {}, "99.99", 99.99f},
        {T2, 0, 0, "100", {}, "100.00", 100},
        {T1, 0, 0, "100", {}, "99.99", 99.99f},
        {T2, 0, 0, "-1", {}, "0", 0},
        {T2, 0, 0, "0", {}, "0.00", 0},
        {T2, 1, 0, "abc", {"Part#2: : Clamp Low " + Invalid}, "5.00", 5},
        {P1, 1, 0, "abc", {}, "5.00", 5},
        {T2, 0, 0, "1E50", {Overflow}, huge(2), 0},
    });
    // clang-format on
}

TEST(Validation, AnglesAndLevels) {
    // clang-format off
    check("Angle", [](const Case& c, Prompts& p) { return ValidateAngle(c.text, c.family, {c.part, c.point}, p); }, {
        {T2, 0, 0, "x", {"Part#1: Angle A " + Invalid}, "", EmptyValue},
        {T1, 1, 3, "1e2", {"Part#2: Angle D " + Invalid}, "", EmptyValue},
        {P1, 1, 1, "x", {"Part#2: Angle 1 " + Invalid}, "", EmptyValue},
        {PD, 0, 0, "x", {}, "", EmptyValue},
        {T2, 0, 0, "", {}, "", EmptyValue},
        {T2, 1, 2, "-1", {"Part#2: Angle C Input cannot be less than 0! Using 0 instead!"}, "0", 0},
        {P1, 0, 0, "-1", {}, "0", 0},
        {T2, 0, 1, "360", {"Part#1: Angle B Input cannot be more than or equal to 360! Using 359.99 instead!"}, "359.99", 359.99f},
        {T2, 0, 0, "0", {}, "0.00", 0},
        {T2, 0, 0, "1E50", {Overflow}, huge(2), 0},
    });
    check("Level", [](const Case& c, Prompts& p) { return ValidateLevel(c.text, c.family, {c.part, c.point}, p); }, {
        {T2, 0, 0, "-5", {}, "0.00", 0},
        {T2, 0, 0, "150", {}, "100.00", 100},
        {T2, 0, 0, "12.345", {}, "12.35", 12.345f},
        {T2, 0, 3, "abc", {"Part#1: Level D " + Invalid}, "", 0},
        {P1, 0, 0, "abc", {"Part#1: Level 0 " + Invalid}, "", 0},
        {PD, 0, 0, "abc", {}, "", 0},
        {T2, 0, 0, "", {}, "", 0},
        {T2, 0, 0, "1E50", {Overflow}, "0.00", 0},
    });
    // clang-format on
}

TEST(Validation, SlopeAndSwitchOutput) {
    // clang-format off
    check("Slope", [](const Case& c, Prompts& p) { return ValidateSlope(c.text, c.part, p); }, {
        {T2, 0, 0, "-0.25", {}, "-0.2500", -0.25f},
        {T2, 0, 0, "1E2", {}, "100.0000", 100},
        {T2, 0, 0, "abc", {"Part#1: Slope " + Invalid}, "", EmptyValue},
        {T2, 1, 0, "1e2", {"Part#2: Slope " + Invalid}, "", EmptyValue},
        {T2, 0, 0, "", {}, "", EmptyValue},
        {T2, 0, 0, "1E50", {Overflow}, huge(4), 0},
    });
    check("OP", [](const Case& c, Prompts& p) { return ValidateOP(c.text, c.part, p); }, {
        {T2, 0, 0, "360", {"Part#1: OP  Input cannot be more than or equal to 360! Using 359.99 instead!"}, "359.99", 359.99f},
        {T2, 1, 0, "-1", {"Part#2: OP  Input cannot be less than 0! Using 0 instead!"}, "0", 0},
        {T2, 0, 0, "abc", {"Part#1: OP  " + Invalid}, "", EmptyValue},
        {T2, 0, 0, "", {}, "", EmptyValue},
        {T2, 0, 0, "12.345", {}, "12.35", 12.345f},
    });
    check("HYS", [](const Case& c, Prompts& p) { return ValidateHYS(c.text, c.part, p); }, {
        {T2, 0, 0, "2.1", {}, "2.00", 2},
        {T2, 0, 0, "2.125", {}, "2.25", 2.25f},
        {T2, 0, 0, "2.6", {}, "2.50", 2.5f},
        {T2, 0, 0, "2.7", {}, "2.75", 2.75f},
        {T2, 0, 0, "15.7", {}, "15.75", 15.75f},
        {T2, 1, 0, "15.8", {"Part#2: HYS  Input cannot be more than 15.75! Using 15.75 instead!"}, "15.75", 15.75f},
        {T2, 0, 0, "1e1", {"Part#1: HYS  " + Invalid}, "", EmptyValue},
        {T2, 0, 0, "-1", {"Part#1: HYS  Input cannot be less than 0! Using 0 instead!"}, "0", 0},
        {T2, 0, 0, "", {}, "", EmptyValue},
        {T2, 0, 0, "1E50", {Overflow}, "0.00", 0},
    });
    // clang-format on
}

TEST(Validation, StepHYS) {
    // clang-format off
    const struct { const char* text; int direction; const char* result; } cases[] = {
        {"15.6", +1, "15.75"}, {"15.75", +1, "15.75"}, {"1.1", +1, "1.35"},  {"1.00", +1, "1.25"},
        {"0.1", -1, "0"},      {"0", -1, "0"},         {"1.00", -1, "0.75"}, {"", +1, "0.25"},
        {"abc", -1, "0"},      {"1e1", +1, "0.25"},    {"20", -1, "19.75"},
    };
    // clang-format on
    for (const auto& c : cases) {
        EXPECT_EQ(StepHYS(c.text, c.direction), c.result) << c.text << " " << c.direction;
    }
}

TEST(Validation, TextOnlyBoxes) {
    EXPECT_EQ(FormatVDD("5") + FormatVDD(""), "5.000");
    // A lowercase "e" makes no number for the rules, so the text stays as typed.
    EXPECT_EQ(FormatVDD("1e2") + " " + FormatVDD("1E-1") + " " + FormatVDD("abc"), "1e2 0.100 abc");
    EXPECT_EQ(FormatReadAngle("1e2") + " " + FormatReadAngle("12.345"), "1e2 12.35");
    // Beyond a double no format holds the number: it stays as typed.
    EXPECT_EQ(FormatVDD("1E50").size(), 55);
    EXPECT_EQ(FormatVDD("1E999999") + " " + FormatReadAngle("-1E400"), "1E999999 -1E400");
    // clang-format off
    const struct { const char* text; const char* result; } offsets[] = {
        {"-1", "0.00"}, {"360", "359.99"}, {"abc", "0.00"}, {"", "0.00"}, {"1e1", "0.00"}, {"12.5", "12.50"},
    };
    // clang-format on
    test::ScriptedPrompts prompts;
    for (const auto& c : offsets) {
        EXPECT_EQ(ValidateOffset(c.text, prompts), c.result) << c.text;
    }
    EXPECT_EQ(ValidateOffset("1E50", prompts), huge(2));
    EXPECT_EQ(prompts.messages, QStringList{Overflow});
}

TEST(Validation, PointBoxes) {
    // clang-format off
    const struct { WindowFamily family; int index, selected, part, point; } cases[] = {
        {T2, 6, 0, 1, 2}, {T1, 3, 0, 0, 3}, {PD, 3, 0, 1, 1}, {PD, 0, 0, 0, 0}, {P1, 1, 1, 1, 1},
    };
    // clang-format on
    for (const auto& c : cases) {
        const PointBox box = PointBoxOf(c.family, c.index, c.selected);
        EXPECT_EQ(box.part * 10 + box.point, c.part * 10 + c.point) << c.index;
    }
}
