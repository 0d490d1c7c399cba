// The program over a serial line: the serial driver on a pseudo-terminal with rk31-boxsim behind
// it makes, for the same session, exactly the device calls with exactly the out-values that the
// simulated programmer in the process gives, and the box executes exactly those calls.
#include <QAbstractButton>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include "Boxsim.h"
#include "device/ChipStateMachine.h"
#include "procedures/BatchFiles.h"
#include "sim/SimulatedProgrammer.h"
#include "support/WindowHarness.h"
#include "ui/dialogs/RealTimeDisplayBar.h"
#include "ui/dialogs/frmadvanced.h"

using namespace rk31;
using namespace rk31::test;

namespace {

const QString kSim = QStringLiteral("latency=0;angle=200;fixture=0");

// The window's session as a user runs it, the same on either programmer.
using Session = std::function<void(Application&, ScriptedPrompts&, const QString& settings)>;

void twoPartProgram(Application& app, ScriptedPrompts& prompts, const QString& settings) {
    auto window = PoweredTwoPartWindow(app, prompts, settings);
    QWidget* w = window.get();
    click(w, "btnconfigsolver", 0);
    click(w, "PowerOn", 0);
    click(w, "connect");
}

void pointSetPointB(Application& app, ScriptedPrompts& prompts, const QString& settings) {
    auto window = CreateMainWindow(4, app);
    QWidget* w = window.get();
    prompts.fileNames.push_back(settings);
    click(w, "mOpen");
    scriptPortChoice(prompts, "COM1");
    click(w, "connect");
    click(w, "PowerOn");
    find<QAbstractButton>(w, "SetpointB")->setEnabled(true);
    click(w, "SetpointB");
    click(w, "connect");
}

void advancedReadWrite(Application& app, ScriptedPrompts& prompts, const QString& /*settings*/) {
    DeviceSession& session = app.session();
    session.ConnectProgrammer(1, prompts);
    RecordingPause pause;
    ChipStateMachine(session, prompts, pause).ChipChangeToState(0, 0, OwiMode);
    frmadvanced dialog(session, prompts, pause);
    dialog.Init(0, 2);
    dialog.show();
    find<QLineEdit>(&dialog, "Din", 0)->setText(QStringLiteral("ab"));
    find<QLineEdit>(&dialog, "add", 25)->setText(QStringLiteral("30"));
    find<QLineEdit>(&dialog, "Din", 25)->setText(QStringLiteral("FFFFFFFF"));
    click(&dialog, "memwritewithCRC");
    click(&dialog, "memread");
    QCOMPARE(find<QLineEdit>(&dialog, "out", 25)->text(), QStringLiteral("FFFFFFFF"));
    session.DisconnectProgrammer();
}

// The logged calls of the session on the simulated programmer in the process and on the line,
// and the traces of the box in the process and of the one behind the line.
struct Runs {
    QStringList inProcess, overLine, inProcessTrace, boxTrace, messages;
};

Runs runBoth(const Session& session, const QString& settingsText) {
    QTemporaryDir dir;
    const QString settings = dir.filePath(QStringLiteral("chip.txt"));
    WriteFile(settings, settingsText);
    Runs runs;
    {
        const sim::SimConfig config = sim::ParseSimConfig(kSim, nullptr);
        Bench bench(config, LogTo(dir.filePath(QStringLiteral("sim.log"))));
        session(bench.app, bench.prompts, settings);
        runs.messages = bench.prompts.messages;
        runs.inProcessTrace = bench.trace();
    }
    {
        LineBench line(kSim, {}, LogTo(dir.filePath(QStringLiteral("line.log"))));
        session(line.app, line.prompts, settings);
        runs.messages += line.prompts.messages;
        runs.boxTrace = line.box.trace();
    }
    runs.inProcess = LoggedCalls(dir.filePath(QStringLiteral("sim.log")));
    runs.overLine = LoggedCalls(dir.filePath(QStringLiteral("line.log")));
    return runs;
}

// The operations of logged or traced calls.
QStringList operations(const QStringList& calls) {
    QStringList names;
    for (const QString& call : calls) {
        names << call.section(u'(', 0, 0);
    }
    return names;
}

QStringList rk31progCalls(const QString& settings, const QString& log,
                          const QMap<QString, QString>& environment) {
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    for (const char* name :
         {"RK31_DEVICE_LOG", "RK31_DRIVER_PATH", "RK31_DRIVER", "RK31_SIM", "RK31_SERIAL_PORTS"}) {
        env.remove(QString::fromLatin1(name));
    }
    for (auto it = environment.begin(); it != environment.end(); ++it) {
        env.insert(it.key(), it.value());
    }
    process.setProcessEnvironment(env);
    process.start(QStringLiteral(RK31PROG), {"program", settings, "--port", "1", "--part", "1",
                                             "--verify", "--log", log, "-q"});
    if (!process.waitForFinished(120000) || process.exitCode() != 0) {
        return {QStringLiteral("rk31prog failed: ") +
                QString::fromLocal8Bit(process.readAllStandardError())};
    }
    return LoggedCalls(log);
}

}  // namespace

