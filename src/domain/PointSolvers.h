#pragma once

#include <QString>
#include <array>
#include <cstdint>

#include "domain/NumberText.h"

namespace rk31 {

// What the solvers decide from, for one part: the working points as loaded, their rounded
// images, which Level boxes hold a text, and the direction chosen in the window.
struct SolverPoints {
    std::array<float, 4> angle{};
    std::array<float, 4> level{};
    float slope = EmptyValue;
    // Rounded angles of points A to D, then their rounded levels.
    std::array<std::int16_t, 8> rounded{};
    std::array<bool, 4> levelGiven{};
    bool clockwise = false;
};

// A solver's answer: the points in the order the chip's solver takes them, or a refusal.
struct SolvedPoints {
    // Points used; 0 when refused (with `message`, nothing to send).
    int count = 0;
    std::array<float, 4> angle{};
    std::array<float, 4> level{};
    std::array<std::int16_t, 8> rounded{};
    bool reversed = false;
    QString message;
    // Points A and B share a rounded level: Level B is to be emptied and checked again.
    bool emptyLevelB = false;
};

// 0 <= angle < 360.
bool IsAngleInRange(float angle);

// The DP half a turn away from a sensed angle in [0, 360).
float MidPointOf(float angle);

// True when any two of the first n rounded angles are equal; any n other than 2, 3 or 4
// counts as equal.
bool HasEqualAngles(int n, const std::array<std::int16_t, 8>& rounded);

// Orientation of three angles on the circle: false when a0 -> a1 -> a2 runs upwards (10, 20,
// 30 or 350, 20, 100), true when it runs downwards (30, 20, 10).
bool IsDescendingTriple(std::int16_t a0, std::int16_t a1, std::int16_t a2);

// A filled slope with a valid point A: the part is solved from one point and the slope.
bool UsesOnePointAndSlope(const SolverPoints& points);

// `part` (0 or 1) only names the part in the messages.
SolvedPoints SolveMultiPoints(int part, const SolverPoints& points);
SolvedPoints SolveOnePointAndSlope(int part, const SolverPoints& points);
// The point windows' two taught points.
SolvedPoints SolveTwoPoints(int part, const SolverPoints& points);

}  // namespace rk31
