#include <QApplication>
#include <QIcon>
#include <QStringList>

#include "app/Startup.h"
#include "core/Services.h"
#include "core/widgets/QtPrompts.h"
#include "sim/SimulatedProgrammer.h"
#include "sim/bench/SimulationBench.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/packaging/rk31gui.svg")));

    rk31::QtPrompts prompts;
    rk31::QtPause pause;
    // No driver for a real programmer box exists yet: the simulated one is the default, and its
    // bench comes with it (built only when opened).
    auto simulation = rk31::sim::InstallSimulationFromEnvironment();
    rk31::InstallServices({&prompts, &pause, simulation.ports.get()});
    rk31::sim::SimulationBench bench(simulation);

    // The switch is the whole command line, as the platform hands it over.
    const QString commandLine = app.arguments().mid(1).join(u' ');
    const auto window = rk31::CreateMainWindow(rk31::VariantForCommandLine(commandLine));
    if (!window) {
        prompts.message(QStringLiteral("Error Commands received!"));
        return 1;
    }
    window->show();
    bench.openIfRequested(window.get());
    return app.exec();
}
