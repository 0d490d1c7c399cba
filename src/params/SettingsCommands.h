#pragma once

namespace rk31 {

struct WindowContext;

// "Save Settings" and "Load Settings" of the two-part windows: the 42-line file of both parts.
void SaveSettingsCommand(WindowContext& ctx);
void LoadSettingsCommand(WindowContext& ctx);

}  // namespace rk31
