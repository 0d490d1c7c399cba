#include "device/ChipOperations.h"

#include <cstdlib>
#include <memory>

#include "device/ChipStateMachine.h"
#include "device/DeviceSession.h"
#include "device/ModeChange.h"
#include "device/SolverInputs.h"
#include "device/WindowContext.h"
#include "domain/ControlView.h"
#include "domain/Formats.h"
#include "domain/Messages.h"
#include "domain/Prompts.h"

namespace rk31 {

namespace {

constexpr std::int32_t kIdentificationAddress = 0x48;

std::int32_t readChipId(WindowContext& ctx, std::int16_t part) {
    std::int32_t word = 0;
    ctx.session.memoryAccess()->ReadMemory(part, kIdentificationAddress, word);
    return word;
}

bool programEeprom(WindowContext& ctx, std::int16_t part) {
    std::int32_t failed = 0;
    ctx.session.device().ProgramEEPROM(part, failed);
    return failed == 0;
}

void setOutputMode(WindowContext& ctx, std::int16_t part) {
    std::int32_t failed = 0;
    ctx.session.device().SetOutputMode(
        part, static_cast<std::int16_t>(ctx.view.listIndex(ctl::OutMode, part)),
        static_cast<std::int16_t>(ctx.view.listIndex(ctl::PWMFreq, part)),
        static_cast<std::int16_t>(ctx.view.listIndex(ctl::PWMPolarity, part)), failed);
}

}  // namespace

bool ValidateChipID(WindowContext& ctx, std::int16_t part, std::int32_t chipid) {
    if (chipid >= 240 && chipid <= 255) {
        ctx.prompts.message(kCommLockedText + QString::number(chipid, 16).toUpper());
        ctx.session.CommLocked[part] = true;
        return false;
    }
    if (chipid == 511) {
        ctx.prompts.message(kReadErrorText);
        return false;
    }
    return true;
}

bool ChipAnswers(WindowContext& ctx, std::int16_t part) {
    bool answered = true;
    for (const std::int16_t p : PartsOf(part)) {
        answered = ValidateChipID(ctx, p, readChipId(ctx, p)) && answered;
    }
    return answered;
}

float MeasureVdd(WindowContext& ctx, std::int16_t part) {
    float vdd = 0;
    ctx.session.device().MeasureVDD(part, vdd);
    return vdd;
}

void CheckDACCalibration(WindowContext& ctx, std::int16_t part) {
    float k0 = 0, b0 = 0, k1 = 0, b1 = 0;
    std::int32_t status = 0;
    ctx.session.device().GetDACCalibration(part, k0, b0, k1, b1, status);
    const auto bits = std::llabs(static_cast<long long>(status));
    if (part != 0 && part != 1 && part != kBothParts) {
        ctx.prompts.message(kCalibrationPartText);
        return;
    }
    if (part == 0 || part == kBothParts) {
        ctx.session.K[0] = k0;
        ctx.session.B[0] = b0;
        if ((bits & 0x3) != 0) {
            ctx.prompts.message(QStringLiteral("Offset Parameters of Part#1 are invalid! K0: ") +
                                SingleText(k0) + QStringLiteral(" B0: ") + SingleText(b0));
        }
    }
    if (part == 1 || part == kBothParts) {
        ctx.session.K[1] = k1;
        ctx.session.B[1] = b1;
        if ((bits & 0xC) != 0) {
            ctx.prompts.message(QStringLiteral("Offset Parameters of Part#2 are invalid! K1: ") +
                                SingleText(k1) + QStringLiteral(" B1: ") + SingleText(b1));
        }
    }
}

void ClearSolver(WindowContext& ctx, std::int16_t part) {
    if (!EnsureOwiMode(ctx, part)) {
        return;
    }
    const auto solver = ctx.session.solverAccess();
    for (const std::int16_t p : PartsOf(part)) {
        std::int32_t failed = 0;
        solver->ClearSolverSettings(p, failed);
        if (failed != 0) {
            ctx.prompts.message(part == kBothParts ? kClearSolverBothErrorText
                                                   : kClearSolverErrorText);
        }
    }
}

bool ProgramEEPROMOf(WindowContext& ctx, std::int16_t part) {
    bool programmed = true;
    for (const std::int16_t p : PartsOf(part)) {
        programmed = programEeprom(ctx, p) && programmed;
    }
    return programmed;
}

bool StoreInEEPROM(WindowContext& ctx, std::int16_t part) {
    if (!EnsureOwiMode(ctx, part)) {
        return false;
    }
    bool programmed = true;
    for (const std::int16_t p : PartsOf(part)) {
        if (!programEeprom(ctx, p)) {
            ctx.prompts.message(kFailedProgrammingText);
            programmed = false;
        }
    }
    Machine(ctx).ChipChangeToState(StateIndex(part), OwiMode, OwiMode);
    return programmed;
}

bool IsValidCount(int count) {
    return count >= 2 && count <= 4;
}

bool CheckCount(WindowContext& ctx, int count) {
    if (!IsValidCount(count)) {
        ctx.prompts.message(kConfigSolverErrorText);
        return false;
    }
    return true;
}

bool WriteBuffer(WindowContext& ctx, std::int16_t part) {
    std::int32_t code = 0;
    ctx.session.solverAccess()->WriteBufferToDevice(part, code);
    switch (code) {
        case 0:
            return true;
        case 1:
            ctx.prompts.message(QStringLiteral("Chip Index Error!"));
            break;
        case 2:
            ctx.prompts.message(QStringLiteral("Error in WriteBufferToDevice!"));
            break;
        case 3:
            ctx.prompts.message(QStringLiteral("Die1: Clamp High <= Clamp Low!"));
            break;
        case 4:
            ctx.prompts.message(QStringLiteral("Die2: Clamp High <= Clamp Low!"));
            break;
        default:
            break;
    }
    return false;
}

bool ConfigurePart(WindowContext& ctx, std::int16_t part, const QString& waitText) {
    auto wait = ctx.ui.createWaitWindow(waitText);
    wait->show();
    ctx.ui.processEvents();
    const SolverInputs& in = ctx.inputs[part];
    if (in.WorkOP != EmptyValue && in.WorkHYS != EmptyValue) {
        StoreSwitchOutput(ctx, part);
    }
    if (!WriteBuffer(ctx, part)) {
        return false;
    }
    setOutputMode(ctx, part);
    return true;
}

bool ConfigureSolver(WindowContext& ctx, std::int16_t part, int count) {
    if (!EnsureOwiMode(ctx, part) || !CheckCount(ctx, count)) {
        return false;
    }
    return ConfigurePart(ctx, part, kConfiguringSolverWait);
}

}  // namespace rk31
