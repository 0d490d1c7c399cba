// The simulated programmer's bench as a person uses it beside a main window: the badge that opens
// it, the magnet, the fault switches, the die panels, the traffic view and the scenario text,
// all checked against what the simulator then does.
#include <QClipboard>
#include <QDial>
#include <QDoubleSpinBox>
#include <QGuiApplication>
#include <QLocale>
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
using rk31::sim::ProgrammerBench;

namespace {

// Replaces the angle box's text as a user does, and presses Enter.
void typeAngle(QWidget* bench, const QString& text) {
    auto* box = find<QLineEdit>(bench, "magnetAngle");
    box->selectAll();
    QTest::keyClick(box, Qt::Key_Backspace);
    QTest::keyClicks(box, text);
    QTest::keyClick(box, Qt::Key_Return);
}

}  // namespace

class BenchWindowTest : public QObject {
    Q_OBJECT

    std::unique_ptr<Bench> harness;
    // The bench the simulated programmer offers the program's windows.
    sim::SimulationBench& bench() {
        return *dynamic_cast<sim::SimulationBench*>(harness->programmer.bench());
    }

  private slots:
    void init() { harness = std::make_unique<Bench>(); }
    void cleanup() { harness.reset(); }

    void badgeInEveryMainWindowOpensTheOneBench() {
        Application withoutDriver(StartSettings{}, harness->prompts, harness->pause, nullptr);
        QWidget* opened = nullptr;
        for (int variant = 0; variant <= 6; ++variant) {
            QVERIFY2(!CreateMainWindow(variant, withoutDriver)
                          ->findChild<QWidget*>("simulatedProgrammer"),
                     "no bench to open");
            const auto window = harness->window(variant);
            window->show();
            auto* badge = find<QAbstractButton>(window.get(), "simulatedProgrammer");
            QCOMPARE(badge->text(), QStringLiteral("Si&mulated programmer"));
            QVERIFY(badge->isVisible());
            badge->click();
            QVERIFY(bench().window() && bench().window()->isVisible());
            QVERIFY(!opened || opened == bench().window());
            opened = bench().window();
            opened->close();
        }
    }

    void opensAtStartOnlyWhenAsked() {
        for (const char* value : {"", "0", "yes", "1"}) {
            qputenv("RK31_BENCH", value);
            QCOMPARE(StartSettings::FromEnvironment().openBench, QByteArray(value) == "1");
        }
        qunsetenv("RK31_BENCH");
    }

    // Where the bench's frame goes: beside the main window's frame (right, else left), else
    // below or above it, else against an edge of the screen's available area over as little
    // of it as can be; shrunk to that area when larger.
    void placedBesideOrOverTheMainWindowWithinTheScreen() {
        const QRect wide(0, 0, 1920, 1040);
        const QRect small(0, 0, 1366, 728);
        const QSize bench(830, 710);
        struct Case {
            QRect screen, main;
            QSize size;
            QRect expected;
        };
        const Case cases[] = {
            {wide, {0, 0, 1075, 770}, bench, {{1075, 0}, bench}},      // right
            {wide, {845, 100, 1075, 770}, bench, {{15, 100}, bench}},  // left
            {wide, {420, 135, 1075, 770}, bench, {{1090, 135}, bench}},
            {wide, {0, 0, 1900, 300}, bench, {{0, 300}, bench}},   // below
            {wide, {0, 720, 1900, 320}, bench, {{0, 10}, bench}},  // above
            {small, {0, 0, 1075, 640}, bench, {{536, 0}, bench}},
            {small, {100, 50, 600, 400}, {1500, 900}, small},
            {{1920, 0, 1366, 728}, {1920, 0, 400, 300}, bench, {{2320, 0}, bench}},
        };
        for (const auto& [screen, main, size, expected] : cases) {
            QCOMPARE(sim::PlaceBench(main, size, screen), expected);
        }
        // As it opens, with a window frame: beside a main window of 1075 on a 1920 x 1080
        // screen, whole on a 1366 x 768 one.
        ProgrammerBench window(harness->programmer.simulation());
        const QSize framed = window.sizeHint() + QSize(10, 30);
        QCOMPARE(sim::PlaceBench({0, 0, 1075, 770}, framed, wide), QRect({1075, 0}, framed));
        QCOMPARE(sim::PlaceBench({0, 0, 1075, 640}, framed, small).size(), framed);
    }

