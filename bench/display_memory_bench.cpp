// The real-time output display's memory over a working day: the display of Part#1, opened by
// "View Output" in the "/1" window after a Program, as display_bench opens it, measures for the
// equivalent of eight hours on a simulated programmer without latency. Its resident set must
// stay flat: a display left running through a shift must not grow.
//
// The display's own tick slot is called back to back instead of waiting 100 ms for each, so the
// day takes minutes. Between ticks the magnet is moved on by what it turns in 100 ms at one turn
// in ten seconds, so the readings sweep the characteristic as they would over the day. Every
// measurement goes through the program's device object with its logging wrapper to the
// simulated box, whose record of calls keeps only the newest.
//
//   display_memory_bench [HOURS]      (default 8)
#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QSet>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <stdexcept>
#include <vector>

#include "BenchWindow.h"
#include "ProcStatus.h"
#include "Report.h"
#include "device/WindowContext.h"
#include "sim/SimulatedBox.h"
#include "ui/dialogs/RealTimeDisplayBar.h"

using namespace rk31;
using namespace rk31::bench;

namespace {

constexpr int kTicksPerHour = 10 * 3600;
constexpr double kDegreesPerTick = 3.6;  // one turn in ten seconds
constexpr long kFlatMemoryKb = 1024;

// What happened inside the display's modal run, where nothing may be thrown.
struct DayOfTicks {
    QString error;
    long long ticks = 0;
    double seconds = 0;
    long startKb = 0;
    std::vector<long> rssKb;   // at the end of each simulated hour
    std::vector<long> anonKb;  // the heap and other anonymous memory of the same moments
    QSet<QString> readings;
    qsizetype callsKept = 0;
};

void RunDay(RealTimeDisplayBar& display, PreparedWindow& bench, int hours, DayOfTicks& day) {
    // Shown as a user sees it, so that every tick repaints; the display's own timer is stopped
    // so that only the calls below tick.
    display.show();
    display.timer().stop();
    QCoreApplication::processEvents();
    const auto* percent = display.findChild<QLineEdit*>(QStringLiteral("PercentText_0"));
    if (percent == nullptr) {
        day.error = QStringLiteral("the display has no PercentText_0");
        return;
    }
    const QString measure = QStringLiteral("MeasureOutput(0, 1)");
    sim::SimulatedBox& box = bench.box();
    day.startKb = StatusKb("VmRSS");
    QElapsedTimer clock;
    clock.start();
    for (int hour = 1; hour <= hours; ++hour) {
        for (int k = 0; k < kTicksPerHour; ++k, ++day.ticks) {
            box.setMagnetAngle(std::fmod(static_cast<double>(day.ticks) * kDegreesPerTick, 360));
            display.Timer1Tick();
            // A message stops the display: the rest of the day would measure nothing.
            if (!bench.prompts.messages.isEmpty()) {
                day.error = QStringLiteral("message after %1 ticks: %2")
                                .arg(day.ticks + 1)
                                .arg(bench.prompts.messages.join(QStringLiteral(" | ")));
                return;
            }
            day.readings.insert(percent->text());
        }
        day.rssKb.push_back(StatusKb("VmRSS"));
        day.anonKb.push_back(StatusKb("RssAnon"));
    }
    day.seconds = static_cast<double>(clock.nsecsElapsed()) / 1e9;
    // Looked at once the day is over: a copy of the whole record is itself a quarter of a
    // megabyte, which the allocator keeps once it has been asked for it.
    // Nothing but the ticks ran in the day's last calls, and each reached the box.
    const QStringList trace = box.trace();
    if (trace.isEmpty() || trace.count(measure) != trace.size()) {
        day.error = QStringLiteral("the last device calls are not all %1").arg(measure);
    }
    day.callsKept = trace.size();
}

QString Joined(const std::vector<long>& values) {
    QStringList texts;
    for (const long v : values) {
        texts << QString::number(v);
    }
    return texts.join(u' ');
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const int hours = argc > 1 ? std::max(2, QString::fromLocal8Bit(argv[1]).toInt()) : 8;

    sim::SimConfig config;
    config.latencyMs = 0;
    try {
        PreparedWindow bench(config);
        bench.click(ctl::btnconfigsolver, 0);
        bench.expectNoMessages("programming");

        DayOfTicks day;
        bool opened = false;
        bench.prompts.dialogScripts.push_back([&](QDialog& dialog) {
            auto* display = qobject_cast<RealTimeDisplayBar*>(&dialog);
            if (display == nullptr) {
                return;
            }
            opened = true;
            try {
                RunDay(*display, bench, hours, day);
            } catch (const std::exception& e) {
                day.error = QString::fromLocal8Bit(e.what());
            }
        });
        bench.click(ctl::viewoutput, 0);
        if (!opened) {
            throw std::runtime_error("View Output did not open the real-time display");
        }
        if (!day.error.isEmpty()) {
            throw std::runtime_error(day.error.toStdString());
        }
        bench.expectNoMessages("showing the output");

        const long growth = day.rssKb.back() - day.rssKb.front();
        PrintFigure(QStringLiteral("real-time display over %1 h at 10 ticks a second (simulator "
                                   "latency 0): resident memory grew %2 kB from hour 1 to hour "
                                   "%1")
                        .arg(hours)
                        .arg(growth),
                    QStringLiteral("target: under %1 kB of growth").arg(kFlatMemoryKb),
                    growth < kFlatMemoryKb);
        PrintDetail(QStringLiteral("resident kB at the start and by hour: %1 %2")
                        .arg(day.startKb)
                        .arg(Joined(day.rssKb)));
        PrintDetail(QStringLiteral("of which heap and other anonymous memory, kB by hour: ") +
                    Joined(day.anonKb));
        PrintDetail(QStringLiteral("%1 ticks in %2 s (%3 ms a tick); %4 distinct readings shown; "
                                   "the simulator keeps the newest %5 device calls")
                        .arg(day.ticks)
                        .arg(Fixed(day.seconds, 1))
                        .arg(Fixed(1e3 * day.seconds / static_cast<double>(day.ticks), 3))
                        .arg(day.readings.size())
                        .arg(day.callsKept));
    } catch (const std::exception& e) {
        std::fprintf(stderr, "display_memory_bench: %s\n", e.what());
        return 1;
    }
    return 0;
}
