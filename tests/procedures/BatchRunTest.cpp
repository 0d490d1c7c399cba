// rk31prog's runs on the simulated station: one verdict per part with its stage and cause, exit
// codes a line script can trust, the device calls they lead to, records and chip after chip.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <functional>

#include "BatchFiles.h"
#include "device/Application.h"
#include "procedures/batch/BatchRun.h"
#include "procedures/batch/Report.h"
#include "sim/SimulatedProgrammer.h"
#include "support/ScriptedPrompts.h"

namespace rk31 {
namespace {

struct Outcome {
    int exit = -1;
    QStringList err;
    QStringList out;
    QStringList trace;
    int count(const QString& call) const { return static_cast<int>(trace.count(call)); }
};

// The programmer's traffic as a station without a chip feeder has it: the operator changes chips.
class HandFedStation : public DeviceDriver {
  public:
    explicit HandFedStation(sim::SimulatedProgrammer& inner) : m_inner(inner) {}
    std::shared_ptr<QZ7734Device> create(const QString& progId) override {
        return m_inner.create(progId);
    }
    PortProber* ports() override { return m_inner.ports(); }
    MagnetFixture* fixture() override { return m_inner.fixture(); }

  private:
    sim::SimulatedProgrammer& m_inner;
};

// The seams rk31prog's main gives a run; a test may set what Ctrl-C, a closed output and the
// operator do.
struct Seams {
    std::function<bool()> interrupted = [] { return false; };
    std::function<bool()> closed = [] { return false; };
    std::function<bool()> nextChip = [] { return false; };
    bool handFed = false;
};

Outcome runOn(sim::SimulatedProgrammer& programmer, const QStringList& arguments,
              const Seams& seams = {}) {
    const auto parsed = ParseBatchArguments(arguments);
    if (!parsed.options) {
        qFatal("refused: %s", qPrintable(parsed.error));
    }
    Outcome run;
    BatchOutput output{[&run](const QString& line) { run.err << line; },
                       [&run](const QString& line) { run.out << line; }};
    output.interrupted = seams.interrupted;
    output.closed = seams.closed;
    output.nextChip = seams.nextChip;
    BatchPrompts prompts(output);
    test::RecordingPause pause;
    HandFedStation handFed(programmer);
    StartSettings settings;
    settings.deviceLog = parsed.options->log;
    Application app(settings, prompts, pause,
                    seams.handFed ? static_cast<DeviceDriver*>(&handFed) : &programmer);
    BatchRunner runner(*parsed.options, output, app, prompts);
    run.exit = runner.run();
    run.trace = programmer.box().trace();
    return run;
}

Outcome runBatch(const QStringList& arguments, const sim::SimConfig& config = {},
                 const Seams& seams = {}) {
    sim::SimulatedProgrammer programmer(config);
    return runOn(programmer, arguments, seams);
}

// The verdict lines of a run without their times.
QStringList verdicts(const Outcome& run) {
    QStringList lines;
    for (const QString& line : run.out) {
        if (line.contains(QStringLiteral(" PASS")) || line.contains(QStringLiteral(" FAIL"))) {
            lines << line.section(u' ', 1);
        }
    }
    return lines;
}

QList<QJsonObject> jsonLines(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QList<QJsonObject> objects;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (!line.isEmpty()) {
            objects << QJsonDocument::fromJson(line).object();
        }
    }
    return objects;
}

class Batch : public ::testing::Test {
  protected:
    QString file(const QString& name, const QString& text) {
        const QString path = dir.filePath(name);
        test::WriteFile(path, text);
        return path;
    }
    QString good() { return file("good.txt", test::TwoPartFile(test::kGoodPart, test::kGoodPart)); }
    QTemporaryDir dir;
};

sim::SimConfig with(const std::function<void(sim::SimConfig&)>& set) {
    sim::SimConfig config;
    set(config);
    return config;
}

TEST_F(Batch, OneVerdictPerPartWithItsStageCauseAndExitCode) {
    const QString goodFile = good();
    const QString onePart = file("one.txt", test::OnePartPointFile(1));
    const QString dual = file("dual.txt", test::DualPointFile());
    // Clockwise, A at 20 degrees to B at 200 degrees runs down through 0; DP lies off that way.
    QStringList clockwisePart = test::kGoodPart;
    clockwisePart[1] = "CW";
    clockwisePart[2] = "150.00";
    const QString clockwise = file("cw.txt", test::TwoPartFile(clockwisePart, clockwisePart));
    const auto part1 = [&goodFile](QStringList more) {
        return QStringList{"program", goodFile, "--port", "1", "--part", "1", "-q"} + more;
    };
    const QString file1 = " " + goodFile + " chip 1 Part#1 ";
    const auto noFixture = [](double angle, std::optional<float> output = std::nullopt) {
        return with([angle, output](sim::SimConfig& c) {
            c.fixture = false;
            c.angle = angle;
            c.outputOverride = output;
        });
    };

    const struct {
        const char* name;
        QStringList arguments;
        sim::SimConfig config;
        int exit;
        QString verdict;          // Part#1's line after the time
        QStringList traceHas;     // calls that must be there
        QStringList traceHasNot;  // calls that must not
    } cases[] = {
        // clang-format off
        {"verified at the fixture's angles and locked", part1({"--verify", "--lock"}), {}, kExitOk,
         "COM1" + file1 + "PASS, locked", {"ProgramEEPROM(0)", "CommLock(0)", "CloseChannel(-1)"}, {"PowerOnChip(1)"}},
        {"a clockwise part verifies too", {"program", clockwise, "--port", "1", "--part", "1", "--verify", "-q"}, {}, kExitOk,
         "COM1 " + clockwise + " chip 1 Part#1 PASS", {"ProgramEEPROM(0)"}, {}},
        {"EEPROM fault: no verify and no lock after the failed step", part1({"--verify", "--lock"}),
         with([](auto& c) { c.eepromFail = sim::kPart1; }), kExitDevice,
         "COM1" + file1 + "FAIL program: Failed in programming device", {"ProgramEEPROM(0)", "PowerOffChip(0)", "CloseChannel(-1)"},
         {"ReadAngle(0)", "MeasureOutput(0, 1)", "CommLock(0)"}},
        {"no supply voltage", part1({"--verify"}), with([](auto& c) { c.noSupply = sim::kPart1; }), kExitDevice,
         "COM1" + file1 + "FAIL power: no supply voltage read on Part#1 (MeasureVDD gave -200.00 V)", {"MeasureVDD(0)"},
         {"ProgramEEPROM(0)", "MeasureOutput(0, 1)"}},
        {"a locked die", part1({}), with([](auto& c) { c.locked = sim::kPart1; }), kExitDevice,
         "COM1" + file1 + "FAIL identification: Failed to set OWI mode due to CommLock!...Return to ADC mode!", {}, {"ProgramEEPROM(0)"}},
        {"an identification read error", part1({}), with([](auto& c) { c.idError = sim::kPart1; }), kExitDevice,
         "COM1" + file1 + "FAIL identification: Read Error! Please Check chip connections!", {"ReadMemory(0, &H48)"}, {"ProgramEEPROM(0)"}},
        {"no programmer behind the port", {"program", goodFile, "--port", "3", "--part", "1", "-q"}, {}, kExitDevice,
         "COM3" + file1 + "FAIL connect: Failed in Connecting Channel (no programmer answers on COM3)", {"OpenChannel(3)"},
         {"PowerOnChip(0)"}},
        {"a port another program holds", {"program", goodFile, "--port", "2", "--part", "1", "-q"}, {}, kExitDevice,
         "COM2" + file1 + "FAIL connect: Failed in Connecting Channel (COM2 is held by another program)", {}, {"PowerOnChip(0)"}},
        {"the fixture cannot reach an angle: verify fails, no lock", part1({"--verify", "--lock"}),
         with([](auto& c) { c.fixtureFail = true; }), kExitVerifyFailed,
         "COM1" + file1 + "FAIL verify: The magnet fixture cannot reach 4.50 deg!", {"ProgramEEPROM(0)"}, {"CommLock(0)"}},
        {"without a fixture, on the clamp: passes and says a blank chip would too", part1({"--verify"}), noFixture(350), kExitOk,
         "COM1" + file1 + "PASS (at 350.00 deg a blank chip would pass as well: the verify cannot tell them apart "
         "(turn the magnet where the curve is off its clamp low))", {"MeasureOutput(0, 1)"}, {}},
        {"... and fails with --strict, unlocked", part1({"--verify", "--strict", "--lock"}), noFixture(350), kExitVerifyFailed,
         "COM1" + file1 + "FAIL verify: at 350.00 deg a blank chip would pass as well: the verify cannot tell them apart "
         "(turn the magnet where the curve is off its clamp low)", {}, {"CommLock(0)"}},
        {"without a fixture, off the curve", part1({"--verify"}), noFixture(100, 50.0f), kExitVerifyFailed,
         "COM1" + file1 + "FAIL verify: output off the curve at 100.00 deg expected 45.56 %VDD, measured 50.00 %VDD "
         "(tolerance 0.75)", {}, {}},
        {"verify alone: a blank chip fails and nothing is programmed", {"verify", goodFile, "--port", "1", "--part", "1", "-q"}, {},
         kExitVerifyFailed, "COM1" + file1 + "FAIL verify: output off the curve at 14.50 deg expected 7.50 %VDD, measured 5.01 %VDD "
         "(tolerance 0.75), 8 of 12 angles off", {"ReadMemory(0, &H48)", "MeasureOutput(0, 1)", "PowerOffChip(0)"},
         {"ClearSolverSettings(0)", "WriteBufferToDevice(0)", "ProgramEEPROM(0)"}},
        {"one-part point file of Part#2", {"program", onePart, "--port", "1", "--verify", "-q"}, {}, kExitOk,
         "COM1 " + onePart + " chip 1 Part#2 PASS", {"ClearSolverSettings(1)", "ProgramEEPROM(1)", "MeasureOutput(1, 1)", "PowerOffChip(1)"},
         {"ReadMemory(0, &H48)"}},
        // The preparation's own EEPROM step failing is a failed program, though Power On runs it.
        {"one-part point file, the solver not cleared", {"program", onePart, "--port", "1", "-q"},
         with([](auto& c) { c.clearFail = sim::kPart2; }), kExitDevice,
         "COM1 " + onePart + " chip 1 Part#2 FAIL program: Errors in ClearSolverSettings!", {"ClearSolverSettings(1)"}, {}},
        {"one-part point file, the blank EEPROM not programmed", {"program", onePart, "--port", "1", "-q"},
         with([](auto& c) { c.eepromFail = sim::kPart2; }), kExitDevice,
         "COM1 " + onePart + " chip 1 Part#2 FAIL program: Failed in programming device", {"ProgramEEPROM(1)"}, {}},
        {"two-part point file, verified and locked", {"program", dual, "--port", "1", "--verify", "--lock", "-q"}, {}, kExitOk,
         "COM1 " + dual + " chip 1 Part#1 PASS, locked", {"WriteBufferToDevice(1)", "CommLock(0)", "CommLock(1)"}, {}},
        // clang-format on
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Outcome run = runBatch(c.arguments, c.config);
        EXPECT_EQ(run.exit, c.exit);
        ASSERT_FALSE(verdicts(run).isEmpty()) << qPrintable(run.out.join('\n'));
        EXPECT_EQ(verdicts(run).front(), c.verdict) << qPrintable(run.err.join('\n'));
        for (const QString& call : c.traceHas) {
            EXPECT_TRUE(run.trace.contains(call)) << qPrintable(call);
        }
        for (const QString& call : c.traceHasNot) {
            EXPECT_FALSE(run.trace.contains(call)) << qPrintable(call);
        }
    }
}

TEST_F(Batch, WhatIsRefusedBeforeTheFirstDeviceCall) {
    QStringList shortLines = test::TwoPartFile(test::kGoodPart, test::kGoodPart).split("\r\n");
    shortLines.resize(41);
    QStringList badList = test::kGoodPart;
    badList[17] = "x";  // OutMode
    QStringList noPoints = test::kGoodPart;
    for (const int i : {5, 6, 7, 8}) {
        noPoints[i] = "";
    }
    QStringList hugeNumber = test::kGoodPart;
    hugeNumber[5] = QString(60000, u'9');  // angle of point A
    const QString folder = dir.filePath("folder.txt");
    ASSERT_TRUE(QDir().mkdir(folder));
    const QString fifo = dir.filePath("fifo.txt");
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    const QString missing = dir.filePath("none.txt");
    const QString huge = file("huge.txt", QString(70000, u'x'));
    const QString kIntegrity =
        "Error with number:%1 occurs! Please check the integrity of profile file!";

    const struct {
        const char* name;
        QString path;
        QStringList more;
        QString cause;
    } cases[] = {
        {"missing", missing, {}, "The selected file cannot be found!"},
        {"a folder", folder, {}, kIntegrity.arg(75)},
        {"a FIFO",
         fifo,
         {},
         "The selected file is not a regular file and cannot be a settings file!"},
        {"a device that never ends",
         "/dev/zero",
         {},
         "The selected file is not a regular file and cannot be a settings file!"},
        {"huge", huge, {}, "The selected file is too large to be a settings file!"},
        {"41 lines", file("short.txt", shortLines.join("\r\n") + "\r\n"), {}, kIntegrity.arg(62)},
        {"a list index that is no number",
         file("bad.txt", test::TwoPartFile(test::kGoodPart, badList)),
         {},
         kIntegrity.arg(13)},
        {"the solver refuses Part#2",
         file("nopoints.txt", test::TwoPartFile(test::kGoodPart, noPoints)),
         {},
         "Part#2: Error Angles of Point A and Point B input"},
        {"a two-part point file on one part",
         file("dual.txt", test::DualPointFile()),
         {"--part", "1"},
         "A two-part point file programs both parts."},
        {"a record file that cannot be appended",
         good(),
         {"--record", dir.filePath("no/such/record")},
         "cannot append to the record file " + dir.filePath("no/such/record") +
             ": No such file or directory"},
        {"a log that cannot be appended",
         good(),
         {"--log", dir.filePath("no/such/log")},
         "cannot append to the device log " + dir.filePath("no/such/log") +
             ": No such file or directory"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Outcome run =
            runBatch(QStringList{"program", c.path, "--port", "1", "--verify", "--lock"} + c.more);
        EXPECT_EQ(run.exit, kExitBadInput);
        EXPECT_TRUE(run.trace.isEmpty()) << qPrintable(run.trace.join('\n'));
        ASSERT_EQ(verdicts(run).size(), 1) << qPrintable(run.out.join('\n'));
        EXPECT_EQ(verdicts(run).front(), "COM1 " + c.path + " FAIL file: " + c.cause);
    }
    // A number of 60,000 digits is shown by its start only.
    const Outcome run = runBatch(
        {"check", file("long.txt", test::TwoPartFile(hugeNumber, test::kGoodPart)), "--json"});
    EXPECT_EQ(run.exit, kExitBadInput);
    ASSERT_FALSE(run.err.isEmpty());
    EXPECT_LT(run.err.front().size(), 200);
    EXPECT_TRUE(run.err.front().endsWith(QString(u'\u2026') + " !!!"))
        << qPrintable(run.err.front());
}

TEST_F(Batch, JsonIsOneDocumentWithEveryChipPartAndAngle) {
    const Outcome run = runBatch({"program", good(), "--port", "1", "--verify", "--json"},
                                 with([](auto& c) { c.eepromFail = sim::kPart2; }));
    EXPECT_EQ(run.exit, kExitDevice);
    ASSERT_EQ(run.out.size(), 1) << qPrintable(run.out.join('\n'));
    const QJsonObject document = QJsonDocument::fromJson(run.out[0].toUtf8()).object();
    EXPECT_EQ(document.value("exit").toInt(), kExitDevice);
    const QJsonArray parts = document.value("chips")[0].toObject().value("parts").toArray();
    ASSERT_EQ(parts.size(), 2);
    const QJsonObject first = parts[0].toObject();
    EXPECT_EQ(first.value("verdict").toString(), "PASS");
    EXPECT_EQ(first.value("id").toString(), "35");
    EXPECT_NEAR(first.value("vdd").toDouble(), 5.0, 0.1);
    // The solver values in the order sent: only SetSolverParameter calls, by their ids.
    QList<int> ids;
    for (const QJsonValue& value : first.value("solver").toArray()) {
        ids << value.toObject().value("id").toInt();
    }
    EXPECT_EQ(ids, QList<int>({1, 2, 3, 4, 8, 5, 9, 6, 10, 7, 11}));
    EXPECT_GE(first.value("verify").toArray().size(), 8);
    const QJsonObject second = parts[1].toObject();
    EXPECT_EQ(second.value("stage").toString(), "program");
    EXPECT_EQ(second.value("cause").toString(), "Failed in programming device");
    EXPECT_TRUE(second.value("verify").toArray().isEmpty());
    EXPECT_EQ(
        document.value("summary").toObject().value("failed_by_stage").toObject().value("program"),
        1);
}

TEST_F(Batch, ChipAfterChipWithRecordsAndReport) {
    const QString record = dir.filePath("line.jsonl");
    // Every second chip's Part#1 cannot be burnt; the feeder holds three chips.
    const sim::SimConfig config = with([](auto& c) {
        c.eepromFail = sim::kPart1;
        c.faultEvery = 2;
        c.chips = 3;
    });
    const Outcome run = runBatch({"program", good(), "--port", "1", "--part", "1", "--verify",
                                  "--count", "0", "--record", record},
                                 config);
    EXPECT_EQ(run.exit, kExitDevice);
    EXPECT_EQ(run.count("ProgramEEPROM(0)"), 3) << "one programming per chip";
    EXPECT_EQ(run.count("OpenChannel(1)"), 3);
    const QList<QJsonObject> lines = jsonLines(record);
    ASSERT_EQ(lines.size(), 3);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(lines[i].value("chip").toInt(), i + 1);
        EXPECT_EQ(lines[i].value("verdict").toString(), i == 1 ? "FAIL" : "PASS");
        EXPECT_EQ(lines[i].value("sha256").toString().size(), 64);
        EXPECT_FALSE(lines[i].value("host").toString().isEmpty());
    }
    EXPECT_TRUE(run.out.last().startsWith("3 chips: 2 passed, 1 failed (program 1); "))
        << qPrintable(run.out.last());

    // A second run appends; a torn last line of a killed writer is left out of the report.
    runBatch({"program", good(), "--port", "1", "--part", "1", "--record", record, "-q"});
    QFile torn(record);
    ASSERT_TRUE(torn.open(QIODevice::Append));
    torn.write("{\"verdict\":\"PA");
    torn.close();
    const RecordReport report = ReportOnRecords(record, false);
    ASSERT_TRUE(report.read);
    EXPECT_EQ(report.lines.front(), "4 chips, 3 passed (75.0 %)");
    EXPECT_TRUE(report.lines.contains("      1  program: Failed in programming device"))
        << qPrintable(report.lines.join('\n'));
    EXPECT_EQ(report.lines.last(), "1 lines are no record and were left out");
    EXPECT_FALSE(ReportOnRecords(dir.filePath("none.jsonl"), false).read);
}

TEST_F(Batch, TheOperatorFeedsChipsWhenTheStationCannot) {
    int asked = 0;
    Seams seams;
    seams.handFed = true;
    seams.nextChip = [&asked] { return ++asked < 2; };  // one Enter, then the end of input
    const Outcome run = runBatch(
        {"program", good(), "--port", "1", "--part", "1", "--count", "5", "-q"}, {}, seams);
    EXPECT_EQ(run.exit, kExitOk);
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(verdicts(run).size(), 2);
}

TEST_F(Batch, CtrlCFinishesTheChipSafelyAndSaysInterrupted) {
    const QString record = dir.filePath("line.jsonl");
    sim::SimulatedProgrammer programmer{sim::SimConfig{}};
    Seams seams;
    seams.interrupted = [&programmer] {
        return programmer.box().trace().contains("ProgramEEPROM(0)");
    };
    const Outcome run = runOn(programmer,
                              {"program", good(), "--port", "1", "--verify", "--lock", "--count",
                               "0", "--record", record, "-q"},
                              seams);
    EXPECT_EQ(run.exit, kExitInterrupted);
    const QStringList lines = verdicts(run);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines[0].endsWith("Part#1 FAIL verify: interrupted by Ctrl-C"))
        << qPrintable(lines[0]);
    EXPECT_TRUE(lines[1].endsWith("Part#2 FAIL power: interrupted by Ctrl-C"))
        << qPrintable(lines[1]);
    // Programmed, then straight to power off and disconnect: no verify, no lock, no Part#2.
    const QStringList after = run.trace.mid(run.trace.lastIndexOf("ProgramEEPROM(0)"));
    EXPECT_TRUE(after.contains("PowerOffChip(0)"));
    EXPECT_EQ(after.last(), "CloseChannel(-1)");
    EXPECT_FALSE(after.contains("ReadAngle(0)") || after.contains("CommLock(0)") ||
                 after.contains("PowerOnChip(1)"));
    const QList<QJsonObject> records = jsonLines(record);
    ASSERT_EQ(records.size(), 1);
    EXPECT_TRUE(records[0].value("interrupted").toBool());
}

