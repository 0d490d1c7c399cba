#pragma once

#include <QString>
#include <QStringList>
#include <array>
#include <vector>

#include "domain/CurveCheck.h"
#include "domain/CurveTypes.h"

namespace rk31 {

// A programmed chip measured against the curve the plots draw: the magnet stepped through a
// whole turn by a fixture, or turned by hand between single readings.

// The sweep's step in degrees: fine enough to find a wrong point, coarse enough for a quick look.
inline constexpr int kSweepStepMin = 1;
inline constexpr int kSweepStepMax = 30;
inline constexpr int kSweepStepDefault = 10;

// The angles of a sweep, `step` degrees apart (held to the range above): 0, step, ... below 360.
std::vector<double> SweepAngles(int step);

// The readings of Part#1 and Part#2, each in the order taken.
using PartReadings = std::array<std::vector<AngleReading>, 2>;

// What the readings of `parts` say against their drawn curves: a line for each part that has
// readings, in the order of `parts`; kNoMeasurementsText when none has.
QString MeasurementSummary(const std::vector<int>& parts, const CurveTables& curves,
                           const PartReadings& readings);

// The readings of `parts` as rows under the curve CSV's header, after its segment rows:
// "part,measured,angle,level", the part counted from 1, angle and level with two decimals. The
// word in the segment column keeps them apart from the segment ends, which stay as they were.
QStringList MeasuredCsvLines(const std::vector<int>& parts, const PartReadings& readings);

}  // namespace rk31
