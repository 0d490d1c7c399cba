#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "domain/CurveMeasurements.h"

namespace rk31 {

class MagnetFixture;
struct WindowContext;

// Measuring the parts a plot shows with the calls the windows make to read the angle and the
// output. A part found without supply or in OWI mode is returned there afterwards, so that a
// measurement never changes what the window expects of the chip; one found in ADC mode stays
// there. A DeviceError passes on, with the chip's record where the device calls left it.

// Reads each of `parts` where the magnet stands now. Stops at the first part that cannot be
// read, its message shown; the readings taken.
PartReadings ReadPartsHere(WindowContext& ctx, const std::vector<std::int16_t>& parts);

// Where a sweep is: about to read `part` at `angle`, `done` of `total` readings taken.
struct SweepProgress {
    std::int16_t part = 0;
    double angle = 0;
    std::size_t done = 0;
    std::size_t total = 0;
};

// Turns the fixture through SweepAngles(step) for each of `parts` in turn and reads the part at
// each angle. Stops at the first angle the fixture cannot reach or a part cannot be read at (its
// message shown), or when `next` answers false. The readings taken, per part.
PartReadings SweepParts(WindowContext& ctx, const std::vector<std::int16_t>& parts,
                        MagnetFixture& fixture, int step,
                        const std::function<bool(const SweepProgress&)>& next = {});

}  // namespace rk31
