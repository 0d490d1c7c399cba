#include "app/Startup.h"

#include <QStringList>

#include "mainwindows/MainForm2Parts.h"
#include "pointwindows/widgets/PointWindows.h"

namespace rk31 {

int VariantForCommandLine(const QString& commandLine) {
    static const QStringList switches = {"/0", "/1", "/2", "/3", "/4", "/5", "/6"};
    return static_cast<int>(switches.indexOf(commandLine));
}

std::unique_ptr<QWidget> CreateMainWindow(int variant) {
    switch (variant) {
        case 0:
            return std::make_unique<MainForm2Parts1Src>();
        case 1:
            return std::make_unique<MainForm2Parts2Src>();
        case 2:
            return std::make_unique<MainForm2PointsProgramming>();
        case 3:
            return std::make_unique<MainForm2PointsProgrammingforDual>();
        case 4:
            return std::make_unique<MainForm2PointsProgrammingWithPwr>();
        case 5:
            return std::make_unique<MainForm2PointsProgrammingforDualWithPwr>();
        case 6:
            return std::make_unique<MainForm1PointProgramming>();
        default:
            return nullptr;
    }
}

}  // namespace rk31
