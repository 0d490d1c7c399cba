#pragma once

#include <cstdint>

namespace rk31 {

struct WindowContext;

// Which way a part's working points are ordered for the chip's solver.
enum class SolverChoice {
    MultiPoints,       // two to four points
    OnePointAndSlope,  // point A and the slope
    Chosen,            // a filled slope with a valid point A wins over points B to D
    TwoPoints,         // the point windows' two taught points
};

// Orders the part's working points as `choice` says and takes the result as the part's working
// copy and rounded images, sending nothing; the number of points used, or 0 when the solver
// refused (with its message shown).
int SolvePart(WindowContext& ctx, std::int16_t part, SolverChoice choice);
// The part's working points describe it by point A and a slope.
bool UsesSlope(const WindowContext& ctx, std::int16_t part);

// Each solves the part and sends the ordered points with StoreInSolver; the number of points
// used, 0 when it refused (with its message, nothing sent).
int configsolver_MultiPoints(WindowContext& ctx, std::int16_t part);
int configsolver_OnePointAndSlope(WindowContext& ctx, std::int16_t part);
int configsolver(WindowContext& ctx, std::int16_t part);
int configsolver_2Points(WindowContext& ctx, std::int16_t part);

}  // namespace rk31
