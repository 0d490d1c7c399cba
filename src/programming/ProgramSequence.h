#pragma once

#include <cstdint>

#include "context/WindowContext.h"

namespace rk31 {

struct WindowContext;

// Chip operations shared by the Program command, New Device, power-on and PrepareDevice.
// `part` is 0 or 1; kBothParts (3) runs the one-supply window's variant for both parts.

// Judges the identification word read at 0x48: 240..255 = locked (flag set), 511 = no reading.
bool ValidateChipID(WindowContext& ctx, std::int16_t part, std::int32_t chipid);
// Reads the DAC calibration pair(s) into the session; part 3 reads both parts.
void CheckDACCalibration(WindowContext& ctx, std::int16_t part);
void ClearSolver(WindowContext& ctx, std::int16_t part);
// Programs the EEPROM and re-enters OWI mode, also after a failure. True when every part
// programmed.
bool StoreInEEPROM(WindowContext& ctx, std::int16_t part);
// Sends the switch output, writes the solver buffer into the part and sets the output mode.
bool ConfigureSolver(WindowContext& ctx, std::int16_t part, int count);

// The Program button of the two-part windows (part, or kBothParts in the one-supply window).
// True when the part (both parts) ended with a programmed EEPROM.
bool ProgramAction(WindowContext& ctx, std::int16_t part);
// The point windows' Program action with two taught points (part, or kBothParts in the dual
// windows); true as above.
bool PointProgramAction(WindowContext& ctx, std::int16_t part);

}  // namespace rk31
