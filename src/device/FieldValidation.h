#pragma once

namespace rk31 {

struct WindowContext;

// The boxes whose text is checked when they lose the focus.
enum class Field { DP, ClampHigh, ClampLow, Angle, Level, Slope, VDD, ReadAngle, OP, HYS };

// Runs the lost-focus rule of box `index` of the field in the context's window: reads the box,
// shows the rule's message, rewrites the text and keeps the value. `index` is the part for a
// per-part box, the point box index for angles and levels, -1 for the single boxes of the
// one-part point windows.
void ValidateField(WindowContext& ctx, Field field, int index);

// The open-time validation of a two-part window: clamp low, clamp high and DP of both parts,
// then every angle and slope marked as not given and every level 0.
void ValidateOnOpen(WindowContext& ctx);

}  // namespace rk31
