// The Program command of both two-part windows: what reaches the chip, in which order, what the
// programmed chip then outputs, and every refusal.
#include <QtTest>

#include "device/ModeChange.h"
#include "support/WindowHarness.h"
#include "ui/windows/MainForm2Parts.h"

using namespace rk31;
using namespace rk31::test;

namespace {

// Runs blank-separated steps as a user: "box_i=text" types into a box, "list_i#k" picks item k
// of a list, any other name checks its check box or clicks its button.
void run(QWidget* w, const QString& steps) {
    for (const QString& step : steps.split(' ', Qt::SkipEmptyParts)) {
        const QString name = step.section(QRegularExpression("[=#]"), 0, 0);
        if (step.contains('=')) {
            typeInto(w, name, -1, step.section('=', 1));
        } else if (step.contains('#')) {
            auto* list = find<QComboBox>(w, name);
            list->setCurrentIndex(step.section('#', 1).toInt());
            emit list->activated(list->currentIndex());
        } else if (qobject_cast<QCheckBox*>(find(w, name))) {
            check(w, name, -1, true);
        } else {
            click(w, name);
        }
    }
}

// Device calls written one after another, "A() B(0, 1)".
QStringList calls(const QString& text) {
    return text.split(QRegularExpression(" (?![^(]*\\))"));
}

QString param(int part, int id, const QString& value, int mode = 1) {
    return QString("SetSolverParameter(%1, %2, %3, %4)").arg(part).arg(id).arg(value).arg(mode);
}

// The eleven SolverImage calls of a part: clamps and DP, then level and angle of A to D.
QStringList image(int part, const QString& clampsAndDp, const QString& points, int mode = 1) {
    static const int ids[] = {1, 2, 3, 4, 8, 5, 9, 6, 10, 7, 11};
    const QStringList values = (clampsAndDp + ' ' + points).split(' ');
    QStringList sent{"GetMemoryAccess()"};
    for (int i = 0; i < 11; ++i) {
        sent << param(part, ids[i], "Single:" + values[i], mode);
    }
    return sent;
}

// Everything a Program of Part#1 of "/1" sends.
QStringList programmed(const QString& clampsAndDp, const QString& points) {
    return image(0, clampsAndDp, points) + calls(
                                               "GetSolverAccess() WriteBufferToDevice(0) "
                                               "SetOutputMode(0, 0, 0, 0) ProgramEEPROM(0) "
                                               "EnterOWIMode(0)");
}

const QString kPointsAB =
    "Angle_0=100 Level_0=20 Angle_1=200 Level_1=80 clamplow_0=10 clamphigh_0=90 DP_0=300";
const QString kPointsABSent = "20 100 80 200 0 200 0 200";
const QString kConfig = "Error Config Solver in programee_click";

// Whether the part outputs `percent` (within a DAC step) with the magnet at `angle`.
bool outputs(Bench& bench, int part, double angle, float percent) {
    bench.box().setMagnetAngle(angle);
    float value = -1;
    bench.session().device().MeasureOutput(static_cast<std::int16_t>(part), 1, value);
    return qAbs(value - percent) <= 100.0f / 4095.0f;
}

}  // namespace

class TwoPartProgramTest : public QObject {
    Q_OBJECT
    std::unique_ptr<Bench> b;
    std::unique_ptr<TwoPartWindow> window;
    QWidget* w = nullptr;

    // A powered window of switch "/variant" over a box set up by RK31_SIM-style `config`.
    void open(const QString& config = {}, int variant = 1) {
        b = std::make_unique<Bench>(sim::ParseSimConfig(config, nullptr));
        window = variant
                     ? openConnected<MainForm2Parts2Src>(*b, true)
                     : std::unique_ptr<TwoPartWindow>(openConnected<MainForm2Parts1Src>(*b, true));
        w = window.get();
    }

  private slots:
    void cleanup() { window.reset(); }

