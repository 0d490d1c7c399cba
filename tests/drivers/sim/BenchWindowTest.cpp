// The simulated programmer's bench as a person uses it beside a main window: the badge that opens
// it, the magnet, the fault switches, the die panels, the traffic view and the scenario text,
// all checked against what the simulator then does.
#include <QClipboard>
#include <QDial>
#include <QDoubleSpinBox>
#include <QGuiApplication>
#include <QLocale>
#include <QRegularExpression>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include "domain/SettingsFile.h"
#include "rk31/DeviceError.h"
#include "sim/bench/CharacteristicPlot.h"
#include "sim/bench/ProgrammerBench.h"
#include "sim/bench/SimulationBench.h"
#include "sim/bench/TrafficPanel.h"
#include "ui/PointHarness.h"

using namespace rk31;
using namespace rk31::test;
using rk31::sim::PartsSettings;
using rk31::sim::ProgrammerBench;
using rk31::sim::SimulationBench;

namespace {

// Sets an environment variable for one scope.
struct Variable {
    Variable(const char* name, const QByteArray& value) : m_name(name) { qputenv(name, value); }
    ~Variable() { qunsetenv(m_name); }
    const char* m_name;
};

// Lines of the device log or of the saved traffic without their time stamps.
QStringList withoutTimes(const QStringList& lines) {
    static const QRegularExpression stamp(QStringLiteral(R"(^\d{4}-\d\d-\d\dT[\d:.]+\S* )"));
    QStringList calls;
    for (const QString& line : lines) {
        calls.append(QString(line).remove(stamp));
    }
    return calls;
}

// Replaces the angle box's text as a user does, and presses Enter.
void typeAngle(QWidget* bench, const QString& text) {
    auto* box = find<QLineEdit>(bench, "magnetAngle");
    box->selectAll();
    QTest::keyClick(box, Qt::Key_Backspace);
    QTest::keyClicks(box, text);
    QTest::keyClick(box, Qt::Key_Return);
}

void teachLevels(QWidget* w) {
    typeInto(w, "Level", 0, "10");
    typeInto(w, "Level", 1, "90");
}

}  // namespace

class BenchWindowTest : public QObject {
    Q_OBJECT
  private slots:
    void init() { harness = std::make_unique<Bench>(); }
    void cleanup() { harness.reset(); }

    void badgeInEveryMainWindowOpensTheOneBench();
    void opensAtStartOnlyWhenAsked();
    void opensBesideTheMainWindow();
    void switchesReachTheSimulator();
    void copiedTextStartsTheSameSimulator();
    void badAngleTextKeepsTheAngle_data();
    void badAngleTextKeepsTheAngle();
    void dialAndRotationTurnTheMagnet();
    void teachingTwoPointsWithTheBench();
    void trafficHoldsTheDeviceLogsCalls();
    void trafficPausesFiltersAndSaves();
    void closingTheBenchMidSequenceChangesNothing();

  private:
    // The bench the simulated programmer offers the program's windows.
    SimulationBench& bench() {
        return *dynamic_cast<SimulationBench*>(harness->programmer.bench());
    }
    std::unique_ptr<Bench> harness;
};

void BenchWindowTest::badgeInEveryMainWindowOpensTheOneBench() {
    Application withoutDriver(StartSettings{}, harness->prompts, harness->pause, nullptr);
    for (int variant = 0; variant <= 6; ++variant) {
        const auto window = CreateMainWindow(variant, withoutDriver);
        QVERIFY2(!window->findChild<QWidget*>("simulatedProgrammer"), "no bench to open");
    }
    QWidget* opened = nullptr;
    for (int variant = 0; variant <= 6; ++variant) {
        const auto window = harness->window(variant);
        window->show();
        auto* badge = find<QAbstractButton>(window.get(), "simulatedProgrammer");
        QCOMPARE(badge->text(), QStringLiteral("Si&mulated programmer"));
        QVERIFY(badge->isVisible());
        badge->click();
        QVERIFY(bench().window() && bench().window()->isVisible());
        QVERIFY(!opened || opened == bench().window());
        opened = bench().window();
        bench().window()->close();
    }
}

void BenchWindowTest::opensAtStartOnlyWhenAsked() {
    for (const char* value : {"", "0", "yes", "1"}) {
        Variable variable("RK31_BENCH", value);
        QCOMPARE(StartSettings::FromEnvironment().openBench, QByteArray(value) == "1");
    }
}

