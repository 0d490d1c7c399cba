#pragma once

#include <cstdint>

namespace rk31 {

// Real to integer conversions round to nearest with halves to the even neighbour
// (2.5 -> 2, 3.5 -> 4). Values beyond the integer's range saturate instead of failing, so a
// very flat line's clamp crossing still yields a usable, if extreme, angle.
std::int16_t RoundToInt16(double value);
std::int32_t RoundToInt32(double value);

}  // namespace rk31
