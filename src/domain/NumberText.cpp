#include "domain/NumberText.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string>

#include "domain/Prompts.h"

namespace rk31 {

std::optional<ParsedNumber> ParseNumberText(const QString& text) {
    const QString t = text.trimmed();
    int i = 0;
    const int n = static_cast<int>(t.size());
    ParsedNumber result;
    if (i < n && (t[i] == u'+' || t[i] == u'-')) {
        result.negative = t[i] == u'-';
        ++i;
    }
    QString intDigits;
    QString fracDigits;
    while (i < n && t[i].isDigit() && t[i].unicode() < 128) {
        intDigits += t[i++];
    }
    if (i < n && t[i] == u'.') {
        ++i;
        while (i < n && t[i].isDigit() && t[i].unicode() < 128) {
            fracDigits += t[i++];
        }
    }
    if (intDigits.isEmpty() && fracDigits.isEmpty()) {
        return std::nullopt;
    }
    long long exponent = 0;
    if (i < n && (t[i] == u'e' || t[i] == u'E')) {
        ++i;
        bool expNegative = false;
        if (i < n && (t[i] == u'+' || t[i] == u'-')) {
            expNegative = t[i] == u'-';
            ++i;
        }
        const int expStart = i;
        while (i < n && t[i].isDigit() && t[i].unicode() < 128) {
            if (exponent < 100000) {
                exponent = exponent * 10 + t[i].digitValue();
            }
            ++i;
        }
        if (i == expStart) {
            return std::nullopt;
        }
        if (expNegative) {
            exponent = -exponent;
        }
    }
    if (i != n) {
        return std::nullopt;
    }
    QString all = intDigits + fracDigits;
    int point = static_cast<int>(intDigits.size()) + static_cast<int>(exponent);
    int lead = 0;
    while (lead < all.size() && all[lead] == u'0') {
        ++lead;
    }
    all = all.mid(lead);
    point -= lead;
    while (!all.isEmpty() && all.back() == u'0') {
        all.chop(1);
    }
    if (all.isEmpty()) {
        point = 0;
    }
    result.digits = all;
    result.pointPosition = point;
    return result;
}

bool IsNumberText(const QString& text) {
    return !text.contains(u'e') && ParseNumberText(text).has_value();
}

std::optional<float> TextToSingle(const QString& text) {
    const auto parsed = ParseNumberText(text);
    if (!parsed) {
        return std::nullopt;
    }
    if (parsed->digits.isEmpty()) {
        return 0.0f;
    }
    if (parsed->pointPosition > 400) {
        return std::nullopt;
    }
    if (parsed->pointPosition < -400) {
        return 0.0f;
    }
    const std::string s = (parsed->negative ? "-0." : "0.") + parsed->digits.toStdString() + "e" +
                          std::to_string(parsed->pointPosition);
    double value = 0;
    const auto [ptr, ec] = std::from_chars(s.data(), s.data() + s.size(), value);
    if (ec == std::errc::result_out_of_range) {
        // from_chars reports underflow as out of range too; only overflow is an error.
        return parsed->pointPosition > 0 ? std::nullopt : std::optional<float>(0.0f);
    }
    if (ec != std::errc() || ptr != s.data() + s.size()) {
        return std::nullopt;
    }
    if (std::fabs(value) > static_cast<double>(std::numeric_limits<float>::max())) {
        // Rounding to nearest still gives the largest Single up to half an ulp beyond it.
        const float f = static_cast<float>(value);
        if (std::isinf(f)) {
            return std::nullopt;
        }
        return f;
    }
    return static_cast<float>(value);
}

float TextToValue(const QString& text, Prompts& prompts) {
    if (text.isEmpty()) {
        return EmptyValue;
    }
    if (const auto value = TextToSingle(text)) {
        return *value;
    }
    // A whole line of a hostile file would fill the screen; its start says enough.
    constexpr qsizetype kShownCharacters = 64;
    qsizetype cut = kShownCharacters;
    if (text.size() > cut && text.at(cut - 1).isHighSurrogate()) {
        --cut;  // never half a character
    }
    const QString shown = text.size() > kShownCharacters ? text.left(cut) + QChar(0x2026) : text;
    prompts.message(QStringLiteral("Wrong Float Data Input Detected : ") + shown +
                    QStringLiteral(" !!!"));
    return 0.0f;
}

}  // namespace rk31
