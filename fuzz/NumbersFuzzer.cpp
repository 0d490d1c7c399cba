// Any text through the number rules and display formats of every field family, and any Single
// through the formats.
#include <cmath>

#include "FuzzSupport.h"
#include "domain/Formats.h"
#include "domain/NumberText.h"
#include "domain/Validation.h"

using namespace rk31;

namespace {

constexpr WindowFamily kFamilies[] = {WindowFamily::TwoPartTwoSupplies,
                                      WindowFamily::TwoPartOneSupply, WindowFamily::OnePartPoint,
                                      WindowFamily::DualPoint};

// What a rule leaves in a box is short (a number within its field's range, or a fixed text) and
// the value kept is a number.
void checkRule(const Validated& v, qsizetype longest) {
    RK31_FUZZ_CHECK(v.text.size() <= longest);
    RK31_FUZZ_CHECK(std::isfinite(v.value));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const int part = input.take<std::uint8_t>() % 2;
    const int point = input.take<std::uint8_t>() % 4;
    const float single = input.take<float>();
    const QString text = input.rest();
    fuzz::QuietPrompts prompts;

    for (const WindowFamily family : kFamilies) {
        checkRule(ValidateDP(text, family, part, prompts), 8);
        checkRule(ValidateClampHigh(text, family, part, prompts), 8);
        checkRule(ValidateClampLow(text, family, part, prompts), 8);
        checkRule(ValidateAngle(text, family, {part, point}, prompts), 8);
        checkRule(ValidateLevel(text, family, {part, point}, prompts), 8);
    }
    // The slope keeps any Single: up to 39 digits, a sign, the point and four decimals.
    checkRule(ValidateSlope(text, part, prompts), 45);
    checkRule(ValidateOP(text, part, prompts), 8);
    const Validated hys = ValidateHYS(text, part, prompts);
    checkRule(hys, 8);
    RK31_FUZZ_CHECK(hys.value == EmptyValue || (hys.value >= 0 && hys.value <= 15.75f));
    RK31_FUZZ_CHECK(ValidateOffset(text, prompts).size() <= 8);
    // The step buttons bound the value on their own side only.
    bool stepped = false;
    RK31_FUZZ_CHECK(StepHYS(text, 1).toDouble(&stepped) <= 15.75 && stepped);
    RK31_FUZZ_CHECK(StepHYS(text, -1).toDouble(&stepped) >= 0 && stepped);
    FormatVDD(text);
    FormatReadAngle(text);
    // The formats of the boxes that keep no value, on what a double holds.
    if (NumberTextToDouble(text)) {
        for (int decimals = 0; decimals <= 4; ++decimals) {
            RK31_FUZZ_CHECK(!FormatText(text, decimals).isEmpty());
        }
    }
    const float value = TextToValue(text, prompts);
    RK31_FUZZ_CHECK(std::isfinite(value));
    if (IsNumberText(text)) {
        RK31_FUZZ_CHECK(ParseNumberText(text).has_value());
    }
    NumberTextToDouble(text);

    for (int decimals = 0; decimals <= 4; ++decimals) {
        const QString shown = FormatSingle(single, decimals);
        // A finite Single in a display format reads back within half a unit of its last digit.
        if (std::isfinite(single)) {
            const auto back = NumberTextToDouble(shown);
            RK31_FUZZ_CHECK(back.has_value());
            RK31_FUZZ_CHECK(std::fabs(*back - single) <=
                            0.5 * std::pow(10.0, -decimals) + std::fabs(single) * 1e-6);
        }
    }
    SingleText(single);
    DoubleText(static_cast<double>(single));
    return 0;
}
