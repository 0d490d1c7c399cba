#include "device/FieldValidation.h"

#include "device/WindowContext.h"
#include "domain/ControlView.h"
#include "domain/NumberText.h"
#include "domain/Validation.h"

namespace rk31 {

namespace {

const QString& controlOf(Field field) {
    switch (field) {
        case Field::DP:
            return ctl::DP;
        case Field::ClampHigh:
            return ctl::clamphigh;
        case Field::ClampLow:
            return ctl::clamplow;
        case Field::Angle:
            return ctl::Angle;
        case Field::Level:
            return ctl::Level;
        case Field::Slope:
            return ctl::KforA;
        case Field::VDD:
            return ctl::VDD;
        case Field::ReadAngle:
            return ctl::Rangle;
        case Field::OP:
            return ctl::op;
        case Field::HYS:
            return ctl::hys;
    }
    return ctl::DP;
}

// The part whose values a box feeds: one set of values in the one-part windows.
int partOfBox(int index) {
    return index < 0 ? 0 : index;
}

}  // namespace

void ValidateField(WindowContext& ctx, Field field, int index) {
    const QString& name = controlOf(field);
    const QString text = ctx.view.text(name, index);
    Validated result;
    switch (field) {
        case Field::DP:
            result = ValidateDP(text, ctx.family, partOfBox(index), ctx.prompts);
            ctx.params[partOfBox(index)].DP = result.value;
            break;
        case Field::ClampHigh:
            result = ValidateClampHigh(text, ctx.family, partOfBox(index), ctx.prompts);
            ctx.params[partOfBox(index)].ClampHigh = result.value;
            break;
        case Field::ClampLow:
            result = ValidateClampLow(text, ctx.family, partOfBox(index), ctx.prompts);
            ctx.params[partOfBox(index)].ClampLow = result.value;
            break;
        case Field::Angle:
        case Field::Level: {
            // The message names the list's index plus one as it is: "Part#0" while a settings
            // file has left the list without a selection.
            const int shownIndex =
                ctx.family == WindowFamily::OnePartPoint ? ctx.view.listIndex(ctl::PartSel) : 0;
            const PointBox box = PointBoxOf(ctx.family, index, shownIndex);
            const int part = ctx.family == WindowFamily::OnePartPoint ? 0 : box.part;
            if (field == Field::Angle) {
                result = ValidateAngle(text, ctx.family, box, ctx.prompts);
                ctx.params[part].Angle[box.point] = result.value;
            } else {
                result = ValidateLevel(text, ctx.family, box, ctx.prompts);
                ctx.params[part].Level[box.point] = result.value;
            }
            break;
        }
        case Field::Slope:
            result = ValidateSlope(text, index, ctx.prompts);
            ctx.params[index].Slope = result.value;
            break;
        case Field::OP:
            result = ValidateOP(text, index, ctx.prompts);
            ctx.params[index].OP = result.value;
            break;
        case Field::HYS:
            result = ValidateHYS(text, index, ctx.prompts);
            ctx.params[index].HYS = result.value;
            break;
        case Field::VDD:
            result.text = FormatVDD(text);
            break;
        case Field::ReadAngle:
            result.text = FormatReadAngle(text);
            break;
    }
    ctx.view.setText(name, index, result.text);
}

void ValidateOnOpen(WindowContext& ctx) {
    for (const Field field : {Field::ClampLow, Field::ClampHigh, Field::DP}) {
        for (int part = 0; part < 2; ++part) {
            ValidateField(ctx, field, part);
        }
    }
    for (auto& params : ctx.params) {
        params.Angle.fill(EmptyValue);
        params.Level.fill(0.0f);
        params.Slope = EmptyValue;
    }
}

}  // namespace rk31
