#include "procedures/twopart/WindowCommands.h"

#include "device/ChipOperations.h"
#include "device/ConfigSolvers.h"
#include "device/DeviceSession.h"
#include "device/ModeChange.h"
#include "device/SolverInputs.h"
#include "device/WindowContext.h"
#include "domain/Messages.h"
#include "domain/Prompts.h"

namespace rk31 {

namespace {

// The point count of the part's solved inputs, 0 when loading or solving refused.
int solvedCount(WindowContext& ctx, std::int16_t part) {
    return LoadSolverInputs(ctx, part) ? configsolver(ctx, part) : 0;
}

}  // namespace

void AdvancedCommand(WindowContext& ctx, std::int16_t part) {
    if (!ReachOWIMode(ctx, CommandTarget(ctx, part))) {
        ctx.prompts.message(kNotInOwiModeBangText);
        return;
    }
    if (ctx.oneSupply()) {
        ctx.ui.showAdvanced(0, 2);
    } else {
        ctx.ui.showAdvanced(part, 1);
    }
}

void LinearGraphCommand(WindowContext& ctx, std::int16_t part) {
    if (ctx.session.ProgrammerConnected == 0) {
        ctx.prompts.message(kOfflineText);
        return;
    }
    if (!ctx.oneSupply()) {
        const int count = solvedCount(ctx, part);
        if (IsValidCount(count)) {
            ctx.ui.showLinearGraph(part, static_cast<std::int16_t>(count), 0, 0);
        }
        return;
    }
    const int first = solvedCount(ctx, 0);
    if (!IsValidCount(first)) {
        return;
    }
    const int second = solvedCount(ctx, 1);
    if (IsValidCount(second)) {
        ctx.ui.showLinearGraph(0, static_cast<std::int16_t>(first), 1,
                               static_cast<std::int16_t>(second));
    }
}

void ViewOutputCommand(WindowContext& ctx, std::int16_t part) {
    const auto& state = ctx.session.ChipState;
    if (ctx.oneSupply()) {
        ToADCMode(ctx, 1);
        ToADCMode(ctx, 0);
        if (state[0] != AdcMode || state[1] != AdcMode) {
            ctx.prompts.message(kNotInAdcModeText);
            return;
        }
        ctx.ui.showRealTimeDisplay(0, 2);
        return;
    }
    ToADCMode(ctx, part);
    if (state[part] != AdcMode) {
        ctx.prompts.message(kNotInAdcModeText);
        return;
    }
    ctx.ui.showRealTimeDisplay(part, 1);
}

}  // namespace rk31