void BenchWindowTest::opensBesideTheMainWindow() {
    const QRect screen(0, 0, 1280, 720);
    const QSize bench(600, 500);
    const struct {
        QRect main;
        QPoint expected;
    } cases[] = {
        {{0, 0, 500, 400}, {500, 0}},         // room on the right
        {{700, 100, 500, 400}, {100, 100}},   // room on the left only
        {{100, 300, 1080, 580}, {680, 220}},  // no room: at the right edge, kept on screen
    };
    for (const auto& c : cases) {
        QCOMPARE(sim::PlaceBeside(c.main, bench, screen), c.expected);
    }
}

void BenchWindowTest::switchesReachTheSimulator() {
    ProgrammerBench bench(harness->programmer.simulation());
    sim::SimulatedBox& box = harness->box();
    for (const auto& setting : PartsSettings()) {
        for (int part = 0; part < 2; ++part) {
            const QString name = QString::fromLatin1(setting.key) + u'_' + QString::number(part);
            find<QAbstractButton>(&bench, name)->click();
            QVERIFY2(box.partSetting(setting, part), qPrintable(name));
            QVERIFY2(!box.partSetting(setting, 1 - part) || part == 1, qPrintable(name));
        }
    }
    QCOMPARE(box.config.eepromFail, sim::kBothDies);
    for (const char* flag : {"channel_fail", "version_fail"}) {
        find<QAbstractButton>(&bench, flag)->click();
    }
    find<QSpinBox>(&bench, "latency")->setValue(250);
    find<QSpinBox>(&bench, "wbd_code")->setValue(3);
    find<QSpinBox>(&bench, "dac_status")->setValue(6);
    find<QDoubleSpinBox>(&bench, "vdd")->setValue(4.5);
    find<QAbstractButton>(&bench, "outputFixed")->click();
    find<QDoubleSpinBox>(&bench, "output")->setValue(120);
    QCOMPARE(std::tuple(box.config.channelFail, box.config.versionFail, box.config.latencyMs,
                        box.config.writeBufferCode, box.config.dacStatus, box.config.vdd),
             std::tuple(true, true, 250, 3, 6, 4.5f));
    QCOMPARE(box.config.outputOverride, std::optional(120.0f));

    // The other way round: what changes on the box shows on the bench.
    box.config = {};
    box.dies[0].locked = false;
    bench.refresh();
    QVERIFY(!find<QAbstractButton>(&bench, "locked_0")->isChecked());
    QVERIFY(find<QAbstractButton>(&bench, "locked_1")->isChecked());
    QVERIFY(!find<QAbstractButton>(&bench, "eeprom_fail_0")->isChecked());
    QCOMPARE(find<QSpinBox>(&bench, "latency")->value(), 0);
}

void BenchWindowTest::copiedTextStartsTheSameSimulator() {
    ProgrammerBench bench(harness->programmer.simulation());
    typeAngle(&bench, "123.4");
    find<QAbstractButton>(&bench, "id_error_0")->click();
    find<QAbstractButton>(&bench, "locked_1")->click();
    find<QAbstractButton>(&bench, "channel_fail")->click();
    find<QSpinBox>(&bench, "latency")->setValue(45);
    find<QDoubleSpinBox>(&bench, "vdd")->setValue(4.75);
    find<QAbstractButton>(&bench, "copySim")->click();
    const QString copied = QGuiApplication::clipboard()->text();
    QCOMPARE(copied,
             QStringLiteral("angle=123.4;latency=45;vdd=4.75;locked=2;id_error=1;channel_fail=1"));

    Variable variable("RK31_SIM", copied.toUtf8());
    const sim::SimulatedBox started(sim::SimConfigFromEnvironment());
    QCOMPARE(started.settings(), harness->box().settings());
    QVERIFY(started.dies[1].locked);
}

void BenchWindowTest::badAngleTextKeepsTheAngle_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<double>("angle");  // -1: refused
    QTest::newRow("a number") << "75.5" << 75.5;
    QTest::newRow("blanks around") << " 200 " << 200.0;
    QTest::newRow("the top of the dial") << "359.99" << 359.99;
    QTest::newRow("a full turn is 0") << "360" << 0.0;
    QTest::newRow("letters") << "abc" << -1.0;
    QTest::newRow("nothing") << "" << -1.0;
    QTest::newRow("below 0") << "-1" << -1.0;
    QTest::newRow("past a turn") << "360.01" << -1.0;
    QTest::newRow("a unit") << "40deg" << -1.0;
    QTest::newRow("decimal comma") << "40,5" << -1.0;
    QTest::newRow("not a number") << "nan" << -1.0;
}

