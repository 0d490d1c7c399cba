// rk31prog runs the windows' own procedures: for the same settings file its device log is the
// window's, call for call, with the same arguments and out-values.
#include <QAbstractButton>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include "BatchFiles.h"
#include "support/LoggedCalls.h"
#include "support/WindowHarness.h"
#include "ui/PointHarness.h"
#include "ui/windows/MainForm2Parts.h"

using namespace rk31;
using namespace rk31::test;

namespace {

// rk31prog on the simulated programmer it loads as a driver, with its own device log.
QStringList rk31progCalls(const QStringList& arguments, const QString& log, const QString& sim) {
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("RK31_SIM"), sim);
    env.remove(QStringLiteral("RK31_DEVICE_LOG"));
    env.remove(QStringLiteral("RK31_DRIVER_PATH"));
    env.remove(QStringLiteral("RK31_DRIVER"));
    process.setProcessEnvironment(env);
    process.start(QStringLiteral(RK31PROG), arguments + QStringList{"--log", log, "-q"});
    if (!process.waitForFinished(60000) || process.exitCode() != 0) {
        return {QStringLiteral("rk31prog failed: ") +
                QString::fromLocal8Bit(process.readAllStandardError())};
    }
    return LoggedCalls(log);
}

StartSettings logTo(const QString& path) {
    StartSettings settings;
    settings.deviceLog = path;
    return settings;
}

}  // namespace

class SameDeviceLog : public QObject {
    Q_OBJECT

  private slots:
    void twoPartProgram() {
        QTemporaryDir dir;
        const QString settings = dir.filePath("chip.txt");
        WriteFile(settings, TwoPartFile(kGoodPart, kGoodPart));
        const QString windowLog = dir.filePath("window.log");
        {
            Bench bench({}, logTo(windowLog));
            MainForm2Parts2Src window(bench.app);
            bench.prompts.fileNames.push_back(settings);
            click(&window, "mOpen");
            scriptPortChoice(bench.prompts, "COM1");
            click(&window, "connect");
            check(&window, "PartEnable", 0, true);
            click(&window, "PowerOn", 0);
            click(&window, "btnconfigsolver", 0);
            click(&window, "PowerOn", 0);
            click(&window, "connect");
            QCOMPARE(bench.prompts.messages, QStringList());
        }
        const QStringList window = LoggedCalls(windowLog);
        QVERIFY(window.contains("ProgramEEPROM(0) -> failed=0"));
        QCOMPARE(rk31progCalls({"program", settings, "--port", "1", "--part", "1"},
                               dir.filePath("prog.log"), "latency=0"),
                 window);
    }

    // The window's Set point B captures point B from the magnet; rk31prog keeps the stored one.
    // With the magnet on the stored point B, the two differ only in that reading.
    void pointWindowSetPointB() {
        QTemporaryDir dir;
        const QString settings = dir.filePath("point.txt");
        WriteFile(settings, OnePartPointFile(0));
        const QString windowLog = dir.filePath("window.log");
        sim::SimConfig config;
        config.angle = 200;
        {
            Bench bench(config, logTo(windowLog));
            auto window = makePointWindow(bench, 4);
            bench.prompts.fileNames.push_back(settings);
            click(window.get(), "mOpen");
            scriptPortChoice(bench.prompts, "COM1");
            click(window.get(), "connect");
            click(window.get(), "PowerOn");
            // Set point B on the loaded points, as after a Set point A that kept them.
            find<QAbstractButton>(window.get(), "SetpointB")->setEnabled(true);
            click(window.get(), "SetpointB");
            click(window.get(), "connect");
            QCOMPARE(bench.prompts.messages, QStringList());
            QCOMPARE(textOf(window.get(), "Angle", 1), QStringLiteral("200.00"));
        }
        const QStringList window = LoggedCalls(windowLog, QStringLiteral("ReadAngle("));
        QVERIFY(window.contains("ProgramEEPROM(0) -> failed=0"));
        QCOMPARE(rk31progCalls({"program", settings, "--port", "1"}, dir.filePath("prog.log"),
                               "latency=0;angle=200"),
                 window);
    }