    void programs_data() {
        QTest::addColumn<int>("variant");
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QStringList>("trace");
        QTest::addColumn<bool>("reversed");    // Part#1's points sent in falling order
        QTest::addColumn<QString>("outputs");  // "part@angle=percent" once in ADC mode
        const QString defaults = "5 95 260";
        // clang-format off
        QTest::newRow("four points upwards") << 1 << "Angle_0=10 Level_0=10 Angle_1=100 Level_1=30 Angle_2=200 Level_2=60 Angle_3=300 Level_3=90 btnconfigsolver_0" << programmed(defaults, "10 10 30 100 60 200 90 300") << false << "";
        QTest::newRow("four points downwards") << 1 << "Angle_0=300 Level_0=90 Angle_1=200 Level_1=60 Angle_2=100 Level_2=30 Angle_3=10 Level_3=10 btnconfigsolver_0" << programmed(defaults, "10 10 30 100 60 200 90 300") << true << "";
        QTest::newRow("four points through zero") << 1 << "Angle_0=350 Level_0=10 Angle_1=20 Level_1=30 Angle_2=100 Level_2=60 Angle_3=200 Level_3=90 btnconfigsolver_0" << programmed(defaults, "10 350 30 20 60 100 90 200") << false << "";
        QTest::newRow("three points downwards") << 1 << "Angle_0=200 Level_0=80 Angle_1=100 Level_1=50 Angle_2=10 Level_2=20 btnconfigsolver_0" << programmed(defaults, "20 10 50 100 80 200 0 200") << true << "";
        QTest::newRow("two points, D ignored") << 1 << "Angle_0=100 Level_0=20 Angle_1=200 Level_1=80 Angle_3=300 Level_3=90 btnconfigsolver_0" << programmed(defaults, kPointsABSent) << false << "";
        QTest::newRow("two points clockwise") << 1 << "Angle_0=200 Level_0=20 Angle_1=100 Level_1=80 clockwise_0 btnconfigsolver_0" << programmed(defaults, "80 100 20 200 0 200 0 200") << true << "";
        QTest::newRow("point and slope, B ignored") << 1 << "Angle_0=100 Level_0=20 KforA_0=0.5 Angle_1=300 Level_1=90 btnconfigsolver_0" << programmed(defaults, "20 100 25 110 0 110 0 110") << false << "";
        QTest::newRow("point and slope clockwise") << 1 << "Angle_0=100 Level_0=20 KforA_0=0.5 clockwise_0 btnconfigsolver_0" << programmed(defaults, "25 110 20 100 0 100 0 100") << true << "";
        QTest::newRow("negative slope") << 1 << "Angle_0=0 Level_0=50 KforA_0=-1.5 btnconfigsolver_0" << programmed(defaults, "50 0 35 10 0 10 0 10") << false << "";
        // Part#2 is not touched: a blank die holds its clamp low.
        QTest::newRow("clamps and DP") << 1 << kPointsAB + " btnconfigsolver_0" << programmed("10 90 300", kPointsABSent) << false << "0@150=50 0@250=90 0@50=10 1@150=5";
        QTest::newRow("switch output and PWM") << 1 << "Angle_4=100 Level_4=20 Angle_5=200 Level_5=80 op_1=45 hys_1=2.1 Kpolarity_1 OutMode_1#1 PWMFreq_1#2 PWMPolarity_1#1 btnconfigsolver_1"
            << (image(1, defaults, kPointsABSent, 0) << "GetMemoryAccess()" << param(1, 12, "Single:45", 0) << param(1, 13, "Single:2", 0) << param(1, 14, "Long:1", 0)) + calls("GetSolverAccess() WriteBufferToDevice(1) SetOutputMode(1, 1, 2, 1) ProgramEEPROM(1) EnterOWIMode(1)") << false << "";
        const QStringList bothTail = calls("GetSolverAccess() WriteBufferToDevice(0) SetOutputMode(0, 0, 0, 0) GetSolverAccess() WriteBufferToDevice(1) SetOutputMode(1, 0, 0, 0) ProgramEEPROM(0) ProgramEEPROM(1) EnterOWIMode(3)");
        QTest::newRow("/0 both parts") << 0 << kPointsAB + " Angle_4=200 Level_4=20 Angle_5=100 Level_5=80 clockwise_1 btnconfigsolver" << image(0, "10 90 300", kPointsABSent) + image(1, defaults, "80 100 20 200 0 200 0 200") + bothTail << false << "0@150=50 1@150=50 1@120=68";
        // Part#1 has a slope, Part#2 only points: both go through the multi-point solver, which
        // takes Part#1's point B instead of its slope.
        QTest::newRow("/0 slope only when both have one") << 0 << "Angle_0=100 Level_0=20 KforA_0=1 Angle_1=150 Level_1=40 Angle_4=10 Level_4=10 Angle_5=20 Level_5=20 btnconfigsolver" << image(0, defaults, "20 100 40 150 0 150 0 150") + image(1, defaults, "10 10 20 20 0 20 0 20") + bothTail << false << "";
        // clang-format on
    }

