#pragma once

#include <array>
#include <cstdint>

#include "domain/PartParameters.h"

namespace rk31 {

struct WindowContext;

// Copies the part's stored values into its working copy and the rounded images; false (with
// the clamp-order message) when clamp high is not above clamp low.
bool LoadSolverInputs(WindowContext& ctx, std::int16_t part);
// The point windows' version: points A and B only.
bool LoadSolverInputsTwoPoints(WindowContext& ctx, std::int16_t part);

// Sends SolverImage ids 1 to 11 (clamps and DP, then each point's level and angle).
void StoreInSolver(WindowContext& ctx, std::int16_t part);
// Sends ids 12 to 14 (the switch output).
void StoreSwitchOutput(WindowContext& ctx, std::int16_t part);

}  // namespace rk31