class OverTheLine : public QObject {
    Q_OBJECT

  private slots:
    void sameCallsAsInProcess_data() {
        QTest::addColumn<Session>("session");
        QTest::addColumn<QString>("settings");
        QTest::addColumn<QString>("mustHold");
        QTest::newRow("/1 connect, power, Program")
            << Session(twoPartProgram) << TwoPartFile(kGoodPart, kGoodPart)
            << "ProgramEEPROM(0) -> failed=0";
        QTest::newRow("/4 Set point B")
            << Session(pointSetPointB) << OnePartPointFile(0) << "ReadAngle(0) -> angle=200";
        QTest::newRow("Advanced write and read")
            << Session(advancedReadWrite) << QString() << "ReadMemory(0, 30) -> data=FFFFFFFF";
    }
    void sameCallsAsInProcess() {
        QFETCH(Session, session);
        QFETCH(QString, settings);
        QFETCH(QString, mustHold);
        const Runs runs = runBoth(session, settings);
        QCOMPARE(runs.messages, QStringList());
        QVERIFY2(runs.inProcess.contains(mustHold), qPrintable(runs.inProcess.join(u'\n')));
        QCOMPARE(runs.overLine, runs.inProcess);
        QCOMPARE(runs.boxTrace, runs.inProcessTrace);
    }

    // rk31prog chooses the serial driver by name and programs and verifies the chip over it.
    void rk31progProgramAndVerify() {
        QTemporaryDir dir;
        const QString settings = dir.filePath("chip.txt");
        WriteFile(settings, TwoPartFile(kGoodPart, kGoodPart));
        const QStringList inProcess =
            rk31progCalls(settings, dir.filePath("sim.log"), {{"RK31_SIM", kSim}});
        QVERIFY2(inProcess.contains("ProgramEEPROM(0) -> failed=0"),
                 qPrintable(inProcess.join(u'\n')));
        Boxsim box(kSim);
        const QStringList overLine =
            rk31progCalls(settings, dir.filePath("line.log"),
                          {{"RK31_DRIVER", "serial"}, {"RK31_SERIAL_PORTS", box.link()}});
        QCOMPARE(overLine, inProcess);
        QCOMPARE(operations(box.trace()), operations(overLine));
    }

    // The real-time display's timer also fires while a driver waits on its line: it leaves its
    // turn out then, and measures again at the next tick.
    void realTimeDisplayWaitsForTheCallUnderWay() {
        Bench bench;
        bench.session().ConnectProgrammer(1, bench.prompts);
        RealTimeDisplayBar display(bench.session(), bench.prompts, bench.pause);
        display.Init(0, 1);
        bench.clearTrace();
        {
            const CallsInProgress::Scope underWay(bench.session().calls().get());
            QVERIFY(bench.session().callInProgress());
            display.Timer1Tick();
            QCOMPARE(bench.trace(), QStringList());
        }
        QVERIFY(!bench.session().callInProgress());
        display.Timer1Tick();
        QCOMPARE(bench.trace(), QStringList{"MeasureOutput(0, 1)"});
        QCOMPARE(bench.prompts.messages, QStringList());
    }

    // While a sequence waits on a slow line the window keeps painting: a timer meant to repaint
    // every 20 ms is never held up for long. It does not start device calls of its own.
    void windowPaintsWhileTheLineIsSlow() {
        QTemporaryDir dir;
        const QString settings = dir.filePath("chip.txt");
        WriteFile(settings, TwoPartFile(kGoodPart, kGoodPart));
        LineBench line(QStringLiteral("latency=20"), {QStringLiteral("--baud=9600")});
        auto window = PoweredTwoPartWindow(line.app, line.prompts, settings);
        QWidget* w = window.get();

        QElapsedTimer clock;
        qint64 last = 0;
        qint64 longest = 0;
        int ticks = 0;
        bool callSeen = false;
        QTimer repaint;
        repaint.setInterval(20);
        QObject::connect(&repaint, &QTimer::timeout, w, [&] {
            const qint64 now = clock.elapsed();
            longest = std::max(longest, now - last);
            last = now;
            ++ticks;
            callSeen = callSeen || line.session().callInProgress();
            w->update();
        });
        clock.start();
        repaint.start();
        click(w, "btnconfigsolver", 0);
        repaint.stop();
        const qint64 took = clock.elapsed();
        QCOMPARE(line.prompts.messages, QStringList());
        QVERIFY2(took > 500, qPrintable(QString::number(took)));
        QVERIFY(callSeen);
        QVERIFY2(ticks > took / 100, qPrintable(QString::number(ticks)));
        QVERIFY2(longest < 200, qPrintable(QString::number(longest)));
    }
};

QTEST_MAIN(OverTheLine)
#include "OverTheLineTest.moc"
