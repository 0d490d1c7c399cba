#include <QRadioButton>
#include <QTimer>
#include <QtTest>

#include "support/WindowHarness.h"
#include "ui/dialogs/RealTimeDisplayBar.h"

using namespace rk31;

namespace {

// A part's bars and boxes as they stand: "percent angle percentText angleText".
QString shown(const QWidget& display, int part) {
    QStringList values;
    for (const char* name : {"PercentBar", "AngleBar", "PercentText", "AngleText"}) {
        const auto* control = display.findChild<QWidget*>(QString("%1_%2").arg(name).arg(part));
        const QVariant value = control->property("value");
        values << (value.isValid() ? value : control->property("text")).toString();
    }
    return values.join(' ');
}

}  // namespace

class RealTimeDisplayTest : public QObject {
    Q_OBJECT

  private slots:
    void measuresTheShownPart() {
        test::Bench bench;
        test::ScriptedPrompts& prompts = bench.prompts;
        sim::SimulatedBox* box = &bench.box();
        RealTimeDisplayBar display(bench.session(), prompts, bench.pause);
        const auto option = [&display](int i) {
            return display.findChild<QRadioButton*>(QString("PartsOption_%1").arg(i));
        };
        display.Timer1Tick();  // no programmer: nothing measured, nothing said
        QVERIFY(prompts.messages.isEmpty());
        bench.session().ConnectProgrammer(1, prompts);
        display.Init(1, 2);
        display.show();
        QVERIFY(option(0)->isEnabled() && option(1)->isChecked());
        QTRY_VERIFY(box->trace().contains("MeasureOutput(1, 1)"));  // the timer measures

        bool stoppedBeforeMessage = false;
        prompts.onMessage = [&](const QString&) {
            stoppedBeforeMessage = !display.timer().isActive();
        };
        const QString scope = "Angle from Part#2 is out of scope [%1],Will be set to 0 instead!";
        // clang-format off
        const struct { float value; const char *shown, *outOfScope; } rows[] = {
            {100.0f, "100 360 100.00 360.00", nullptr},  // full scale
            {50.5f, "50 182 50.50 181.80", nullptr},     // bars half to even
            {101.0f, "0 0 0.00 0.00", "101"},
            {100.9f, "100 360 100.90 363.24", nullptr},  // just below 101 fills the bars
            {-1.0f, "0 0 0.00 0.00", "-1"},
            {0.0f, "0 0 0.00 0.00", nullptr},
        };
        // clang-format on
        for (const auto& r : rows) {
            display.show();  // opened again after a reading out of scope
            prompts.clear();
            box->config.outputOverride = r.value;
            display.Timer1Tick();
            QCOMPARE(prompts.messages,
                     r.outOfScope ? QStringList{scope.arg(r.outOfScope)} : QStringList());
            QVERIFY(!r.outOfScope || stoppedBeforeMessage);
            QCOMPARE(display.isVisible() && display.timer().isActive(), r.outOfScope == nullptr);
            QCOMPARE(shown(display, 1) + " | " + shown(display, 0),
                     r.shown + QString(" | 0 0 0.00 0.00"));
        }
        display.close();
        QVERIFY(!display.timer().isActive());

        // Switching parts selects the channel only when the part changes.
        display.show();
        display.timer().stop();
        box->config.outputOverride = 37.5f;
        box->clearTrace();
        for (const int index : {1, 0, 0}) {
            option(index)->click();
        }
        QCOMPARE(box->trace(), QStringList{"SelectOutputChannel(0)"});
        QCOMPARE(bench.pause.pauses, std::vector<int>{200});
        display.Timer1Tick();
        QCOMPARE(box->trace().last(), QString("MeasureOutput(0, 1)"));
        QCOMPARE(shown(display, 0), QString("38 135 37.50 135.00"));

        // The box stops answering: the display stops measuring and keeps its part.
        bench.session().deviceObject()->CloseChannel(-1);
        display.timer().start();
        option(1)->click();
        QVERIFY(option(0)->isChecked() && display.part() == 0 && !display.timer().isActive());
        display.Timer1Tick();
        QCOMPARE(prompts.messages, QStringList(2, "Programmer is not connected!"));
        QCOMPARE(bench.pause.pauses.size(), std::size_t{1});
    }
};

QTEST_MAIN(RealTimeDisplayTest)
#include "RealTimeDisplayTest.moc"
