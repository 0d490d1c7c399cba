#include "programming/ConfigSolvers.h"

#include "context/ControlView.h"
#include "context/WindowContext.h"
#include "core/Prompts.h"
#include "params/FieldValidation.h"
#include "programming/SolverInputs.h"
#include "shell/DeviceSession.h"
#include "solver/PointSolvers.h"

namespace rk31 {

namespace {

// The Level box of point k of the part.
int levelBox(const WindowContext& ctx, std::int16_t part, int k) {
    switch (ctx.family) {
        case WindowFamily::OnePartPoint:
            return k;
        case WindowFamily::DualPoint:
            return part * 2 + k;
        default:
            return part * 4 + k;
    }
}

SolverPoints pointsOf(const WindowContext& ctx, std::int16_t part) {
    const SolverInputs& in = ctx.inputs[part];
    SolverPoints points;
    points.angle = in.WorkAngle;
    points.level = in.WorkLevel;
    points.slope = in.WorkSlope;
    points.rounded = ctx.session.rounded.RoundedPoints[part];
    // The point windows have boxes for points A and B only.
    const int boxes = ctx.isTwoPart() ? 4 : 2;
    for (int k = 0; k < boxes; ++k) {
        points.levelGiven[k] = !ctx.view.text(ctl::Level, levelBox(ctx, part, k)).isEmpty();
    }
    const int clockwiseBox = ctx.family == WindowFamily::OnePartPoint ? -1 : part;
    points.clockwise = ctx.view.value(ctl::clockwise, clockwiseBox) == 1;
    return points;
}

// Shows a refusal, or takes the ordered points as the part's working copy and sends them.
int send(WindowContext& ctx, std::int16_t part, const SolvedPoints& solved) {
    if (solved.count == 0) {
        ctx.prompts.message(solved.message);
        if (solved.emptyLevelB) {
            const int box = levelBox(ctx, part, 1);
            ctx.view.setText(ctl::Level, box, QString());
            ValidateField(ctx, Field::Level, box);
        }
        return 0;
    }
    SolverInputs& in = ctx.inputs[part];
    in.WorkAngle = solved.angle;
    in.WorkLevel = solved.level;
    RoundedImages& rounded = ctx.session.rounded;
    rounded.RoundedPoints[part] = solved.rounded;
    rounded.PointsReversed[part] = solved.reversed;
    StoreInSolver(ctx, part);
    return solved.count;
}

}  // namespace

int configsolver_MultiPoints(WindowContext& ctx, std::int16_t part) {
    return send(ctx, part, SolveMultiPoints(part, pointsOf(ctx, part)));
}

int configsolver_OnePointAndSlope(WindowContext& ctx, std::int16_t part) {
    return send(ctx, part, SolveOnePointAndSlope(part, pointsOf(ctx, part)));
}

int configsolver(WindowContext& ctx, std::int16_t part) {
    const SolverPoints points = pointsOf(ctx, part);
    return send(ctx, part,
                UsesOnePointAndSlope(points) ? SolveOnePointAndSlope(part, points)
                                             : SolveMultiPoints(part, points));
}

int configsolver_2Points(WindowContext& ctx, std::int16_t part) {
    return send(ctx, part, SolveTwoPoints(part, pointsOf(ctx, part)));
}

}  // namespace rk31
