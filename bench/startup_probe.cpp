// The start-up of the "/1" window in phases, for finding where start-up time goes: the steps of
// the program's main() up to showing its window, with a timestamp after each. Run it through
// startup_bench --breakdown, which preloads the first-window hook for the last phase.
//
// One step is added: the font system is brought up on its own before the window is built, so
// that its cost, which any window with text pays once, shows apart from the window's.
#include <unistd.h>
#include <QApplication>
#include <QDir>
#include <QFontMetrics>
#include <cstdio>
#include <ctime>

#include "ProcStatus.h"
#include "device/Application.h"
#include "ui/kit/QtPrompts.h"
#include "ui/windows/Startup.h"

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
    rk31::StartSettings settings = rk31::StartSettings::FromEnvironment();
    // The program looks for its drivers beside itself; the probe is one folder further down, so
    // it is shown the program's folder, and loads the same driver from the same file.
    settings.driverPath << QDir(QCoreApplication::applicationDirPath())
                               .absoluteFilePath(QStringLiteral("../plugins"));
    rk31::Application application(settings, prompts, pause);
    Phase("driver");

    (void)QFontMetrics(QApplication::font()).height();
    Phase("fonts");

    const auto window =
        rk31::CreateMainWindow(rk31::VariantForCommandLine(QStringLiteral("/1")), application);
    if (!window) {
        return 1;
    }
    Phase("built");
    window->show();
    Phase("shown");
    std::fflush(stdout);
    // Without its driver the window lacks the simulator's badge and is not the program's window.
    if (application.bench() == nullptr) {
        std::fprintf(stderr, "startup_probe: the simulated programmer's driver was not found\n");
        return 1;
    }
    return app.exec();
}
