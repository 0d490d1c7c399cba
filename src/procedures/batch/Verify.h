#pragma once

#include <QString>
#include <cstdint>
#include <vector>

#include "domain/CurveTypes.h"

namespace rk31 {

class MagnetFixture;
struct WindowContext;

// One angle of a verify: what the part put out against what its settings describe.
struct VerifyReading {
    double angle = 0;      // sensed in OWI mode, degrees
    double expected = 0;   // the drawn curve there, %VDD; NaN where no curve is drawn
    double measured = 0;   // the output in ADC mode, %VDD
    double tolerance = 0;  // how far measured may lie from expected
    bool passed = false;
    bool blankWouldPass = false;  // a blank chip's output would pass here too
};

struct VerifyResult {
    std::vector<VerifyReading> readings;
    bool complete = false;  // every angle was read (a failed step shows its message)
    bool passed() const;
    // Every reading would pass on a blank chip as well: the verify proves nothing.
    bool blankWouldPass() const;
    // Why it failed, in words: the first angle off the curve.
    QString cause() const;
};

// The points a part's curve is drawn with, from its rounded images (unused points are 500).
int CurvePointCount(const RoundedImages& rounded, std::int16_t part);

// Holds the output of a programmed part against the curve the Linear Graph draws for its last
// programmed values. With a fixture the magnet is turned through the angles that prove the
// curve; without one the part is read where the magnet is.
VerifyResult VerifyPart(WindowContext& ctx, std::int16_t part, int count, MagnetFixture* fixture);

// "at 150.00 deg expected 67.78 %VDD, measured 5.01 %VDD (tolerance 0.75)"
QString ReadingText(const VerifyReading& reading);

}  // namespace rk31
