#include <QApplication>
#include <QIcon>
#include <QStringList>

#include "device/Application.h"
#include "rk31/DeviceBench.h"
#include "ui/kit/QtPrompts.h"
#include "ui/windows/Startup.h"

int main(int argc, char** argv) {
    QApplication qt(argc, argv);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/packaging/rk31gui.svg")));

    rk31::QtPrompts prompts;
    rk31::QtPause pause;
    // The driver is chosen at start because the port dialog probes its ports and the windows
    // offer its bench; without one the program still starts, and Connect says what is missing.
    rk31::Application app(rk31::StartSettings::FromEnvironment(), prompts, pause);

    // The switch is the whole command line, as the platform hands it over.
    const QString commandLine = qt.arguments().mid(1).join(u' ');
    const auto window = rk31::CreateMainWindow(rk31::VariantForCommandLine(commandLine), app);
    if (!window) {
        prompts.message(QStringLiteral("Error Commands received!"));
        return 1;
    }
    window->show();
    if (rk31::DeviceBench* bench = app.bench(); bench && app.settings().openBench) {
        bench->open(window.get());
    }
    return qt.exec();
}