    void programs() {
        QFETCH(int, variant);
        QFETCH(QString, steps);
        QFETCH(QStringList, trace);
        QFETCH(bool, reversed);
        QFETCH(QString, outputs);
        open({}, variant);
        run(w, steps);
        QCOMPARE(b->prompts.messages, QStringList());
        QCOMPARE(b->trace(), trace);
        QCOMPARE(b->session().rounded.PointsReversed[0], reversed);
        QCOMPARE(b->session().ChipState, (std::array<std::int32_t, 2>{2, 2}));
        QCOMPARE(b->pause.pauses, variant == 0 ? std::vector<int>{500} : std::vector<int>{});
        // The note stays until the next command; the status line keeps its fixed form.
        const QString part = steps.endsWith("_1") ? "Part#2" : "Part#1";
        QVERIFY(window->notice().startsWith((variant == 0 ? "Part#1 and Part#2" : part) +
                                            " programmed \u2014 "));
        QVERIFY(textOf(w, "status").startsWith("Ready: Connected"));
        click(w, "btnreadangle", 0);
        QVERIFY(window->notice().isEmpty());

        ToADCMode(window->context(), 1);
        ToADCMode(window->context(), 0);
        for (const QString& output : outputs.split(' ', Qt::SkipEmptyParts)) {
            QVERIFY2(::outputs(*b, output.section('@', 0, 0).toInt(),
                               output.section('@', 1).section('=', 0, 0).toDouble(),
                               output.section('=', 1).toFloat()),
                     qPrintable(output));
        }
    }