    void switchesReachTheSimulator() {
        ProgrammerBench bench(harness->programmer.simulation());
        sim::SimulatedBox& box = harness->box();
        for (const auto& setting : sim::PartsSettings()) {
            for (int part = 0; part < 2; ++part) {
                click(&bench, setting.key, part);
                QVERIFY2(box.partSetting(setting, part), setting.key);
                QVERIFY2(!box.partSetting(setting, 1 - part) || part == 1, setting.key);
            }
        }
        QCOMPARE(box.config.eepromFail, sim::kBothDies);
        click(&bench, "channel_fail");
        click(&bench, "version_fail");
        find<QSpinBox>(&bench, "latency")->setValue(250);
        find<QSpinBox>(&bench, "wbd_code")->setValue(3);
        find<QSpinBox>(&bench, "dac_status")->setValue(6);
        find<QDoubleSpinBox>(&bench, "vdd")->setValue(4.5);
        click(&bench, "outputFixed");
        find<QDoubleSpinBox>(&bench, "output")->setValue(120);
        QCOMPARE(std::tuple(box.config.channelFail, box.config.versionFail, box.config.latencyMs,
                            box.config.writeBufferCode, box.config.dacStatus, box.config.vdd),
                 std::tuple(true, true, 250, 3, 6, 4.5f));
        QCOMPARE(box.config.outputOverride, std::optional(120.0f));
        // The scenario text starts a simulator as this one is now.
        click(&bench, "copySim");
        QCOMPARE(QGuiApplication::clipboard()->text(),
                 "angle=0;latency=250;vdd=4.5;locked=both;no_supply=both;id_error=both;"
                 "eeprom_fail=both;clear_fail=both;commlock_fail=both;wbd_code=3;dac_status=6;"
                 "channel_fail=1;version_fail=1;output=120");

        // The other way round: what changes on the box shows on the bench.
        box.config = {};
        box.dies[0].locked = false;
        bench.refresh();
        const auto on = [&bench](const char* name) {
            return find<QAbstractButton>(&bench, name)->isChecked();
        };
        QCOMPARE(std::tuple(on("locked_0"), on("locked_1"), on("eeprom_fail_0")),
                 std::tuple(false, true, false));
        QCOMPARE(find<QSpinBox>(&bench, "latency")->value(), 0);
    }

    void badAngleTextKeepsTheAngle() {
        // What is typed, and the angle taken; -1: refused.
        const std::pair<QString, double> cases[] = {{"75.5", 75.5}, {" 200 ", 200}, {"360", 0},
                                                    {"-1", -1},     {"360.01", -1}, {"40deg", -1},
                                                    {"40,5", -1},   {"nan", -1}};
        for (const auto& [typed, angle] : cases) {
            harness->box().setMagnetAngle(40);
            ProgrammerBench bench(harness->programmer.simulation());
            typeAngle(&bench, typed);
            auto* message = find<QLabel>(&bench, "magnetAngleMessage");
            QCOMPARE(harness->box().magnetAngle(), angle < 0 ? 40.0 : angle);
            QCOMPARE(message->isHidden(), angle >= 0);
            if (angle < 0) {
                QCOMPARE(message->text(), QStringLiteral("\u201c%1\u201d is not an angle from 0 to "
                                                         "360: the magnet stays at 40.00\u00b0")
                                              .arg(typed.trimmed()));
                typeAngle(&bench, "41");
                QVERIFY2(message->isHidden(), "a good angle takes the message away");
            }
        }
    }

