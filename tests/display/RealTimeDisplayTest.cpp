#include <QLineEdit>
#include <QProgressBar>
#include <QRadioButton>
#include <QTimer>
#include <QtTest>

#include "core/DeviceError.h"
#include "core/Services.h"
#include "display/RealTimeDisplayBar.h"
#include "link/DeviceFactory.h"
#include "shell/DeviceSession.h"
#include "sim/SimulatedProgrammer.h"
#include "support/ScriptedPrompts.h"

using namespace rk31;

namespace {

template <typename T>
T* child(const QWidget& window, const QString& name) {
    auto* found = window.findChild<T*>(name);
    if (found == nullptr) {
        qFatal("no control %s", qPrintable(name));
    }
    return found;
}

QString text(const QWidget& window, const QString& name) {
    return child<QLineEdit>(window, name)->text();
}

int bar(const QWidget& window, const QString& name) {
    return child<QProgressBar>(window, name)->value();
}

}  // namespace

class RealTimeDisplayTest : public QObject {
    Q_OBJECT

    test::ScriptedPrompts prompts;
    test::RecordingPause pause;
    std::unique_ptr<ScopedServices> services;
    std::shared_ptr<sim::SimulatedBox> box;

    // Connected to the simulated programmer, whose output reads `reading`.
    void connect(float reading) {
        sim::SimConfig config;
        config.outputOverride = reading;
        box = sim::InstallSimulation(config).box;
        DeviceSession::instance().ConnectProgrammer(3, prompts);
        box->clearTrace();
    }
    // The box stops answering while the session still holds its device object.
    static void loseChannel() { DeviceSession::instance().deviceObject()->CloseChannel(-1); }

  private slots:
    void init() {
        DeviceSession::instance().resetToFreshProcess();
        prompts.clear();
        prompts.onMessage = nullptr;
        pause.pauses.clear();
        services = std::make_unique<ScopedServices>(Services{&prompts, &pause, nullptr});
    }
    void cleanup() {
        services.reset();
        DeviceSession::instance().resetToFreshProcess();
        DeviceFactory::Unregister(QString::fromLatin1(kDeviceProgId));
        box.reset();
    }

    void readingsShowAsPercentAndAngle_data() {
        QTest::addColumn<float>("value");
        QTest::addColumn<int>("percentBar");
        QTest::addColumn<int>("angleBar");
        QTest::addColumn<QString>("percentText");
        QTest::addColumn<QString>("angleText");
        QTest::newRow("full scale") << 100.0f << 100 << 360 << "100.00"
                                    << "360.00";
        QTest::newRow("half to even") << 50.5f << 50 << 182 << "50.50"
                                      << "181.80";
        QTest::newRow("angle half to even") << 2.5f << 2 << 9 << "2.50"
                                            << "9.00";
        QTest::newRow("just below 101 fills the bars") << 100.9f << 100 << 360 << "100.90"
                                                       << "363.24";
        QTest::newRow("zero") << 0.0f << 0 << 0 << "0.00"
                              << "0.00";
    }
    void readingsShowAsPercentAndAngle() {
        QFETCH(float, value);
        QFETCH(int, percentBar);
        QFETCH(int, angleBar);
        QFETCH(QString, percentText);
        QFETCH(QString, angleText);
        RealTimeDisplayBar display;
        display.ShowReadings(7.25f, value);
        QCOMPARE(bar(display, "PercentBar_1"), percentBar);
        QCOMPARE(bar(display, "AngleBar_1"), angleBar);
        QCOMPARE(text(display, "PercentText_1"), percentText);
        QCOMPARE(text(display, "AngleText_1"), angleText);
        QCOMPARE(text(display, "PercentText_0"), QString("7.25"));
        QCOMPARE(text(display, "AngleText_0"), QString("26.10"));
    }

    void initSelectsTheChannelAndLoadStartsTheTimer_data() {
        QTest::addColumn<int>("part");
        QTest::addColumn<int>("num");
        QTest::addColumn<bool>("optionsEnabled");
        QTest::newRow("Part#1 alone") << 0 << 1 << false;
        QTest::newRow("Part#2 alone") << 1 << 1 << false;
        QTest::newRow("switchable") << 0 << 2 << true;
    }
    void initSelectsTheChannelAndLoadStartsTheTimer() {
        QFETCH(int, part);
        QFETCH(int, num);
        QFETCH(bool, optionsEnabled);
        connect(0);
        RealTimeDisplayBar display;
        display.Init(static_cast<std::int16_t>(part), static_cast<std::int16_t>(num));
        QCOMPARE(box->trace, QStringList{QString("SelectOutputChannel(%1)").arg(part)});
        display.show();
        QVERIFY(display.timer().isActive());
        QCOMPARE(display.timer().interval(), 100);
        for (int i = 0; i < 2; ++i) {
            auto* option = child<QRadioButton>(display, QString("PartsOption_%1").arg(i));
            QCOMPARE(option->isEnabled(), optionsEnabled);
            QCOMPARE(option->isChecked(), i == part);
        }
        QCOMPARE(text(display, "PercentText_0"), QString("0.00"));
        display.close();
        QVERIFY(!display.timer().isActive());
    }

    void initWithoutProgrammerThrows() {
        RealTimeDisplayBar display;
        try {
            display.Init(0, 1);
            QFAIL("no error");
        } catch (const DeviceError& error) {
            QCOMPARE(error.description(), QString("Programmer is not connected!"));
        }
    }

