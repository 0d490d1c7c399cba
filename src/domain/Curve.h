#pragma once

#include <QString>
#include <QStringList>
#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "domain/CurveTypes.h"

namespace rk31 {

// The transfer curve that the plots draw: the lines through consecutive points, extended to the
// clamp levels before the first and after the last point, cut at the 360/0 seam and closed by
// the clamp-hold lines and the jump at DP. All arithmetic is in whole degrees and whole %VDD.

// One row of every working list: (angle in degrees, level in %VDD).
using CurvePoint = std::array<std::int16_t, 2>;
// A part's four points (row i = point i) and a pair of consecutive points (rows 0 and 1 used).
using PointList = std::array<CurvePoint, 4>;
using PointPair = std::array<CurvePoint, 4>;
// Where a step puts its segments before they are appended to the curve list (CurveRows):
// rows 2k and 2k+1 are segment k.
using ScratchRows = std::array<CurvePoint, 21>;

struct ClampLevels {
    std::int16_t high = 0;
    std::int16_t low = 0;
};

// Value at x on the line through (x1, y1) and (x2, y2): the exact product (x - x1)(y2 - y1)
// divided by (x2 - x1), plus y1, halves to even, saturated to 16 bits. x1 == x2 gives y1.
std::int16_t Interpolate(std::int16_t x, std::int16_t x1, std::int16_t y1, std::int16_t x2,
                         std::int16_t y2);

// The line from pair row 0 to pair row 1 in the direction of travel, split at the seam when it
// crosses it, into scratch rows 0 to 3.
void CalSegment(bool reversed, const PointPair& pair, ScratchRows& scratch);

// The extension before the first point down to (or up to) the clamp the line meets first; writes
// rows 0 to 3 of the still empty curve list. Returns "Error in Cal2PointsExtend0" when the
// crossing cannot be placed, else nothing. Equal angles or equal levels write nothing.
QString Cal2PointsExtend0(bool reversed, const PointPair& pair, CurveRows& list,
                          ClampLevels clamps);

// The extension after the last point (pair row 1) to the clamp the line meets; writes scratch
// rows 0 to 3. Returns "Error in Cal2PointsExtend1" when the crossing cannot be placed; equal
// angles or levels as above.
QString Cal2PointsExtend1(bool reversed, const PointPair& pair, ScratchRows& scratch,
                          ClampLevels clamps);

// Closes the curve from the end of its last segment back to its start through the jump at dp;
// writes scratch rows 0 to 7, or returns the DP message when dp lies on the curve's own span.
QString CalDPSegments(bool reversed, const CurveRows& list, ScratchRows& scratch, std::int16_t dp);

// Copies the scratch segments into the empty slots of the list, in order, up to the first empty
// scratch segment; then clears scratch rows 0 to 10 for the next step.
void AppendSegments(CurveRows& list, ScratchRows& scratch);

// Builds the curve of `part` (0 or 1) from its rounded images and overwrites all 41 rows of
// curves[part]. count 2 and 3 use that many points; any other count uses all four. Returns the
// messages of the steps, in order, for the caller to show.
QStringList CalPartCurve(std::int16_t count, std::int16_t part, const RoundedImages& rounded,
                         CurveTables& curves);

// The first part's curve, then the second's when count2 is not 0; the messages of both.
QStringList CalLinearGraph(std::int16_t part1, std::int16_t count1, std::int16_t part2,
                           std::int16_t count2, const RoundedImages& rounded, CurveTables& curves);

// The level of a part's drawn curve at an angle: on the first segment that spans the angle and
// is not the vertical jump at DP; nothing when no segment covers it.
std::optional<double> CurveLevelAt(const CurveRows& rows, double angle);

// How many segments of a part's rows are drawn: up to the first empty one, at most 11.
int DrawnSegmentCount(const CurveRows& rows);

// The drawn segments of `parts` (0 = Part#1) as CSV: a header, then one row per segment end (the
// start row and the end row of each segment, in drawing order), exactly the rows the plots draw.
QStringList CurveCsvLines(const CurveTables& curves, const std::vector<int>& parts);

// The level of each part's drawn curve at every whole degree from 0 to 360, one row each, with
// "degree" where the segment number stands: "1,degree,45,30.50"; the level is empty where no
// segment covers the angle.
QStringList CurveDegreeCsvLines(const CurveTables& curves, const std::vector<int>& parts);

}  // namespace rk31
