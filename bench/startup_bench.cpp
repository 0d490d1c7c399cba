// Start-up of a Qt Widgets program to its first painted window, and its peak memory at that
// moment, beside the toolkit's floor (the smallest Widgets program, built the same way):
//
//   startup_bench --runs N --hook libfirst_window_hook.so --label TEXT --floor "PROGRAM [ARGS]"
//                 [--target RATIO] [--breakdown PROBE] -- SUBJECT [ARGUMENTS...]
//
// Both programs run unchanged with the hook preloaded, alternately, after one unmeasured warm-up
// run each; the figures are medians over N runs. The platform plugin is whatever the caller's
// environment selects (QT_QPA_PLATFORM). A probe (startup_probe) that reports the phases of its
// start-up as "RK31_PHASE name=<CLOCK_MONOTONIC ns> rss_anon_kb=.. rss_file_kb=.." lines is run
// N times more, and the median cost of each phase is shown under the figures.
#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QStringList>
#include <cstdio>
#include <optional>
#include <vector>

#include "ProcStatus.h"
#include "Report.h"

using namespace rk31::bench;

namespace {

// Beside the smallest Widgets program; beside a floor that holds the window's own controls the
// caller sets a tighter one.
constexpr double kDefaultTargetRatio = 1.3;
constexpr int kRunTimeoutMs = 30000;

struct Sample {
    double startupMs = 0;
    double peakKb = 0;
    // The phases a probe reported, in the order reported.
    struct Phase {
        QString name;
        double ms = 0;      // from the launch
        double anonKb = 0;  // resident heap and other anonymous memory
        double fileKb = 0;  // resident pages of mapped files
    };
    std::vector<Phase> phases;
};

struct Options {
    int runs = 20;
    QString hook;
    QString label;
    QStringList floor;
    double targetRatio = kDefaultTargetRatio;
    QString breakdown;
    QStringList subject;
};

std::optional<Options> ParseOptions(const QStringList& args) {
    Options o;
    for (qsizetype i = 1; i < args.size(); ++i) {
        const QString& a = args[i];
        if (a == u"--") {
            o.subject = args.mid(i + 1);
            break;
        }
        if (i + 1 >= args.size()) {
            return std::nullopt;
        }
        const QString value = args[++i];
        if (a == u"--runs") {
            o.runs = value.toInt();
        } else if (a == u"--hook") {
            o.hook = value;
        } else if (a == u"--label") {
            o.label = value;
        } else if (a == u"--floor") {
            o.floor = QProcess::splitCommand(value);
        } else if (a == u"--target") {
            o.targetRatio = value.toDouble();
        } else if (a == u"--breakdown") {
            o.breakdown = value;
        } else {
            return std::nullopt;
        }
    }
    if (o.runs < 1 || o.hook.isEmpty() || o.floor.isEmpty() || o.subject.isEmpty()) {
        return std::nullopt;
    }
    return o;
}

// One start of `command` up to its first window; nothing when it never showed one.
std::optional<Sample> Launch(const QStringList& command, const QString& hook) {
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    const QString preload = env.value(QStringLiteral("LD_PRELOAD"));
    env.insert(QStringLiteral("LD_PRELOAD"), preload.isEmpty() ? hook : hook + u':' + preload);
    QProcess process;
    process.setProcessEnvironment(env);
    process.setProgram(command.first());
    process.setArguments(command.mid(1));

    const long long started = MonotonicNs();
    process.start();
    if (!process.waitForFinished(kRunTimeoutMs)) {
        process.kill();
        process.waitForFinished();
        std::fprintf(stderr, "%s: no window within %d ms\n", qPrintable(command.join(u' ')),
                     kRunTimeoutMs);
        return std::nullopt;
    }
    static const QRegularExpression report(
        QStringLiteral("RK31_BENCH first_window_ns=(\\d+) vmhwm_kb=(-?\\d+) "
                       "rss_anon_kb=(-?\\d+) rss_file_kb=(-?\\d+)"));
    const QString out = QString::fromLocal8Bit(process.readAllStandardOutput());
    const auto match = report.match(out);
    if (!match.hasMatch()) {
        std::fprintf(stderr, "%s: ended without a window (exit %d)\n%s",
                     qPrintable(command.join(u' ')), process.exitCode(),
                     process.readAllStandardError().constData());
        return std::nullopt;
    }
    Sample s;
    s.startupMs = static_cast<double>(match.captured(1).toLongLong() - started) / 1e6;
    s.peakKb = match.captured(2).toDouble();
    const Sample::Phase painted{QStringLiteral("painted"), s.startupMs,
                                match.captured(3).toDouble(), match.captured(4).toDouble()};
    static const QRegularExpression phase(
        QStringLiteral("RK31_PHASE (\\w+)=(\\d+) rss_anon_kb=(-?\\d+) rss_file_kb=(-?\\d+)"));
    for (auto it = phase.globalMatch(out); it.hasNext();) {
        const auto m = it.next();
        s.phases.push_back({m.captured(1),
                            static_cast<double>(m.captured(2).toLongLong() - started) / 1e6,
                            m.captured(3).toDouble(), m.captured(4).toDouble()});
    }
    s.phases.push_back(painted);
    return s;
}

// The probe's phases: the median time each took after the one before it, and the median growth
// of the resident set over it, heap and mapped files apart.
bool PrintBreakdown(const Options& options) {
    std::vector<QString> names;
    std::vector<std::vector<double>> steps;
    std::vector<std::vector<double>> anon;
    std::vector<std::vector<double>> file;
    for (int run = -1; run < options.runs; ++run) {
        auto sample = Launch({options.breakdown}, options.hook);
        if (!sample) {
            return false;
        }
        if (run < 0) {
            for (const auto& phase : sample->phases) {
                names.push_back(phase.name);
            }
            steps.resize(names.size());
            anon.resize(names.size());
            file.resize(names.size());
            continue;
        }
        if (sample->phases.size() != names.size()) {
            std::fprintf(stderr, "%s: phases differ between runs\n", qPrintable(options.breakdown));
            return false;
        }
        Sample::Phase before;
        for (std::size_t i = 0; i < names.size(); ++i) {
            steps[i].push_back(sample->phases[i].ms - before.ms);
            anon[i].push_back(sample->phases[i].anonKb - before.anonKb);
            file[i].push_back(sample->phases[i].fileKb - before.fileKb);
            before = sample->phases[i];
        }
    }
    PrintDetail(QStringLiteral("phases of %1 (median over %2 runs; time after the previous "
                               "phase, growth of resident heap and of resident mapped files):")
                    .arg(QFileInfo(options.breakdown).fileName())
                    .arg(options.runs));
    for (std::size_t i = 0; i < names.size(); ++i) {
        PrintDetail(QStringLiteral("  %1 +%2 ms, heap +%3 MiB, files +%4 MiB")
                        .arg(names[i].leftJustified(12), Fixed(Summarize(steps[i]).median, 1),
                             Fixed(Summarize(anon[i]).median / 1024, 1),
                             Fixed(Summarize(file[i]).median / 1024, 1)));
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const auto options = ParseOptions(app.arguments());
    if (!options) {
        std::fprintf(stderr,
                     "usage: startup_bench --runs N --hook LIB --label TEXT --floor \"PROGRAM "
                     "[ARGS]\" [--target RATIO] [--breakdown PROBE] -- SUBJECT [ARGUMENTS...]\n");
        return 2;
    }
    const QStringList& floorCommand = options->floor;
    const double kTargetRatio = options->targetRatio;

    std::vector<double> floorMs, floorKb, subjectMs, subjectKb;
    std::vector<double> floorAnon, floorFile, subjectAnon, subjectFile;
    for (int run = -1; run < options->runs; ++run) {
        // Alternating the order spreads any drift of the machine over both programs.
        const bool floorFirst = run % 2 == 0;
        for (int turn = 0; turn < 2; ++turn) {
            const bool isFloor = (turn == 0) == floorFirst;
            const auto sample = Launch(isFloor ? floorCommand : options->subject, options->hook);
            if (!sample) {
                return 1;
            }
            if (run < 0) {
                continue;  // warm-up: libraries and fonts into the page cache
            }
            (isFloor ? floorMs : subjectMs).push_back(sample->startupMs);
            (isFloor ? floorKb : subjectKb).push_back(sample->peakKb);
            (isFloor ? floorAnon : subjectAnon).push_back(sample->phases.back().anonKb);
            (isFloor ? floorFile : subjectFile).push_back(sample->phases.back().fileKb);
        }
    }

    const Summary fMs = Summarize(floorMs), sMs = Summarize(subjectMs);
    const Summary fKb = Summarize(floorKb), sKb = Summarize(subjectKb);
    const double timeRatio = sMs.median / fMs.median;
    const double memoryRatio = sKb.median / fKb.median;
    const QString subjectName = options->subject.join(u' ');
    const QString where =
        options->label.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(options->label);

    PrintFigure(QStringLiteral("startup to first window%1: %2 ms").arg(where, Fixed(sMs.median, 0)),
                QStringLiteral("floor %1 ms, ratio %2, target <= %3")
                    .arg(Fixed(fMs.median, 0), Fixed(timeRatio, 2), Fixed(kTargetRatio, 2)),
                timeRatio <= kTargetRatio);
    PrintDetail(
        QStringLiteral("%1: median of %2 runs, %3..%4 ms; floor %5..%6 ms")
            .arg(subjectName)
            .arg(options->runs)
            .arg(Fixed(sMs.min, 0), Fixed(sMs.max, 0), Fixed(fMs.min, 0), Fixed(fMs.max, 0)));
    PrintFigure(
        QStringLiteral("peak memory at first window%1: %2 MiB")
            .arg(where, Fixed(sKb.median / 1024, 1)),
        QStringLiteral("floor %1 MiB, ratio %2, target <= %3")
            .arg(Fixed(fKb.median / 1024, 1), Fixed(memoryRatio, 2), Fixed(kTargetRatio, 2)),
        memoryRatio <= kTargetRatio);
    // Pages of mapped files (code, fonts) are shared and clean; heap is what the process owns.
    const auto mib = [](const std::vector<double>& kb) {
        return Fixed(Summarize(kb).median / 1024, 1);
    };
    PrintDetail(QStringLiteral("resident at first window: heap %1 MiB + mapped files %2 MiB; "
                               "floor heap %3 MiB + mapped files %4 MiB")
                    .arg(mib(subjectAnon), mib(subjectFile), mib(floorAnon), mib(floorFile)));
    if (!options->breakdown.isEmpty()) {
        return PrintBreakdown(*options) ? 0 : 1;
    }
    return 0;
}
