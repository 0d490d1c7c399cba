#include <gtest/gtest.h>

#include "params/PartParameters.h"
#include "params/Validation.h"
#include "support/ScriptedPrompts.h"

using namespace rk31;

// Readable failure output for QString comparisons.
inline void PrintTo(const QString& text, std::ostream* os) {
    *os << '"' << text.toStdString() << '"';
}

namespace {

constexpr auto T2 = WindowFamily::TwoPartTwoSupplies;
constexpr auto T1 = WindowFamily::TwoPartOneSupply;
constexpr auto P1 = WindowFamily::OnePartPoint;
constexpr auto PD = WindowFamily::DualPoint;

enum class Rule { DP, ClampHigh, ClampLow, Angle, Level, Slope, OP, HYS };

const char* ruleName(Rule rule) {
    switch (rule) {
        case Rule::DP:
            return "DP";
        case Rule::ClampHigh:
            return "ClampHigh";
        case Rule::ClampLow:
            return "ClampLow";
        case Rule::Angle:
            return "Angle";
        case Rule::Level:
            return "Level";
        case Rule::Slope:
            return "Slope";
        case Rule::OP:
            return "OP";
        case Rule::HYS:
            return "HYS";
    }
    return "";
}

Validated run(Rule rule, WindowFamily family, int part, int point, const QString& text,
              Prompts& prompts) {
    switch (rule) {
        case Rule::DP:
            return ValidateDP(text, family, part, prompts);
        case Rule::ClampHigh:
            return ValidateClampHigh(text, family, part, prompts);
        case Rule::ClampLow:
            return ValidateClampLow(text, family, part, prompts);
        case Rule::Angle:
            return ValidateAngle(text, family, {part, point}, prompts);
        case Rule::Level:
            return ValidateLevel(text, family, {part, point}, prompts);
        case Rule::Slope:
            return ValidateSlope(text, part, prompts);
        case Rule::OP:
            return ValidateOP(text, part, prompts);
        case Rule::HYS:
            return ValidateHYS(text, part, prompts);
    }
    return {};
}

// What FormatText makes of "1E50": the typed text rewritten, although the value became 0.
QString huge(int decimals) {
    return QStringLiteral("1") + QString(50, u'0') + u'.' + QString(decimals, u'0');
}

const QString Overflow = QStringLiteral("Wrong Float Data Input Detected : 1E50 !!!");

struct Case {
    Rule rule;
    WindowFamily family;
    int part;
    int point;
    QString text;
    QStringList messages;
    QString box;
    float value;
};

void check(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        test::ScriptedPrompts prompts;
        const Validated result = run(c.rule, c.family, c.part, c.point, c.text, prompts);
        const auto where = ::testing::Message()
                           << ruleName(c.rule) << " family " << static_cast<int>(c.family)
                           << " part " << c.part << " point " << c.point << " text \""
                           << c.text.toStdString() << '"';
        EXPECT_EQ(prompts.messages, c.messages) << where;
        EXPECT_EQ(result.text, c.box) << where;
        EXPECT_EQ(result.value, c.value) << where;
    }
}

}  // namespace

TEST(Validation, DP) {
    const QString above =
        "Part#1: : DP Input cannot be more than or equal to 360! Using 359.99 instead!";
    const QString below = "Part#1: : DP Input cannot be less than 0! Using 0 instead!";
    const QString invalid =
        "Part#1: : DP Input is Invalid! Restoring to default… Please try again!";
    check({
        {Rule::DP, T2, 0, 0, "360", {above}, "359.99", 359.99f},
        {Rule::DP,
         T1,
         1,
         0,
         "360",
         {"Part#2: : DP Input cannot be more than or equal to 360! Using 359.99 instead!"},
         "359.99",
         359.99f},
        {Rule::DP, P1, 0, 0, "360", {}, "359.99", 359.99f},
        {Rule::DP, PD, 1, 0, "360", {}, "359.99", 359.99f},
        {Rule::DP, T2, 0, 0, "359.99", {}, "359.99", 359.99f},
        {Rule::DP, T2, 0, 0, "-1", {below}, "0", 0},
        {Rule::DP, T2, 0, 0, "-0.25", {below}, "0", 0},
        {Rule::DP, P1, 0, 0, "-1", {}, "0", 0},
        {Rule::DP, T2, 0, 0, "0", {}, "0.00", 0},
        {Rule::DP, T2, 0, 0, "1e2", {invalid}, "260.00", 260},
        {Rule::DP, P1, 0, 0, "1e2", {}, "260.00", 260},
        {Rule::DP, T2, 0, 0, "1E2", {}, "100.00", 100},
        {Rule::DP, T2, 0, 0, "abc", {invalid}, "260.00", 260},
        {Rule::DP, T2, 0, 0, "", {invalid}, "260.00", 260},
        {Rule::DP, PD, 0, 0, "abc", {}, "260.00", 260},
        {Rule::DP, T2, 0, 0, "123.456", {}, "123.46", 123.456f},
        {Rule::DP, T2, 0, 0, "1E50", {Overflow}, huge(2), 0},
    });
}

