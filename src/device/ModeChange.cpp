#include "device/ModeChange.h"

#include "device/ChipStateMachine.h"
#include "device/DeviceSession.h"
#include "device/UpdateControl.h"
#include "device/WindowContext.h"
#include "domain/ControlView.h"
#include "domain/Messages.h"
#include "domain/Prompts.h"

namespace rk31 {

namespace {

QString partNumber(int part) {
    return QString::number(part + 1);
}

}  // namespace

void ToADCMode(WindowContext& ctx, std::int16_t part) {
    const auto state = ctx.session.ChipState[part];
    if ((state != PowerOff && state != OwiMode) || ctx.session.ProgrammerConnected != 1) {
        return;
    }
    if (ctx.isTwoPart()) {
        ctx.view.setText(ctl::status, -1,
                         QStringLiteral("Part#") + partNumber(part) +
                             QStringLiteral(":  In transition to ADC Mode..."));
        ctx.ui.processEvents();
    }
    Machine(ctx).ChipChangeToState(part, state, AdcMode);
    if (ctx.isTwoPart()) {
        UpdateControl(ctx);
    }
}

void ToOWIMode(WindowContext& ctx, std::int16_t part) {
    const auto state = ctx.session.ChipState[part];
    if ((state != PowerOff && state != AdcMode) || ctx.session.ProgrammerConnected != 1) {
        return;
    }
    if (ctx.isTwoPart()) {
        ctx.view.setText(ctl::status, -1,
                         QStringLiteral("Part#") + partNumber(part) +
                             QStringLiteral(":  In transition to OWI Mode..."));
        ctx.ui.processEvents();
    }
    if (!Machine(ctx).ChipChangeToState(part, state, OwiMode)) {
        ctx.prompts.message(kCommLockRefusedText);
        Machine(ctx).ChipChangeToState(part, ctx.session.ChipState[part], AdcMode);
    }
    if (ctx.isTwoPart()) {
        UpdateControl(ctx);
    }
}

void ToOWIModeBothParts(WindowContext& ctx) {
    const auto& state = ctx.session.ChipState;
    const bool bothOff = state[0] == PowerOff && state[1] == PowerOff;
    const bool bothAdc = state[0] == AdcMode && state[1] == AdcMode;
    if (!(bothOff || bothAdc) || ctx.session.ProgrammerConnected != 1) {
        return;
    }
    if (ctx.isTwoPart()) {
        ctx.view.setText(ctl::status, -1,
                         QStringLiteral("Part#1 and Part#2 :  In transition to OWI Mode..."));
    }
    ctx.ui.processEvents();
    if (!Machine(ctx).ChipChangeToState(StateIndex(kBothParts), state[0], OwiMode)) {
        ctx.prompts.message(kCommLockRefusedText);
        Machine(ctx).ChipChangeToState(StateIndex(kBothParts), OwiMode, AdcMode);
    }
    if (ctx.isTwoPart()) {
        UpdateControl(ctx);
    }
}

bool ReachOWIMode(WindowContext& ctx, std::int16_t part) {
    const auto& state = ctx.session.ChipState;
    if (part == kBothParts) {
        ToOWIModeBothParts(ctx);
        return state[0] == OwiMode && state[1] == OwiMode;
    }
    ToOWIMode(ctx, part);
    return state[part] == OwiMode;
}

std::int16_t CommandTarget(const WindowContext& ctx, std::int16_t part) {
    return ctx.oneSupply() ? kBothParts : part;
}

bool EnsureOwiMode(WindowContext& ctx, std::int16_t part) {
    if (ReachOWIMode(ctx, part)) {
        return true;
    }
    ctx.prompts.message(kNotInOwiModeText);
    return false;
}

}  // namespace rk31
