#include "programming/SwitchOutput.h"

#include "chipsession/ModeChange.h"
#include "context/ControlView.h"
#include "context/WindowContext.h"
#include "core/Formats.h"
#include "core/Prompts.h"
#include "params/Validation.h"
#include "shell/DeviceSession.h"

namespace rk31 {

void HysStep(WindowContext& ctx, std::int16_t part, int direction) {
    ctx.view.setText(ctl::hys, part, StepHYS(ctx.view.text(ctl::hys, part), direction));
}

void SetOpCommand(WindowContext& ctx, std::int16_t part) {
    if (!ReachOWIMode(ctx, CommandTarget(ctx, part))) {
        ctx.prompts.message(QStringLiteral("Error: Not in OWI mode"));
        return;
    }
    float angle = 0;
    ctx.session.device().ReadAngle(part, angle);
    ctx.view.setText(ctl::op, part, FormatSingle(angle, 2));
}

void OutModeSelected(WindowContext& ctx, std::int16_t part) {
    const bool pwm = ctx.view.listIndex(ctl::OutMode, part) == 1;
    ctx.view.setEnabled(ctl::PWMFreq, part, pwm);
    ctx.view.setEnabled(ctl::PWMPolarity, part, pwm);
}

}  // namespace rk31
