#include "domain/CurveCheck.h"

#include <algorithm>
#include <cmath>

#include "domain/Curve.h"

namespace rk31 {

namespace {

// The fewest angles a verify turns the magnet through.
constexpr std::size_t kFewestAngles = 8;
// How far beside DP both sides of the jump are tried, and how close to it no angle is taken
// (a sensor at the jump may read either side).
constexpr double kBesideDp = 3.0;
constexpr double kClearOfDp = 1.0;
// Angles closer than this count as one.
constexpr double kSameAngle = 0.5;

struct Segment {
    double a0, l0, a1, l1;
};

std::vector<Segment> segmentsOf(const CurveRows& rows) {
    std::vector<Segment> segments;
    for (std::size_t k = 0; k < 20; ++k) {
        const auto& a = rows[2 * k];
        const auto& b = rows[2 * k + 1];
        if (a[0] == 0 && a[1] == 0 && b[0] == 0 && b[1] == 0) {
            break;
        }
        segments.push_back({static_cast<double>(a[0]), static_cast<double>(a[1]),
                            static_cast<double>(b[0]), static_cast<double>(b[1])});
    }
    return segments;
}

double wrap(double degrees) {
    const double w = std::fmod(degrees, 360.0);
    return w < 0 ? w + 360.0 : w;
}

// The level at an angle, across the 0/360 seam.
std::optional<double> levelAt(const CurveRows& rows, double angle) {
    auto level = CurveLevelAt(rows, angle);
    if (!level && angle > 359.0) {
        level = CurveLevelAt(rows, angle - 360.0);
    }
    if (!level && angle < 1.0) {
        level = CurveLevelAt(rows, angle + 360.0);
    }
    return level;
}

double circularDistance(double a, double b) {
    const double d = std::abs(wrap(a) - wrap(b));
    return std::min(d, 360.0 - d);
}

}  // namespace

std::optional<CurveComparison> CompareWithCurve(const CurveRows& rows, double angle,
                                                double measured) {
    const auto expected = levelAt(rows, angle);
    if (!expected) {
        return std::nullopt;
    }
    double spread = 0;
    for (const double d : {-0.5, 0.5}) {
        if (const auto near = levelAt(rows, angle + d)) {
            spread = std::max(spread, std::abs(*near - *expected));
        }
    }
    CurveComparison c;
    c.expected = *expected;
    c.tolerance = kDacStep + 0.5 + spread;
    c.passed = measured >= 0 && measured < 101 && std::abs(measured - c.expected) <= c.tolerance;
    c.blankWouldPass = std::abs(kBlankChipLevel - c.expected) <= c.tolerance;
    return c;
}

std::vector<double> ProvingAngles(const CurveRows& rows) {
    const std::vector<Segment> segments = segmentsOf(rows);
    std::vector<double> jumps;
    for (const Segment& s : segments) {
        if (s.a0 == s.a1) {
            jumps.push_back(wrap(s.a0));
        }
    }
    const auto clearOfJumps = [&jumps](double angle) {
        return std::none_of(jumps.begin(), jumps.end(), [angle](double dp) {
            return circularDistance(angle, dp) < kClearOfDp;
        });
    };
    std::vector<double> angles;
    const auto take = [&](double angle) {
        angle = wrap(angle);
        if (clearOfJumps(angle) && levelAt(rows, angle)) {
            angles.push_back(angle);
        }
    };
    for (const double dp : jumps) {
        take(dp - kBesideDp);
        take(dp + kBesideDp);
    }
    for (const Segment& s : segments) {
        if (s.a0 == s.a1) {
            continue;
        }
        take((s.a0 + s.a1) / 2);
        // The ends at the seam are where the drawing is cut, not points of the curve.
        for (const double end : {s.a0, s.a1}) {
            if (end != 0 && end != 360) {
                take(end);
            }
        }
    }
    std::sort(angles.begin(), angles.end());
    angles.erase(std::unique(angles.begin(), angles.end(),
                             [](double a, double b) { return b - a < kSameAngle; }),
                 angles.end());
    // Too few for a short curve: halve the widest gaps between neighbours on the curve.
    while (!angles.empty() && angles.size() < kFewestAngles) {
        double widest = 0;
        double middle = -1;
        for (std::size_t i = 0; i < angles.size(); ++i) {
            const double from = angles[i];
            const double to = i + 1 < angles.size() ? angles[i + 1] : angles.front() + 360.0;
            const double candidate = wrap((from + to) / 2);
            if (to - from > widest && to - from >= 2 * kSameAngle && clearOfJumps(candidate) &&
                levelAt(rows, candidate)) {
                widest = to - from;
                middle = candidate;
            }
        }
        if (middle < 0) {
            break;
        }
        angles.insert(std::upper_bound(angles.begin(), angles.end(), middle), middle);
    }
    return angles;
}

std::optional<Deviation> LargestDeviation(const CurveRows& rows,
                                          const std::vector<AngleReading>& readings) {
    std::optional<Deviation> largest;
    double largestExcess = 0;  // beyond the tolerance; below 0 within it
    bool passed = true;
    for (const AngleReading& r : readings) {
        const auto c = CompareWithCurve(rows, r.angle, r.measured);
        if (!c) {
            continue;
        }
        passed = passed && c->passed;
        const double excess = std::abs(r.measured - c->expected) - c->tolerance;
        if (!largest || excess > largestExcess) {
            largest = Deviation{r.angle, r.measured, c->expected, true};
            largestExcess = excess;
        }
    }
    if (largest) {
        largest->passed = passed;
    }
    return largest;
}

}  // namespace rk31
