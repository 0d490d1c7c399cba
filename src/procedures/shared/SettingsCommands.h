#pragma once

namespace rk31 {

struct WindowContext;

// "Save Settings" and "Load Settings" of every main window, in the window's own format: the
// 42-line file of the two-part windows, the 9-line file of the one-part point windows, the
// 18-line file of the dual point windows.
void SaveSettingsCommand(WindowContext& ctx);
void LoadSettingsCommand(WindowContext& ctx);

}  // namespace rk31
