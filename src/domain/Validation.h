#pragma once

#include <QString>
#include <optional>

#include "domain/WindowFamily.h"

namespace rk31 {

class Prompts;

// Message texts of the resource string table. The DP and clamp texts begin with ": " of their
// own, which is why their composed messages show two colons in a row.
inline const QString DPInvalidText =
    QStringLiteral(": DP Input is Invalid! Restoring to default\u2026 Please try again!");  // 101
inline const QString DPBelowZeroText =
    QStringLiteral(": DP Input cannot be less than 0! Using 0 instead!");  // 102
inline const QString DPAbove360Text =
    QStringLiteral(": DP Input cannot be more than or equal to 360! Using 359.99 instead!");  // 103
inline const QString ClampLowInvalidText = QStringLiteral(
    ": Clamp Low Input is Invalid! Restoring to default\u2026 Please try again!");  // 104
inline const QString ClampHighInvalidText = QStringLiteral(
    ": Clamp High Input is Invalid! Restoring to default\u2026 Please try again!");  // 107
inline const QString InputInvalidText =
    QStringLiteral("Input is Invalid! Restoring to default\u2026 Please try again!");  // 110
inline const QString InputBelowZeroText =
    QStringLiteral("Input cannot be less than 0! Using 0 instead!");  // 111
inline const QString InputAbove360Text =
    QStringLiteral("Input cannot be more than or equal to 360! Using 359.99 instead!");  // 112
inline const QString ClampOrderText = QStringLiteral(
    "Please noted: Clamp HIGH Setting is not greater than Clamp LOW Setting! Stopping... Please "
    "try again!");  // 114
inline const QString HYSAboveMaximumText =
    QStringLiteral("Input cannot be more than 15.75! Using 15.75 instead!");

// What a rule leaves behind: the box's new text and the value the window keeps for the field.
struct Validated {
    QString text;
    float value = 0;
};

// A point box as the rules see it: the part (0 = Part#1; in the one-part windows the index
// selected in PartSel) and the point (0 = A ... 3 = D).
struct PointBox {
    int part = 0;
    int point = 0;
};

// The part and point of point box `boxIndex`: part x 4 + point in the two-part windows,
// part x 2 + point in the dual point windows, the point alone in the one-part windows.
PointBox PointBoxOf(WindowFamily family, int boxIndex, int selectedPart = 0);
// The other way round: the index of the box of point `point` of part `part`.
int PointBoxIndex(WindowFamily family, int part, int point);

// The lost-focus rules. Each shows its messages through `prompts` in the order a user sees them
// (a failed conversion first, then the rule's own), before the caller rewrites the box. `part`
// is the part index, 0 or 1; the point windows never name it in a DP or clamp message.
Validated ValidateDP(const QString& text, WindowFamily family, int part, Prompts& prompts);
Validated ValidateClampHigh(const QString& text, WindowFamily family, int part, Prompts& prompts);
Validated ValidateClampLow(const QString& text, WindowFamily family, int part, Prompts& prompts);
Validated ValidateAngle(const QString& text, WindowFamily family, PointBox box, Prompts& prompts);
Validated ValidateLevel(const QString& text, WindowFamily family, PointBox box, Prompts& prompts);
// Slope, OP and HYS boxes exist in the two-part windows only.
Validated ValidateSlope(const QString& text, int part, Prompts& prompts);
Validated ValidateOP(const QString& text, int part, Prompts& prompts);
Validated ValidateHYS(const QString& text, int part, Prompts& prompts);

// Boxes that keep no value: only their text is corrected.
QString FormatVDD(const QString& text);
QString FormatReadAngle(const QString& text);
QString ValidateOffset(const QString& text, Prompts& prompts);

// hysup (+1) and hysdown (-1): a quarter degree up or down within 0 to 15.75, written in the
// short decimal form. An empty or non-numeric text counts as 0. No lost-focus rule runs.
QString StepHYS(const QString& text, int direction);

// The exact value of a number text as a double; nothing when the text is no number or its
// value lies beyond a double.
std::optional<double> NumberTextToDouble(const QString& text);

}  // namespace rk31
