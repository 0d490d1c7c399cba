#pragma once

#include <cstdint>

namespace rk31 {

struct WindowContext;

// The windows' guarded steps around ChipChangeToState: each shows its transition text, makes
// the change and refreshes the controls. A part that cannot enter OWI mode because its
// communication is locked is reported and returned to ADC mode at once.
void ToADCMode(WindowContext& ctx, std::int16_t part);
void ToOWIMode(WindowContext& ctx, std::int16_t part);
void ToOWIModeBothParts(WindowContext& ctx);
// Brings the part (kBothParts: both parts together) to OWI mode and tells whether it is there.
bool ReachOWIMode(WindowContext& ctx, std::int16_t part);
// The part a session command acts on: both parts in the one-supply window.
std::int16_t CommandTarget(const WindowContext& ctx, std::int16_t part);
// Brings the part (kBothParts: both parts) to OWI mode; false, with "Error: Not in OWI mode",
// when it is not there.
bool EnsureOwiMode(WindowContext& ctx, std::int16_t part);

}  // namespace rk31
