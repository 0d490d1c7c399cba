#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace rk31 {

class MagnetFixture;
struct WindowContext;

// One reading of a part: the angle it senses (OWI mode) and its output (ADC mode), with the
// calls the windows make to read the angle and to measure the output.
struct OutputSample {
    float angle = 0;   // degrees
    float output = 0;  // %VDD
};

// Reads the part where the magnet is now. Nothing when the part does not reach a mode, with
// the windows' message shown; the chip's recorded state is what the device reached.
std::optional<OutputSample> SampleOutput(WindowContext& ctx, std::int16_t part);

// Turns the fixture to each angle in turn and reads the part there. Stops at the first angle the
// fixture cannot reach or the part cannot be read at (its message shown), or when `next`, told
// how many readings there are so far, answers false. The readings taken.
std::vector<OutputSample> SampleAtAngles(WindowContext& ctx, std::int16_t part,
                                         MagnetFixture& fixture, const std::vector<double>& angles,
                                         const std::function<bool(std::size_t)>& next = {});

}  // namespace rk31
