#pragma once

#include <cstdint>

namespace rk31 {

struct WindowContext;

// The two-part windows' commands that open a window over the main window. In the one-supply
// window they act on both parts.
void AdvancedCommand(WindowContext& ctx, std::int16_t part);
void LinearGraphCommand(WindowContext& ctx, std::int16_t part);
void ViewOutputCommand(WindowContext& ctx, std::int16_t part);

}  // namespace rk31