TEST_F(Batch, AClosedOutputEndsTheRunAfterTheChip) {
    Seams seams;
    seams.closed = [] { return true; };
    const Outcome run =
        runBatch({"program", good(), "--port", "1", "--count", "3", "--verify", "--lock"},
                 with([](auto& c) { c.chips = 3; }), seams);
    EXPECT_EQ(run.exit, kExitOk);
    EXPECT_EQ(run.count("OpenChannel(1)"), 1);
    EXPECT_EQ(run.trace.last(), "CloseChannel(-1)");
    EXPECT_TRUE(run.trace.contains("CommLock(1)"));
}

TEST_F(Batch, AChipProgrammedWithAnotherFileFailsVerify) {
    QStringList other = test::kGoodPart;
    other[6] = "30.00";  // point A at 30 %VDD instead of 10
    const QString otherFile = file("other.txt", test::TwoPartFile(other, other));
    sim::SimulatedProgrammer programmer{sim::SimConfig{}};
    const Outcome first =
        runOn(programmer, {"program", otherFile, "--port", "1", "--part", "1", "-q"});
    ASSERT_EQ(first.exit, kExitOk) << qPrintable(first.err.join('\n'));
    const Outcome run = runOn(programmer, {"verify", good(), "--port", "1", "--part", "1", "-q"});
    EXPECT_EQ(run.exit, kExitVerifyFailed);
    ASSERT_FALSE(verdicts(run).isEmpty());
    EXPECT_TRUE(verdicts(run).front().contains("Part#1 FAIL verify: output off the curve at "))
        << qPrintable(verdicts(run).front());
}

