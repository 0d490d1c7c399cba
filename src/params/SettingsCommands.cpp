#include "params/SettingsCommands.h"

#include "chipsession/WindowContext.h"
#include "core/ControlView.h"
#include "core/Prompts.h"
#include "params/FieldValidation.h"
#include "params/SettingsFile.h"
#include "programming/SwitchOutput.h"

namespace rk31 {

namespace {

const QString& controlName(SettingsControl control) {
    static const QString partSel = QStringLiteral("PartSel");
    switch (control) {
        case SettingsControl::PartSel:
            return partSel;
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

int controlIndex(const SettingsLine& line) {
    const bool point =
        line.control == SettingsControl::Angle || line.control == SettingsControl::Level;
    return point ? line.part * 4 + line.point : line.part;
}

}  // namespace

void SaveSettingsCommand(WindowContext& ctx) {
    const QStringList lines = WriteSettings(TwoPartLayout(), [&ctx](const SettingsLine& line) {
        const QString& name = controlName(line.control);
        const int index = controlIndex(line);
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
                value.number = ctx.view.listIndex(name, index);
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
        *lines, TwoPartLayout(), [&ctx](const SettingsLine& line, const SettingsValue& value) {
            const QString& name = controlName(line.control);
            const int index = controlIndex(line);
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
    for (const Field field : {Field::ClampLow, Field::ClampHigh, Field::DP, Field::VDD}) {
        for (int part = 0; part < 2; ++part) {
            ValidateField(ctx, field, part);
        }
    }
    for (const Field field : {Field::Angle, Field::Level}) {
        for (int box = 0; box < 8; ++box) {
            ValidateField(ctx, field, box);
        }
    }
    for (int part = 0; part < 2; ++part) {
        ValidateField(ctx, Field::Slope, part);
    }
}

}  // namespace rk31
