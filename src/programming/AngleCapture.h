#pragma once

#include <cstdint>

namespace rk31 {

struct WindowContext;

// Teaching by turning the target: each command brings the part (both parts in the one-supply
// window) to OWI mode and reads the sensed angle.
void ReadAngleCommand(WindowContext& ctx, std::int16_t part);
// Set point A..D: element i (0..7) fills Angle box i and validates it.
void SetPointCommand(WindowContext& ctx, int element);
// DP half a turn away from the sensed angle.
void GetDPMidPointCommand(WindowContext& ctx, std::int16_t part);

// The DP half a turn away from a sensed angle in [0, 360).
float MidPointOf(float angle);

}  // namespace rk31