void BenchWindowTest::badAngleTextKeepsTheAngle() {
    QFETCH(QString, typed);
    QFETCH(double, angle);
    harness->box().setMagnetAngle(40);
    ProgrammerBench bench(harness->programmer.simulation());
    typeAngle(&bench, typed);
    auto* message = find<QLabel>(&bench, "magnetAngleMessage");
    if (angle < 0) {
        QCOMPARE(harness->box().magnetAngle(), 40.0);
        QVERIFY(!message->isHidden());
        QCOMPARE(message->text(), QStringLiteral("\u201c%1\u201d is not an angle from 0 to 360: "
                                                 "the magnet stays at 40.00\u00b0")
                                      .arg(typed.trimmed()));
        typeAngle(&bench, "41");
        QVERIFY2(message->isHidden(), "a good angle takes the message away");
    } else {
        QCOMPARE(harness->box().magnetAngle(), angle);
        QVERIFY(message->isHidden());
    }
}

void BenchWindowTest::dialAndRotationTurnTheMagnet() {
    ProgrammerBench bench(harness->programmer.simulation());
    sim::SimulatedBox& box = harness->box();
    find<QDial>(&bench, "magnetDial")->setValue(20000);
    QCOMPARE(box.magnetAngle(), 200.0);
    bench.refresh();
    QCOMPARE(find<QLabel>(&bench, "magnetNow")->text(), QStringLiteral("200.00\u00b0"));
    QCOMPARE(find<QLineEdit>(&bench, "magnetAngle")->text(), QStringLiteral("200.00"));

    find<QDoubleSpinBox>(&bench, "magnetSpeed")->setValue(-90);
    auto* rotate = find<QAbstractButton>(&bench, "magnetRotate");
    rotate->click();
    QCOMPARE(box.magnetSpeed(), -90.0);
    QCOMPARE(rotate->text(), QStringLiteral("Stop"));
    find<QDoubleSpinBox>(&bench, "magnetSpeed")->setValue(45);
    QCOMPARE(box.magnetSpeed(), 45.0);
    rotate->click();
    QCOMPARE(box.magnetSpeed(), 0.0);
    QCOMPARE(rotate->text(), QStringLiteral("Start"));
}

// The walk-through a new user makes in "/4": the magnet set on the bench, two points taught, a
// failure switched on and off without a restart, and the programmed die on the bench.
void BenchWindowTest::teachingTwoPointsWithTheBench() {
    auto window = openPointWindow(*harness, 4);
    QWidget* w = window.get();
    bench().open(w);
    QWidget* b = bench().window();
    sim::SimulatedBox& box = harness->box();
    teachLevels(w);

    const auto teach = [&] {
        typeAngle(b, "40");
        click(w, "SetpointA");
        QCOMPARE(textOf(w, "Angle", 0), QStringLiteral("40.00"));
        find<QDial>(b, "magnetDial")->setValue(20000);
        click(w, "SetpointB");
    };
    find<QAbstractButton>(b, "eeprom_fail_0")->click();
    teach();
    QCOMPARE(harness->prompts.messages, QStringList{"Failed in programming device"});
    QVERIFY(box.dies[0].eeprom.blank);

    harness->prompts.messages.clear();
    find<QAbstractButton>(b, "eeprom_fail_0")->click();
    click(w, "PowerOn");
    teach();
    QVERIFY2(harness->prompts.messages.isEmpty(), qPrintable(harness->prompts.messages.join('|')));
    QVERIFY(!box.dies[0].eeprom.blank);

    // The die's supply switched on at the bench: in ADC mode, its panel draws the EEPROM's
    // characteristic, and the output follows the dial.
    bench().window()->refresh();  // as its timer does before the user gets there
    find<QAbstractButton>(b, "supply_0")->click();
    QCOMPARE(find<QLabel>(b, "mode_0")->text(), QStringLiteral("ADC"));
    auto* plot = find<sim::CharacteristicPlot>(b, "characteristic_0");
    QStringList outputs;
    for (const int degrees : {100, 150}) {
        find<QDial>(b, "magnetDial")->setValue(degrees * 100);
        bench().window()->refresh();
        QCOMPARE(plot->curve().levels, sim::SampleLevels(box.dies[0].eeprom));
        // MeasureOutput answers a Single.
        const double level = static_cast<float>(sim::Quantise(box.dies[0].eeprom.Level(degrees)));
        QCOMPARE(plot->curve().output, std::optional(level));
        outputs << find<QLabel>(b, "output_0")->text();
        QCOMPARE(outputs.last(), QLocale::c().toString(level, 'f', 2) + " %VDD");
    }
    QVERIFY(outputs[0] != outputs[1]);
    QCOMPARE(find<QLabel>(b, "eeprom_0")->text(), QStringLiteral("programmed"));
}

