// The start-up of the "/1" window in phases, for finding where start-up time goes: the steps of
// the program's main() up to showing its window, with a timestamp after each. Run it through
// startup_bench --breakdown, which preloads the first-window hook for the last phase.
//
// One step is added: the font system is brought up on its own before the window is built, so
// that its cost, which any window with text pays once, shows apart from the window's.
#include <unistd.h>
#include <QApplication>
#include <QFontMetrics>
#include <cstdio>
#include <ctime>

#include "ProcStatus.h"
#include "ui/windows/Startup.h"
#include "core/Services.h"
#include "ui/kit/QtPrompts.h"
#include "sim/SimulatedProgrammer.h"
#include "sim/bench/SimulationBench.h"

namespace {

void Phase(const char* name) {
    std::printf("RK31_PHASE %s=%lld", name, rk31::bench::MonotonicNs());
    rk31::bench::PrintResidentSplit();
    std::printf("\n");
}

}  // namespace

int main(int argc, char** argv) {
    Phase("main");
    QApplication app(argc, argv);
    Phase("application");

    rk31::QtPrompts prompts;
    rk31::QtPause pause;
    auto simulation = rk31::sim::InstallSimulationFromEnvironment();
    rk31::InstallServices({&prompts, &pause, simulation.ports.get()});
    rk31::sim::SimulationBench bench(simulation);
    Phase("services");

    (void)QFontMetrics(QApplication::font()).height();
    Phase("fonts");

    const auto window = rk31::CreateMainWindow(rk31::VariantForCommandLine(QStringLiteral("/1")));
    if (!window) {
        return 1;
    }
    Phase("built");
    window->show();
    Phase("shown");
    std::fflush(stdout);
    return app.exec();
}
