#include "procedures/twopart/AngleCommands.h"

#include <optional>

#include "device/DeviceSession.h"
#include "device/FieldValidation.h"
#include "device/ModeChange.h"
#include "device/WindowContext.h"
#include "domain/ControlView.h"
#include "domain/Formats.h"
#include "domain/NumberText.h"
#include "domain/PointSolvers.h"
#include "domain/Validation.h"

namespace rk31 {

namespace {

// The sensed angle of the part once it is in OWI mode; nothing (with the message) otherwise.
std::optional<float> senseAngle(WindowContext& ctx, std::int16_t part) {
    if (!EnsureOwiMode(ctx, CommandTarget(ctx, part))) {
        return std::nullopt;
    }
    float angle = 0;
    ctx.session.device().ReadAngle(part, angle);
    return angle;
}

}  // namespace

void ReadAngleCommand(WindowContext& ctx, std::int16_t part) {
    if (const auto angle = senseAngle(ctx, part)) {
        ctx.view.setText(ctl::Rangle, part, FormatSingle(*angle, 2));
    }
}

void SetPointCommand(WindowContext& ctx, int element) {
    const auto part = static_cast<std::int16_t>(PointBoxOf(ctx.family, element).part);
    if (const auto angle = senseAngle(ctx, part)) {
        ctx.view.setText(ctl::Angle, element, FormatSingle(*angle, 2));
        ValidateField(ctx, Field::Angle, element);
    }
}

void GetDPMidPointCommand(WindowContext& ctx, std::int16_t part) {
    if (const auto angle = senseAngle(ctx, part)) {
        const QString text = FormatSingle(MidPointOf(*angle), 2);
        ctx.view.setText(ctl::DP, part, text);
        // The value shown, not the exact one; the DP box's own check does not run.
        ctx.params[part].DP = TextToValue(text, ctx.prompts);
    }
}

void SetOpCommand(WindowContext& ctx, std::int16_t part) {
    if (const auto angle = senseAngle(ctx, part)) {
        ctx.view.setText(ctl::op, part, FormatSingle(*angle, 2));
    }
}

void HysStep(WindowContext& ctx, std::int16_t part, int direction) {
    ctx.view.setText(ctl::hys, part, StepHYS(ctx.view.text(ctl::hys, part), direction));
}

}  // namespace rk31