    void dialAndRotationTurnTheMagnet() {
        ProgrammerBench bench(harness->programmer.simulation());
        sim::SimulatedBox& box = harness->box();
        find<QDial>(&bench, "magnetDial")->setValue(20000);
        QCOMPARE(box.magnetAngle(), 200.0);
        bench.refresh();
        QCOMPARE(find<QLabel>(&bench, "magnetNow")->text(), QStringLiteral("200.00\u00b0"));
        QCOMPARE(find<QLineEdit>(&bench, "magnetAngle")->text(), QStringLiteral("200.00"));

        auto* speed = find<QDoubleSpinBox>(&bench, "magnetSpeed");
        auto* rotate = find<QAbstractButton>(&bench, "magnetRotate");
        speed->setValue(-90);
        rotate->click();
        QCOMPARE(box.magnetSpeed(), -90.0);
        QCOMPARE(rotate->text(), QStringLiteral("S&top"));
        speed->setValue(45);
        QCOMPARE(box.magnetSpeed(), 45.0);
        rotate->click();
        QCOMPARE(box.magnetSpeed(), 0.0);
        QCOMPARE(rotate->text(), QStringLiteral("S&tart"));
    }

    // The walk-through a new user makes in "/4": the magnet set on the bench, two points taught
    // with the bench closed while Set point B lets window events run, and the programmed die on
    // the bench opened again. Set point B runs as it runs without a bench.
    void teachingTwoPointsWithTheBench() {
        QList<QStringList> runs;  // Set point B's calls and messages
        for (const bool withBench : {false, true}) {
            cleanup();
            init();
            auto window = openPointWindow(*harness, 4);
            QWidget* w = window.get();
            sim::SimulatedBox& box = harness->box();
            typeInto(w, "Level", 0, "10");
            typeInto(w, "Level", 1, "90");
            bench().open(w);
            ProgrammerBench* b = bench().window();
            withBench ? typeAngle(b, "40") : box.setMagnetAngle(40);
            click(w, "SetpointA");
            QCOMPARE(textOf(w, "Angle", 0), QStringLiteral("40.00"));
            withBench ? find<QDial>(b, "magnetDial")->setValue(20000) : box.setMagnetAngle(200);
            harness->clearTrace();
            qsizetype closedAt = -1;
            if (withBench) {
                QTimer::singleShot(0, b, [&] {
                    closedAt = harness->trace().size();
                    b->close();
                });
            } else {
                b->close();  // the run to compare with has no bench during Set point B
            }
            click(w, "SetpointB");
            QCOMPARE(textOf(w, "Angle", 1), QStringLiteral("200.00"));
            runs.append(harness->trace() + harness->prompts.messages);
            if (!withBench) {
                continue;
            }
            QVERIFY2(closedAt > 0 && closedAt < harness->trace().size(), "closed mid-sequence");
            QVERIFY(!b->isVisible() && harness->prompts.messages.isEmpty());
            QVERIFY(!box.dies[0].eeprom.blank);

            // The die's supply switched on at the bench: in ADC mode, its panel draws the EEPROM's
            // characteristic, and the output follows the dial.
            bench().open(w);
            click(b, "supply_0");
            QCOMPARE(find<QLabel>(b, "mode_0")->text(), QStringLiteral("ADC"));
            auto* plot = find<sim::CharacteristicPlot>(b, "characteristic_0");
            for (const int degrees : {100, 150}) {
                find<QDial>(b, "magnetDial")->setValue(degrees * 100);
                b->refresh();
                QCOMPARE(plot->curve().levels, sim::SampleLevels(box.dies[0].eeprom));
                // MeasureOutput answers a Single.
                const double level =
                    static_cast<float>(sim::Quantise(box.dies[0].eeprom.Level(degrees)));
                QCOMPARE(plot->curve().output, std::optional(level));
                QCOMPARE(find<QLabel>(b, "output_0")->text(),
                         QLocale::c().toString(level, 'f', 2) + " %VDD");
            }
            QCOMPARE(find<QLabel>(b, "eeprom_0")->text(), QStringLiteral("programmed"));
        }
        QCOMPARE(runs[1], runs[0]);
    }

