// rk31prog's work for a production line: a thousand chips in a row through one run of the batch
// programmer, as `rk31prog program --count 1000 --verify --record FILE` makes it on a station
// whose feeder puts the next chip in the socket: both parts programmed and verified at the
// fixture's angles, one record line per chip. Time per chip and resident memory must stay flat
// (the last hundred chips no slower and no bigger than the first), and the record must read back
// line by line, one whole line per chip.
//
//   batch_bench [CHIPS]      (default 1000)
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
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

// The simulated station's feeder, timed: the time between two chips is one chip's whole work,
// its record line and its verdict included.
class TimedStation : public DeviceDriver {
  public:
    explicit TimedStation(sim::SimulatedProgrammer& inner) : m_inner(inner), m_feeder(*this) {
        m_clock.start();
    }
    std::shared_ptr<QZ7734Device> create(const QString& progId) override {
        return m_inner.create(progId);
    }
    PortProber* ports() override { return m_inner.ports(); }
    MagnetFixture* fixture() override { return m_inner.fixture(); }
    ChipFeeder* feeder() override { return &m_feeder; }

    std::vector<double> perChipMs;
    std::vector<long> rssKb;

  private:
    class Feeder : public ChipFeeder {
      public:
        explicit Feeder(TimedStation& station) : m_station(station) {}
        bool nextChip() override { return m_station.chipDone(); }

      private:
        TimedStation& m_station;
    };
    bool chipDone() {
        perChipMs.push_back(static_cast<double>(m_clock.nsecsElapsed()) / 1e6);
        if (perChipMs.size() % kBlock == 0) {
            rssKb.push_back(StatusKb("VmRSS"));
        }
        const bool more = m_inner.feeder()->nextChip();
        m_clock.restart();
        return more;
    }

    sim::SimulatedProgrammer& m_inner;
    Feeder m_feeder;
    QElapsedTimer m_clock;
};

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

    const QString record = dir.filePath(QStringLiteral("line.jsonl"));
    BatchOptions options;
    options.command = BatchCommand::Program;
    options.settings = path;
    options.port = 1;
    options.verify = true;
    options.quiet = true;
    options.count = chips;
    options.record = record;
    int messages = 0;
    BatchOutput output{[&messages](const QString&) { ++messages; }, [](const QString&) {}};
    CountingPause pause;
    sim::SimConfig config;
    config.chips = chips;
    sim::SimulatedProgrammer programmer(config);
    TimedStation station(programmer);
    BatchPrompts prompts(output);
    Application application(StartSettings{}, prompts, pause, &station);
    BatchRunner runner(options, output, application, prompts);
    const int exit = runner.run();
    std::vector<double>& perChipMs = station.perChipMs;
    std::vector<long>& rssKb = station.rssKb;

    // The record read back as a line's tools read it.
    int recordLines = 0;
    int passedLines = 0;
    QFile lines(record);
    if (lines.open(QIODevice::ReadOnly)) {
        while (!lines.atEnd()) {
            const QJsonObject line = QJsonDocument::fromJson(lines.readLine()).object();
            ++recordLines;
            passedLines += line.value(QStringLiteral("verdict")).toString() == u"PASS" ? 1 : 0;
        }
    }
    const int failures = (exit == kExitOk ? 0 : 1) + messages + (chips - passedLines);
    const auto block = [&perChipMs](std::size_t k) {
        return Summarize(
            std::vector<double>(perChipMs.begin() + static_cast<long>(k * kBlock),
                                perChipMs.begin() + static_cast<long>((k + 1) * kBlock)));
    };
    const Summary first = block(1);  // the first block warms the caches and the allocator
    const Summary last = block(perChipMs.size() / kBlock - 1);
    const long memoryGrowth = rssKb.back() - rssKb[1];
    PrintFigure(QStringLiteral("batch, %1 chips in one run, both parts programmed and verified at "
                               "the fixture's angles, recorded: median %2 ms "
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
    PrintFigure(QStringLiteral("batch, record after %1 chips: %2 whole JSON lines, %3 passed")
                    .arg(chips)
                    .arg(recordLines)
                    .arg(passedLines),
                QStringLiteral("target: one passed line per chip"),
                recordLines == chips && passedLines == chips);
    PrintDetail(QStringLiteral("exit %1, messages %2; sleeps asked for and not slept: %3 ms per "
                               "chip")
                    .arg(exit)
                    .arg(messages)
                    .arg(pause.slept / chips));
    return 0;
}