void BenchWindowTest::trafficHoldsTheDeviceLogsCalls() {
    QTemporaryDir dir;
    const QString logPath = dir.filePath("device.log");
    StartSettings withLog;
    withLog.deviceLog = logPath;
    harness = std::make_unique<Bench>(sim::SimConfig{}, withLog);
    ProgrammerBench bench(harness->programmer.simulation());
    bench.show();
    auto window = openPointWindow(*harness, 4);
    teachLevels(window.get());
    click(window.get(), "SetpointA");
    harness->box().setMagnetAngle(200);
    click(window.get(), "SetpointB");
    click(window.get(), "connect");
    bench.refresh();

    const QStringList logged = withoutTimes(LoadLines(logPath).lines);
    QVERIFY(logged.size() > 30);
    QVERIFY(logged.contains("ProgramEEPROM(0) -> failed=0"));
    QCOMPARE(logged.last(), QStringLiteral("CloseChannel(-1)"));
    QCOMPARE(withoutTimes(bench.traffic().shownLines()), logged);
}

void BenchWindowTest::trafficPausesFiltersAndSaves() {
    ProgrammerBench bench(harness->programmer.simulation());
    bench.show();
    const auto device = harness->app.createDevice();
    std::int32_t out = 0;
    device->OpenChannel(QVariant(3), out);
    device->OpenChannel(QVariant(1), out);
    float angle = 0;
    QVERIFY_THROWS_EXCEPTION(DeviceError, device->ReadAngle(7, angle));
    bench.refresh();
    QCOMPARE(withoutTimes(bench.traffic().shownLines()),
             (QStringList{"OpenChannel(3) -> failed=1", "OpenChannel(1) -> failed=0",
                          "ReadAngle(7) !! Part index 7 is out of range!"}));

    auto* pause = find<QAbstractButton>(&bench, "trafficPause");
    pause->click();
    device->PowerOnChip(0, out);
    bench.refresh();
    QCOMPARE(bench.traffic().shownLines().size(), 3);
    pause->click();
    bench.refresh();
    QCOMPARE(bench.traffic().shownLines().size(), 4);

    find<QLineEdit>(&bench, "trafficFilter")->setText("openchannel");
    QCOMPARE(bench.traffic().shownLines().size(), 2);
    QTemporaryDir dir;
    const QString path = dir.filePath("traffic.log");
    QVERIFY(bench.traffic().saveTo(path));
    QCOMPARE(LoadLines(path).lines, bench.traffic().shownLines());

    const QString nowhere = dir.filePath("missing/traffic.log");
    QVERIFY(!bench.traffic().saveTo(nowhere));
    QVERIFY(!QFile::exists(nowhere));
    QVERIFY(find<QLabel>(&bench, "trafficStatus")->text().startsWith("Could not write "));

    find<QAbstractButton>(&bench, "trafficClear")->click();
    find<QLineEdit>(&bench, "trafficFilter")->clear();
    QVERIFY(bench.traffic().shownLines().isEmpty());
}

void BenchWindowTest::closingTheBenchMidSequenceChangesNothing() {
    // Set point B of "/4", once as it runs alone and once with the bench closed by the user
    // while the sequence lets window events run.
    QList<QStringList> runs;
    for (const bool closeMidway : {false, true}) {
        cleanup();
        init();
        auto window = openPointWindow(*harness, 4);
        if (closeMidway) {
            bench().open(window.get());
        }
        teachLevels(window.get());
        harness->box().setMagnetAngle(40);
        click(window.get(), "SetpointA");
        harness->box().setMagnetAngle(200);
        harness->clearTrace();
        qsizetype closedAt = -1;
        if (closeMidway) {
            QTimer::singleShot(0, bench().window(), [&] {
                closedAt = harness->trace().size();
                bench().window()->close();
            });
        }
        click(window.get(), "SetpointB");
        if (closeMidway) {
            QVERIFY2(closedAt > 0 && closedAt < harness->trace().size(), "closed mid-sequence");
            QVERIFY(!bench().window()->isVisible());
        }
        runs.append(harness->trace() + harness->prompts.messages);
    }
    QCOMPARE(runs[1], runs[0]);
}

QTEST_MAIN(BenchWindowTest)
#include "BenchWindowTest.moc"
