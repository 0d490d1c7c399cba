#pragma once

#include <optional>
#include <vector>

#include "domain/CurveTypes.h"

namespace rk31 {

// Holding a chip's measured output against the curve the Linear Graph draws for it.

// One step of the 12-bit output DAC, in %VDD.
inline constexpr double kDacStep = 100.0 / 4095.0;
// What a blank chip puts out whatever the magnet does: the clamp low it leaves the wafer with.
inline constexpr double kBlankChipLevel = 5.0;

// A measured output against the drawn curve at the angle the part sensed.
struct CurveComparison {
    double expected = 0;   // the drawn curve, %VDD
    double tolerance = 0;  // how far the measurement may lie from it
    bool passed = false;
    // A blank chip's output would pass here too, so the reading proves nothing about the
    // programming.
    bool blankWouldPass = false;
};

// The curve is in whole degrees and whole %VDD, so the tolerance is one DAC step, half a
// percent, and the change of the curve over half a degree either side. A sensed 359.8 degrees is
// read as the curve's 360, and 0.2 as its 0. An output out of the measurable range never passes.
// Nothing where no curve is drawn.
std::optional<CurveComparison> CompareWithCurve(const CurveRows& rows, double angle,
                                                double measured);

// Angles at which a part's output proves its curve: each point, both sides of DP, inside each
// clamp region and the middle of each segment, never on the jump itself; at least eight where a
// curve is drawn, ascending in [0, 360). Nothing for a part without a curve.
std::vector<double> ProvingAngles(const CurveRows& rows);

// Where a measurement lies furthest from the curve.
struct Deviation {
    double angle = 0;
    double measured = 0;
    double expected = 0;
    bool passed = true;  // every measurement within its tolerance
};
struct AngleReading {
    double angle = 0;     // sensed
    double measured = 0;  // %VDD
};
// The reading of `readings` that lies furthest from the curve for what its tolerance allows,
// among those where a curve is drawn; nothing when there is none. Beside the jump at DP the
// tolerance spans both of its ends, so a reading of either end is no deviation, however far it
// lies from the level drawn at that angle.
std::optional<Deviation> LargestDeviation(const CurveRows& rows,
                                          const std::vector<AngleReading>& readings);

}  // namespace rk31
