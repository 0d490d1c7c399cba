#include "solver/PointSolvers.h"

#include <utility>

#include "chipsession/WindowContext.h"
#include "core/ControlView.h"
#include "core/Prompts.h"
#include "core/Rounding.h"
#include "params/FieldValidation.h"
#include "programming/SolverInputs.h"
#include "shell/DeviceSession.h"

namespace rk31 {

namespace {

QString partNumber(int part) {
    return QString::number(part + 1);
}

void noted(WindowContext& ctx, int part, const QString& tail) {
    ctx.prompts.message(QStringLiteral("Please noted: Part#") + partNumber(part) + tail);
}

void swapPoints(SolverInputs& in, int i, int j) {
    std::swap(in.WorkAngle[i], in.WorkAngle[j]);
    std::swap(in.WorkLevel[i], in.WorkLevel[j]);
}

// The unused points repeat the last used angle with level 0.
void fillFrom(SolverInputs& in, int last) {
    for (int k = last + 1; k < 4; ++k) {
        in.WorkAngle[k] = in.WorkAngle[last];
        in.WorkLevel[k] = 0.0f;
    }
}

// Two points with the same rounded level give no line: Level B is emptied and re-checked.
bool refuseEqualLevels(WindowContext& ctx, std::int16_t part, int levelBoxB) {
    const auto& points = ctx.session.rounded.RoundedPoints[part];
    if (points[4] != points[5]) {
        return false;
    }
    noted(ctx, part,
          QStringLiteral("-Level#0 is the same as Part#") + partNumber(part) +
              QStringLiteral("-Level#1 !"));
    ctx.view.setText(ctl::Level, levelBoxB, QString());
    ValidateField(ctx, Field::Level, levelBoxB);
    return true;
}

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

int clockwiseBox(const WindowContext& ctx, std::int16_t part) {
    return ctx.family == WindowFamily::OnePartPoint ? -1 : part;
}

bool isClockwise(const WindowContext& ctx, std::int16_t part) {
    return ctx.view.value(ctl::clockwise, clockwiseBox(ctx, part)) == 1;
}

}  // namespace

bool HasEqualAngles(int n, const WindowContext& ctx, std::int16_t part) {
    if (n < 2 || n > 4) {
        return true;
    }
    const auto& points = ctx.session.rounded.RoundedPoints[part];
    for (int i = 0; i < n; ++i) {
        for (int j = i + 1; j < n; ++j) {
            if (points[i] == points[j]) {
                return true;
            }
        }
    }
    return false;
}

bool IsDescendingTriple(std::int16_t a0, std::int16_t a1, std::int16_t a2) {
    const int s = (a1 > a0 ? 1 : 0) + (a2 > a1 ? 1 : 0) + (a0 > a2 ? 1 : 0);
    return s < 2;
}

int configsolver_MultiPoints(WindowContext& ctx, std::int16_t part) {
    SolverInputs& in = ctx.inputs[part];
    auto& rounded = ctx.session.rounded;
    if (!IsAngleInRange(ctx, part, 0) || !IsAngleInRange(ctx, part, 1)) {
        ctx.prompts.message(QStringLiteral("Error Angles of Point A and Point B input"));
        return 0;
    }
    const bool c = IsAngleInRange(ctx, part, 2);
    const bool d = IsAngleInRange(ctx, part, 3);
    int count = 0;
    if (!c && !HasEqualAngles(2, ctx, part)) {
        count = 2;
    } else if (c && !d && !HasEqualAngles(3, ctx, part)) {
        count = 3;
    } else if (c && d && !HasEqualAngles(4, ctx, part)) {
        count = 4;
    } else {
        ctx.prompts.message(QStringLiteral(
            "Rules: Angles should be DIFFERENT in CCW/CW within [0.0, 360.0) to fill in!"));
        return 0;
    }
    for (int k = 0; k < count; ++k) {
        if (ctx.view.text(ctl::Level, part * 4 + k).isEmpty()) {
            noted(ctx, part, QStringLiteral("-Level#%1 is Empty!").arg(k));
            return 0;
        }
    }
    const auto& p = rounded.RoundedPoints[part];
    bool& reversed = rounded.PointsReversed[part];
    if (count == 4) {
        const bool adc = IsDescendingTriple(p[0], p[3], p[2]);
        const bool abc = IsDescendingTriple(p[0], p[1], p[2]);
        if (!adc && abc) {
            reversed = true;
        } else if (adc && !abc) {
            reversed = false;
        } else {
            ctx.prompts.message(QStringLiteral(
                "Error: The order of 4 Points angles is unable to be determined in-DrawMain!"));
            return 0;
        }
        if (reversed) {
            swapPoints(in, 0, 3);
            swapPoints(in, 1, 2);
        }
    } else if (count == 3) {
        reversed = IsDescendingTriple(p[0], p[1], p[2]);
        if (reversed) {
            swapPoints(in, 0, 2);
        }
        fillFrom(in, 2);
    } else {
        if (refuseEqualLevels(ctx, part, part * 4 + 1)) {
            return 0;
        }
        reversed = isClockwise(ctx, part);
        if (reversed) {
            swapPoints(in, 0, 1);
        }
        fillFrom(in, 1);
    }
    StoreInSolver(ctx, part);
    return count;
}

int configsolver_OnePointAndSlope(WindowContext& ctx, std::int16_t part) {
    if (ctx.view.text(ctl::Level, part * 4).isEmpty()) {
        noted(ctx, part, QStringLiteral("-Level#0 is Empty!"));
        return 0;
    }
    SolverInputs& in = ctx.inputs[part];
    auto& rounded = ctx.session.rounded;
    rounded.PointsReversed[part] = isClockwise(ctx, part);
    // Point B lies 10 degrees after A on the sloped line; no range check, A at 355 gives 365.
    in.WorkAngle[1] = static_cast<float>(static_cast<double>(in.WorkAngle[0]) + 10.0);
    in.WorkLevel[1] = static_cast<float>(static_cast<double>(in.WorkSlope) * 10.0 +
                                         static_cast<double>(in.WorkLevel[0]));
    if (rounded.PointsReversed[part]) {
        swapPoints(in, 0, 1);
    }
    fillFrom(in, 1);
    auto& points = rounded.RoundedPoints[part];
    for (int k = 0; k < 4; ++k) {
        points[k] = RoundToInt16(in.WorkAngle[k]);
        points[4 + k] = RoundToInt16(in.WorkLevel[k]);
    }
    StoreInSolver(ctx, part);
    return 2;
}

int configsolver(WindowContext& ctx, std::int16_t part) {
    if (IsAngleInRange(ctx, part, 0) && ctx.inputs[part].WorkSlope != EmptyValue) {
        return configsolver_OnePointAndSlope(ctx, part);
    }
    return configsolver_MultiPoints(ctx, part);
}

int configsolver_2Points(WindowContext& ctx, std::int16_t part) {
    SolverInputs& in = ctx.inputs[part];
    const auto& points = ctx.session.rounded.RoundedPoints[part];
    if (!IsAngleInRange(ctx, part, 0) || !IsAngleInRange(ctx, part, 1)) {
        ctx.prompts.message(QStringLiteral("Error Angles of Point A and Point B input"));
        return 0;
    }
    if (points[0] == points[1]) {
        ctx.prompts.message(QStringLiteral("Rules: Wrong in configure 2 points!"));
        return 0;
    }
    for (int k = 0; k < 2; ++k) {
        if (ctx.view.text(ctl::Level, levelBox(ctx, part, k)).isEmpty()) {
            noted(ctx, part, QStringLiteral("-Level#%1 is Empty!").arg(k));
            return 0;
        }
    }
    if (refuseEqualLevels(ctx, part, levelBox(ctx, part, 1))) {
        return 0;
    }
    ctx.session.rounded.PointsReversed[part] = isClockwise(ctx, part);
    if (ctx.session.rounded.PointsReversed[part]) {
        swapPoints(in, 0, 1);
    }
    StoreInSolver(ctx, part);
    return 2;
}

}  // namespace rk31
