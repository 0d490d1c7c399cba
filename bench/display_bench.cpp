// The real-time output display's tick rate, its deviation from the 100 ms grid and its CPU use,
// opened by "View Output" of Part#1 in the "/1" window on a simulated programmer whose magnet
// turns once in ten seconds over a programmed four-point characteristic.
//
//   display_bench [SECONDS [LATENCY_MS]]      (default 10 s, latency 0)
#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QEvent>
#include <QLineEdit>
#include <QSet>
#include <QTimer>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <stdexcept>
#include <vector>

#include "BenchWindow.h"
#include "Report.h"
#include "device/WindowContext.h"

using namespace rk31;
using namespace rk31::bench;

namespace {

constexpr double kTickMs = 100;
constexpr double kTargetRateHz = 10;
constexpr double kTargetDeviationMs = 5;
constexpr double kTargetCpuPercent = 2;

double ProcessCpuMs() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

// Watches the display from the outside: the moment it is shown (its timer starts then), each
// timer event as it is delivered, and the end of each tick's handling.
class DisplayRecorder : public QObject {
  public:
    DisplayRecorder(QDialog& display, QTimer& timer, int seconds)
        : m_display(display),
          m_timer(timer),
          m_percentText(display.findChild<QLineEdit*>(QStringLiteral("PercentText_0"))),
          m_seconds(seconds) {
        m_clock.start();
        display.installEventFilter(this);
        timer.installEventFilter(this);
        // Connected after the display's own slot, so it runs when the tick is done.
        connect(&timer, &QTimer::timeout, this, [this] { tickDone(); });
    }

    double shownMs = -1;
    double endMs = 0;
    double cpuMs = 0;
    std::vector<double> tickMs;      // timer events, from the clock's start
    std::vector<double> handlingMs;  // time spent in each tick
    QSet<QString> readings;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == &m_display && event->type() == QEvent::Show && shownMs < 0) {
            shownMs = now();
            m_cpuStart = ProcessCpuMs();
            // A little past the last tick of the window, so that it is counted.
            QTimer::singleShot(m_seconds * 1000 + static_cast<int>(kTickMs) / 2, Qt::PreciseTimer,
                               this, [this] { end(); });
        } else if (watched == &m_timer && event->type() == QEvent::Timer) {
            tickMs.push_back(now());
        }
        return false;
    }

  private:
    double now() const { return static_cast<double>(m_clock.nsecsElapsed()) / 1e6; }

    void tickDone() {
        if (!tickMs.empty()) {
            handlingMs.push_back(now() - tickMs.back());
        }
        if (m_percentText != nullptr) {
            readings.insert(m_percentText->text());
        }
    }

    void end() {
        endMs = now();
        cpuMs = ProcessCpuMs() - m_cpuStart;
        m_display.done(QDialog::Accepted);
    }

    QDialog& m_display;
    QTimer& m_timer;
    QLineEdit* const m_percentText;
    const int m_seconds;
    QElapsedTimer m_clock;
    double m_cpuStart = 0;
};

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const int seconds = argc > 1 ? std::max(1, QString::fromLocal8Bit(argv[1]).toInt()) : 10;
    const int latency = argc > 2 ? std::max(0, QString::fromLocal8Bit(argv[2]).toInt()) : 0;

    sim::SimConfig config;
    config.latencyMs = latency;
    config.rotate = 36;  // one turn in ten seconds
    try {
        PreparedWindow bench(config);
        bench.click(ctl::btnconfigsolver, 0);
        bench.expectNoMessages("programming");

        std::unique_ptr<DisplayRecorder> recorder;
        bench.prompts.dialogScripts.push_back([&](QDialog& display) {
            // Nothing may be thrown through the window's handler: a missing timer shows as no
            // ticks below.
            auto* timer = display.findChild<QTimer*>(QStringLiteral("Timer1"));
            if (timer == nullptr) {
                return;
            }
            recorder = std::make_unique<DisplayRecorder>(display, *timer, seconds);
            display.exec();
        });
        bench.click(ctl::viewoutput, 0);
        bench.expectNoMessages("showing the output");
        if (!recorder || recorder->tickMs.size() < 2) {
            throw std::runtime_error("the display did not tick");
        }

        const DisplayRecorder& r = *recorder;
        const double wallMs = r.endMs - r.shownMs;
        std::vector<double> deviations;
        std::size_t worstTick = 0;
        for (std::size_t k = 0; k < r.tickMs.size(); ++k) {
            const double scheduled = r.shownMs + static_cast<double>(k + 1) * kTickMs;
            deviations.push_back(std::abs(r.tickMs[k] - scheduled));
            if (deviations.back() > deviations[worstTick]) {
                worstTick = k;
            }
        }
        const Summary deviation = Summarize(deviations);
        const double maxDeviation = deviation.max;
        const auto ticks = static_cast<double>(r.tickMs.size());
        const double rateHz = (ticks - 1) / ((r.tickMs.back() - r.tickMs.front()) / 1e3);
        const double cpuPercent = 100.0 * r.cpuMs / wallMs;
        const Summary handling = Summarize(r.handlingMs);
        const QString where = QStringLiteral(" (simulator latency %1 ms)").arg(latency);

        PrintFigure(
            QStringLiteral("real-time display tick rate%1: %2 Hz").arg(where, Fixed(rateHz, 2)),
            QStringLiteral("target %1 Hz; %2 ticks in %3 s")
                .arg(Fixed(kTargetRateHz, 0))
                .arg(r.tickMs.size())
                .arg(Fixed(wallMs / 1e3, 2)),
            std::abs(rateHz - kTargetRateHz) <= 0.01 * kTargetRateHz &&
                static_cast<int>(ticks) == seconds * 10);
        PrintFigure(QStringLiteral("real-time display tick deviation%1: %2 ms max")
                        .arg(where, Fixed(maxDeviation, 2)),
                    QStringLiteral("target within +-%1 ms of the 100 ms grid; median %2, p95 "
                                   "%3 ms; worst tick #%4")
                        .arg(Fixed(kTargetDeviationMs, 0), Fixed(deviation.median, 2),
                             Fixed(deviation.p95, 2))
                        .arg(worstTick + 1),
                    maxDeviation <= kTargetDeviationMs);
        PrintFigure(QStringLiteral("real-time display CPU use%1: %2 % of one core")
                        .arg(where, Fixed(cpuPercent, 2)),
                    QStringLiteral("target < %1 %").arg(Fixed(kTargetCpuPercent, 0)),
                    cpuPercent < kTargetCpuPercent);
        PrintDetail(
            QStringLiteral("time in a tick: mean %1, p95 %2, max %3 ms; %4 distinct "
                           "readings shown")
                .arg(Fixed(handling.mean, 2), Fixed(handling.p95, 2), Fixed(handling.max, 2))
                .arg(r.readings.size()));
    } catch (const std::exception& e) {
        std::fprintf(stderr, "display_bench: %s\n", e.what());
        return 1;
    }
    return 0;
}
