#pragma once

#include <cstdint>

namespace rk31 {

struct WindowContext;

// True when any two of the first n rounded angles of the part are equal; any n other than 2, 3
// or 4 counts as equal.
bool HasEqualAngles(int n, const WindowContext& ctx, std::int16_t part);

// Orientation of three angles on the circle: false when a0 -> a1 -> a2 runs upwards (10, 20,
// 30 or 350, 20, 100), true when it runs downwards (30, 20, 10).
bool IsDescendingTriple(std::int16_t a0, std::int16_t a1, std::int16_t a2);

// Each solver orders the part's working points the way the chip's solver takes them, sends them
// with StoreInSolver and returns the number of points used; 0 when it refused (with its
// message, nothing sent).
int configsolver_MultiPoints(WindowContext& ctx, std::int16_t part);
int configsolver_OnePointAndSlope(WindowContext& ctx, std::int16_t part);
// A filled slope with a valid point A wins over points B to D.
int configsolver(WindowContext& ctx, std::int16_t part);
// The point windows' two taught points.
int configsolver_2Points(WindowContext& ctx, std::int16_t part);

}  // namespace rk31
