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
// "Set Op": the sensed angle becomes the operate point.
void SetOpCommand(WindowContext& ctx, std::int16_t part);

// hysup (+1) / hysdown (-1) of the part's HYS box.
void HysStep(WindowContext& ctx, std::int16_t part, int direction);

}  // namespace rk31
