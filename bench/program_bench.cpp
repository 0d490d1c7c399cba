// The program's own time per Program action of Part#1 in the "/1" window, on a simulated
// programmer without latency: from the click to the moment the event loop has run everything the
// action left behind (repaints, the wait windows' deletion).
//
//   program_bench [ACTIONS]      (default 200, after one unmeasured action)
#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <cstdio>
#include <stdexcept>
#include <vector>

#include "BenchWindow.h"
#include "Report.h"
#include "device/WindowContext.h"
#include "sim/SimulatedBox.h"

using namespace rk31;
using namespace rk31::bench;

namespace {

constexpr double kTargetMs = 5.0;
// With every feedback kept (wait window, busy cursor, notice), at the natural window size.
constexpr double kTargetMedianMs = 1.0;

// Runs the actions one after another from the event loop, as clicks arrive in the program.
class Driver {
  public:
    Driver(PreparedWindow& bench, int actions) : m_bench(bench), m_actions(actions) {
        m_clock.start();
    }

    void start() {
        post([this] { act(); });
    }

    std::vector<double> totalMs;  // click to drained event queue
    std::vector<double> clickMs;  // the click handler alone
    long long pausedMs = 0;       // blocking sleeps the actions asked for
    QString error;

  private:
    template <typename F>
    void post(F step) {
        QMetaObject::invokeMethod(
            qApp,
            [this, step] {
                try {
                    step();
                } catch (const std::exception& e) {
                    error = QString::fromLocal8Bit(e.what());
                    qApp->exit(1);
                }
            },
            Qt::QueuedConnection);
    }

    void act() {
        if (m_done == m_actions + 1) {
            qApp->quit();
            return;
        }
        m_bench.box().clearTrace();
        m_bench.pause.requestedMs = 0;
        m_started = m_clock.nsecsElapsed();
        m_bench.click(ctl::btnconfigsolver, 0);
        m_clicked = m_clock.nsecsElapsed();
        // Queued behind whatever the action posted, so it runs once all of that has run.
        post([this] { finish(); });
    }

    void finish() {
        const qint64 finished = m_clock.nsecsElapsed();
        m_bench.expectNoMessages("programming");
        // A refused action would be fast and wrong: the EEPROM must have been programmed.
        const QStringList trace = m_bench.box().trace();
        if (!trace.contains(QStringLiteral("ProgramEEPROM(0)")) ||
            trace.last() != QStringLiteral("EnterOWIMode(0)")) {
            throw std::runtime_error("the action did not program Part#1: " +
                                     trace.join(QStringLiteral(", ")).toStdString());
        }
        if (m_done > 0) {  // the first action pays for first-use costs of the wait window
            totalMs.push_back(static_cast<double>(finished - m_started) / 1e6);
            clickMs.push_back(static_cast<double>(m_clicked - m_started) / 1e6);
            pausedMs += m_bench.pause.requestedMs;
        }
        ++m_done;
        post([this] { act(); });
    }

    PreparedWindow& m_bench;
    const int m_actions;
    int m_done = 0;
    QElapsedTimer m_clock;
    qint64 m_started = 0;
    qint64 m_clicked = 0;
};

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const int actions = argc > 1 ? std::max(1, QString::fromLocal8Bit(argv[1]).toInt()) : 200;

    sim::SimConfig config;
    config.latencyMs = 0;
    try {
        PreparedWindow bench(config);
        Driver driver(bench, actions);
        driver.start();
        const int rc = app.exec();
        if (rc != 0 || !driver.error.isEmpty()) {
            std::fprintf(stderr, "program_bench: %s\n", qPrintable(driver.error));
            return 1;
        }
        const Summary total = Summarize(driver.totalMs);
        const Summary click = Summarize(driver.clickMs);
        PrintFigure(
            QStringLiteral("Program action, own time: %1 ms median").arg(Fixed(total.median, 2)),
            QStringLiteral("target < %1 ms; mean %2, p95 %3, max %4 ms over %5 actions")
                .arg(Fixed(kTargetMedianMs, 0), Fixed(total.mean, 2), Fixed(total.p95, 2),
                     Fixed(total.max, 2))
                .arg(actions),
            total.median < kTargetMedianMs);
        PrintFigure(QStringLiteral("Program action, own time: %1 ms p95").arg(Fixed(total.p95, 2)),
                    QStringLiteral("target < %1 ms").arg(Fixed(kTargetMs, 0)),
                    total.p95 < kTargetMs);
        PrintDetail(QStringLiteral("in the click handler: mean %1, median %2, p95 %3 ms; "
                                   "simulator latency 0; blocking sleeps asked for, not slept: "
                                   "%4 ms per action")
                        .arg(Fixed(click.mean, 2), Fixed(click.median, 2), Fixed(click.p95, 2))
                        .arg(Fixed(static_cast<double>(driver.pausedMs) / actions, 0)));
    } catch (const std::exception& e) {
        std::fprintf(stderr, "program_bench: %s\n", e.what());
        return 1;
    }
    return 0;
}
