#include "ui/windows/Startup.h"

#include <QStringList>

#include "ui/windows/MainForm2Parts.h"
#include "ui/windows/PointWindows.h"

namespace rk31 {

int VariantForCommandLine(const QString& commandLine) {
    static const QStringList switches = {"/0", "/1", "/2", "/3", "/4", "/5", "/6"};
    return static_cast<int>(switches.indexOf(commandLine));
}

std::unique_ptr<QWidget> CreateMainWindow(int variant, Application& app) {
    switch (variant) {
        case 0:
            return std::make_unique<MainForm2Parts1Src>(app);
        case 1:
            return std::make_unique<MainForm2Parts2Src>(app);
        case 2:
            return std::make_unique<MainForm2PointsProgramming>(app);
        case 3:
            return std::make_unique<MainForm2PointsProgrammingforDual>(app);
        case 4:
            return std::make_unique<MainForm2PointsProgrammingWithPwr>(app);
        case 5:
            return std::make_unique<MainForm2PointsProgrammingforDualWithPwr>(app);
        case 6:
            return std::make_unique<MainForm1PointProgramming>(app);
        default:
            return nullptr;
    }
}

}  // namespace rk31