    void tickShowsTheMeasuredPartOnly() {
        connect(42.0f);
        RealTimeDisplayBar display;
        display.Init(1, 2);
        display.show();
        display.ShowReadings(11, 11);
        box->clearTrace();
        display.Timer1Tick();
        QCOMPARE(box->trace, QStringList{"MeasureOutput(1, 1)"});
        QCOMPARE(text(display, "PercentText_1"), QString("42.00"));
        QCOMPARE(text(display, "AngleText_1"), QString("151.20"));
        QCOMPARE(text(display, "PercentText_0"), QString("0.00"));
        QCOMPARE(bar(display, "PercentBar_0"), 0);
        QVERIFY(prompts.messages.isEmpty());
        QVERIFY(display.isVisible());
        QVERIFY(display.timer().isActive());
    }

    void timerDrivesTheTicks() {
        connect(25.0f);
        RealTimeDisplayBar display;
        display.Init(0, 1);
        display.show();
        QTRY_COMPARE_WITH_TIMEOUT(text(display, "PercentText_0"), QString("25.00"), 2000);
        QVERIFY(box->trace.contains("MeasureOutput(0, 1)"));
    }

    void readingOutOfScope_data() {
        QTest::addColumn<int>("part");
        QTest::addColumn<float>("value");
        QTest::addColumn<QString>("message");
        QTest::newRow("101") << 0 << 101.0f
                             << "Angle from Part#1 is out of scope [101],Will be set to 0 instead!";
        QTest::newRow("-1") << 0 << -1.0f
                            << "Angle from Part#1 is out of scope [-1],Will be set to 0 instead!";
        QTest::newRow("Part#2") << 1 << 250.5f
                                << "Angle from Part#2 is out of scope [250.5],Will be set to 0 "
                                   "instead!";
    }
    void readingOutOfScope() {
        QFETCH(int, part);
        QFETCH(float, value);
        QFETCH(QString, message);
        connect(value);
        RealTimeDisplayBar display;
        display.Init(static_cast<std::int16_t>(part), 1);
        display.show();
        display.ShowReadings(30, 30);
        bool timerStoppedBeforeMessage = false;
        prompts.onMessage = [&](const QString&) {
            timerStoppedBeforeMessage = !display.timer().isActive();
        };
        display.Timer1Tick();
        QCOMPARE(prompts.messages, QStringList{message});
        QVERIFY(timerStoppedBeforeMessage);
        QVERIFY(!display.timer().isActive());
        QVERIFY(!display.isVisible());
        for (const char* name : {"PercentText_0", "PercentText_1", "AngleText_0", "AngleText_1"}) {
            QCOMPARE(text(display, name), QString("0.00"));
        }
        // Opened again, the display measures again.
        display.show();
        QVERIFY(display.timer().isActive());
    }

    void tickWithoutProgrammerDoesNothing() {
        RealTimeDisplayBar display;
        display.ShowReadings(12, 0);
        display.Timer1Tick();
        QVERIFY(prompts.messages.isEmpty());
        QCOMPARE(text(display, "PercentText_0"), QString("12.00"));
    }

    void failedMeasurementStopsTheTimer() {
        connect(12.0f);
        RealTimeDisplayBar display;
        display.Init(0, 1);
        display.show();
        loseChannel();
        display.Timer1Tick();
        QCOMPARE(prompts.messages, QStringList{"Programmer is not connected!"});
        QVERIFY(!display.timer().isActive());
    }

    void switchingPartsSelectsTheChannelOnlyOnChange() {
        connect(37.5f);
        RealTimeDisplayBar display;
        display.Init(0, 2);
        display.show();
        display.timer().stop();
        box->clearTrace();
        auto* option0 = child<QRadioButton>(display, "PartsOption_0");
        auto* option1 = child<QRadioButton>(display, "PartsOption_1");

        option0->click();  // already the measured part
        QVERIFY(box->trace.isEmpty());
        QVERIFY(pause.pauses.empty());

        option1->click();
        QCOMPARE(box->trace, QStringList{"SelectOutputChannel(1)"});
        QCOMPARE(pause.pauses, std::vector<int>{200});
        QCOMPARE(display.part(), std::int16_t{1});
        QVERIFY(option1->isChecked() && !option0->isChecked());

        option1->click();
        QCOMPARE(box->trace.size(), 1);

        option0->click();
        QCOMPARE(box->trace, (QStringList{"SelectOutputChannel(1)", "SelectOutputChannel(0)"}));
        QCOMPARE(pause.pauses, (std::vector<int>{200, 200}));

        box->clearTrace();
        display.Timer1Tick();
        QCOMPARE(box->trace, QStringList{"MeasureOutput(0, 1)"});
        QCOMPARE(text(display, "PercentText_0"), QString("37.50"));
        QCOMPARE(text(display, "AngleText_0"), QString("135.00"));
    }

    void failedSwitchKeepsTheMeasuredPart() {
        connect(0);
        RealTimeDisplayBar display;
        display.Init(0, 2);
        display.show();
        loseChannel();
        child<QRadioButton>(display, "PartsOption_1")->click();
        QCOMPARE(prompts.messages, QStringList{"Programmer is not connected!"});
        QVERIFY(pause.pauses.empty());
        QCOMPARE(display.part(), std::int16_t{0});
        QVERIFY(child<QRadioButton>(display, "PartsOption_0")->isChecked());
        QVERIFY(!display.timer().isActive());
    }
};

QTEST_MAIN(RealTimeDisplayTest)
#include "RealTimeDisplayTest.moc"
