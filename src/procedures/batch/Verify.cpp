#include "procedures/batch/Verify.h"

#include <QString>
#include <algorithm>
#include <cmath>

#include "device/DeviceSession.h"
#include "device/ModeChange.h"
#include "domain/Messages.h"
#include "device/WindowContext.h"
#include "domain/Prompts.h"
#include "domain/Curve.h"

namespace rk31 {

int CurvePointCount(const RoundedImages& rounded, std::int16_t part) {
    const auto& images = rounded.RoundedPoints.at(static_cast<std::size_t>(part));
    const auto used = std::count_if(images.begin(), images.begin() + 4,
                                    [](std::int16_t angle) { return angle != 500; });
    return std::max(2, static_cast<int>(used));
}

std::optional<VerifyReading> VerifyPart(WindowContext& ctx, std::int16_t part, int count) {
    const auto p = static_cast<std::size_t>(part);
    ToOWIMode(ctx, part);
    if (ctx.session.ChipState[p] != OwiMode) {
        ctx.prompts.message(kNotInOwiModeText);
        return std::nullopt;
    }
    VerifyReading reading;
    ctx.session.device().ReadAngle(part, reading.angle);
    ToADCMode(ctx, part);
    if (ctx.session.ChipState[p] != AdcMode) {
        ctx.prompts.message(kNotInAdcModeText);
        return std::nullopt;
    }
    ctx.session.device().MeasureOutput(part, 1, reading.measured);

    CurveTables curves{};
    ShowMessages(ctx.prompts, CalLinearGraph(part, static_cast<std::int16_t>(count), 0, 0,
                                             ctx.session.rounded, curves));
    const CurveRows& rows = curves[p];
    // The curve's angle seam: a sensed 359.8 degrees is read as the curve's 360.
    const double angle = reading.angle;
    const auto at = [&rows](double a) {
        auto level = CurveLevelAt(rows, a);
        if (!level && a > 359.0) {
            level = CurveLevelAt(rows, a - 360.0);
        }
        if (!level && a < 1.0) {
            level = CurveLevelAt(rows, a + 360.0);
        }
        return level;
    };
    const auto expected = at(angle);
    if (!expected) {
        reading.expected = std::nan("");
        return reading;
    }
    double spread = 0;
    for (const double d : {-0.5, 0.5}) {
        if (const auto near = at(angle + d)) {
            spread = std::max(spread, std::abs(*near - *expected));
        }
    }
    reading.expected = *expected;
    reading.tolerance = kDacStep + 0.5 + spread;
    reading.passed = reading.measured >= 0 && reading.measured < 101 &&
                     std::abs(reading.measured - reading.expected) <= reading.tolerance;
    return reading;
}

}  // namespace rk31