    // The traffic view shows what the device log holds; it pauses, filters and saves.
    void trafficViewShowsTheDeviceLogPausesFiltersAndSaves() {
        QTemporaryDir dir;
        StartSettings withLog;
        withLog.deviceLog = dir.filePath("device.log");
        harness = std::make_unique<Bench>(sim::SimConfig{}, withLog);
        ProgrammerBench bench(harness->programmer.simulation());
        bench.show();
        const auto device = harness->app.createDevice();
        std::int32_t out = 0;
        device->OpenChannel(QVariant(3), out);
        device->OpenChannel(QVariant(1), out);
        float angle = 0;
        QVERIFY_THROWS_EXCEPTION(DeviceError, device->ReadAngle(7, angle));
        bench.refresh();
        // The view and the log carry the same time stamp per call.
        QCOMPARE(bench.traffic().shownLines(), LoadLines(withLog.deviceLog).lines);
        QStringList calls;
        for (const QString& line : bench.traffic().shownLines()) {
            calls << line.section(u' ', 1);  // without the time stamp
        }
        QCOMPARE(calls, (QStringList{"OpenChannel(3) -> failed=1", "OpenChannel(1) -> failed=0",
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
        const QString path = dir.filePath("traffic.log");
        QVERIFY(bench.traffic().saveTo(path));
        QCOMPARE(LoadLines(path).lines, bench.traffic().shownLines());
        const QString nowhere = dir.filePath("missing/traffic.log");
        QVERIFY(!bench.traffic().saveTo(nowhere));
        QVERIFY(!QFile::exists(nowhere));
        QVERIFY(find<QLabel>(&bench, "trafficStatus")->text().startsWith("Could not write "));

        click(&bench, "trafficClear");
        find<QLineEdit>(&bench, "trafficFilter")->clear();
        QVERIFY(bench.traffic().shownLines().isEmpty());
    }

    // The faults that are on are listed at the top, for a screen reader too, as soon as one is
    // switched on the bench or on the box, and their rows stand out.
    void faultsThatAreOnAreListedAtTheTop() {
        ProgrammerBench bench(harness->programmer.simulation());
        sim::SimulatedBox& box = harness->box();
        auto* summary = find<QLabel>(&bench, "faultsOn");
        QCOMPARE(summary->text(), QStringLiteral("No faults on"));
        click(&bench, "id_error", 0);
        click(&bench, "eeprom_fail", 1);
        click(&bench, "version_fail");
        const QString three =
            "Faults on: Identification read error (Part #1), EEPROM failure "
            "(Part #2), Hardware version failure";
        QCOMPARE(summary->text(), three);
        QCOMPARE(summary->accessibleName(), three);
        const auto marked = [&bench](const char* name) {
            return find<QWidget>(&bench, name)->styleSheet().contains("bold");
        };
        QCOMPARE(
            std::tuple(marked("eeprom_fail_1"), marked("eeprom_fail_0"), marked("channel_fail")),
            std::tuple(true, false, false));

        box.config = {};
        box.dies[0].locked = box.dies[1].locked = true;
        box.config.writeBufferCode = 3;
        box.config.dacStatus = 6;
        box.config.outputOverride = 120.0f;
        bench.refresh();
        QCOMPARE(summary->text(),
                 "Faults on: Communication locked for good (both parts), WriteBufferToDevice code "
                 "3, DAC calibration status 6, Fixed output reading 120.00 %");
        QVERIFY(!marked("version_fail") && marked("outputFixed"));
    }

    // Every label of a small plot is there, beside its axis and on its tick, inside the plot,
    // clear of its neighbours; the angles turn upright only when they do not fit across.
    void plotLabelsSitOnTheirTicksClearOfTheAxes() {
        const sim::CharacteristicPlot plot(sim::PartColour(0));
        const QFontMetricsF metrics(plot.labelFont());
        const std::pair<QSize, bool> cases[] = {
            {plot.minimumSizeHint(), true}, {plot.sizeHint(), true}, {{480, 260}, false}};
        for (const auto& [size, turned] : cases) {
            const sim::PlotLayout layout = sim::LayOutPlot(size, metrics);
            const QRectF inside(0, 0, size.width(), size.height());
            QStringList angles;
            for (std::size_t i = 0; i < layout.angles.size(); ++i) {
                const auto& label = layout.angles[i];
                angles << label.text;
                QCOMPARE(label.turned, turned);
                QVERIFY(inside.contains(label.box));
                QVERIFY(label.box.top() > layout.area.bottom());
                QVERIFY(qAbs(label.box.center().x() - layout.x(label.value)) <= 1);
                QVERIFY(i == 0 || !label.box.intersects(layout.angles[i - 1].box));
            }
            QCOMPARE(angles.join(' '), "0 30 60 90 120 150 180 210 240 270 300 330 360");
            QStringList levels;
            for (const auto& label : layout.levels) {
                levels << label.text;
                QVERIFY(inside.contains(label.box));
                QVERIFY(label.box.right() < layout.area.left());
                QVERIFY(qAbs(label.box.center().y() - layout.y(label.value)) <= 1);
            }
            QCOMPARE(levels.join(' '), "0 25 50 75 100");
        }
    }

    // Calls made while the bench is closed are there when it opens again, line by line as the
    // device log has them; what the bench could not keep, a line counts.
    void trafficRecordedWhileClosedMatchesTheDeviceLog() {
        QTemporaryDir dir;
        StartSettings withLog;
        withLog.deviceLog = dir.filePath("device.log");
        harness = std::make_unique<Bench>(sim::SimConfig{}, withLog);
        sim::SimulationBench& offered = bench();  // as the main window offers it
        const auto device = harness->app.createDevice();
        std::int32_t out = 0;
        device->OpenChannel(QVariant(1), out);
        offered.open(nullptr);
        ProgrammerBench* window = offered.window();
        window->close();
        device->PowerOnChip(0, out);
        float angle = 0;
        QVERIFY_THROWS_EXCEPTION(DeviceError, device->ReadAngle(7, angle));
        offered.open(nullptr);
        // Read whole: a device log is no settings file, whatever its size.
        const auto logged = [&withLog] {
            QFile file(withLog.deviceLog);
            file.open(QIODevice::ReadOnly | QIODevice::Text);
            return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
        };
        QCOMPARE(window->traffic().shownLines(), logged());
        auto* missed = find<QLabel>(window, "trafficMissed");
        QVERIFY(missed->isHidden());

        window->close();
        const auto calls = static_cast<int>(sim::TrafficRecorder::kCapacity) + 5;
        std::int32_t major = 0;
        std::int32_t minor = 0;
        for (int call = 0; call < calls; ++call) {
            device->GetHardwareVersion(major, minor, out, out);
        }
        offered.open(nullptr);
        QCOMPARE(window->traffic().shownLines(), logged().mid(logged().size() - 10000));
        QCOMPARE(missed->text(),
                 "8 earlier calls were dropped: the bench keeps the newest 10000 calls; a device "
                 "log (RK31_DEVICE_LOG) keeps every call.");
        QVERIFY(!missed->isHidden());
        click(window, "trafficClear");
        QVERIFY(missed->isHidden());
    }
};

QTEST_MAIN(BenchWindowTest)
#include "BenchWindowTest.moc"
