#include "programming/ProgramSequence.h"
#include "chipsession/ChipStateMachine.h"

#include <cstdlib>
#include <memory>

#include "chipsession/ModeChange.h"
#include "context/ControlView.h"
#include "context/WindowContext.h"
#include "core/Formats.h"
#include "core/Prompts.h"
#include "programming/ConfigSolvers.h"
#include "programming/SolverInputs.h"
#include "rk31/DeviceError.h"
#include "shell/DeviceSession.h"

namespace rk31 {

namespace {

const QString kNotInOwi = QStringLiteral("Error: Not in OWI mode");

bool both(std::int16_t part) {
    return part == kBothParts;
}

// Brings the part (or both parts) to OWI mode; false with the message when that failed.
bool ensureOwi(WindowContext& ctx, std::int16_t part) {
    if (ReachOWIMode(ctx, part)) {
        return true;
    }
    ctx.prompts.message(kNotInOwi);
    return false;
}

std::shared_ptr<SolverAccess> solverAccess(WindowContext& ctx) {
    std::shared_ptr<SolverAccess> solver;
    ctx.session.device().GetSolverAccess(solver);
    if (!solver) {
        throw DeviceError(QStringLiteral("The programmer gave no solver access."));
    }
    return solver;
}

// Writes the part's solver buffer into the part; false (with the code's message, if it has
// one) when the component refused.
bool writeBuffer(WindowContext& ctx, std::int16_t part) {
    std::int32_t code = 0;
    solverAccess(ctx)->WriteBufferToDevice(part, code);
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

// One part's share of ConfigureSolver after the checks.
bool configurePart(WindowContext& ctx, std::int16_t part, const QString& waitText) {
    auto wait = ctx.ui.createWaitWindow(waitText);
    wait->show();
    ctx.ui.processEvents();
    const SolverInputs& in = ctx.inputs[part];
    if (in.WorkOP != EmptyValue && in.WorkHYS != EmptyValue) {
        StoreSwitchOutput(ctx, part);
    }
    if (!writeBuffer(ctx, part)) {
        return false;
    }
    setOutputMode(ctx, part);
    return true;
}

bool validCount(int count) {
    return count >= 2 && count <= 4;
}

bool reportCount(WindowContext& ctx, bool valid) {
    if (!valid) {
        ctx.prompts.message(QStringLiteral("Error Config Solver in programee_click"));
    }
    return valid;
}

int solve(WindowContext& ctx, std::int16_t part, bool onePointAndSlope) {
    return onePointAndSlope ? configsolver_OnePointAndSlope(ctx, part)
                            : configsolver_MultiPoints(ctx, part);
}

bool hasSlopeAndPointA(const WindowContext& ctx, std::int16_t part) {
    return IsAngleInRange(ctx, part, 0) && ctx.inputs[part].WorkSlope != EmptyValue;
}

}  // namespace

bool ValidateChipID(WindowContext& ctx, std::int16_t part, std::int32_t chipid) {
    if (chipid >= 240 && chipid <= 255) {
        ctx.prompts.message(QStringLiteral("OWI communication is locked: ") +
                            QString::number(chipid, 16).toUpper());
        ctx.session.CommLocked[part] = true;
        return false;
    }
    if (chipid == 511) {
        ctx.prompts.message(QStringLiteral("Read Error! Please Check chip connections!"));
        return false;
    }
    return true;
}

void CheckDACCalibration(WindowContext& ctx, std::int16_t part) {
    float k0 = 0, b0 = 0, k1 = 0, b1 = 0;
    std::int32_t status = 0;
    ctx.session.device().GetDACCalibration(part, k0, b0, k1, b1, status);
    const auto bits = std::llabs(static_cast<long long>(status));
    if (part != 0 && part != 1 && part != kBothParts) {
        ctx.prompts.message(QStringLiteral("Error Part number for DAC calibration!"));
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
    if (!ensureOwi(ctx, part)) {
        return;
    }
    const auto solver = solverAccess(ctx);
    for (std::int16_t p : PartsOf(part)) {
        std::int32_t failed = 0;
        solver->ClearSolverSettings(p, failed);
        if (failed != 0) {
            ctx.prompts.message(both(part) ? QStringLiteral("Error in ClearSolverSettings")
                                           : QStringLiteral("Errors in ClearSolverSettings!"));
        }
    }
}

bool StoreInEEPROM(WindowContext& ctx, std::int16_t part) {
    if (!ensureOwi(ctx, part)) {
        return false;
    }
    if (both(part)) {
        bool programmed = true;
        for (std::int16_t p : {0, 1}) {
            if (!programEeprom(ctx, p)) {
                ctx.prompts.message(QStringLiteral("Failed in programming device"));
                programmed = false;
            }
        }
        Machine(ctx).ChipChangeToState(2, OwiMode, OwiMode);
        return programmed;
    }
    const bool programmed = programEeprom(ctx, part);
    if (!programmed) {
        ctx.prompts.message(QStringLiteral("Failed in programming device"));
    }
    Machine(ctx).ChipChangeToState(part, OwiMode, OwiMode);
    return programmed;
}

bool ConfigureSolver(WindowContext& ctx, std::int16_t part, int count) {
    if (!ensureOwi(ctx, part) || !reportCount(ctx, validCount(count))) {
        return false;
    }
    return configurePart(ctx, part, QStringLiteral("Configuring Solver...  Please Wait..."));
}

bool ProgramAction(WindowContext& ctx, std::int16_t part) {
    if (!both(part)) {
        if (!ensureOwi(ctx, part) || !LoadSolverInputs(ctx, part)) {
            return false;
        }
        auto wait =
            ctx.ui.createWaitWindow(QStringLiteral("Programming EEPROM...  Please Wait..."));
        const int count = solve(ctx, part, hasSlopeAndPointA(ctx, part));
        if (!ConfigureSolver(ctx, part, count)) {
            return false;
        }
        wait->show();
        ctx.ui.processEvents();
        return StoreInEEPROM(ctx, part);
    }
    if (!ensureOwi(ctx, kBothParts) || !LoadSolverInputs(ctx, 0) || !LoadSolverInputs(ctx, 1)) {
        return false;
    }
    auto wait = ctx.ui.createWaitWindow(
        QStringLiteral("Programming Part#1 and Part#2 EEPROM...  Please Wait..."));
    // The slope form is used only when both parts describe their output that way.
    const bool onePoint = hasSlopeAndPointA(ctx, 0) && hasSlopeAndPointA(ctx, 1);
    const int count0 = solve(ctx, 0, onePoint);
    if (!validCount(count0)) {
        reportCount(ctx, false);
        return false;
    }
    const int count1 = solve(ctx, 1, onePoint);
    if (!ensureOwi(ctx, kBothParts) || !reportCount(ctx, validCount(count1))) {
        return false;
    }
    if (!configurePart(ctx, 0, QStringLiteral("Configuring Part#1 Solver...  Please Wait...")) ||
        !configurePart(ctx, 1, QStringLiteral("Configuring Part#2 Solver...  Please Wait..."))) {
        return false;
    }
    wait->show();
    ctx.ui.processEvents();
    return StoreInEEPROM(ctx, kBothParts);
}

bool PointProgramAction(WindowContext& ctx, std::int16_t part) {
    const bool bothParts = both(part);
    if (!ensureOwi(ctx, part)) {
        return false;
    }
    const auto parts = PartsOf(part);
    for (std::int16_t p : parts) {
        if (!LoadSolverInputsTwoPoints(ctx, p)) {
            return false;
        }
    }
    auto wait = ctx.ui.createWaitWindow(QStringLiteral("Configuring Solver...  Please Wait..."));
    wait->show();
    ctx.ui.processEvents();
    for (std::int16_t p : parts) {
        if (configsolver_2Points(ctx, p) != 2) {
            ctx.prompts.message(QStringLiteral("Error: Not 2 points Mode!"));
            return false;
        }
    }
    for (std::int16_t p : parts) {
        if (!writeBuffer(ctx, p)) {
            return false;
        }
    }
    wait->TextChange(QStringLiteral("Programming EEPROM...  Please Wait..."));
    bool failed = false;
    for (std::int16_t p : parts) {
        failed = !programEeprom(ctx, p) || failed;
    }
    if (failed) {
        ctx.prompts.message(QStringLiteral("Failed in programming device"));
    }
    Machine(ctx).ChipChangeToState(bothParts ? 2 : part, OwiMode, OwiMode);
    return !failed;
}

}  // namespace rk31
