#pragma once

#include <QString>
#include <cstdint>

namespace rk31 {

struct WindowContext;

// The chip operations every window's procedures build on: identification, supply, calibration,
// the solver buffer and the EEPROM. `part` is 0 or 1; kBothParts (3) runs the variant for both
// parts where an operation has one.

// Judges the identification word read at 0x48: 240..255 = locked (flag set), 511 = no reading.
bool ValidateChipID(WindowContext& ctx, std::int16_t part, std::int32_t chipid);
// Reads the part's identification word and judges it; kBothParts judges both, so that a lock of
// either is recorded, and tells whether both answered.
bool ChipAnswers(WindowContext& ctx, std::int16_t part);
// The supply voltage the programmer reads for the part (3: the common supply).
float MeasureVdd(WindowContext& ctx, std::int16_t part);
// Below this MeasureVDD has no reading.
inline constexpr float kNoVddReading = -100.0f;

// Reads the DAC calibration pair(s) into the session; part 3 reads both parts.
void CheckDACCalibration(WindowContext& ctx, std::int16_t part);
void ClearSolver(WindowContext& ctx, std::int16_t part);
// Programs the EEPROM and re-enters OWI mode, also after a failure. True when every part
// programmed.
bool StoreInEEPROM(WindowContext& ctx, std::int16_t part);
// ProgramEEPROM of the part (kBothParts: Part#1, then Part#2); true when each programmed.
bool ProgramEEPROMOf(WindowContext& ctx, std::int16_t part);

// A solver's point count that can be programmed: 2, 3 or 4.
bool IsValidCount(int count);
// False, with "Error Config Solver in programee_click", for a count that cannot be programmed.
bool CheckCount(WindowContext& ctx, int count);
// Writes the part's solver buffer into the part; false (with the code's message, if it has
// one) when the component refused.
bool WriteBuffer(WindowContext& ctx, std::int16_t part);
// One part's configuration under its wait window: the switch output when OP and HYS are given,
// the buffer written into the part, the output mode.
bool ConfigurePart(WindowContext& ctx, std::int16_t part, const QString& waitText);
// Sends the switch output, writes the solver buffer into the part and sets the output mode.
bool ConfigureSolver(WindowContext& ctx, std::int16_t part, int count);

}  // namespace rk31
