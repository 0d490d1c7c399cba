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
// Point windows: powers the part (part < 0: both parts) off when the window powered it.
void PowerOffIfPowered(WindowContext& ctx, int part);

inline constexpr const char* kNotInOwiModeText = "Error: Not in OWI mode";
inline constexpr const char* kCommLockRefusedText =
    "Failed to set OWI mode due to CommLock!...Return to ADC mode!";

}  // namespace rk31
