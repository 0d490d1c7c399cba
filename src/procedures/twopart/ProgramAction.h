#pragma once

#include <cstdint>

namespace rk31 {

struct WindowContext;

// The Program button of the two-part windows (part, or kBothParts in the one-supply window):
// load and solve the part's inputs, configure the solver and program the EEPROM. True when the
// part (both parts) ended with a programmed EEPROM.
bool ProgramAction(WindowContext& ctx, std::int16_t part);

}  // namespace rk31