TEST(Validation, Clamps) {
    const QString highInvalid =
        "Part#1: : Clamp High Input is Invalid! Restoring to default… Please try again!";
    const QString lowInvalid =
        "Part#2: : Clamp Low Input is Invalid! Restoring to default… Please try again!";
    check({
        {Rule::ClampHigh, T2, 0, 0, "0", {}, "0.00", 0},
        {Rule::ClampHigh, T1, 0, 0, "0", {}, "0.01", 0.01f},
        {Rule::ClampHigh, T2, 0, 0, "-1", {}, "0", 0},
        {Rule::ClampHigh, T1, 0, 0, "-1", {}, "0.01", 0.01f},
        {Rule::ClampHigh, P1, 0, 0, "-1", {}, "0", 0},
        {Rule::ClampHigh, T2, 0, 0, "100", {}, "100.00", 100},
        {Rule::ClampHigh, T1, 0, 0, "150", {}, "100.00", 100},
        {Rule::ClampHigh, PD, 0, 0, "150", {}, "100.00", 100},
        {Rule::ClampHigh, T2, 0, 0, "abc", {highInvalid}, "95.00", 95},
        {Rule::ClampHigh, T1, 0, 0, "", {highInvalid}, "95.00", 95},
        {Rule::ClampHigh, T2, 0, 0, "1e2", {highInvalid}, "95.00", 95},
        {Rule::ClampHigh, P1, 0, 0, "abc", {}, "95.00", 95},
        {Rule::ClampHigh, T1, 0, 0, "1E50", {Overflow}, "0.01", 0.01f},
        {Rule::ClampHigh, T2, 0, 0, "1E50", {Overflow}, huge(2), 0},
        {Rule::ClampHigh, T2, 0, 0, "95.555", {}, "95.56", 95.555f},

        {Rule::ClampLow, T2, 0, 0, "150", {}, "100", 100},
        {Rule::ClampLow, P1, 0, 0, "150", {}, "100", 100},
        {Rule::ClampLow, PD, 0, 0, "150", {}, "100", 100},
        {Rule::ClampLow, T1, 0, 0, "150", {}, "99.99", 99.99f},
        {Rule::ClampLow, T2, 0, 0, "100", {}, "100.00", 100},
        {Rule::ClampLow, T1, 0, 0, "100", {}, "99.99", 99.99f},
        {Rule::ClampLow, T1, 0, 0, "99.99", {}, "99.99", 99.99f},
        {Rule::ClampLow, T2, 0, 0, "-1", {}, "0", 0},
        {Rule::ClampLow, T1, 0, 0, "-1", {}, "0", 0},
        {Rule::ClampLow, T2, 0, 0, "0", {}, "0.00", 0},
        {Rule::ClampLow, T2, 1, 0, "abc", {lowInvalid}, "5.00", 5},
        {Rule::ClampLow, P1, 1, 0, "abc", {}, "5.00", 5},
        {Rule::ClampLow, T2, 0, 0, "1E50", {Overflow}, huge(2), 0},
    });
}

