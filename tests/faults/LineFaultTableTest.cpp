// The serial line's faults against the commands of a main window, with rk31-boxsim behind a
// pseudo-terminal: the message the user sees, nothing hangs, a call the box never got leaves the
// window's record of the dies as it was, a failed program is never taken for a success, and
// Disconnect works afterwards.
#include <QtTest>

#include "Boxsim.h"
#include "procedures/BatchFiles.h"
#include "support/WindowHarness.h"

using namespace rk31;
using namespace rk31::test;

namespace {

enum class Command { Connect, Power, Program };

struct Row {
    const char* name;
    const char* fault;  // an rk31-boxsim option
    Command command;
    // The messages in order, separated by " | ", each as it starts; %1 stands for the line's path.
    const char* messages;
    const char* neverDone;  // the call the box must not have executed, or ""
    bool more = false;      // further messages may follow, as the window goes on
};

// Reads are asked again after a garbled or late answer; everything else fails at once.
const Row kRows[] = {
    {"cable pulled at the handshake", "--pull-during=Hello", Command::Connect,
     "Failed in Connecting Channel", "OpenChannel(1)"},
    {"every byte lost", "--drop=1", Command::Connect, "Failed in Connecting Channel",
     "OpenChannel(1)"},
    {"garbled OpenChannel", "--garble=OpenChannel", Command::Connect,
     "Failed in Connecting Channel", ""},
    {"cable pulled at power-on", "--pull-during=PowerOnChip", Command::Power,
     "PowerOnChip on COM1 (%1): the line COM1 (%1) is lost", "PowerOnChip(0)"},
    {"garbled power-on", "--garble=PowerOnChip", Command::Power,
     "PowerOnChip on COM1 (%1): an answer with a bad CRC", ""},
    {"stalled supply reading", "--stall=MeasureVDD:2500", Command::Power, "", ""},
    {"garbled supply reading", "--garble=MeasureVDD", Command::Power,
     "MeasureVDD on COM1 (%1): an answer with a bad CRC", ""},
    {"garbled solver value", "--garble=SetSolverParameter", Command::Program,
     "SetSolverParameter on COM1 (%1): an answer with a bad CRC", ""},
    {"garbled buffer write", "--garble=WriteBufferToDevice", Command::Program,
     "WriteBufferToDevice on COM1 (%1): an answer with a bad CRC", ""},
    {"cable pulled at the EEPROM program", "--pull-during=ProgramEEPROM", Command::Program,
     "Failed in programming device | Programmer is not connected: the line COM1 (%1) is lost",
     "ProgramEEPROM(0)"},
    {"garbled EEPROM program", "--garble=ProgramEEPROM", Command::Program,
     "Failed in programming device", ""},
    // The box is still busy with the program when the window goes on.
    {"stalled EEPROM program", "--stall=ProgramEEPROM:4000", Command::Program,
     "Failed in programming device", "", true},
};

}  // namespace

class LineFaultTable : public QObject {
    Q_OBJECT

  private slots:
    void faults_data() {
        QTest::addColumn<int>("row");
        for (int i = 0; i < static_cast<int>(std::size(kRows)); ++i) {
            QTest::newRow(kRows[i].name) << i;
        }
    }
    void faults() {
        QFETCH(int, row);
        const Row& r = kRows[row];
        QTemporaryDir dir;
        const QString settings = dir.filePath("chip.txt");
        WriteFile(settings, TwoPartFile(kGoodPart, kGoodPart));
        // A pulled cable is plugged back after a while: long after the window's calls that follow
        // the failed one, before the window powers off.
        const QString fault = QString::fromLatin1(r.fault);
        const bool pulled = fault.startsWith(QStringLiteral("--pull"));
        LineBench line(
            QStringLiteral("latency=0"),
            pulled ? QStringList{fault, QStringLiteral("--replug=2000")} : QStringList{fault}, {},
            1000);
        auto window = line.window(1);
        QWidget* w = window.get();
        line.prompts.fileNames.push_back(settings);
        click(w, "mOpen");
        const auto connect = [&] {
            scriptPortChoice(line.prompts, "COM1");
            click(w, "connect");
        };
        if (r.command != Command::Connect) {
            connect();
            check(w, "PartEnable", 0, true);
        }
        if (r.command == Command::Program) {
            click(w, "PowerOn", 0);
        }
        QCOMPARE(line.prompts.messages, QStringList());
        const std::int32_t before = line.session().ChipState[0];

        switch (r.command) {
            case Command::Connect:
                connect();
                break;
            case Command::Power:
                click(w, "PowerOn", 0);
                break;
            case Command::Program:
                click(w, "btnconfigsolver", 0);
                break;
        }
        const QStringList expected = QString::fromLatin1(r.messages)
                                         .replace(QStringLiteral("%1"), line.box.link())
                                         .split(QStringLiteral(" | "), Qt::SkipEmptyParts);
        const QStringList& messages = line.prompts.messages;
        QVERIFY2(
            messages.size() == expected.size() || (r.more && messages.size() > expected.size()),
            qPrintable(messages.join(" | ")));
        for (qsizetype i = 0; i < expected.size(); ++i) {
            QVERIFY2(messages[i].startsWith(expected[i]), qPrintable(messages[i]));
        }
        if (*r.neverDone != 0) {
            QVERIFY(!line.box.trace().contains(QString::fromLatin1(r.neverDone)));
            QCOMPARE(line.session().ChipState[0], before);
        }
        if (r.command == Command::Program) {
            QVERIFY(!messages.join(u'\n').contains("programmed", Qt::CaseInsensitive));
        }
        // Power off and Disconnect work whatever the line did, once it is back and the box awake.
        if (pulled) {
            line.box.nextPath();
        }
        if (fault.startsWith(QStringLiteral("--stall="))) {
            const QString stalled = fault.section(u'=', 1).section(u':', 0, 0) + u'(';
            QTRY_VERIFY_WITH_TIMEOUT(!line.box.trace().filter(stalled).isEmpty(), 30000);
        }
        line.prompts.messages.clear();
        if (line.session().ChipState[0] != PowerOff) {
            click(w, "PowerOn", 0);
        }
        if (line.session().ProgrammerConnected != 0) {
            click(w, "connect");
            QCOMPARE(line.session().ProgrammerConnected, 0);
        }
    }

