#pragma once

#include <QString>
#include <optional>

#include "sim/SimulatedBox.h"

namespace rk31::sim {

// What the bench says about the simulator, as text a person reads. Numbers are written with
// QLocale::c(), so that the bench reads the same on every desktop.

// "123.45": to a hundredth of a degree, in [0, 360).
QString AngleText(double degrees);
// The magnet angle a person typed: a number from 0 to 360 (360 is 0 again), blanks around
// allowed; nothing for anything else.
std::optional<double> TypedAngle(const QString& text);
// Why a typed angle was refused, with the angle the magnet keeps.
QString RefusedAngleMessage(const QString& typed, double kept);

QString ModeText(Die::Mode mode);
// The identification word as the die answers it at &H48 in OWI mode.
QString IdentificationText(const SimulatedBox& box, int part);
// The supply voltage as MeasureVDD reads it now: "4.996 V", or that there is no reading.
QString VddText(const SimulatedBox& box, int part);
// What MeasureOutput reads now in %VDD, or why there is no output.
QString OutputText(const SimulatedBox& box, int part);
// The faults switched on now, for a person: "EEPROM failure (Part #2)", "Hardware version
// failure", "WriteBufferToDevice code 3".
QStringList FaultsOn(const SimulatedBox& box);

}  // namespace rk31::sim
