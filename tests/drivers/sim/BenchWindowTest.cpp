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

    void opensAtStartOnlyWhenAskedAndBesideTheMainWindow() {
        for (const char* value : {"", "0", "yes", "1"}) {
            qputenv("RK31_BENCH", value);
            QCOMPARE(StartSettings::FromEnvironment().openBench, QByteArray(value) == "1");
        }
        qunsetenv("RK31_BENCH");
        // Room on the right; on the left only; none: at the right edge, kept on screen.
        const std::pair<QRect, QPoint> cases[] = {{{0, 0, 500, 400}, {500, 0}},
                                                  {{700, 100, 500, 400}, {100, 100}},
                                                  {{100, 300, 1080, 580}, {680, 220}}};
        for (const auto& [main, expected] : cases) {
            QCOMPARE(sim::PlaceBeside(main, {600, 500}, {0, 0, 1280, 720}), expected);
        }
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
        QCOMPARE(rotate->text(), QStringLiteral("Stop"));
        speed->setValue(45);
        QCOMPARE(box.magnetSpeed(), 45.0);
        rotate->click();
        QCOMPARE(box.magnetSpeed(), 0.0);
        QCOMPARE(rotate->text(), QStringLiteral("Start"));
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
};

QTEST_MAIN(BenchWindowTest)
#include "BenchWindowTest.moc"
