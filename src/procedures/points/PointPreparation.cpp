#include "procedures/points/PointPreparation.h"

#include "device/ChipOperations.h"
#include "device/ChipStateMachine.h"
#include "device/ConfigSolvers.h"
#include "device/DeviceSession.h"
#include "device/ModeChange.h"
#include "device/SolverInputs.h"
#include "device/WindowContext.h"
#include "domain/ControlView.h"
#include "domain/Messages.h"
#include "domain/Prompts.h"
#include "procedures/shared/Connection.h"

namespace rk31 {

namespace {

void toAdc(WindowContext& ctx, std::int16_t part) {
    for (const std::int16_t p : PartsOf(part)) {
        ToADCMode(ctx, p);
    }
}

void toOwi(WindowContext& ctx, std::int16_t part) {
    if (part == kBothParts) {
        ToOWIModeBothParts(ctx);
    } else {
        ToOWIMode(ctx, part);
    }
}

}  // namespace

void PointConnectCommand(WindowContext& ctx) {
    switch (ConnectCommand(ctx)) {
        case ConnectOutcome::Connected:
        case ConnectOutcome::NotChosen:
            ReadyPointButtons(ctx);
            break;
        case ConnectOutcome::Disconnected:
            ctx.view.setEnabled(ctl::SetpointA, -1, false);
            ctx.view.setEnabled(ctl::SetpointB, -1, false);
            if (ctx.pointWindowHasPower) {
                ctx.view.setEnabled(ctl::PowerOn, -1, false);
            }
            break;
        case ConnectOutcome::Failed:
            break;
    }
}

void PrepareDevice(WindowContext& ctx, std::int16_t part) {
    if (ctx.powered) {
        return;
    }
    ctx.powered = true;
    auto wait = ctx.ui.createWaitWindow(kGettingVddWait);
    wait->show();
    ctx.ui.processEvents();
    toAdc(ctx, part);
    if (MeasureVdd(ctx, part) < kNoVddReading) {
        PowerOffIfPowered(ctx, part);
        return;
    }
    toOwi(ctx, part);
    wait->TextChange(kVerifyingWait);
    ctx.ui.processEvents();
    if (!ChipAnswers(ctx, part)) {
        ctx.prompts.message(kResetHardwareText);
        PowerOffIfPowered(ctx, part);
        return;
    }
    wait->TextChange(kClearingSolverWait);
    const auto solver = ctx.session.solverAccess();
    for (const std::int16_t p : PartsOf(part)) {
        std::int32_t failed = 0;
        solver->ClearSolverSettings(p, failed);
        if (failed != 0) {
            ctx.prompts.message(kClearSolverErrorText);
        }
    }
    wait->TextChange(kProgrammingEepromWait);
    if (!ProgramEEPROMOf(ctx, part)) {
        ctx.prompts.message(kFailedProgrammingText);
    }
    Machine(ctx).ChipChangeToState(StateIndex(part), OwiMode, OwiMode);
    wait->TextChange(kSelfCorrectingWait);
    CheckDACCalibration(ctx, part);
    if (ctx.pointWindowHasPower) {
        ctx.view.setEnabled(ctl::SetpointA, -1, true);
        ctx.view.setEnabled(ctl::PowerOn, -1, false);
        ctx.view.setEnabled(ctl::SetpointB, -1, false);
    }
}

void PowerOffIfPowered(WindowContext& ctx, std::int16_t part) {
    if (!ctx.powered) {
        return;
    }
    if (part == kBothParts) {
        Machine(ctx).ChipChangeToState(StateIndex(kBothParts), AdcMode, PowerOff);
    } else {
        Machine(ctx).ChipChangeToState(part, ctx.session.ChipState[part], PowerOff);
    }
    ctx.powered = false;
}

void ReadyPointButtons(WindowContext& ctx) {
    ctx.view.setEnabled(ctl::SetpointA, -1, !ctx.pointWindowHasPower);
    if (ctx.pointWindowHasPower) {
        ctx.view.setEnabled(ctl::PowerOn, -1, true);
    }
    ctx.view.setEnabled(ctl::SetpointB, -1, false);
}

bool PointProgramAction(WindowContext& ctx, std::int16_t part) {
    if (!EnsureOwiMode(ctx, part)) {
        return false;
    }
    const auto parts = PartsOf(part);
    for (const std::int16_t p : parts) {
        if (!LoadSolverInputsTwoPoints(ctx, p)) {
            return false;
        }
    }
    auto wait = ctx.ui.createWaitWindow(kConfiguringSolverWait);
    wait->show();
    ctx.ui.processEvents();
    for (const std::int16_t p : parts) {
        if (configsolver_2Points(ctx, p) != 2) {
            ctx.prompts.message(kNotTwoPointsText);
            return false;
        }
    }
    for (const std::int16_t p : parts) {
        if (!WriteBuffer(ctx, p)) {
            return false;
        }
    }
    wait->TextChange(kProgrammingEepromWait);
    const bool programmed = ProgramEEPROMOf(ctx, part);
    if (!programmed) {
        ctx.prompts.message(kFailedProgrammingText);
    }
    Machine(ctx).ChipChangeToState(StateIndex(part), OwiMode, OwiMode);
    return programmed;
}

void PointAfterDeviceFailure(WindowContext& ctx) {
    const auto& state = ctx.session.ChipState;
    const bool connected = ctx.session.ProgrammerConnected == 1;
    const bool powered = ctx.family == WindowFamily::DualPoint
                             ? state[0] != PowerOff || state[1] != PowerOff
                             : state[static_cast<std::size_t>(ctx.selectedPart())] != PowerOff;
    // A preparation that powered nothing is no preparation: the next Set point A (or Power On)
    // must be free to start again.
    if (!connected || !ctx.session.hasDevice() || !powered) {
        ctx.powered = false;
    }
    if (connected && !ctx.powered) {
        ReadyPointButtons(ctx);
    }
}

}  // namespace rk31
