// rk31prog's commands on the simulated programmer: exit codes, the windows' messages on
// standard error, and the device calls they lead to.
#include <gtest/gtest.h>

#include <functional>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>

#include "BatchFiles.h"
#include "device/Application.h"
#include "procedures/batch/BatchRun.h"
#include "sim/SimulatedProgrammer.h"
#include "support/ScriptedPrompts.h"

namespace rk31 {
namespace {

struct Outcome {
    int exit = -1;
    QStringList err;
    QStringList out;
    QStringList trace;
};

// rk31prog's run as its main wires it, on a fresh simulated programmer.
Outcome runBatch(const QStringList& arguments, const sim::SimConfig& config = {}) {
    const auto parsed = ParseBatchArguments(arguments);
    if (!parsed.options) {
        qFatal("refused: %s", qPrintable(parsed.error));
    }
    sim::SimulatedProgrammer programmer(config);
    Outcome run;
    BatchOutput output{[&run](const QString& line) { run.err << line; },
                       [&run](const QString& line) { run.out << line; }};
    BatchPrompts prompts(output);
    test::RecordingPause pause;
    Application app(StartSettings{}, prompts, pause, &programmer);
    BatchRunner runner(*parsed.options, output, app, prompts);
    run.exit = runner.run();
    run.trace = programmer.box().trace();
    return run;
}

class Batch : public ::testing::Test {
  protected:
    QString file(const QString& name, const QString& text) {
        const QString path = dir.filePath(name);
        test::WriteFile(path, text);
        return path;
    }
    QTemporaryDir dir;
};

TEST_F(Batch, ExitCodesMessagesAndWhatReachesTheChip) {
    const QString good = file("good.txt", test::TwoPartFile(test::kGoodPart, test::kGoodPart));
    QStringList shortLines = test::TwoPartFile(test::kGoodPart, test::kGoodPart).split("\r\n");
    shortLines.resize(41);
    const QString shortFile = file("short.txt", shortLines.join("\r\n") + "\r\n");
    QStringList badList = test::kGoodPart;
    badList[17] = "x";  // OutMode
    const QString badNumber = file("bad.txt", test::TwoPartFile(test::kGoodPart, badList));
    const QString onePart = file("one.txt", test::OnePartPointFile(1));
    const QString dual = file("dual.txt", test::DualPointFile());
    // Clockwise, A at 20 degrees to B at 200 degrees runs down through 0; DP lies off that way.
    QStringList clockwisePart = test::kGoodPart;
    clockwisePart[1] = "CW";
    clockwisePart[2] = "150.00";
    sim::SimConfig onClockwiseStretch;
    onClockwiseStretch.angle = 0;
    const QString clockwise = file("cw.txt", test::TwoPartFile(clockwisePart, clockwisePart));
    sim::SimConfig eepromFault;
    eepromFault.eepromFail = sim::kPart1;
    eepromFault.angle = 100;  // where a blank die's clamp low is not the programmed level
    sim::SimConfig magnet;
    magnet.angle = 100;
    const QString kMissing = "The selected file cannot be found!";

    const struct {
        const char* name;
        QStringList arguments;
        sim::SimConfig config;
        int exit;
        QStringList err;          // exactly, unless errStartsWith
        QStringList traceHas;     // calls that must be there
        QStringList traceHasNot;  // calls that must not
        bool errStartsWith = false;
    } cases[] = {
        // clang-format off
        {"verified and locked", {"program", good, "--port", "1", "--part", "1", "--verify", "--lock", "-q"}, magnet, kExitOk, {},
         {"ProgramEEPROM(0)", "ReadAngle(0)", "MeasureOutput(0, 1)", "CommLock(0)", "CloseChannel(-1)"}, {"PowerOnChip(1)"}},
        {"a clockwise part verifies too", {"program", clockwise, "--port", "1", "--part", "1", "--verify", "-q"}, onClockwiseStretch,
         kExitOk, {}, {"ProgramEEPROM(0)", "MeasureOutput(0, 1)"}, {}},
        {"EEPROM fault: verify fails, no lock", {"program", good, "--port", "1", "--part", "1", "--verify", "--lock", "-q"}, eepromFault,
         kExitVerifyFailed, {"Failed in programming device",
          "Part#1: verify failed at 100.00 deg expected 45.56 %VDD, measured 5.01 %VDD (tolerance 0.75)"},
         {"ProgramEEPROM(0)", "MeasureOutput(0, 1)", "PowerOffChip(0)", "CloseChannel(-1)"}, {"CommLock(0)"}},
        {"missing file", {"check", dir.filePath("none.txt")}, {}, kExitBadInput, {kMissing}, {}, {}},
        {"missing file, program", {"program", dir.filePath("none.txt"), "--port", "1"}, {}, kExitBadInput, {kMissing}, {}, {"OpenChannel(1)"}},
        {"41 lines", {"program", shortFile, "--port", "1"}, {}, kExitBadInput,
         {"Error with number:62 occurs! Please check the integrity of profile file!"}, {}, {"OpenChannel(1)"}},
        {"a list index that is no number", {"program", badNumber, "--port", "1"}, {}, kExitBadInput,
         {"Error with number:13 occurs! Please check the integrity of profile file!"}, {}, {"OpenChannel(1)"}},
        {"no programmer on the port", {"program", good, "--port", "3", "-q"}, {}, kExitDevice, {"Failed in Connecting Channel"},
         {"OpenChannel(3)"}, {"PowerOnChip(0)"}, true},
        {"one-part point file of Part#2, verified", {"program", onePart, "--port", "1", "--verify", "-q"}, magnet, kExitOk, {},
         {"ClearSolverSettings(1)", "WriteBufferToDevice(1)", "ProgramEEPROM(1)", "MeasureOutput(1, 1)", "PowerOffChip(1)"},
         {"ReadMemory(0, &H48)"}},
        {"two-part point file on one part", {"program", dual, "--port", "1", "--part", "1"}, {}, kExitBadInput,
         {"A two-part point file programs both parts."}, {}, {"OpenChannel(1)"}},
        {"two-part point file, both verified and locked", {"program", dual, "--port", "1", "--verify", "--lock", "-q"}, magnet, kExitOk,
         {}, {"WriteBufferToDevice(0)", "WriteBufferToDevice(1)", "CommLock(0)", "CommLock(1)"}, {}},
        // clang-format on
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Outcome run = runBatch(c.arguments, c.config);
        EXPECT_EQ(run.exit, c.exit);
        if (c.errStartsWith) {
            EXPECT_EQ(run.err.mid(0, c.err.size()), c.err) << qPrintable(run.err.join('\n'));
        } else {
            EXPECT_EQ(run.err, c.err) << qPrintable(run.err.join('\n'));
        }
        for (const QString& call : c.traceHas) {
            EXPECT_TRUE(run.trace.contains(call)) << qPrintable(call);
        }
        for (const QString& call : c.traceHasNot) {
            EXPECT_FALSE(run.trace.contains(call)) << qPrintable(call);
        }
        if (c.exit == kExitBadInput) {
            EXPECT_TRUE(run.trace.isEmpty()) << qPrintable(run.trace.join('\n'));
        }
    }
}

TEST_F(Batch, JsonGivesOneObjectPerPart) {
    const QString good = file("good.txt", test::TwoPartFile(test::kGoodPart, test::kGoodPart));
    sim::SimConfig config;
    config.angle = 100;
    config.eepromFail = sim::kPart2;
    const Outcome run = runBatch({"program", good, "--port", "1", "--verify", "--json"}, config);
    EXPECT_EQ(run.exit, kExitVerifyFailed);
    ASSERT_EQ(run.out.size(), 2) << qPrintable(run.out.join('\n'));
    const QJsonObject first = QJsonDocument::fromJson(run.out[0].toUtf8()).object();
    const QJsonObject second = QJsonDocument::fromJson(run.out[1].toUtf8()).object();
    EXPECT_EQ(first.value("part").toInt(), 1);
    EXPECT_EQ(first.value("result").toString(), "verified");
    EXPECT_NEAR(first.value("expected").toDouble(), 45.56, 0.5);
    EXPECT_NEAR(first.value("measured").toDouble(), 45.56, 0.1);
    EXPECT_EQ(second.value("result").toString(), "verify failed");
    EXPECT_EQ(second.value("messages").toArray().first().toString(),
              "Failed in programming device");
    EXPECT_NEAR(second.value("measured").toDouble(), 5.0, 0.1) << "a blank die";
}

TEST_F(Batch, CurvePrintsTheLinearGraphRowsWithoutADevice) {
    const QString good = file("good.txt", test::TwoPartFile(test::kGoodPart, test::kGoodPart));
    // --csv is the only format, and may be left out.
    for (const QStringList& arguments : {QStringList{"curve", good, "--csv", "--part", "1"},
                                         QStringList{"curve", good, "--part", "1"}}) {
        const Outcome run = runBatch(arguments);
        EXPECT_EQ(run.exit, kExitOk);
        EXPECT_TRUE(run.err.isEmpty()) << qPrintable(run.err.join('\n'));
        EXPECT_EQ(run.out.first(), "part,segment,angle_deg,level_pct_vdd");
        const QString rows = run.out.join(u' ');
        EXPECT_TRUE(rows.contains(",20,10 ") && rows.contains(",200,90 ")) << qPrintable(rows);
        EXPECT_TRUE(run.out.filter(QRegularExpression("^(?!1,)")).size() == 1) << "Part#1 only";
        EXPECT_TRUE(run.trace.isEmpty());
    }
}

}  // namespace
}  // namespace rk31
