#include <gtest/gtest.h>

#include <limits>

#include "domain/NumberText.h"
#include "support/ScriptedPrompts.h"

using namespace rk31;

TEST(NumberText, GrammarAndLowercaseERule) {
    const struct {
        const char* text;
        bool number;
    } cases[] = {
        {"360", true},  {"-1", true},   {"+1", true},    {" 12.5 ", true}, {".5", true},
        {"5.", true},   {"1E2", true},  {"1E+2", true},  {"1E-2", true},   {"123.456", true},
        {"1E50", true}, {"1e2", false}, {"abc", false},  {"", false},      {" ", false},
        {".", false},   {"-", false},   {"1E", false},   {"1.2.3", false}, {"1,5", false},
        {"--1", false}, {"5 5", false}, {"0x10", false}, {"1d2", false},   {"١٢", false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(IsNumberText(QString::fromUtf8(c.text)), c.number) << c.text;
    }
}

TEST(NumberText, TextToValueConvertsAndReportsOverflow) {
    test::ScriptedPrompts prompts;
    EXPECT_EQ(TextToValue("", prompts), 500.0f);
    EXPECT_FLOAT_EQ(TextToValue("123.456", prompts), 123.456f);
    EXPECT_FLOAT_EQ(TextToValue("1e2", prompts), 100.0f);  // the conversion itself accepts 'e'
    EXPECT_FLOAT_EQ(TextToValue(" -0.25 ", prompts), -0.25f);
    EXPECT_EQ(TextToValue("1E-50", prompts), 0.0f);  // too small: 0 without a message
    EXPECT_TRUE(prompts.messages.isEmpty());

    EXPECT_EQ(TextToValue("1E50", prompts), 0.0f);
    EXPECT_EQ(TextToValue("abc", prompts), 0.0f);
    EXPECT_EQ(TextToValue("-1E39", prompts), 0.0f);
    EXPECT_EQ(prompts.messages, QStringList({"Wrong Float Data Input Detected : 1E50 !!!",
                                             "Wrong Float Data Input Detected : abc !!!",
                                             "Wrong Float Data Input Detected : -1E39 !!!"}));
}

TEST(NumberText, LargestSingleIsAccepted) {
    test::ScriptedPrompts prompts;
    EXPECT_EQ(TextToValue("3.4028234E38", prompts), std::numeric_limits<float>::max());
    EXPECT_TRUE(prompts.messages.isEmpty());
}
