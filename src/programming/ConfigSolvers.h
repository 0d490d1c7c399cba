#pragma once

#include <cstdint>

namespace rk31 {

struct WindowContext;

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
