#include "domain/Validation.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "domain/Formats.h"
#include "domain/NumberText.h"
#include "domain/PartParameters.h"
#include "domain/Prompts.h"

namespace rk31 {

namespace {

// Bounds are Singles, compared with the stored Single, so 359.99 means the nearest Single.
constexpr float kAngleLimit = 360.0f;
constexpr float kLastAngle = 359.99f;
constexpr float kFullScale = 100.0f;
constexpr float kClampLowMaxOneSupply = 99.99f;
constexpr float kClampHighMinOneSupply = 0.01f;
constexpr float kHYSMaximum = 15.75f;

// The common start of every numeric rule: a text that is no number never reaches the
// conversion, so "1e2" gets the rule's own invalid message and not the conversion's.
struct Reading {
    bool valid = false;
    float value = 0;
    bool beyondSingle = false;  // the conversion failed and 0 is kept in its place
};

Reading read(const QString& text, Prompts& prompts) {
    if (!IsNumberText(text)) {
        return {};
    }
    const bool beyondSingle = !TextToSingle(text).has_value();
    return {true, TextToValue(text, prompts), beyondSingle};
}

// An in-range value in the field's display format. The typed text is rounded as typed, unless
// its conversion failed: the box then shows the value kept, never the text's own expansion.
QString shown(const Reading& r, const QString& text, int decimals) {
    return r.beyondSingle ? FormatSingle(r.value, decimals) : FormatText(text, decimals);
}

// Boxes that keep no value show a typed number in their format, as long as a double holds it.
QString reformatted(const QString& text, int decimals) {
    return IsNumberText(text) && NumberTextToDouble(text) ? FormatText(text, decimals) : text;
}

QString partName(int part) {
    return QStringLiteral("Part#") + QString::number(part + 1);
}

void partMessage(WindowFamily family, int part, const QString& resource, Prompts& prompts) {
    if (IsTwoPartFamily(family)) {
        prompts.message(partName(part) + QStringLiteral(": ") + resource);
    }
}

// The two-part windows name the point by its letter, the one-part point windows by the digit
// of its box; the dual point windows correct silently.
void pointMessage(WindowFamily family, PointBox box, const QString& field, const QString& resource,
                  Prompts& prompts) {
    QString point;
    if (IsTwoPartFamily(family)) {
        point = QChar(u'A' + box.point);
    } else if (family == WindowFamily::OnePartPoint) {
        point = QString::number(box.point);
    } else {
        return;
    }
    prompts.message(partName(box.part) + QStringLiteral(": ") + field + u' ' + point + u' ' +
                    resource);
}

// The switch-output boxes put one blank more between the field name and the text.
void switchMessage(int part, const QString& field, const QString& resource, Prompts& prompts) {
    prompts.message(partName(part) + QStringLiteral(": ") + field + QStringLiteral("  ") +
                    resource);
}

// The rule of a box that keeps its value: a text that is no number keeps nothing (and is
// reported unless empty), a number below 0 or beyond the top of the range is corrected to that
// end with its message, anything else is kept as `keep` formats it.
struct FieldRule {
    std::function<void(const QString& resource)> say;
    bool belowZero = false;
    std::function<bool(float)> beyondTop;
    struct {
        QString resource;
        QString text;
        float value = 0;
    } top;
    std::function<Validated(const Reading&)> keep;
};

Validated ApplyRule(const QString& text, Prompts& prompts, const FieldRule& rule) {
    const Reading r = read(text, prompts);
    if (!r.valid) {
        if (!text.isEmpty()) {
            rule.say(InputInvalidText);
        }
        return {QString(), EmptyValue};
    }
    if (rule.belowZero && r.value < 0) {
        rule.say(InputBelowZeroText);
        return {QStringLiteral("0"), 0.0f};
    }
    if (rule.beyondTop && rule.beyondTop(r.value)) {
        rule.say(rule.top.resource);
        return {rule.top.text, rule.top.value};
    }
    return rule.keep(r);
}

std::function<void(const QString&)> switchSayer(int part, const QString& field, Prompts& prompts) {
    return [part, field, &prompts](const QString& resource) {
        switchMessage(part, field, resource, prompts);
    };
}

Validated SnapToQuarter(const Reading& r) {
    // The chip takes the hysteresis in quarter degrees; snap to the nearest quarter.
    const float whole = std::floor(r.value);
    const float fraction = r.value - whole;
    float quarter = 1.0f;
    if (fraction < 0.125f) {
        quarter = 0.0f;
    } else if (fraction < 0.375f) {
        quarter = 0.25f;
    } else if (fraction < 0.625f) {
        quarter = 0.5f;
    } else if (fraction < 0.875f) {
        quarter = 0.75f;
    }
    const float value = whole + quarter;
    return {FormatSingle(value, 2), value};
}

}  // namespace

PointBox PointBoxOf(WindowFamily family, int boxIndex, int selectedPart) {
    switch (family) {
        case WindowFamily::TwoPartTwoSupplies:
        case WindowFamily::TwoPartOneSupply:
            return {boxIndex / 4, boxIndex % 4};
        case WindowFamily::DualPoint:
            return {boxIndex / 2, boxIndex % 2};
        case WindowFamily::OnePartPoint:
            break;
    }
    return {selectedPart, boxIndex};
}

int PointBoxIndex(WindowFamily family, int part, int point) {
    switch (family) {
        case WindowFamily::TwoPartTwoSupplies:
        case WindowFamily::TwoPartOneSupply:
            return part * 4 + point;
        case WindowFamily::DualPoint:
            return part * 2 + point;
        case WindowFamily::OnePartPoint:
            break;
    }
    return point;
}

Validated ValidateDP(const QString& text, WindowFamily family, int part, Prompts& prompts) {
    const Reading r = read(text, prompts);
    if (!r.valid) {
        partMessage(family, part, DPInvalidText, prompts);
        return {DefaultDPText, 260.0f};
    }
    if (r.value < 0) {
        partMessage(family, part, DPBelowZeroText, prompts);
        return {QStringLiteral("0"), 0.0f};
    }
    if (r.value >= kAngleLimit) {
        partMessage(family, part, DPAbove360Text, prompts);
        return {QStringLiteral("359.99"), kLastAngle};
    }
    return {shown(r, text, 2), r.value};
}

Validated ValidateClampHigh(const QString& text, WindowFamily family, int part, Prompts& prompts) {
    const Reading r = read(text, prompts);
    if (!r.valid) {
        partMessage(family, part, ClampHighInvalidText, prompts);
        return {DefaultClampHighText, 95.0f};
    }
    // The one-supply window never lets clamp high reach 0.
    if (family == WindowFamily::TwoPartOneSupply && r.value <= 0) {
        return {QStringLiteral("0.01"), kClampHighMinOneSupply};
    }
    if (r.value < 0) {
        return {QStringLiteral("0"), 0.0f};
    }
    if (r.value > kFullScale) {
        return {QStringLiteral("100.00"), kFullScale};
    }
    return {shown(r, text, 2), r.value};
}

Validated ValidateClampLow(const QString& text, WindowFamily family, int part, Prompts& prompts) {
    const Reading r = read(text, prompts);
    if (!r.valid) {
        partMessage(family, part, ClampLowInvalidText, prompts);
        return {DefaultClampLowText, 5.0f};
    }
    if (r.value < 0) {
        return {QStringLiteral("0"), 0.0f};
    }
    if (family == WindowFamily::TwoPartOneSupply) {
        if (r.value >= kFullScale) {
            return {QStringLiteral("99.99"), kClampLowMaxOneSupply};
        }
    } else if (r.value > kFullScale) {
        return {QStringLiteral("100"), kFullScale};
    }
    return {shown(r, text, 2), r.value};
}

Validated ValidateAngle(const QString& text, WindowFamily family, PointBox box, Prompts& prompts) {
    const Reading r = read(text, prompts);
    if (!r.valid) {
        // An empty box means the point is not given.
        if (!text.isEmpty()) {
            pointMessage(family, box, QStringLiteral("Angle"), InputInvalidText, prompts);
        }
        return {QString(), EmptyValue};
    }
    if (r.value < 0) {
        if (IsTwoPartFamily(family)) {
            pointMessage(family, box, QStringLiteral("Angle"), InputBelowZeroText, prompts);
        }
        return {QStringLiteral("0"), 0.0f};
    }
    if (r.value >= kAngleLimit) {
        if (IsTwoPartFamily(family)) {
            pointMessage(family, box, QStringLiteral("Angle"), InputAbove360Text, prompts);
        }
        return {QStringLiteral("359.99"), kLastAngle};
    }
    return {shown(r, text, 2), r.value};
}

Validated ValidateLevel(const QString& text, WindowFamily family, PointBox box, Prompts& prompts) {
    const Reading r = read(text, prompts);
    if (!r.valid) {
        if (!text.isEmpty()) {
            pointMessage(family, box, QStringLiteral("Level"), InputInvalidText, prompts);
        }
        return {QString(), 0.0f};
    }
    if (r.value <= 0) {
        return {QStringLiteral("0.00"), 0.0f};
    }
    if (r.value > kFullScale) {
        return {QStringLiteral("100.00"), kFullScale};
    }
    return {shown(r, text, 2), r.value};
}

Validated ValidateSlope(const QString& text, int part, Prompts& prompts) {
    return ApplyRule(
        text, prompts,
        {.say =
             [part, &prompts](const QString& resource) {
                 prompts.message(partName(part) + QStringLiteral(": Slope ") + resource);
             },
         // A slope may be any number.
         .belowZero = false,
         .beyondTop = nullptr,
         .top = {},
         .keep =
             [&text](const Reading& r) {
                 return Validated{shown(r, text, 4), r.value};
             }});
}

Validated ValidateOP(const QString& text, int part, Prompts& prompts) {
    return ApplyRule(text, prompts,
                     {.say = switchSayer(part, QStringLiteral("OP"), prompts),
                      .belowZero = true,
                      .beyondTop = [](float value) { return value >= kAngleLimit; },
                      .top = {InputAbove360Text, QStringLiteral("359.99"), kLastAngle},
                      .keep =
                          [&text](const Reading& r) {
                              return Validated{shown(r, text, 2), r.value};
                          }});
}

Validated ValidateHYS(const QString& text, int part, Prompts& prompts) {
    return ApplyRule(text, prompts,
                     {.say = switchSayer(part, QStringLiteral("HYS"), prompts),
                      .belowZero = true,
                      .beyondTop = [](float value) { return value > kHYSMaximum; },
                      .top = {HYSAboveMaximumText, QStringLiteral("15.75"), kHYSMaximum},
                      .keep = SnapToQuarter});
}

// These boxes keep no value: a text that is no number by the rules' own test (a lowercase "e"
// included) stays as typed, and so does one beyond a double, which no format can hold.
QString FormatVDD(const QString& text) {
    return reformatted(text, 3);
}

QString FormatReadAngle(const QString& text) {
    return reformatted(text, 2);
}

QString ValidateOffset(const QString& text, Prompts& prompts) {
    const Reading r = read(text, prompts);
    if (!r.valid || r.value < 0) {
        return DefaultOffsetText;
    }
    if (r.value >= kAngleLimit) {
        return QStringLiteral("359.99");
    }
    return shown(r, text, 2);
}

QString StepHYS(const QString& text, int direction) {
    double value = 0;
    if (IsNumberText(text)) {
        value = NumberTextToDouble(text).value_or(0.0);
    }
    if (direction > 0) {
        value = std::min(value + 0.25, static_cast<double>(kHYSMaximum));
    } else {
        value = std::max(value - 0.25, 0.0);
    }
    return DoubleText(value);
}

std::optional<double> NumberTextToDouble(const QString& text) {
    if (!ParseNumberText(text)) {
        return std::nullopt;
    }
    bool ok = false;
    const double value = text.trimmed().toDouble(&ok);
    if (!ok) {
        return std::nullopt;
    }
    return value;
}

}  // namespace rk31