    // A noisy line, bits flipped at random both ways: whatever fails, the window finishes, and a
    // Program that shows no message was really burnt into the EEPROM.
    void noisyLineNeverTakesAFailureForASuccess() {
        QTemporaryDir dir;
        const QString settings = dir.filePath("chip.txt");
        WriteFile(settings, TwoPartFile(kGoodPart, kGoodPart));
        for (const char* seed : {"--seed=1", "--seed=2", "--seed=3"}) {
            LineBench line(QStringLiteral("latency=0"),
                           {QStringLiteral("--flip=0.004"), QString::fromLatin1(seed)}, {}, 1000);
            auto window = PoweredTwoPartWindow(line.app, line.prompts, settings);
            QWidget* w = window.get();
            if (!usable(w, "btnconfigsolver", 0)) {
                continue;  // the noise stopped the window before it could program
            }
            const qsizetype before = line.prompts.messages.size();
            click(w, "btnconfigsolver", 0);
            if (line.prompts.messages.size() == before && line.session().ChipState[0] != PowerOff) {
                QVERIFY2(line.box.trace().contains("ProgramEEPROM(0)"), seed);
            }
        }
    }

    // A fault rk31-boxsim cannot read stops it before it serves, saying which.
    void badFaultSettings() {
        const struct {
            const char* environment;
            QStringList options;
            const char* said;
        } cases[] = {
            {"", {"--stall=ReadAngle"}, "bad value in 'stall=ReadAngle'"},
            {"", {"--stall=:500"}, "bad value in 'stall=:500'"},
            {"", {"--stall=ReadAngle:-1"}, "bad value in 'stall=ReadAngle:-1'"},
            {"", {"--drop=1.5"}, "bad value in 'drop=1.5'"},
            {"", {"--pull-during=ProgramEEPROM:0"}, "bad value in 'pull_during=ProgramEEPROM:0'"},
            {"", {"--pull-after=0"}, "bad value in 'pull_after=0'"},
            {"", {"--lose=1"}, "unknown setting 'lose=1'"},
            {"", {"drop=1"}, "not an option: drop=1"},
            {"flip=2", {}, "bad value in 'flip=2'"},
        };
        for (const auto& c : cases) {
            QProcess box;
            QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
            env.insert(QStringLiteral("RK31_BOXSIM"), QString::fromLatin1(c.environment));
            box.setProcessEnvironment(env);
            box.start(QStringLiteral(BOXSIM), c.options);
            QVERIFY(box.waitForFinished(30000));
            QCOMPARE(box.exitCode(), 2);
            const QString said = QString::fromLocal8Bit(box.readAllStandardError());
            QVERIFY2(said.startsWith(QStringLiteral("rk31-boxsim: ") + c.said), qPrintable(said));
            QVERIFY(box.readAllStandardOutput().isEmpty());
        }
    }

    // The cable pulled in the middle of a session and plugged back: the failed call is
    // reported, Disconnect works, and a new Connect finds the box again.
    void cablePluggedBack() {
        LineBench line(QStringLiteral("latency=0"),
                       {QStringLiteral("--pull-during=PowerOnChip"), QStringLiteral("--replug=0")},
                       {}, 1000);
        auto window = line.window(1);
        QWidget* w = window.get();
        scriptPortChoice(line.prompts, "COM1");
        click(w, "connect");
        check(w, "PartEnable", 0, true);
        click(w, "PowerOn", 0);
        QCOMPARE(line.prompts.messages.size(), 1);
        line.box.nextPath();
        click(w, "connect");
        QCOMPARE(line.session().ProgrammerConnected, 0);
        line.prompts.messages.clear();
        scriptPortChoice(line.prompts, "COM1");
        click(w, "connect");
        click(w, "PowerOn", 0);
        QCOMPARE(line.prompts.messages, QStringList());
        QVERIFY(line.session().ChipState[0] != PowerOff);
        QVERIFY(line.box.trace().contains("PowerOnChip(0)"));
    }
};

QTEST_MAIN(LineFaultTable)
#include "LineFaultTableTest.moc"
