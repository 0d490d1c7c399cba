#pragma once

#include <cstdint>

namespace rk31 {

struct WindowContext;

// Recomputes which controls of a two-part window the user may operate, from the connection,
// the chip state and the lock flag of each part, and rewrites the status line.
void UpdateControl(WindowContext& ctx);

// The PWM lists of a two-part window's part take part only when "PWM" is selected.
void OutModeSelected(WindowContext& ctx, std::int16_t part);

}  // namespace rk31
