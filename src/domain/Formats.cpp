#include "domain/Formats.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <string>

#include "domain/NumberText.h"

namespace rk31 {

namespace {

QString roundDecimal(const ParsedNumber& number, int decimals) {
    QString digits = number.digits;
    int point = number.pointPosition;
    const int keep = point + decimals;  // digits that survive the rounding
    if (keep < 0) {
        digits.clear();
        point = 0;
    } else if (keep < digits.size()) {
        const bool up = digits[keep] >= u'5';
        digits.truncate(keep);
        if (up) {
            int i = keep - 1;
            while (i >= 0 && digits[i] == u'9') {
                digits[i] = u'0';
                --i;
            }
            if (i >= 0) {
                digits[i] = QChar(digits[i].unicode() + 1);
            } else {
                digits.prepend(u'1');
                ++point;
            }
        }
    }
    // Lay the digits out around the point.
    QString intPart;
    QString fracPart;
    for (int pos = 0; pos < point; ++pos) {
        intPart += pos < digits.size() ? digits[pos] : QChar(u'0');
    }
    for (int pos = 0; pos < decimals; ++pos) {
        const int index = point + pos;
        fracPart += (index >= 0 && index < digits.size()) ? digits[index] : QChar(u'0');
    }
    if (intPart.isEmpty()) {
        intPart = QStringLiteral("0");
    }
    bool zero = true;
    for (const QChar c : intPart + fracPart) {
        zero = zero && c == u'0';
    }
    QString result = (number.negative && !zero) ? QStringLiteral("-") : QString();
    result += intPart;
    if (decimals > 0) {
        result += u'.' + fracPart;
    }
    return result;
}

template <typename Real>
QString shortestText(Real value) {
    char buffer[64];
    const auto [ptr, ec] = std::to_chars(buffer, buffer + sizeof buffer, value);
    return ec == std::errc() ? QString::fromLatin1(buffer, static_cast<int>(ptr - buffer))
                             : QString();
}

template <typename Real>
QString formatReal(Real value, int decimals) {
    if (!std::isfinite(value)) {
        return shortestText(value);
    }
    const auto parsed = ParseNumberText(shortestText(value));
    return parsed ? roundDecimal(*parsed, decimals) : QString();
}

}  // namespace

QString FormatText(const QString& text, int decimals) {
    const auto parsed = ParseNumberText(text);
    return parsed ? roundDecimal(*parsed, decimals) : text;
}

QString FormatSingle(float value, int decimals) {
    return formatReal(value, decimals);
}

QString FormatDouble(double value, int decimals) {
    return formatReal(value, decimals);
}

QString DefaultNumberText(double value, int significantDigits) {
    if (value == 0 || !std::isfinite(value)) {
        return value == 0 ? QStringLiteral("0") : QString::number(value);
    }
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*e", significantDigits - 1, value);
    const std::string s(buffer);
    const auto ePos = s.find('e');
    std::string mantissa = s.substr(0, ePos);
    const int exponent = std::stoi(s.substr(ePos + 1));
    const bool negative = mantissa.front() == '-';
    if (negative) {
        mantissa.erase(0, 1);
    }
    std::string digits;
    for (const char c : mantissa) {
        if (c != '.') {
            digits += c;
        }
    }
    while (digits.size() > 1 && digits.back() == '0') {
        digits.pop_back();
    }
    std::string out = negative ? "-" : "";
    if (exponent >= -4 && exponent < significantDigits) {
        if (exponent < 0) {
            out += "0." + std::string(static_cast<size_t>(-exponent - 1), '0') + digits;
        } else {
            const auto intCount = static_cast<size_t>(exponent + 1);
            if (digits.size() <= intCount) {
                out += digits + std::string(intCount - digits.size(), '0');
            } else {
                out += digits.substr(0, intCount) + "." + digits.substr(intCount);
            }
        }
    } else {
        out += digits.substr(0, 1);
        if (digits.size() > 1) {
            out += "." + digits.substr(1);
        }
        char exp[16];
        std::snprintf(exp, sizeof exp, "E%c%02d", exponent < 0 ? '-' : '+', std::abs(exponent));
        out += exp;
    }
    return QString::fromStdString(out);
}

QString SingleText(float value) {
    return DefaultNumberText(value, 7);
}

QString DoubleText(double value) {
    return DefaultNumberText(value, 15);
}

}  // namespace rk31
