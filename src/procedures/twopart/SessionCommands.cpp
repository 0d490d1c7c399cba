#include "procedures/twopart/SessionCommands.h"

#include "device/ChipOperations.h"
#include "device/ChipStateMachine.h"
#include "device/DeviceSession.h"
#include "device/FieldValidation.h"
#include "device/ModeChange.h"
#include "device/UpdateControl.h"
#include "device/WindowContext.h"
#include "domain/ControlView.h"
#include "domain/Formats.h"
#include "domain/Messages.h"
#include "domain/Prompts.h"
#include "procedures/shared/Connection.h"

namespace rk31 {

namespace {

void powerOn(WindowContext& ctx, std::int16_t part) {
    const int button = ctx.sessionIndex(part);
    auto wait = ctx.ui.createWaitWindow(kGettingVddWait);
    wait->show();
    ctx.ui.processEvents();
    ctx.view.setText(ctl::PowerOn, button, kPowerOffCaption);
    if (ctx.oneSupply()) {
        ToADCMode(ctx, 0);
        ToADCMode(ctx, 1);
    } else {
        ToADCMode(ctx, part);
    }
    const float vdd = MeasureVdd(ctx, ctx.oneSupply() ? kBothParts : part);
    if (vdd < kNoVddReading) {
        PowerCommand(ctx, part);  // the caption now reads "Power Off"
        return;
    }
    for (int p = 0; p < 2; ++p) {
        if (ctx.oneSupply() || p == part) {
            ctx.view.setText(ctl::VDD, p, FormatSingle(vdd, 3));
        }
    }
    if (ctx.oneSupply()) {
        ToOWIModeBothParts(ctx);
    } else {
        ToOWIMode(ctx, part);
    }
    wait->TextChange(kVerifyingWait);
    ctx.ui.processEvents();
    if (!ChipAnswers(ctx, CommandTarget(ctx, part))) {
        ctx.prompts.message(kResetHardwareText);
        PowerCommand(ctx, part);
    }
}

void powerOff(WindowContext& ctx, std::int16_t part) {
    ctx.view.setText(
        ctl::status, -1,
        QStringLiteral("Power Off Chip...In transition to Connecting with Programmer..."));
    ctx.ui.processEvents();
    if (ctx.oneSupply()) {
        Machine(ctx).ChipChangeToState(StateIndex(kBothParts), AdcMode, PowerOff);
    } else {
        Machine(ctx).ChipChangeToState(part, ctx.session.ChipState[part], PowerOff);
    }
    ctx.view.setText(ctl::PowerOn, ctx.sessionIndex(part), kPowerOnCaption);
}

}  // namespace

void TwoPartWindowLoad(WindowContext& ctx) {
    ctx.session.ResetForWindowLoad(true);
    Machine(ctx).SetConnectionState(0);
    UpdateControl(ctx);
    if (!ctx.oneSupply()) {
        // What a click on each part's enable box does, for Part#1 and then Part#2.
        for (int part = 0; part < 2; ++part) {
            UpdateControl(ctx);
        }
    }
    for (int part = 0; part < 2; ++part) {
        ctx.view.setListItems(ctl::OutMode, part,
                              {QStringLiteral("Analog"), QStringLiteral("PWM")});
        ctx.view.setListIndex(ctl::OutMode, part, 0);
        ctx.view.setListItems(ctl::PWMFreq, part,
                              {QStringLiteral("1000 Hz"), QStringLiteral("500 Hz"),
                               QStringLiteral("250 Hz"), QStringLiteral("125 Hz")});
        ctx.view.setListIndex(ctl::PWMFreq, part, 0);
        ctx.view.setEnabled(ctl::PWMFreq, part, false);
        ctx.view.setListItems(
            ctl::PWMPolarity, part,
            {QStringLiteral("high level valid"), QStringLiteral("low level valid")});
        ctx.view.setListIndex(ctl::PWMPolarity, part, 0);
        ctx.view.setEnabled(ctl::PWMPolarity, part, false);
    }
    ValidateOnOpen(ctx);
}

void TwoPartConnectCommand(WindowContext& ctx) {
    if (ConnectCommand(ctx) != ConnectOutcome::NotChosen) {
        UpdateControl(ctx);
    }
}

void PowerCommand(WindowContext& ctx, std::int16_t part) {
    if (ctx.view.text(ctl::PowerOn, ctx.sessionIndex(part)) == kPowerOnCaption) {
        powerOn(ctx, part);
    } else {
        powerOff(ctx, part);
    }
    UpdateControl(ctx);
}

void NewDevice(WindowContext& ctx, std::int16_t part) {
    if (!ReachOWIMode(ctx, CommandTarget(ctx, part))) {
        ctx.prompts.message(kNotInOwiModeBangText);
        return;
    }
    if (ctx.oneSupply() && (ctx.session.CommLocked[0] || ctx.session.CommLocked[1])) {
        return;
    }
    auto wait = ctx.ui.createWaitWindow(kClearingSolverWait);
    wait->show();
    ctx.ui.processEvents();
    ClearSolver(ctx, CommandTarget(ctx, part));
    StoreInEEPROM(ctx, CommandTarget(ctx, part));
    wait->TextChange(kSelfCorrectingWait);
    ctx.ui.processEvents();
    CheckDACCalibration(ctx, CommandTarget(ctx, part));
    wait.reset();
    UpdateControl(ctx);
}

void CommLockCommand(WindowContext& ctx, std::int16_t part) {
    if (!EnsureOwiMode(ctx, CommandTarget(ctx, part)) || !ctx.ui.confirmCommLock()) {
        return;
    }
    const auto solver = ctx.session.solverAccess();
    for (const std::int16_t p : PartsOf(CommandTarget(ctx, part))) {
        std::int32_t failed = 0;
        solver->CommLock(p, failed);
        if (failed != 0) {
            ctx.prompts.message(ctx.oneSupply() ? kCommLockBothErrorText : kCommLockErrorText);
        }
    }
    // Exactly as a click: the caption decides, so a part that reached OWI mode without the
    // power command is powered on here rather than off.
    PowerCommand(ctx, part);
}

void TwoPartAfterDeviceFailure(WindowContext& ctx) {
    const auto& state = ctx.session.ChipState;
    const bool bothPowered = state[0] != PowerOff || state[1] != PowerOff;
    // The caption is the record of the power: a part the failed command left off must be
    // powered on by the next click, not "powered off" again.
    for (int part = 0; part < (ctx.oneSupply() ? 1 : 2); ++part) {
        const bool powered = ctx.oneSupply() ? bothPowered : state[part] != PowerOff;
        ctx.view.setText(ctl::PowerOn, ctx.sessionIndex(part),
                         powered ? kPowerOffCaption : kPowerOnCaption);
    }
    UpdateControl(ctx);
}

}  // namespace rk31