TEST(Validation, AnglesAndLevels) {
    const QString tail = "Input is Invalid! Restoring to default… Please try again!";
    check({
        {Rule::Angle, T2, 0, 0, "x", {"Part#1: Angle A " + tail}, "", EmptyValue},
        {Rule::Angle, T1, 1, 3, "1e2", {"Part#2: Angle D " + tail}, "", EmptyValue},
        {Rule::Angle, P1, 1, 1, "x", {"Part#2: Angle 1 " + tail}, "", EmptyValue},
        {Rule::Angle, PD, 0, 0, "x", {}, "", EmptyValue},
        {Rule::Angle, T2, 0, 0, "", {}, "", EmptyValue},
        {Rule::Angle, P1, 0, 0, "", {}, "", EmptyValue},
        {Rule::Angle,
         T2,
         1,
         2,
         "-1",
         {"Part#2: Angle C Input cannot be less than 0! Using 0 instead!"},
         "0",
         0},
        {Rule::Angle, P1, 0, 0, "-1", {}, "0", 0},
        {Rule::Angle,
         T2,
         0,
         1,
         "360",
         {"Part#1: Angle B Input cannot be more than or equal to 360! Using 359.99 instead!"},
         "359.99",
         359.99f},
        {Rule::Angle, PD, 1, 1, "360", {}, "359.99", 359.99f},
        {Rule::Angle, T2, 0, 0, "0", {}, "0.00", 0},
        {Rule::Angle, T2, 0, 0, "1E2", {}, "100.00", 100},
        {Rule::Angle, T2, 0, 0, "123.456", {}, "123.46", 123.456f},
        {Rule::Angle, T2, 0, 0, "1E50", {Overflow}, huge(2), 0},

        {Rule::Level, T2, 0, 0, "-5", {}, "0.00", 0},
        {Rule::Level, T2, 0, 0, "0", {}, "0.00", 0},
        {Rule::Level, T2, 0, 0, "150", {}, "100.00", 100},
        {Rule::Level, T2, 0, 0, "100", {}, "100.00", 100},
        {Rule::Level, T2, 0, 0, "12.345", {}, "12.35", 12.345f},
        {Rule::Level, T2, 0, 3, "abc", {"Part#1: Level D " + tail}, "", 0},
        {Rule::Level, P1, 0, 0, "abc", {"Part#1: Level 0 " + tail}, "", 0},
        {Rule::Level, PD, 0, 0, "abc", {}, "", 0},
        {Rule::Level, T2, 0, 0, "", {}, "", 0},
        {Rule::Level, T2, 0, 0, "1E50", {Overflow}, "0.00", 0},
    });
}

TEST(Validation, Slope) {
    check({
        {Rule::Slope, T2, 0, 0, "-0.25", {}, "-0.2500", -0.25f},
        {Rule::Slope, T2, 0, 0, "1E2", {}, "100.0000", 100},
        {Rule::Slope,
         T2,
         0,
         0,
         "abc",
         {"Part#1: Slope Input is Invalid! Restoring to default… Please try again!"},
         "",
         EmptyValue},
        {Rule::Slope,
         T2,
         1,
         0,
         "1e2",
         {"Part#2: Slope Input is Invalid! Restoring to default… Please try again!"},
         "",
         EmptyValue},
        {Rule::Slope, T2, 0, 0, "", {}, "", EmptyValue},
        {Rule::Slope, T2, 0, 0, "1E50", {Overflow}, huge(4), 0},
    });
}

TEST(Validation, SwitchOutput) {
    check({
        {Rule::OP, T2, 0, 0, "359.99", {}, "359.99", 359.99f},
        {Rule::OP,
         T2,
         0,
         0,
         "360",
         {"Part#1: OP  Input cannot be more than or equal to 360! Using 359.99 instead!"},
         "359.99",
         359.99f},
        {Rule::OP,
         T2,
         1,
         0,
         "-1",
         {"Part#2: OP  Input cannot be less than 0! Using 0 instead!"},
         "0",
         0},
        {Rule::OP,
         T2,
         0,
         0,
         "abc",
         {"Part#1: OP  Input is Invalid! Restoring to default… Please try again!"},
         "",
         EmptyValue},
        {Rule::OP, T2, 0, 0, "", {}, "", EmptyValue},
        {Rule::OP, T2, 0, 0, "12.345", {}, "12.35", 12.345f},

        {Rule::HYS, T2, 0, 0, "2.1", {}, "2.00", 2},
        {Rule::HYS, T2, 0, 0, "2.125", {}, "2.25", 2.25f},
        {Rule::HYS, T2, 0, 0, "2.9", {}, "3.00", 3},
        {Rule::HYS, T2, 0, 0, "2.6", {}, "2.50", 2.5f},
        {Rule::HYS, T2, 0, 0, "2.7", {}, "2.75", 2.75f},
        {Rule::HYS, T2, 0, 0, "0.1", {}, "0.00", 0},
        {Rule::HYS, T2, 0, 0, "15.7", {}, "15.75", 15.75f},
        {Rule::HYS, T2, 0, 0, "15.75", {}, "15.75", 15.75f},
        {Rule::HYS,
         T2,
         0,
         0,
         "16",
         {"Part#1: HYS  Input cannot be more than 15.75! Using 15.75 instead!"},
         "15.75",
         15.75f},
        {Rule::HYS,
         T2,
         1,
         0,
         "15.8",
         {"Part#2: HYS  Input cannot be more than 15.75! Using 15.75 instead!"},
         "15.75",
         15.75f},
        {Rule::HYS,
         T2,
         0,
         0,
         "1e1",
         {"Part#1: HYS  Input is Invalid! Restoring to default… Please try again!"},
         "",
         EmptyValue},
        {Rule::HYS,
         T2,
         0,
         0,
         "-1",
         {"Part#1: HYS  Input cannot be less than 0! Using 0 instead!"},
         "0",
         0},
        {Rule::HYS, T2, 0, 0, "", {}, "", EmptyValue},
        {Rule::HYS, T2, 0, 0, "1E50", {Overflow}, "0.00", 0},
    });
}

