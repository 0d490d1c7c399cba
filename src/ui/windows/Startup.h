#pragma once

#include <QString>
#include <QWidget>
#include <memory>

namespace rk31 {

class Application;

// The variant a command line selects: 0 to 6 for "/0" to "/6" compared with the whole command
// line, case-sensitively; -1 for anything else (blanks, further text, an empty line).
int VariantForCommandLine(const QString& commandLine);

// Creates the main window of a variant (0..6) on the application; nullptr for any other number.
std::unique_ptr<QWidget> CreateMainWindow(int variant, Application& app);

}  // namespace rk31
