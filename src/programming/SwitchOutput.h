#pragma once

#include <cstdint>

namespace rk31 {

struct WindowContext;

// hysup (+1) / hysdown (-1) of the part's HYS box.
void HysStep(WindowContext& ctx, std::int16_t part, int direction);
// "Set Op": the sensed angle becomes the operate point.
void SetOpCommand(WindowContext& ctx, std::int16_t part);
// The PWM lists take part only when "PWM" is selected.
void OutModeSelected(WindowContext& ctx, std::int16_t part);

}  // namespace rk31
