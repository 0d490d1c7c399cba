#pragma once

#include <QString>

namespace rk31 {

// Display formats "0.00", "0.000", "0.0000": exactly `decimals` decimals and at least one digit
// before the point, rounded half away from zero on the decimal value as written.

// A typed text is rounded as typed ("0.125" -> "0.13"); a text that is not a number passes
// unchanged.
QString FormatText(const QString& text, int decimals);
// A Single is first written as its shortest round-trip decimal, then rounded the same way.
QString FormatSingle(float value, int decimals);
// A double likewise, from its shortest round-trip decimal.
QString FormatDouble(double value, int decimals);

// The default text of a number: up to `significantDigits` significant digits, trailing zeros
// dropped, exponent form ("1.234568E+07", "1E-05") outside 1E-04 <= |v| < 10^digits.
QString DefaultNumberText(double value, int significantDigits);
// The default text of a Single (7 digits): 1/3.6 -> "0.2777778".
QString SingleText(float value);
// The short decimal form of a double (15 digits): 1.1 + 0.25 -> "1.35".
QString DoubleText(double value);

}  // namespace rk31