TEST(Validation, StepHYS) {
    const struct {
        const char* text;
        int direction;
        const char* result;
    } cases[] = {
        {"15.6", +1, "15.75"}, {"15.75", +1, "15.75"}, {"1.1", +1, "1.35"},  {"1.00", +1, "1.25"},
        {"0.1", -1, "0"},      {"0", -1, "0"},         {"1.00", -1, "0.75"}, {"", +1, "0.25"},
        {"abc", -1, "0"},      {"1e1", +1, "0.25"},    {"20", -1, "19.75"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(StepHYS(c.text, c.direction), c.result) << c.text << " " << c.direction;
    }
}

TEST(Validation, TextOnlyBoxes) {
    EXPECT_EQ(FormatVDD("abc"), "abc");
    EXPECT_EQ(FormatVDD("5"), "5.000");
    EXPECT_EQ(FormatVDD("4.9876"), "4.988");
    EXPECT_EQ(FormatVDD(""), "");
    EXPECT_EQ(FormatReadAngle("123.456"), "123.46");

    const struct {
        const char* text;
        const char* result;
    } offsets[] = {
        {"-1", "0.00"},  {"360", "359.99"}, {"abc", "0.00"}, {"", "0.00"},
        {"1e1", "0.00"}, {"12.5", "12.50"}, {"0", "0.00"},
    };
    test::ScriptedPrompts prompts;
    for (const auto& c : offsets) {
        EXPECT_EQ(ValidateOffset(c.text, prompts), c.result) << c.text;
    }
    EXPECT_TRUE(prompts.messages.isEmpty());
    EXPECT_EQ(ValidateOffset("1E50", prompts), huge(2));
    EXPECT_EQ(prompts.messages, QStringList{Overflow});
}

TEST(Validation, PointBoxes) {
    const struct {
        WindowFamily family;
        int index;
        int selected;
        int part;
        int point;
    } cases[] = {
        {T2, 6, 0, 1, 2}, {T1, 3, 0, 0, 3}, {PD, 3, 0, 1, 1}, {PD, 0, 0, 0, 0}, {P1, 1, 1, 1, 1},
    };
    for (const auto& c : cases) {
        const PointBox box = PointBoxOf(c.family, c.index, c.selected);
        EXPECT_EQ(box.part, c.part) << c.index;
        EXPECT_EQ(box.point, c.point) << c.index;
    }
}

TEST(Validation, StartValuesAreWhatTheDefaultTextsValidateTo) {
    test::ScriptedPrompts prompts;
    const PartParameters start;
    EXPECT_EQ(ValidateDP(DefaultDPText, T2, 0, prompts).value, start.DP);
    EXPECT_EQ(ValidateClampHigh(DefaultClampHighText, T1, 0, prompts).value, start.ClampHigh);
    EXPECT_EQ(ValidateClampLow(DefaultClampLowText, T1, 0, prompts).value, start.ClampLow);
    EXPECT_EQ(ValidateHYS(DefaultHYSText, 0, prompts).value, start.HYS);
    EXPECT_TRUE(prompts.messages.isEmpty());
}
