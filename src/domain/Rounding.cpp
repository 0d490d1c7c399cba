#include "domain/Rounding.h"

#include <cmath>
#include <limits>

namespace rk31 {

namespace {

template <typename Int>
Int roundSaturating(double value) {
    if (std::isnan(value)) {
        return 0;
    }
    // std::nearbyint uses the default rounding mode, which is round-half-to-even.
    const double r = std::nearbyint(value);
    if (r <= static_cast<double>(std::numeric_limits<Int>::min())) {
        return std::numeric_limits<Int>::min();
    }
    if (r >= static_cast<double>(std::numeric_limits<Int>::max())) {
        return std::numeric_limits<Int>::max();
    }
    return static_cast<Int>(r);
}

}  // namespace

std::int16_t RoundToInt16(double value) {
    return roundSaturating<std::int16_t>(value);
}

std::int32_t RoundToInt32(double value) {
    return roundSaturating<std::int32_t>(value);
}

}  // namespace rk31