TEST_F(Batch, ALogThatCannotBeWrittenFailsTheRun) {
    const Outcome run =
        runBatch({"program", good(), "--port", "1", "--part", "1", "--log", "/dev/full", "-q"});
    EXPECT_EQ(run.exit, kExitDevice);
    EXPECT_TRUE(
        run.err.contains("rk31prog: cannot write the device log /dev/full: No space left "
                         "on device"))
        << qPrintable(run.err.join('\n'));
}

TEST_F(Batch, CurvePrintsTheLinearGraphRowsWithoutADevice) {
    // --csv is the only format, and may be left out.
    for (const QStringList& arguments : {QStringList{"curve", good(), "--csv", "--part", "1"},
                                         QStringList{"curve", good(), "--part", "1"}}) {
        const Outcome run = runBatch(arguments);
        EXPECT_EQ(run.exit, kExitOk);
        EXPECT_TRUE(run.err.isEmpty()) << qPrintable(run.err.join('\n'));
        EXPECT_EQ(run.out.first(), "part,segment,angle_deg,level_pct_vdd");
        const QString rows = run.out.join(u' ');
        EXPECT_TRUE(rows.contains(",20,10 ") && rows.contains(",200,90 ")) << qPrintable(rows);
        EXPECT_EQ(run.out.filter(QRegularExpression("^(?!1,)")).size(), 1) << "Part#1 only";
        EXPECT_TRUE(run.trace.isEmpty());
    }
    // --part 2 of a two-part file: Part#2's rows alone, the same curve.
    const Outcome part2 = runBatch({"curve", good(), "--part", "2"});
    EXPECT_EQ(part2.exit, kExitOk);
    EXPECT_EQ(part2.out.filter(QRegularExpression("^(?!2,)")).size(), 1) << "Part#2 only";
    EXPECT_TRUE(part2.out.join(u' ').contains("2,1,20,10 ")) << qPrintable(part2.out.join(u' '));
}

}  // namespace
}  // namespace rk31
