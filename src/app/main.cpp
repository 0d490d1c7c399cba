#include <QApplication>
#include <QIcon>
#include <QStringList>

#include "app/Startup.h"
#include "core/DeviceBench.h"
#include "core/Services.h"
#include "core/widgets/QtPrompts.h"
#include "drivers/DriverCatalog.h"
#include "drivers/NoPorts.h"
#include "link/DeviceFactory.h"
#include "rk31/DeviceDriver.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/packaging/rk31gui.svg")));

    rk31::QtPrompts prompts;
    rk31::QtPause pause;
    // The driver is chosen at start because the port dialog probes its ports and the windows
    // offer its bench; without one the program still starts, and Connect says what is missing.
    rk31::DeviceDriver* driver =
        rk31::DriverCatalog::instance().driverFor(QString::fromLatin1(rk31::kDeviceProgId));
    rk31::NoPorts noPorts;
    rk31::PortProber* ports = driver && driver->ports() ? driver->ports() : &noPorts;
    rk31::InstallServices({&prompts, &pause, ports});
    rk31::DeviceBench* bench = driver ? driver->bench() : nullptr;
    rk31::InstallDeviceBench(bench);

    // The switch is the whole command line, as the platform hands it over.
    const QString commandLine = app.arguments().mid(1).join(u' ');
    const auto window = rk31::CreateMainWindow(rk31::VariantForCommandLine(commandLine));
    if (!window) {
        prompts.message(QStringLiteral("Error Commands received!"));
        return 1;
    }
    window->show();
    if (bench != nullptr && qEnvironmentVariable("RK31_BENCH") == u"1") {
        bench->open(window.get());
    }
    return app.exec();
}
