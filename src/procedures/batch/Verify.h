#pragma once

#include <cstdint>
#include <optional>

#include "domain/CurveTypes.h"

namespace rk31 {

struct WindowContext;

// One step of the 12-bit output DAC, in %VDD.
inline constexpr double kDacStep = 100.0 / 4095.0;

// What a programmed part puts out against what its settings describe.
struct VerifyReading {
    float angle = 0;       // sensed in OWI mode, degrees
    double expected = 0;   // the drawn curve at that angle, %VDD
    float measured = 0;    // the output in ADC mode, %VDD
    double tolerance = 0;  // how far measured may lie from expected
    bool passed = false;
};

// The points a part's curve is drawn with, from its rounded images (unused points are 500).
int CurvePointCount(const RoundedImages& rounded, std::int16_t part);

// Reads the sensed angle of the part in OWI mode, measures its output in ADC mode, and
// compares it with the curve the Linear Graph draws for the part's last programmed values.
// The curve is in whole degrees and whole %VDD, so the tolerance is one DAC step, half a
// percent, and the change of the curve over half a degree either side. Nothing when a step
// failed (its message shown); a reading that fails with a NaN expected level when the angle lies
// where no curve is drawn.
std::optional<VerifyReading> VerifyPart(WindowContext& ctx, std::int16_t part, int count);

}  // namespace rk31
