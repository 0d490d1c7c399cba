#pragma once

namespace rk31 {

struct WindowContext;

// Recomputes which controls of a two-part window the user may operate, from the connection,
// the chip state and the lock flag of each part, and rewrites the status line.
void UpdateControl(WindowContext& ctx);

}  // namespace rk31
