#include "device/ConfigSolvers.h"

#include "device/DeviceSession.h"
#include "device/FieldValidation.h"
#include "device/SolverInputs.h"
#include "device/WindowContext.h"
#include "domain/ControlView.h"
#include "domain/PointSolvers.h"
#include "domain/Prompts.h"
#include "domain/Validation.h"

namespace rk31 {

namespace {

// The Level box of point k of the part.
int levelBox(const WindowContext& ctx, std::int16_t part, int k) {
    return PointBoxIndex(ctx.family, part, k);
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

// Shows a refusal, or takes the ordered points as the part's working copy and rounded images.
int take(WindowContext& ctx, std::int16_t part, const SolvedPoints& solved) {
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
    return solved.count;
}

SolvedPoints solve(int part, const SolverPoints& points, SolverChoice choice) {
    switch (choice) {
        case SolverChoice::MultiPoints:
            return SolveMultiPoints(part, points);
        case SolverChoice::OnePointAndSlope:
            return SolveOnePointAndSlope(part, points);
        case SolverChoice::Chosen:
            return UsesOnePointAndSlope(points) ? SolveOnePointAndSlope(part, points)
                                                : SolveMultiPoints(part, points);
        case SolverChoice::TwoPoints:
            break;
    }
    return SolveTwoPoints(part, points);
}

int solveAndSend(WindowContext& ctx, std::int16_t part, SolverChoice choice) {
    const int count = SolvePart(ctx, part, choice);
    if (count != 0) {
        StoreInSolver(ctx, part);
    }
    return count;
}

}  // namespace

int SolvePart(WindowContext& ctx, std::int16_t part, SolverChoice choice) {
    return take(ctx, part, solve(part, pointsOf(ctx, part), choice));
}

bool UsesSlope(const WindowContext& ctx, std::int16_t part) {
    const SolverInputs& in = ctx.inputs[part];
    return IsAngleInRange(in.WorkAngle[0]) && in.WorkSlope != EmptyValue;
}

int configsolver_MultiPoints(WindowContext& ctx, std::int16_t part) {
    return solveAndSend(ctx, part, SolverChoice::MultiPoints);
}

int configsolver_OnePointAndSlope(WindowContext& ctx, std::int16_t part) {
    return solveAndSend(ctx, part, SolverChoice::OnePointAndSlope);
}

int configsolver(WindowContext& ctx, std::int16_t part) {
    return solveAndSend(ctx, part, SolverChoice::Chosen);
}

int configsolver_2Points(WindowContext& ctx, std::int16_t part) {
    return solveAndSend(ctx, part, SolverChoice::TwoPoints);
}

}  // namespace rk31
