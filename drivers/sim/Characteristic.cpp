#include "sim/Characteristic.h"

#include <algorithm>
#include <cmath>

namespace rk31::sim {

double FiniteAngle(double degrees) {
    return std::isfinite(degrees) ? degrees : 0.0;
}

double Wrap360(double degrees) {
    double w = std::fmod(degrees, 360.0);
    if (w < 0) {
        w += 360.0;
    }
    // A tiny negative input wraps to 360.0 in floating point.
    return w >= 360.0 ? 0.0 : w;
}

int DacCode(double percent) {
    // A DAC saturates at both ends; a value that is no number at all drives it to zero.
    if (std::isnan(percent)) {
        return 0;
    }
    const double code = std::nearbyint(std::clamp(percent, 0.0, 100.0) / 100.0 * 4095.0);
    return static_cast<int>(std::clamp(code, 0.0, 4095.0));
}

double Saturate(double percent) {
    return std::isnan(percent) ? 0.0 : std::clamp(percent, 0.0, 100.0);
}

double Quantise(double percent) {
    return DacCode(percent) / 4095.0 * 100.0;
}

Characteristic Characteristic::FromBuffer(const std::map<int, double>& buffer) {
    Characteristic c;
    const auto take = [&buffer](int id, double& field) {
        const auto it = buffer.find(id);
        if (it != buffer.end()) {
            field = it->second;
        }
    };
    take(1, c.clampLow);
    take(2, c.clampHigh);
    take(3, c.dp);
    for (int k = 0; k < 4; ++k) {
        take(4 + k, c.level[k]);
        take(8 + k, c.angle[k]);
    }
    take(12, c.op);
    take(13, c.hys);
    double polarity = 0;
    take(14, polarity);
    c.polarity = polarity != 0 ? 1 : 0;
    c.blank = !buffer.contains(8);
    // Registers hold DAC codes and angle codes: a level or clamp beyond what the DAC can put out
    // saturates, and an angle that is no finite number reads as 0, so that the output path
    // never meets a value it cannot convert.
    c.clampLow = Saturate(c.clampLow);
    c.clampHigh = Saturate(c.clampHigh);
    for (int k = 0; k < 4; ++k) {
        c.level[k] = Saturate(c.level[k]);
        c.angle[k] = FiniteAngle(c.angle[k]);
    }
    c.dp = FiniteAngle(c.dp);
    c.op = FiniteAngle(c.op);
    c.hys = FiniteAngle(c.hys);
    return c;
}

double Characteristic::Level(double magnetDegrees) const {
    if (blank) {
        return clampLow;
    }
    // Positions along the curve, measured from DP where the output jumps. Each used point lies
    // further round the circle than the one before it; a point that repeats the previous angle
    // is not in use, and neither is any point after it.
    std::array<double, 4> u{};
    u[0] = Wrap360(angle[0] - dp);
    int used = 1;
    while (used < 4) {
        const double step = Wrap360(angle[used] - angle[used - 1]);
        if (step == 0) {
            break;
        }
        u[used] = u[used - 1] + step;
        ++used;
    }

    double out = level[0];
    if (used > 1) {
        const double x = Wrap360(magnetDegrees - dp);
        // Before the first point and past the last one the end segments' lines go on.
        int k = 0;
        while (k < used - 2 && x >= u[k + 1]) {
            ++k;
        }
        out = level[k] + (x - u[k]) * (level[k + 1] - level[k]) / (u[k + 1] - u[k]);
    }
    return clampLow <= clampHigh ? std::clamp(out, clampLow, clampHigh) : clampLow;
}

}  // namespace rk31::sim
