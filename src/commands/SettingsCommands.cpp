#include "commands/SettingsCommands.h"

#include <vector>

#include "context/ControlView.h"
#include "context/WindowContext.h"
#include "core/Prompts.h"
#include "params/FieldValidation.h"
#include "params/SettingsFile.h"
#include "programming/SwitchOutput.h"

namespace rk31 {

namespace {

const QString& controlName(SettingsControl control) {
    switch (control) {
        case SettingsControl::PartSel:
            return ctl::PartSel;
        case SettingsControl::VDD:
            return ctl::VDD;
        case SettingsControl::clockwise:
            return ctl::clockwise;
        case SettingsControl::DP:
            return ctl::DP;
        case SettingsControl::clamphigh:
            return ctl::clamphigh;
        case SettingsControl::clamplow:
            return ctl::clamplow;
        case SettingsControl::Angle:
            return ctl::Angle;
        case SettingsControl::Level:
            return ctl::Level;
        case SettingsControl::KforA:
            return ctl::KforA;
        case SettingsControl::op:
            return ctl::op;
        case SettingsControl::hys:
            return ctl::hys;
        case SettingsControl::Kpolarity:
            return ctl::Kpolarity;
        case SettingsControl::OutMode:
            return ctl::OutMode;
        case SettingsControl::PWMFreq:
            return ctl::PWMFreq;
        case SettingsControl::PWMPolarity:
            return ctl::PWMPolarity;
    }
    return ctl::VDD;
}

// The element a line's value goes to: point boxes are numbered part x 4 + point in the two-part
// windows and part x 2 + point in the dual point windows; the one-part point windows have single
// boxes and the two points A and B.
int controlIndex(WindowFamily family, const SettingsLine& line) {
    const bool point =
        line.control == SettingsControl::Angle || line.control == SettingsControl::Level;
    switch (family) {
        case WindowFamily::TwoPartTwoSupplies:
        case WindowFamily::TwoPartOneSupply:
            return point ? line.part * 4 + line.point : line.part;
        case WindowFamily::DualPoint:
            return point ? line.part * 2 + line.point : line.part;
        case WindowFamily::OnePartPoint:
            break;
    }
    return point ? line.point : -1;
}

const SettingsLayout& layoutOf(WindowFamily family) {
    switch (family) {
        case WindowFamily::OnePartPoint:
            return OnePartPointLayout();
        case WindowFamily::DualPoint:
            return DualPointLayout();
        case WindowFamily::TwoPartTwoSupplies:
        case WindowFamily::TwoPartOneSupply:
            break;
    }
    return TwoPartLayout();
}

// A number line sets a list's selection, except the direction, which the point windows write
// as the check box's value.
bool isCheckBoxNumber(const SettingsLine& line) {
    return line.control == SettingsControl::clockwise;
}

// What a good load checks again, in this order. The point windows' rules correct silently
// except the invalid-angle and invalid-level messages of the one-part windows.
void revalidate(WindowContext& ctx) {
    if (ctx.family == WindowFamily::OnePartPoint) {
        for (const Field field : {Field::ClampLow, Field::ClampHigh, Field::DP}) {
            ValidateField(ctx, field, -1);
        }
        for (const Field field : {Field::Angle, Field::Level}) {
            for (int box = 0; box < 2; ++box) {
                ValidateField(ctx, field, box);
            }
        }
        return;
    }
    const bool twoPart = ctx.isTwoPart();
    std::vector<Field> perPart = {Field::ClampLow, Field::ClampHigh, Field::DP};
    if (twoPart) {
        perPart.push_back(Field::VDD);
    }
    for (const Field field : perPart) {
        for (int part = 0; part < 2; ++part) {
            ValidateField(ctx, field, part);
        }
    }
    const int pointBoxes = twoPart ? 8 : 4;
    for (const Field field : {Field::Angle, Field::Level}) {
        for (int box = 0; box < pointBoxes; ++box) {
            ValidateField(ctx, field, box);
        }
    }
    if (twoPart) {
        for (int part = 0; part < 2; ++part) {
            ValidateField(ctx, Field::Slope, part);
        }
    }
}

}  // namespace

void SaveSettingsCommand(WindowContext& ctx) {
    const QStringList lines = WriteSettings(layoutOf(ctx.family), [&ctx](const SettingsLine& line) {
        const QString& name = controlName(line.control);
        const int index = controlIndex(ctx.family, line);
        SettingsValue value;
        switch (line.kind) {
            case ValueKind::Header:
                break;
            case ValueKind::Text:
                value.text = ctx.view.text(name, index);
                break;
            case ValueKind::DirectionWord:
            case ValueKind::CheckDigit:
                value.number = ctx.view.value(name, index);
                break;
            case ValueKind::Integer:
                value.number = isCheckBoxNumber(line) ? ctx.view.value(name, index)
                                                      : ctx.view.listIndex(name, index);
                break;
        }
        return value;
    });
    SaveSettingsFile(lines, ctx.lastFileName, ctx.prompts);
}

void LoadSettingsCommand(WindowContext& ctx) {
    const auto lines = OpenSettingsFile(ctx.lastFileName, ctx.prompts);
    if (!lines) {
        return;
    }
    const SettingsReadResult result = ReadSettings(
        *lines, layoutOf(ctx.family), [&ctx](const SettingsLine& line, const SettingsValue& value) {
            const QString& name = controlName(line.control);
            const int index = controlIndex(ctx.family, line);
            switch (line.kind) {
                case ValueKind::Header:
                    break;
                case ValueKind::Text:
                    ctx.view.setText(name, index, value.text);
                    break;
                case ValueKind::DirectionWord:
                case ValueKind::CheckDigit:
                    ctx.view.setValue(name, index, value.number);
                    break;
                case ValueKind::Integer:
                    if (isCheckBoxNumber(line)) {
                        ctx.view.setValue(name, index, value.number);
                        break;
                    }
                    ctx.view.setListIndex(name, index, value.number);
                    if (line.control == SettingsControl::OutMode) {
                        OutModeSelected(ctx, static_cast<std::int16_t>(line.part));
                    }
                    break;
            }
        });
    if (result.error != 0) {
        ctx.prompts.message(LoadErrorMessage(result.error));
        return;
    }
    revalidate(ctx);
}

}  // namespace rk31
