#pragma once

#include <QString>
#include <optional>

namespace rk31 {

class Prompts;

// The value a numeric field holds when its box is empty: "not given".
inline constexpr float EmptyValue = 500.0f;

// A number written in the fixed, locale-independent grammar: optional blanks around, optional
// sign, digits with an optional '.' fraction (".5" and "5." included), optional exponent with
// 'E' or 'e' and an optional sign. Returns the decimal value as a double, or nothing when the
// text does not follow the grammar or lies beyond the range of a double.
struct ParsedNumber {
    bool negative = false;
    QString digits;     // significant digits without leading zeros ("" for zero)
    int pointPosition;  // digits before the decimal point (may be negative or beyond digits)
};

std::optional<ParsedNumber> ParseNumberText(const QString& text);

// True when the text has no lowercase 'e' and follows the number grammar.
bool IsNumberText(const QString& text);

// Empty text gives EmptyValue. Otherwise the text as a Single; a text that is not a number, or
// one beyond the range of a Single, shows "Wrong Float Data Input Detected : <text> !!!" and
// gives 0. A value too small for a Single becomes 0 silently.
float TextToValue(const QString& text, Prompts& prompts);

// The conversion behind TextToValue, without the message.
std::optional<float> TextToSingle(const QString& text);

}  // namespace rk31
