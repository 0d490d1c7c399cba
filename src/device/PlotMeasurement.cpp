#include "device/PlotMeasurement.h"

#include "device/ChipStateMachine.h"
#include "device/DeviceSession.h"
#include "device/Measurement.h"
#include "device/ModeChange.h"
#include "device/UpdateControl.h"
#include "device/WindowContext.h"

namespace rk31 {

namespace {

AngleReading readingOf(const OutputSample& sample) {
    return {sample.angle, sample.output};
}

// Sampling leaves a part in ADC mode; the point windows' Set point commands read the angle
// without changing modes, and a part that was off is expected off.
void returnTo(WindowContext& ctx, std::int16_t part, std::int32_t before) {
    const auto now = ctx.session.ChipState[static_cast<std::size_t>(part)];
    if (now == before) {
        return;
    }
    if (before == PowerOff) {
        Machine(ctx).ChipChangeToState(part, now, PowerOff);
        if (ctx.isTwoPart()) {
            UpdateControl(ctx);
        }
    } else if (before == OwiMode) {
        ToOWIMode(ctx, part);
    }
}

}  // namespace

PartReadings ReadPartsHere(WindowContext& ctx, const std::vector<std::int16_t>& parts) {
    PartReadings readings;
    for (const std::int16_t part : parts) {
        const auto before = ctx.session.ChipState[static_cast<std::size_t>(part)];
        const auto sample = SampleOutput(ctx, part);
        returnTo(ctx, part, before);
        if (!sample) {
            break;
        }
        readings[static_cast<std::size_t>(part)].push_back(readingOf(*sample));
    }
    return readings;
}

PartReadings SweepParts(WindowContext& ctx, const std::vector<std::int16_t>& parts,
                        MagnetFixture& fixture, int step,
                        const std::function<bool(const SweepProgress&)>& next) {
    const std::vector<double> angles = SweepAngles(step);
    PartReadings readings;
    SweepProgress progress;
    progress.total = angles.size() * parts.size();
    bool stopped = false;
    for (const std::int16_t part : parts) {
        const auto before = ctx.session.ChipState[static_cast<std::size_t>(part)];
        const std::size_t start = progress.done;
        const auto samples = SampleAtAngles(ctx, part, fixture, angles, [&](std::size_t count) {
            progress.part = part;
            progress.done = start + count;
            progress.angle = angles[count];
            stopped = next && !next(progress);
            return !stopped;
        });
        returnTo(ctx, part, before);
        for (const OutputSample& sample : samples) {
            readings[static_cast<std::size_t>(part)].push_back(readingOf(sample));
        }
        if (stopped || samples.size() < angles.size()) {
            break;
        }
        progress.done = start + samples.size();
    }
    return readings;
}

}  // namespace rk31
