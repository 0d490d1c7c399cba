#include "procedures/twopart/ProgramAction.h"

#include "device/ChipOperations.h"
#include "device/ConfigSolvers.h"
#include "device/ModeChange.h"
#include "device/SolverInputs.h"
#include "device/WindowContext.h"
#include "domain/Messages.h"

namespace rk31 {

namespace {

int solve(WindowContext& ctx, std::int16_t part, bool onePointAndSlope) {
    return onePointAndSlope ? configsolver_OnePointAndSlope(ctx, part)
                            : configsolver_MultiPoints(ctx, part);
}

}  // namespace

bool ProgramAction(WindowContext& ctx, std::int16_t part) {
    if (part != kBothParts) {
        if (!EnsureOwiMode(ctx, part) || !LoadSolverInputs(ctx, part)) {
            return false;
        }
        auto wait = ctx.ui.createWaitWindow(kProgrammingEepromWait);
        const int count = solve(ctx, part, UsesSlope(ctx, part));
        if (!ConfigureSolver(ctx, part, count)) {
            return false;
        }
        wait->show();
        ctx.ui.processEvents();
        return StoreInEEPROM(ctx, part);
    }
    if (!EnsureOwiMode(ctx, kBothParts) || !LoadSolverInputs(ctx, 0) || !LoadSolverInputs(ctx, 1)) {
        return false;
    }
    auto wait = ctx.ui.createWaitWindow(
        QStringLiteral("Programming Part#1 and Part#2 EEPROM...  Please Wait..."));
    // The slope form is used only when both parts describe their output that way.
    const bool onePoint = UsesSlope(ctx, 0) && UsesSlope(ctx, 1);
    if (!CheckCount(ctx, solve(ctx, 0, onePoint))) {
        return false;
    }
    const int count1 = solve(ctx, 1, onePoint);
    if (!EnsureOwiMode(ctx, kBothParts) || !CheckCount(ctx, count1)) {
        return false;
    }
    if (!ConfigurePart(ctx, 0, QStringLiteral("Configuring Part#1 Solver...  Please Wait...")) ||
        !ConfigurePart(ctx, 1, QStringLiteral("Configuring Part#2 Solver...  Please Wait..."))) {
        return false;
    }
    wait->show();
    ctx.ui.processEvents();
    return StoreInEEPROM(ctx, kBothParts);
}

}  // namespace rk31