    // Nothing is programmed and no note is left; the messages are shown while Program holds
    // the busy cursor, which it then gives back.
    void refusalsAndFailures_data() {
        QTest::addColumn<QString>("config");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<QStringList>("trace");
        const QStringList written = image(0, "10 90 300", kPointsABSent) +
                                    calls("GetSolverAccess() WriteBufferToDevice(0)");
        // clang-format off
        QTest::newRow("clamps equal") << "" << "clamphigh_0=50 clamplow_0=50 Angle_0=1 Level_0=1 Angle_1=2 Level_1=2" << QStringList{"Please noted: Clamp HIGH Setting is not greater than Clamp LOW Setting! Stopping... Please try again!"} << QStringList();
        QTest::newRow("angle A empty") << "" << "Angle_1=100 Level_1=20" << QStringList{"Error Angles of Point A and Point B input", kConfig} << QStringList();
        QTest::newRow("slope without angle A") << "" << "KforA_0=0.5 Angle_1=100 Level_1=20" << QStringList{"Error Angles of Point A and Point B input", kConfig} << QStringList();
        QTest::newRow("same rounded angles") << "" << "Angle_0=10.2 Level_0=10 Angle_1=10.4 Level_1=20" << QStringList{"Rules: Angles should be DIFFERENT in CCW/CW within [0.0, 360.0) to fill in!", kConfig} << QStringList();
        QTest::newRow("level B empty") << "" << "Angle_0=10 Level_0=10 Angle_1=100" << QStringList{"Please noted: Part#1-Level#1 is Empty!", kConfig} << QStringList();
        QTest::newRow("level C empty") << "" << "Angle_0=10 Level_0=10 Angle_1=100 Level_1=20 Angle_2=200" << QStringList{"Please noted: Part#1-Level#2 is Empty!", kConfig} << QStringList();
        QTest::newRow("four angles out of order") << "" << "Angle_0=10 Level_0=1 Angle_1=200 Level_1=2 Angle_2=100 Level_2=3 Angle_3=300 Level_3=4" << QStringList{"Error: The order of 4 Points angles is unable to be determined in-DrawMain!", kConfig} << QStringList();
        QTest::newRow("same rounded levels") << "" << "Angle_0=10 Level_0=50.2 Angle_1=100 Level_1=49.6" << QStringList{"Please noted: Part#1-Level#0 is the same as Part#1-Level#1 !", kConfig} << QStringList();
        QTest::newRow("slope with level A empty") << "" << "Angle_0=10 KforA_0=1" << QStringList{"Please noted: Part#1-Level#0 is Empty!", kConfig} << QStringList();
        QTest::newRow("wbd 1") << "wbd_code=1" << kPointsAB << QStringList{"Chip Index Error!"} << written;
        QTest::newRow("wbd 2") << "wbd_code=2" << kPointsAB << QStringList{"Error in WriteBufferToDevice!"} << written;
        QTest::newRow("wbd 3") << "wbd_code=3" << kPointsAB << QStringList{"Die1: Clamp High <= Clamp Low!"} << written;
        QTest::newRow("wbd 4") << "wbd_code=4" << kPointsAB << QStringList{"Die2: Clamp High <= Clamp Low!"} << written;
        QTest::newRow("wbd 5") << "wbd_code=5" << kPointsAB << QStringList() << written;
        // A failed EEPROM write still takes the part back to OWI mode.
        QTest::newRow("eeprom") << "eeprom_fail=1" << kPointsAB << QStringList{"Failed in programming device"} << programmed("10 90 300", kPointsABSent);
        // clang-format on
    }

    void refusalsAndFailures() {
        QFETCH(QString, config);
        QFETCH(QString, typed);
        QFETCH(QStringList, messages);
        QFETCH(QStringList, trace);
        open(config);
        run(w, typed);
        b->prompts.messages.clear();
        QList<int> cursors;
        b->prompts.onMessage = [&cursors](const QString&) {
            const QCursor* cursor = QApplication::overrideCursor();
            cursors << (cursor ? cursor->shape() : -1);
        };
        click(w, "btnconfigsolver", 0);
        QCOMPARE(b->prompts.messages, messages);
        QCOMPARE(b->trace(), trace);
        QCOMPARE(cursors, QList<int>(messages.size(), Qt::WaitCursor));
        QVERIFY(!QApplication::overrideCursor());
        QVERIFY(window->notice().isEmpty());
        if (QString(QTest::currentDataTag()) == "same rounded levels") {
            QCOMPARE(textOf(w, "Level", 1), QString());
            QCOMPARE(window->context().params[0].Level[1], 0.0f);
        }
    }

    // "/0": Part#1 refused by the solver stops the program of both parts, and nothing says
    // they were programmed.
    void bothPartsStopAtPart1sRefusal() {
        open({}, 0);
        run(w, "Angle_1=100 Level_1=20 Angle_4=100 Level_4=20 Angle_5=200 Level_5=80");
        b->prompts.messages.clear();
        click(w, "btnconfigsolver");
        QCOMPARE(b->prompts.messages.value(0),
                 QStringLiteral("Error Angles of Point A and Point B input"));
        QVERIFY(!b->trace().join(' ').contains("ProgramEEPROM"));
        QVERIFY(window->notice().isEmpty());
    }

    // A locked part's refusal is checked with the other commands' refusals (tools test).
    void aPartInAdcModeIsMovedToOwiModeFirst() {
        open();
        run(w, kPointsAB);
        ToADCMode(window->context(), 0);
        b->clearTrace();
        click(w, "btnconfigsolver", 0);
        QCOMPARE(b->trace().mid(0, 2), calls("EnterOWIMode(0) GetMemoryAccess()"));
        QVERIFY(b->prompts.messages.isEmpty());
    }
};

QTEST_MAIN(TwoPartProgramTest)
#include "TwoPartProgramTest.moc"
