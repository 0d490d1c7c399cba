#include "device/SolverInputs.h"

#include <utility>
#include <vector>

#include "device/DeviceSession.h"
#include "device/WindowContext.h"
#include "domain/ControlView.h"
#include "domain/Messages.h"
#include "domain/PointSolvers.h"
#include "domain/Prompts.h"
#include "domain/Rounding.h"
#include "domain/Validation.h"

namespace rk31 {

namespace {

// The one-part point windows keep one set of values for whichever part PartSel names.
const PartParameters& paramsOf(const WindowContext& ctx, int part) {
    return ctx.family == WindowFamily::OnePartPoint ? ctx.params[0] : ctx.params[part];
}

bool clampsInOrder(WindowContext& ctx, const PartParameters& params) {
    if (params.ClampHigh > params.ClampLow) {
        return true;
    }
    ctx.prompts.message(ClampOrderText);
    return false;
}

void loadPoint(WindowContext& ctx, std::int16_t part, int k) {
    const PartParameters& params = paramsOf(ctx, part);
    SolverInputs& in = ctx.inputs[part];
    auto& points = ctx.session.rounded.RoundedPoints[part];
    in.WorkAngle[k] = params.Angle[k];
    points[k] = RoundToInt16(in.WorkAngle[k]);
    in.WorkLevel[k] = params.Level[k];
    points[4 + k] = RoundToInt16(in.WorkLevel[k]);
}

void loadClampsAndDP(WindowContext& ctx, std::int16_t part) {
    const PartParameters& params = paramsOf(ctx, part);
    auto& rounded = ctx.session.rounded;
    rounded.RoundedDP[part] = RoundToInt16(params.DP);
    rounded.RoundedClampHigh[part] = RoundToInt16(params.ClampHigh);
    rounded.RoundedClampLow[part] = RoundToInt16(params.ClampLow);
}

// The memory-access object, or nothing with the message when no programmer is connected.
std::shared_ptr<MemoryAccess> memoryAccess(WindowContext& ctx) {
    if (!ctx.session.hasDevice()) {
        ctx.prompts.message(kStoreNotConnectedText);
        return nullptr;
    }
    return ctx.session.memoryAccess();
}

std::int16_t modeValue(const WindowContext& ctx, std::int16_t part) {
    if (!ctx.isTwoPart()) {
        return 1;
    }
    return ctx.view.listIndex(ctl::OutMode, part) == 0 ? 1 : 0;
}

void send(MemoryAccess& memory, std::int16_t part, std::int16_t mode,
          const std::vector<std::pair<std::int16_t, SolverValue>>& values) {
    for (const auto& [id, value] : values) {
        std::int32_t failed = 0;
        memory.SetSolverParameter(part, id, value, mode, failed);
    }
}

}  // namespace

bool LoadSolverInputs(WindowContext& ctx, std::int16_t part) {
    const PartParameters& params = paramsOf(ctx, part);
    if (!clampsInOrder(ctx, params)) {
        return false;
    }
    for (int k = 0; k < 4; ++k) {
        loadPoint(ctx, part, k);
    }
    loadClampsAndDP(ctx, part);
    SolverInputs& in = ctx.inputs[part];
    in.WorkSlope = params.Slope;
    in.WorkOP = TextToValue(ctx.view.text(ctl::op, part), ctx.prompts);
    in.WorkHYS = TextToValue(ctx.view.text(ctl::hys, part), ctx.prompts);
    in.WorkPolarity = static_cast<float>(ctx.view.value(ctl::Kpolarity, part));
    return true;
}

bool LoadSolverInputsTwoPoints(WindowContext& ctx, std::int16_t part) {
    if (!clampsInOrder(ctx, paramsOf(ctx, part))) {
        return false;
    }
    loadPoint(ctx, part, 0);
    loadPoint(ctx, part, 1);
    loadClampsAndDP(ctx, part);
    return true;
}

void StoreInSolver(WindowContext& ctx, std::int16_t part) {
    const auto memory = memoryAccess(ctx);
    if (!memory) {
        return;
    }
    const PartParameters& params = paramsOf(ctx, part);
    const SolverInputs& in = ctx.inputs[part];
    std::vector<std::pair<std::int16_t, SolverValue>> values = {
        {1, params.ClampLow},  {2, params.ClampHigh}, {3, params.DP},        {4, in.WorkLevel[0]},
        {8, in.WorkAngle[0]},  {5, in.WorkLevel[1]},  {9, in.WorkAngle[1]},  {6, in.WorkLevel[2]},
        {10, in.WorkAngle[2]}, {7, in.WorkLevel[3]},  {11, in.WorkAngle[3]},
    };
    if (!ctx.isTwoPart()) {
        // Two taught points: C and D repeat B's angle, their levels go as integer zeros.
        values[7].second = std::int16_t{0};
        values[8].second = in.WorkAngle[1];
        values[9].second = std::int16_t{0};
        values[10].second = in.WorkAngle[1];
    }
    send(*memory, part, modeValue(ctx, part), values);
}

void StoreSwitchOutput(WindowContext& ctx, std::int16_t part) {
    const auto memory = memoryAccess(ctx);
    if (!memory) {
        return;
    }
    const SolverInputs& in = ctx.inputs[part];
    send(*memory, part, modeValue(ctx, part),
         {{12, in.WorkOP}, {13, in.WorkHYS}, {14, RoundToInt32(in.WorkPolarity)}});
}

}  // namespace rk31
