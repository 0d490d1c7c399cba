#include "programming/AngleCapture.h"

#include <optional>

#include "chipsession/ModeChange.h"
#include "context/ControlView.h"
#include "context/WindowContext.h"
#include "core/Formats.h"
#include "core/NumberText.h"
#include "core/Prompts.h"
#include "params/FieldValidation.h"
#include "shell/DeviceSession.h"

namespace rk31 {

namespace {

// The sensed angle of the part once it is in OWI mode; nothing (with the message) otherwise.
std::optional<float> senseAngle(WindowContext& ctx, std::int16_t part) {
    if (!ReachOWIMode(ctx, CommandTarget(ctx, part))) {
        ctx.prompts.message(QStringLiteral("Error: Not in OWI mode"));
        return std::nullopt;
    }
    float angle = 0;
    ctx.session.device().ReadAngle(part, angle);
    return angle;
}

}  // namespace

float MidPointOf(float angle) {
    return angle < 180.0f ? angle + 180.0f : angle - 180.0f;
}

void ReadAngleCommand(WindowContext& ctx, std::int16_t part) {
    if (const auto angle = senseAngle(ctx, part)) {
        ctx.view.setText(ctl::Rangle, part, FormatSingle(*angle, 2));
    }
}

void SetPointCommand(WindowContext& ctx, int element) {
    const auto part = static_cast<std::int16_t>(element < 4 ? 0 : 1);
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

}  // namespace rk31
