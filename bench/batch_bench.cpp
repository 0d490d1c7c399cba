// rk31prog's work for a production line: many chips in a row, each a new chip on a simulated
// programmer without latency, programmed on both parts and verified from a two-part settings
// file, through the batch programmer's runner as rk31prog runs it. Time per chip and resident
// memory must stay flat: the last hundred chips no slower and no bigger than the first.
//
//   batch_bench [CHIPS]      (default 1000)
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>
#include <vector>

#include "ProcStatus.h"
#include "Report.h"
#include "device/Application.h"
#include "domain/Prompts.h"
#include "procedures/batch/BatchRun.h"
#include "procedures/batch/BatchSeams.h"
#include "sim/SimulatedProgrammer.h"

using namespace rk31;
using namespace rk31::bench;

namespace {

constexpr int kBlock = 100;
constexpr double kFlatTime = 1.2;  // last block's median against the first block's
constexpr long kFlatMemoryKb = 2048;

// The blocking sleeps the chip sequence asks for (on a real box they let the supply settle) are
// counted, not slept: the figure is the program's own work.
class CountingPause : public Pause {
  public:
    void sleep(int milliseconds) override { slept += milliseconds; }
    long long slept = 0;
};

const char* const kSettings =
    "Part #1:\r\nVDD is(V):5.000\r\nDirection is:CCW\r\nDP is(deg):260.00\r\nClamp High "
    "is(%):95.00\r\nClamp Low is(%):5.00\r\nAngle of Point A is(deg):20.00\r\nLevel of Point A "
    "is(%):10.00\r\nAngle of Point B is(deg):110.00\r\nLevel of Point B is(%):50.00\r\nAngle of "
    "Point C is(deg):200.00\r\nLevel of Point C is(%):90.00\r\nAngle of Point D is(deg):\r\nLevel "
    "of Point D is(%):\r\nSlope parameter is(%VDD/deg):\r\nOP parameter is(deg):\r\nHYS parameter "
    "is(deg):1.00\r\nPolarity parameter is:0\r\nOutMode is:0\r\nPWMFreq is:0\r\nPWMPolarity "
    "is0\r\n";

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const int chips = argc > 1 ? std::max(2 * kBlock, std::atoi(argv[1])) : 1000;
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("line.txt"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return 1;
    }
    // Part#2 from the same lines: the 42-line file is the 21-line block twice, with "Part #2:".
    const QByteArray part1(kSettings);
    file.write(part1 + QByteArray(kSettings).replace("Part #1:", "Part #2:"));
    file.close();

    BatchOptions options;
    options.command = BatchCommand::Program;
    options.settings = path;
    options.port = 1;
    options.verify = true;
    options.quiet = true;
    int failures = 0;
    BatchOutput output{[&failures](const QString&) { ++failures; }, [](const QString&) {}};
    CountingPause pause;
    sim::SimConfig config;
    config.angle = 100;

    std::vector<double> perChipMs;
    qsizetype callsPerChip = 0;
    std::vector<long> rssKb;
    QElapsedTimer clock;
    for (int chip = 0; chip < chips; ++chip) {
        // A new chip in the socket: a fresh box, as the line's handler puts the next part in,
        // and a fresh application, as each run of rk31prog is a process of its own.
        sim::SimulatedProgrammer programmer(config);
        BatchPrompts prompts(output);
        Application application(StartSettings{}, prompts, pause, &programmer);
        clock.start();
        BatchRunner runner(options, output, application, prompts);
        if (runner.run() != kExitOk) {
            ++failures;
        }
        perChipMs.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6);
        callsPerChip = programmer.box().trace().size();
        if ((chip + 1) % kBlock == 0) {
            rssKb.push_back(StatusKb("VmRSS"));
        }
    }
    const auto block = [&perChipMs](std::size_t k) {
        return Summarize(
            std::vector<double>(perChipMs.begin() + static_cast<long>(k * kBlock),
                                perChipMs.begin() + static_cast<long>((k + 1) * kBlock)));
    };
    const Summary first = block(1);  // the first block warms the caches and the allocator
    const Summary last = block(perChipMs.size() / kBlock - 1);
    const long memoryGrowth = rssKb.back() - rssKb[1];
    PrintFigure(QStringLiteral("batch, %1 chips, both parts programmed and verified: median %2 ms "
                               "per chip in the last %3, %4 ms in chips %3 to %5")
                    .arg(chips)
                    .arg(Fixed(last.median, 3))
                    .arg(kBlock)
                    .arg(Fixed(first.median, 3))
                    .arg(2 * kBlock),
                QStringLiteral("target: at most %1 times").arg(Fixed(kFlatTime, 1)),
                failures == 0 && last.median <= kFlatTime * first.median);
    PrintFigure(QStringLiteral("batch, resident memory from chip %1 to chip %2: %3 kB")
                    .arg(2 * kBlock)
                    .arg(chips)
                    .arg(memoryGrowth),
                QStringLiteral("target: under %1 kB of growth").arg(kFlatMemoryKb),
                memoryGrowth < kFlatMemoryKb);
    QStringList blocks;
    for (std::size_t k = 0; k < perChipMs.size() / kBlock; ++k) {
        blocks << Fixed(block(k).median, 3);
    }
    PrintDetail(QStringLiteral("median ms per chip by hundred: ") + blocks.join(u' '));
    PrintDetail(QStringLiteral("resident kB by hundred: ") + [&rssKb] {
        QStringList kb;
        for (const long v : rssKb) {
            kb << QString::number(v);
        }
        return kb.join(u' ');
    }());
    PrintDetail(QStringLiteral("failed chips: %1; device calls per chip: %2; sleeps asked for and "
                               "not slept: %3 ms per chip")
                    .arg(failures)
                    .arg(callsPerChip)
                    .arg(pause.slept / chips));
    return 0;
}
