#include "device/Measurement.h"

#include "device/DeviceSession.h"
#include "device/ModeChange.h"
#include "device/WindowContext.h"
#include "domain/Messages.h"
#include "domain/Prompts.h"
#include "rk31/Station.h"

namespace rk31 {

std::optional<OutputSample> SampleOutput(WindowContext& ctx, std::int16_t part) {
    const auto p = static_cast<std::size_t>(part);
    ToOWIMode(ctx, part);
    if (ctx.session.ChipState[p] != OwiMode) {
        ctx.prompts.message(kNotInOwiModeText);
        return std::nullopt;
    }
    OutputSample sample;
    ctx.session.device().ReadAngle(part, sample.angle);
    ToADCMode(ctx, part);
    if (ctx.session.ChipState[p] != AdcMode) {
        ctx.prompts.message(kNotInAdcModeText);
        return std::nullopt;
    }
    ctx.session.device().MeasureOutput(part, 1, sample.output);
    return sample;
}

std::vector<OutputSample> SampleAtAngles(WindowContext& ctx, std::int16_t part,
                                         MagnetFixture& fixture, const std::vector<double>& angles,
                                         const std::function<bool(std::size_t)>& next) {
    std::vector<OutputSample> samples;
    for (const double angle : angles) {
        if (next && !next(samples.size())) {
            break;
        }
        if (!fixture.turnTo(angle)) {
            ctx.prompts.message(FixtureCannotReachText(angle));
            break;
        }
        const auto sample = SampleOutput(ctx, part);
        if (!sample) {
            break;
        }
        samples.push_back(*sample);
    }
    return samples;
}

}  // namespace rk31
