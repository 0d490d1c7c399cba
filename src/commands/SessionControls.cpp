#include "commands/SessionControls.h"
#include "chipsession/ChipStateMachine.h"

#include "chipsession/ModeChange.h"
#include "chipsession/UpdateControl.h"
#include "context/ControlView.h"
#include "context/WindowContext.h"
#include "core/Formats.h"
#include "core/Prompts.h"
#include "params/FieldValidation.h"
#include "programming/ProgramSequence.h"
#include "rk31/DeviceError.h"
#include "shell/DeviceSession.h"

namespace rk31 {

namespace {

const QString kPowerOnCaption = QStringLiteral("Power On");
const QString kPowerOffCaption = QStringLiteral("Power Off");
const QString kGettingVdd = QStringLiteral("Getting VDD of device...  Please Wait...");
const QString kVerifying = QStringLiteral("Verifying communication status... Please Wait...");
constexpr float kNoReading = -100.0f;

std::int32_t readChipId(WindowContext& ctx, std::int16_t part) {
    std::shared_ptr<MemoryAccess> memory;
    ctx.session.device().GetMemoryAccess(memory);
    if (!memory) {
        throw DeviceError(QStringLiteral("The programmer gave no memory access."));
    }
    std::int32_t word = 0;
    memory->ReadMemory(part, 0x48, word);
    return word;
}

bool chipAnswers(WindowContext& ctx, std::int16_t part) {
    return ValidateChipID(ctx, part, readChipId(ctx, part));
}

// Both parts are judged, so that a lock of either is recorded.
bool bothChipsAnswer(WindowContext& ctx) {
    const bool first = chipAnswers(ctx, 0);
    const bool second = chipAnswers(ctx, 1);
    return first && second;
}

float measureVdd(WindowContext& ctx, std::int16_t part) {
    float vdd = 0;
    ctx.session.device().MeasureVDD(part, vdd);
    return vdd;
}

void powerOn(WindowContext& ctx, std::int16_t part) {
    const int button = ctx.sessionIndex(part);
    auto wait = ctx.ui.createWaitWindow(kGettingVdd);
    wait->show();
    ctx.ui.processEvents();
    ctx.view.setText(ctl::PowerOn, button, kPowerOffCaption);
    if (ctx.oneSupply()) {
        ToADCMode(ctx, 0);
        ToADCMode(ctx, 1);
    } else {
        ToADCMode(ctx, part);
    }
    const float vdd = measureVdd(ctx, ctx.oneSupply() ? std::int16_t{3} : part);
    if (vdd < kNoReading) {
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
    wait->TextChange(kVerifying);
    ctx.ui.processEvents();
    const bool answered = ctx.oneSupply() ? bothChipsAnswer(ctx) : chipAnswers(ctx, part);
    if (!answered) {
        ctx.prompts.message(QStringLiteral("Please Reset hardware and try again!"));
        PowerCommand(ctx, part);
    }
}

void powerOff(WindowContext& ctx, std::int16_t part) {
    ctx.view.setText(
        ctl::status, -1,
        QStringLiteral("Power Off Chip...In transition to Connecting with Programmer..."));
    ctx.ui.processEvents();
    if (ctx.oneSupply()) {
        Machine(ctx).ChipChangeToState(2, AdcMode, PowerOff);
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
        ctx.prompts.message(QStringLiteral("Error: Not in OWI Mode!"));
        return;
    }
    if (ctx.oneSupply() && (ctx.session.CommLocked[0] || ctx.session.CommLocked[1])) {
        return;
    }
    auto wait = ctx.ui.createWaitWindow(QStringLiteral("Clearing Solver...  Please Wait..."));
    wait->show();
    ctx.ui.processEvents();
    ClearSolver(ctx, CommandTarget(ctx, part));
    StoreInEEPROM(ctx, CommandTarget(ctx, part));
    wait->TextChange(QStringLiteral("System is self correcting... Please Wait..."));
    ctx.ui.processEvents();
    CheckDACCalibration(ctx, CommandTarget(ctx, part));
    wait.reset();
    UpdateControl(ctx);
}

void CommLockCommand(WindowContext& ctx, std::int16_t part) {
    if (!ReachOWIMode(ctx, CommandTarget(ctx, part))) {
        ctx.prompts.message(QStringLiteral("Error: Not in OWI mode"));
        return;
    }
    if (!ctx.ui.confirmCommLock()) {
        return;
    }
    std::shared_ptr<SolverAccess> solver;
    ctx.session.device().GetSolverAccess(solver);
    if (!solver) {
        throw DeviceError(QStringLiteral("The programmer gave no solver access."));
    }
    if (ctx.oneSupply()) {
        for (std::int16_t p : {0, 1}) {
            std::int32_t failed = 0;
            solver->CommLock(p, failed);
            if (failed != 0) {
                ctx.prompts.message(QStringLiteral("Errors in Commlock"));
            }
        }
    } else {
        std::int32_t failed = 0;
        solver->CommLock(part, failed);
        if (failed != 0) {
            ctx.prompts.message(QStringLiteral("Errors in Commlock!"));
        }
    }
    // Exactly as a click: the caption decides, so a part that reached OWI mode without the
    // power command is powered on here rather than off.
    PowerCommand(ctx, part);
}

void AboutCommand(WindowContext& ctx) {
    QString version = QStringLiteral("0.0.0");
    if (!ctx.session.hasDevice()) {
        ctx.prompts.message(QStringLiteral(
            "Cannot read version, Programmer is not connected or Device is not powered on!"));
    } else {
        std::int32_t major = 0, minor = 0, build = 0, failed = 0;
        ctx.session.device().GetHardwareVersion(major, minor, build, failed);
        if (failed != 0) {
            ctx.prompts.message(QStringLiteral("Cannot Read Programmer Version!"));
        }
        version = QStringLiteral("%1.%2.%3").arg(major).arg(minor).arg(build);
    }
    ctx.ui.showAbout(version);
}

void PrepareDevice(WindowContext& ctx, int part) {
    if (ctx.powered) {
        return;
    }
    ctx.powered = true;
    const bool bothParts = part < 0;
    const auto p = static_cast<std::int16_t>(bothParts ? 0 : part);
    auto wait = ctx.ui.createWaitWindow(kGettingVdd);
    wait->show();
    ctx.ui.processEvents();
    if (bothParts) {
        ToADCMode(ctx, 0);
        ToADCMode(ctx, 1);
    } else {
        ToADCMode(ctx, p);
    }
    if (measureVdd(ctx, bothParts ? std::int16_t{3} : p) < kNoReading) {
        PowerOffIfPowered(ctx, part);
        return;
    }
    if (bothParts) {
        ToOWIModeBothParts(ctx);
    } else {
        ToOWIMode(ctx, p);
    }
    wait->TextChange(kVerifying);
    ctx.ui.processEvents();
    if (!(bothParts ? bothChipsAnswer(ctx) : chipAnswers(ctx, p))) {
        ctx.prompts.message(QStringLiteral("Please Reset hardware and try again!"));
        PowerOffIfPowered(ctx, part);
        return;
    }
    wait->TextChange(QStringLiteral("Clearing Solver...  Please Wait..."));
    std::shared_ptr<SolverAccess> solver;
    ctx.session.device().GetSolverAccess(solver);
    if (!solver) {
        throw DeviceError(QStringLiteral("The programmer gave no solver access."));
    }
    for (std::int16_t q : PartsOf(bothParts ? kBothParts : p)) {
        std::int32_t failed = 0;
        solver->ClearSolverSettings(q, failed);
        if (failed != 0) {
            ctx.prompts.message(QStringLiteral("Errors in ClearSolverSettings!"));
        }
    }
    wait->TextChange(QStringLiteral("Programming EEPROM...  Please Wait..."));
    bool failed = false;
    for (std::int16_t q : PartsOf(bothParts ? kBothParts : p)) {
        std::int32_t f = 0;
        ctx.session.device().ProgramEEPROM(q, f);
        failed = failed || f != 0;
    }
    if (failed) {
        ctx.prompts.message(QStringLiteral("Failed in programming device"));
    }
    Machine(ctx).ChipChangeToState(bothParts ? 2 : p, OwiMode, OwiMode);
    wait->TextChange(QStringLiteral("System is self correcting... Please Wait..."));
    CheckDACCalibration(ctx, bothParts ? kBothParts : p);
    if (ctx.pointWindowHasPower) {
        ctx.view.setEnabled(ctl::SetpointA, -1, true);
        ctx.view.setEnabled(ctl::PowerOn, -1, false);
        ctx.view.setEnabled(ctl::SetpointB, -1, false);
    }
}

void ReadyPointButtons(WindowContext& ctx) {
    ctx.view.setEnabled(ctl::SetpointA, -1, !ctx.pointWindowHasPower);
    if (ctx.pointWindowHasPower) {
        ctx.view.setEnabled(ctl::PowerOn, -1, true);
    }
    ctx.view.setEnabled(ctl::SetpointB, -1, false);
}

void AfterDeviceFailure(WindowContext& ctx) {
    const auto& state = ctx.session.ChipState;
    const bool bothPowered = state[0] != PowerOff || state[1] != PowerOff;
    if (ctx.isTwoPart()) {
        // The caption is the record of the power: a part the failed command left off must be
        // powered on by the next click, not "powered off" again.
        for (int part = 0; part < (ctx.oneSupply() ? 1 : 2); ++part) {
            const bool powered = ctx.oneSupply() ? bothPowered : state[part] != PowerOff;
            ctx.view.setText(ctl::PowerOn, ctx.sessionIndex(part),
                             powered ? kPowerOffCaption : kPowerOnCaption);
        }
        UpdateControl(ctx);
        return;
    }
    const bool connected = ctx.session.ProgrammerConnected == 1;
    const bool powered = ctx.family == WindowFamily::DualPoint
                             ? bothPowered
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