    // A line station's worst moments, on the program itself: killed in mid-chip, its output
    // closed by the reader, its arguments wrong while a script expects JSON.
    void killsAndClosedOutput() {
        QTemporaryDir dir;
        const QString settings = dir.filePath("chip.txt");
        QFile file(settings);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(TwoPartFile(kGoodPart, kGoodPart).toUtf8());
        file.close();
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove(QStringLiteral("RK31_DEVICE_LOG"));
        env.remove(QStringLiteral("RK31_DRIVER_PATH"));
        env.remove(QStringLiteral("RK31_DRIVER"));

        // Killed at three moments of a run without end: the record holds whole lines only.
        const QString record = dir.filePath("line.jsonl");
        env.insert(QStringLiteral("RK31_SIM"), QStringLiteral("latency=1"));
        for (const int ms : {700, 1100, 1500}) {
            QProcess process;
            process.setProcessEnvironment(env);
            process.start(QStringLiteral(RK31PROG), {"program", settings, "--port", "1", "--verify",
                                                     "--count", "0", "--record", record, "-q"});
            QVERIFY(process.waitForStarted());
            QTest::qWait(ms);
            process.kill();
            QVERIFY(process.waitForFinished(10000));
        }
        QFile lines(record);
        QVERIFY(lines.open(QIODevice::ReadOnly));
        const QByteArray bytes = lines.readAll();
        QVERIFY2(bytes.count('\n') >= 2, "no chip was recorded before the kills");
        QVERIFY2(bytes.endsWith('\n'), bytes.right(80).constData());
        for (const QByteArray& line : bytes.split('\n')) {
            if (!line.isEmpty()) {
                QVERIFY2(QJsonDocument::fromJson(line).isObject(), line.constData());
            }
        }

        // The reader goes away at once: the chip is finished (locked, powered off, disconnected),
        // and no other chip is started.
        env.insert(QStringLiteral("RK31_SIM"), QStringLiteral("latency=0;chips=3"));
        const QString log = dir.filePath("closed.log");
        QProcess closed;
        closed.setProcessEnvironment(env);
        // The shell's pipe into a reader that reads nothing.
        closed.start(QStringLiteral("/bin/sh"),
                     {"-c", "\"$0\" \"$@\" | true", QStringLiteral(RK31PROG), "program", settings,
                      "--port", "1", "--verify", "--lock", "--count", "3", "--log", log});
        QVERIFY(closed.waitForFinished(60000));
        QCOMPARE(closed.exitStatus(), QProcess::NormalExit);
        const QStringList calls = LoggedCalls(log);
        QCOMPARE(calls.count("OpenChannel(1) -> failed=0"), 1);
        QVERIFY(calls.contains("CommLock(1) -> failed=0"));
        QVERIFY2(calls.last().startsWith("CloseChannel("), qPrintable(calls.last()));

        // Wrong arguments under --json: one JSON document that says why.
        QProcess wrong;
        wrong.setProcessEnvironment(env);
        wrong.start(QStringLiteral(RK31PROG), {"program", settings, "--json"});
        QVERIFY(wrong.waitForFinished(60000));
        QCOMPARE(wrong.exitCode(), 1);
        const QJsonObject said = QJsonDocument::fromJson(wrong.readAllStandardOutput()).object();
        QCOMPARE(said.value("cause").toString(), QStringLiteral("program needs --port N"));
    }

    // The installed program's own answers to a user who asks it how it is used.
    void helpAndVersion() {
        for (const auto& [argument, first] : {std::pair{"--help", "usage: rk31prog program"},
                                              {"-h", "usage: rk31prog program"},
                                              {"--version", "rk31prog 3.0.8"}}) {
            QProcess process;
            process.start(QStringLiteral(RK31PROG), {QString::fromLatin1(argument)});
            QVERIFY(process.waitForFinished(60000));
            QCOMPARE(process.exitCode(), 0);
            QVERIFY2(process.readAllStandardOutput().startsWith(first), argument);
        }
    }
};

QTEST_MAIN(SameDeviceLog)
#include "SameDeviceLogTest.moc"
