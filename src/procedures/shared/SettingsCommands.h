#pragma once

#include <QString>

namespace rk31 {

struct WindowContext;

// "Save Settings" and "Load Settings" of every main window, in the window's own format: the
// 42-line file of the two-part windows, the 9-line file of the one-part point windows, the
// 18-line file of the dual point windows.
// Each gives the file it saved or loaded, empty when it did not (cancelled, refused, failed).
QString SaveSettingsCommand(WindowContext& ctx);
QString LoadSettingsCommand(WindowContext& ctx);
// Loads `path` as Load Settings loads the file chosen in its dialog: the same checks, the same
// messages (a file dropped on a window).
QString LoadSettingsFrom(WindowContext& ctx, const QString& path);

}  // namespace rk31
