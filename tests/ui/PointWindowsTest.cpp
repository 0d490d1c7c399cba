// The five teach-in windows as a user meets them, on the simulated programmer: their controls,
// the button states of each variant, teaching two points (or one and the offsets), programming,
// refusals and failures, and what the simulated chip puts out afterwards.
#include <QtTest>

#include "sim/SimulatedBox.h"
#include "ui/PointHarness.h"
#include "ui/plots/TransferCurvePlot.h"

using namespace rk31;
using namespace rk31::test;

namespace {

const QString kNotInOwi = QStringLiteral("Error: Not in OWI mode");
const QString kNotTwoPoints = QStringLiteral("Error: Not 2 points Mode!");
const QString kInvalidAngle = QStringLiteral(
    "Part#%1: Angle 0 Input is Invalid! Restoring to default\u2026 Please try again!");
const QString kCommLock =
    QStringLiteral("Failed to set OWI mode due to CommLock!...Return to ADC mode!");

// `calls` with "#" standing for the part.
QStringList forPart(QStringList calls, int part) {
    calls.replaceInStrings("#", QString::number(part));
    return calls;
}

QStringList preparation(int part) {
    // clang-format off
    return forPart({"PowerOnChip(#)", "EnterADCMode(#)", "MeasureVDD(#)", "EnterOWIMode(#)", "GetMemoryAccess()",
                    "ReadMemory(#, &H48)", "GetSolverAccess()", "ClearSolverSettings(#)", "ProgramEEPROM(#)",
                    "EnterOWIMode(#)", "GetDACCalibration(#)"}, part);
    // clang-format on
}

QStringList powerOff(int part) {
    return forPart({"PowerOffChip(#)", "EnterADCMode(#)", "SelectOutputChannel(#)"}, part);
}

// The point windows' solver image: clamps and DP, then A and B, C and D repeating B's angle.
QStringList solverImage(int part, const QStringList& v) {
    const int ids[] = {1, 2, 3, 4, 8, 5, 9, 6, 10, 7, 11};
    QStringList calls{"GetMemoryAccess()"};
    for (int i = 0; i < 11; ++i) {
        const QString value = i < 7 ? "Single:" + v[i] : i % 2 ? "Integer:0" : "Single:" + v[6];
        calls
            << QStringLiteral("SetSolverParameter(%1, %2, %3, 1)").arg(part).arg(ids[i]).arg(value);
    }
    return calls;
}

// A curve as "angle,level" rows, up to its last non-empty one.
QString curveText(const CurveRows& rows) {
    QString text;
    for (const auto& [angle, level] : rows) {
        text += QStringLiteral(" %1,%2").arg(angle).arg(level);
    }
    return text.remove(QRegularExpression("( 0,0)*$")).trimmed();
}

// SetpointA, SetpointB and, where there is one, PowerOn: '1' for usable.
QString buttonStates(QWidget* w) {
    QString states;
    for (const char* name : {"SetpointA", "SetpointB", "PowerOn"}) {
        if (w->findChild<QWidget*>(name)) {
            states += usable(w, name) ? '1' : '0';
        }
    }
    return states;
}

// Set point B (Program in "/6") after Set point A, the magnet at sensed[0] and then sensed[1].
struct Taught {
    int variant, part;
    const char* fault;
    bool clockwise, clearAngleA;  // Angle A cleared after Set point A
    QStringList levels;           // typed for A and B, and Level B as Set point B leaves it
    QList<double> sensed;
    QStringList messages{}, image{};  // image: the solver values sent, none when refused before
    QString curve{};                  // "" for not checked
};

}  // namespace

class PointWindowsTest : public QObject {
    Q_OBJECT
  private:
    // A fresh simulator with `faults`; the previous bench is gone first, so that its seams are
    // not restored over the new ones.
    void renewBench(const QString& faults) {
        bench.reset();
        bench = std::make_unique<Bench>(sim::ParseSimConfig(faults, nullptr));
    }
    std::unique_ptr<Bench> bench;

  private slots:
    void init() { bench = std::make_unique<Bench>(); }
    void cleanup() { bench.reset(); }

    void opensAndConnects_data() {
        QTest::addColumn<int>("variant");
        // The class name, then the captions of Frame1, Frame2, SetpointB, PowerOn, GetDP and
        // OffsetDP; "-" where there is none.
        QTest::addColumn<QString>("captions");
        // clang-format off
        QTest::newRow("/2") << 2 << "MainForm2PointsProgramming|-|2 Points|Set point B|-|Get DP Mid Point|-";
        QTest::newRow("/3") << 3 << "MainForm2PointsProgrammingforDual|Part#1|Part#2|Set point B|-|Get DP|-";
        QTest::newRow("/4") << 4 << "MainForm2PointsProgrammingWithPwr|-|2 Points|Set point B|Power On|Get DP Mid Point|-";
        QTest::newRow("/5") << 5 << "MainForm2PointsProgrammingforDualWithPwr|Part#1|Part#2|Set point B|Power On|Get DP|-";
        QTest::newRow("/6") << 6 << "MainForm1PointProgramming|Offset setting against Angle A|2 Points|Program|-|-|0.00";
        // clang-format on
    }

    void opensAndConnects() {
        QFETCH(int, variant);
        QFETCH(QString, captions);
        const bool dual = variant == 3 || variant == 5;
        // SetpointA, SetpointB (and PowerOn) once the port dialog closed.
        const QString ready = variant == 4 || variant == 5 ? "001" : "10";
        auto window = makePointWindow(*bench, variant);
        QWidget* w = window.get();
        QCOMPARE(w->windowTitle(), QStringLiteral("RK31 GUI - QZ7734"));
        QVERIFY(!find(w, "Image1")->accessibleDescription().isEmpty());
        QStringList shown{w->objectName()};
        for (const char* name :
             {"Frame1", "Frame2", "SetpointB", "PowerOn", "GetDP", "OffsetDP", "PartFrame",
              "connect", "mOpen", "mSaveAs", "btnAbout", "SetpointA"}) {
            shown << (w->findChild<QWidget*>(name) ? textOf(w, name) : "-");
        }
        QCOMPARE(shown.join('|'),
                 captions +
                     "|Part Configuration|Connect|Load Settings|Save Settings|About|Set "
                     "point A");
        // Every box by its label, with its default text.
        for (int part = 0; part < (dual ? 2 : 1); ++part) {
            const int i = dual ? part : -1, a = dual ? 2 * part : 0;
            const int index[] = {i, i, i, a, a, a + 1, a + 1};
            // clang-format off
            const char* names[] = {"DP", "clamphigh", "clamplow", "Angle", "Level", "Angle", "Level"};
            // clang-format on
            QStringList boxes;
            for (int k = 0; k < 7; ++k) {
                boxes << labelOf(w, find(w, names[k], index[k])) + "=" +
                             textOf(w, names[k], index[k]);
            }
            QCOMPARE(boxes.join('|') + "|" + textOf(w, "clockwise", i),
                     "DP (deg)=260.00|Clamp High (%VDD)=95.00|Clamp Low (%VDD)=5.00|Angle A "
                     "(deg)=|Level A [%VDD]=|Angle B (deg)=|Level B [%VDD]=|" +
                         (dual ? QStringLiteral("CW (Part#%1)").arg(part + 1) : "clockwise"));
        }
        if (variant == 6) {
            QCOMPARE(labelOf(w, find(w, "OffsetDP")) + "|" + labelOf(w, find(w, "OffsetAngleB")) +
                         "=" + textOf(w, "OffsetAngleB"),
                     QStringLiteral("DP offset (deg)|Angle B offset (deg)=0.00"));
        }
        if (!dual) {
            auto* partSel = find<QComboBox>(w, "PartSel");
            QCOMPARE(QStringList({labelOf(w, partSel), partSel->itemText(0), partSel->itemText(1),
                                  partSel->currentText(), QString::number(partSel->count())}),
                     QStringList({"Part", "Part#1", "Part#2", "Part#1", "2"}));
        }
        QCOMPARE(buttonStates(w), QString(ready.size(), '0'));
        if (variant != 6) {
            click(w, "GetDP");
            QCOMPARE(textOf(w, "DP", dual ? 0 : -1), QStringLiteral("260.00"));
        }
        QCOMPARE(bench->prompts.messages, variant == 6 ? QStringList() : QStringList{kNotInOwi});

        // "Do not connect" leaves the window offline but readies its buttons all the same.
        scriptDialogClick(bench->prompts, "Donotconnect");
        click(w, "connect");
        QCOMPARE(textOf(w, "connect") + buttonStates(w), "Connect" + ready);
        QVERIFY(bench->trace().isEmpty());
        scriptPortChoice(bench->prompts, "COM1");
        click(w, "connect");
        QCOMPARE(textOf(w, "connect") + buttonStates(w), "Disconnect" + ready);
        QCOMPARE(bench->prompts.modalTitles, QStringList({"Select Com port", "Select Com port"}));
        click(w, "connect");
        QCOMPARE(textOf(w, "connect") + buttonStates(w), "Connect" + QString(ready.size(), '0'));
        QCOMPARE(bench->trace().last(), QStringLiteral("CloseChannel(-1)"));
    }

    void setPointAPlacesDPAndPointB_data() {
        QTest::addColumn<int>("variant");
        QTest::addColumn<bool>("clockwise");
        QTest::addColumn<double>("sensed");
        // "/6": the offsets of B and DP as typed, then as their boxes correct them without a word.
        QTest::addColumn<QStringList>("offsets");
        QTest::addColumn<QString>("shown");  // Angle A, Angle B and DP
        const QStringList none, usual = {"90", "180", "90.00", "180.00"};
        // clang-format off
        QTest::newRow("/2 before half a turn") << 2 << false << 100.5 << none << "100.50  280.50";
        QTest::newRow("/2 after half a turn") << 2 << false << 200.0 << none << "200.00  20.00";
        QTest::newRow("/2 exactly half a turn") << 2 << false << 180.0 << none << "180.00  0.00";
        QTest::newRow("/2 rounded as shown") << 2 << false << 12.345 << none << "12.35  192.35";
        QTest::newRow("/6 over the seam") << 6 << false << 300.0 << usual << "300.00 30.00 120.00";
        QTest::newRow("/6 clockwise below zero") << 6 << true << 45.0 << usual << "45.00 315.00 225.00";
        QTest::newRow("/6 no wrap") << 6 << false << 10.0 << usual << "10.00 100.00 190.00";
        QTest::newRow("/6 lowercase e, uppercase E")
            << 6 << false << 10.0 << QStringList{"1e2", "1E2", "0.00", "100.00"} << "10.00 10.00 110.00";
        QTest::newRow("/6 below zero, a turn")
            << 6 << false << 10.0 << QStringList{"-5", "360", "0.00", "359.99"} << "10.00 10.00 9.99";
        QTest::newRow("/6 letters, rounded as typed")
            << 6 << false << 10.0 << QStringList{"abc", "12.345", "0.00", "12.35"} << "10.00 10.00 22.35";
        QTest::newRow("/6 empty") << 6 << false << 10.0 << QStringList{"", "", "0.00", "0.00"} << "10.00 10.00 10.00";
        // clang-format on
    }

    void setPointAPlacesDPAndPointB() {
        QFETCH(int, variant);
        QFETCH(bool, clockwise);
        QFETCH(double, sensed);
        QFETCH(QStringList, offsets);
        QFETCH(QString, shown);
        auto window = openPointWindow(*bench, variant);
        QWidget* w = window.get();
        if (variant == 6) {
            typeInto(w, "OffsetAngleB", -1, offsets[0]);
            typeInto(w, "OffsetDP", -1, offsets[1]);
            QCOMPARE(textOf(w, "OffsetAngleB") + " " + textOf(w, "OffsetDP"),
                     offsets[2] + " " + offsets[3]);
        }
        check(w, "clockwise", -1, clockwise);
        bench->box().setMagnetAngle(sensed);
        const QStringList values = shown.split(' ');
        // The part keeps the values shown, not the exact ones.
        const PartParameters& params = window->context().params[0];
        if (variant == 2) {
            // Get DP reads the part in OWI mode and places the DP as Set point A does.
            click(w, "GetDP");
            QCOMPARE(bench->trace(),
                     QStringList({"PowerOnChip(0)", "EnterOWIMode(0)", "ReadAngle(0)"}));
            QCOMPARE(textOf(w, "DP") + " " + buttonStates(w), values[2] + " 10");
            QCOMPARE(params.DP, values[2].toFloat());
        }
        click(w, "SetpointA");
        QCOMPARE(textOf(w, "Angle", 0) + " " + textOf(w, "Angle", 1) + " " + textOf(w, "DP"),
                 shown);
        QCOMPARE(params.DP, values[2].toFloat());
        QCOMPARE(params.Angle[1], values[1].isEmpty() ? EmptyValue : values[1].toFloat());
        QCOMPARE(bench->prompts.messages, QStringList());
    }

    void setPointBProgramsOrRefuses_data() {
        QTest::addColumn<Taught>("t");
        const auto noted = [](const char* tail) {
            return QStringList{"Please noted: Part#1-" + QString(tail), kNotTwoPoints};
        };
        // Clockwise, B goes first. The rising pair is extended to the clamps, with the jump at DP.
        // clang-format off
        const QStringList rising = {"5", "95", "280", "20", "100", "80", "200"};
        const QStringList cw = {"5", "95", "120", "70", "210", "30", "300"};
        const QString risingCurve =
            "75,5 100,20 100,20 200,80 200,80 225,95 225,95 280,95 280,95 280,5 280,5 360,5 0,5 75,5";
        const QString cwCurve =
            "356,5 300,30 300,30 210,70 210,70 154,95 154,95 120,95 120,95 120,5 120,5 0,5 360,5 356,5";
        const QStringList given = {"20", "80", "80.00"}, givenCw = {"30", "70", "70.00"};
        const QList<double> up = {100, 200}, down = {300, 210};
        QTest::newRow("/2") << Taught{2, 0, "", false, false, given, up, {}, rising, risingCurve};
        QTest::newRow("/2 Part#2 clockwise") << Taught{2, 1, "", true, false, givenCw, down, {}, cw, cwCurve};
        QTest::newRow("/4 clockwise") << Taught{4, 0, "", true, false, givenCw, down, {}, cw, cwCurve};
        // "/6" places B 90 and DP 180 degrees from A: the same pair.
        QTest::newRow("/6 clockwise") << Taught{6, 0, "", true, false, givenCw, down, {}, cw, cwCurve};
        QTest::newRow("EEPROM fails") << Taught{4, 0, "eeprom_fail=1", false, false, given, up,
                                                {"Failed in programming device"}, rising, risingCurve};
        QTest::newRow("angle A cleared") << Taught{4, 0, "", false, true, given, up,
                                                   {"Error Angles of Point A and Point B input", kNotTwoPoints}};
        QTest::newRow("equal rounded angles") << Taught{4, 0, "", false, false, given, {100.2, 99.8},
                                                        {"Rules: Wrong in configure 2 points!", kNotTwoPoints}};
        QTest::newRow("level A empty")
            << Taught{4, 0, "", false, false, {"", "80", "80.00"}, up, noted("Level#0 is Empty!")};
        QTest::newRow("level B empty")
            << Taught{4, 0, "", false, false, {"20", "", ""}, {30, 60}, noted("Level#1 is Empty!")};
        // Level B emptied; only the points' own segments are drawn.
        QTest::newRow("equal rounded levels") << Taught{4, 0, "", false, false, {"82", "82.47", ""}, {322, 238.06},
                                                        noted("Level#0 is the same as Part#1-Level#1 !"), {},
                                                        "322,82 360,82 0,82 238,82"};
        // clang-format on
    }

    void setPointBProgramsOrRefuses() {
        QFETCH(Taught, t);
        const bool power = t.variant == 4;
        renewBench(t.fault);
        auto window = openPointWindow(*bench, t.variant, false);
        QWidget* w = window.get();
        const WindowContext& ctx = window->context();
        find<QComboBox>(w, "PartSel")->setCurrentIndex(t.part);
        QCOMPARE(w->findChild<TransferCurvePlot*>("Picture1")->shownParts().front().part, t.part);
        typeInto(w, "Angle", 0, "x");
        QCOMPARE(bench->prompts.messages, QStringList{kInvalidAngle.arg(t.part + 1)});
        typeInto(w, "Level", 0, t.levels[0]);
        typeInto(w, "Level", 1, t.levels[1]);
        check(w, "clockwise", -1, t.clockwise);
        if (t.variant == 6) {
            typeInto(w, "OffsetAngleB", -1, "90");
            typeInto(w, "OffsetDP", -1, "180");
        }
        if (power) {
            click(w, "PowerOn");
            QCOMPARE(buttonStates(w), QStringLiteral("100"));
        }
        const QString read = QStringLiteral("ReadAngle(%1)").arg(t.part);
        bench->box().setMagnetAngle(t.sensed[0]);
        click(w, "SetpointA");
        QCOMPARE(bench->trace(), preparation(t.part) << read);
        QCOMPARE(buttonStates(w), power ? "010" : "01");
        QVERIFY(ctx.powered);
        if (t.clearAngleA) {
            typeInto(w, "Angle", 0, "");
        }

        bench->box().setMagnetAngle(t.sensed[1]);
        bench->clearTrace();
        bench->prompts.messages.clear();
        click(w, "SetpointB");
        QCOMPARE(bench->prompts.messages, t.messages);
        // Programmed or not, the part is powered off again. "Program" of "/6" reads no angle: point
        // B came from the offset.
        QStringList expected = t.variant == 6 ? QStringList() : QStringList{read};
        if (!t.image.isEmpty()) {
            expected << solverImage(t.part, t.image)
                     << forPart({"GetSolverAccess()", "WriteBufferToDevice(#)", "ProgramEEPROM(#)",
                                 "EnterOWIMode(#)"},
                                t.part);
        }
        QCOMPARE(bench->trace(), expected + powerOff(t.part));
        QCOMPARE(textOf(w, "Angle", 1) + " " + textOf(w, "Level", 1),
                 QString::number(t.sensed[1], 'f', 2) + " " + t.levels[2]);
        QCOMPARE(ctx.params[0].Level[1], t.levels[2].toFloat());
        QCOMPARE(ctx.session.ChipState[t.part], 0);
        QVERIFY(!ctx.powered);
        QCOMPARE(buttonStates(w), power ? "001" : "10");
        QCOMPARE(ctx.session.rounded.PointsReversed[t.part], t.clockwise);
        const CurveRows& curve = ctx.session.CurveTable[t.part];
        if (!t.curve.isEmpty()) {
            QCOMPARE(curveText(curve), t.curve);
        }
        QCOMPARE(curveText(ctx.session.CurveTable[1 - t.part]), QString());
        const auto* plot = w->findChild<TransferCurvePlot*>("Picture1");
        QCOMPARE(plot->caption(), t.messages.isEmpty()
                                      ? QString()
                                      : QStringLiteral("Not in the chip: %1 failed")
                                            .arg(t.variant == 6 ? "Program" : "Set point B"));
        if (!t.messages.isEmpty()) {
            return;
        }
        // Powered again by hand, in ADC mode, the chip reloads its EEPROM and follows the drawing
        // (whole degrees and percent there, a 12-bit DAC in the chip).
        bench->box().powerOn(t.part);
        bench->box().enterAdc(t.part);
        for (const double along : {0.2, 0.5, 0.8}) {
            const double angle = t.sensed[0] + (t.sensed[1] - t.sensed[0]) * along;
            bench->box().setMagnetAngle(angle);
            QCOMPARE_LT(std::abs(bench->box().output(t.part) - CurveLevelAt(curve, angle).value()),
                        1.5);
        }
        // A new point A: the curve drawn is the one before it.
        if (power) {
            click(w, "PowerOn");
        }
        click(w, "SetpointA");
        QCOMPARE(plot->caption(), "Earlier curve: point A is new");
    }

    // Watch angle reads between the commands, never inside one, and only while point A is taken.
    void watchAngleShowsTheSensedAngle() {
        auto window = openPointWindow(*bench, 4, false);
        QWidget* w = window.get();
        auto* watch = find<QAbstractButton>(w, "watchAngle");
        auto* shown = find<QLabel>(w, "watchedAngle", 0);
        watch->click();
        click(w, "PowerOn");
        QTest::qWait(3 * PointProgrammingWindow::kWatchIntervalMs);
        QCOMPARE(shown->text(), QString());  // point A not taken yet
        bench->box().setMagnetAngle(40);
        click(w, "SetpointA");
        bench->box().setMagnetAngle(123.25);
        QTRY_COMPARE(shown->text(), QStringLiteral("now 123.25\u00B0"));
        QVERIFY(shown->accessibleName().endsWith("now 123.25\u00B0"));
        bench->clearTrace();
        click(w, "SetpointB");
        QCOMPARE(bench->trace().filter("ReadAngle").size(), 1);  // Set point B's own
        QCOMPARE(textOf(w, "Angle", 1), "123.25");
        QCOMPARE(shown->text(), QString());
    }

    void teachesBothParts_data() {
        QTest::addColumn<int>("variant");
        QTest::newRow("/3") << 3;
        QTest::newRow("/5") << 5;
    }

    void teachesBothParts() {
        QFETCH(int, variant);
        const bool power = variant == 5;
        // Failures do not stop the preparation: one message per failed clear, one for the EEPROM.
        renewBench("clear_fail=both;eeprom_fail=2");
        auto window = openPointWindow(*bench, variant, false);
        QWidget* w = window.get();
        for (int box = 0; box < 4; ++box) {
            typeInto(w, "Level", box, QStringList({"10", "90", "80", "20"})[box]);
        }
        bench->box().setMagnetAngle(50);
        if (power) {
            click(w, "PowerOn");
        }
        click(w, "SetpointA");
        // clang-format off
        QCOMPARE(bench->trace(), QStringList({
            "PowerOnChip(0)", "EnterADCMode(0)", "PowerOnChip(1)", "EnterADCMode(1)", "MeasureVDD(3)", "EnterOWIMode(3)",
            "GetMemoryAccess()", "ReadMemory(0, &H48)", "GetMemoryAccess()", "ReadMemory(1, &H48)", "GetSolverAccess()",
            "ClearSolverSettings(0)", "ClearSolverSettings(1)", "ProgramEEPROM(0)", "ProgramEEPROM(1)",
            "EnterOWIMode(3)", "GetDACCalibration(3)", "ReadAngle(0)", "ReadAngle(1)"}));
        // clang-format on
        QCOMPARE(bench->prompts.messages,
                 QStringList({"Errors in ClearSolverSettings!", "Errors in ClearSolverSettings!",
                              "Failed in programming device"}));
        QCOMPARE(bench->pause.pauses, std::vector<int>{500});
        QCOMPARE(textOf(w, "Angle", 0) + textOf(w, "Angle", 2), QStringLiteral("50.0050.00"));
        QCOMPARE(textOf(w, "DP", 0) + textOf(w, "DP", 1), QStringLiteral("230.00230.00"));
        QCOMPARE(buttonStates(w), power ? "010" : "01");

        // Both EEPROMs fail: reported once, and both parts still powered off and drawn.
        bench->box().config.clearFail = 0;
        bench->box().config.eepromFail = sim::kBothDies;
        bench->box().setMagnetAngle(170);
        bench->clearTrace();
        bench->prompts.messages.clear();
        click(w, "SetpointB");
        QCOMPARE(bench->prompts.messages, QStringList{"Failed in programming device"});
        // clang-format off
        QCOMPARE(bench->trace(), QStringList({"ReadAngle(0)", "ReadAngle(1)"}) +
                                     solverImage(0, {"5", "95", "230", "10", "50", "90", "170"}) +
                                     solverImage(1, {"5", "95", "230", "80", "50", "20", "170"}) +
                                     QStringList({"GetSolverAccess()", "WriteBufferToDevice(0)", "GetSolverAccess()",
                                                  "WriteBufferToDevice(1)", "ProgramEEPROM(0)", "ProgramEEPROM(1)",
                                                  "EnterOWIMode(3)", "PowerOffChip(0)", "PowerOffChip(1)",
                                                  "EnterADCMode(0)", "EnterADCMode(1)", "SelectOutputChannel(0)"}));
        // clang-format on
        QCOMPARE(textOf(w, "Angle", 1) + textOf(w, "Angle", 3), QStringLiteral("170.00170.00"));
        QCOMPARE(buttonStates(w), power ? "001" : "10");
        const auto& curves = window->context().session.CurveTable;
        QVERIFY(curves[0][0] != curves[0][40] && curves[1][0] != curves[1][40]);
        QCOMPARE(w->findChild<TransferCurvePlot*>("Picture1")->shownParts().size(), 2u);
    }

    void failedPreparationRefusesSetPointB_data() {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QStringList>("calls");  // before the part is powered off again
        QTest::addColumn<QStringList>("messages");
        const QString reset = QStringLiteral("Please Reset hardware and try again!");
        // clang-format off
        QTest::newRow("no supply") << "no_supply=1" << preparation(0).mid(0, 3) << QStringList();
        QTest::newRow("no chip") << "id_error=1" << preparation(0).mid(0, 6)
                                 << QStringList({"Read Error! Please Check chip connections!", reset});
        QTest::newRow("locked") << "locked=1"
            << preparation(0).mid(0, 4) + QStringList({"ExitOWIMode(0)", "EnterADCMode(0)", "GetMemoryAccess()",
                                                       "ReadMemory(0, &H48)"})
            << QStringList({kCommLock, "OWI communication is locked: F5", reset});
        // clang-format on
    }

    void failedPreparationRefusesSetPointB() {
        QFETCH(QString, fault);
        QFETCH(QStringList, calls);
        QFETCH(QStringList, messages);
        renewBench(fault);
        auto window = openPointWindow(*bench, 2);
        QWidget* w = window.get();
        bench->box().setMagnetAngle(77.7);
        click(w, "SetpointA");
        QCOMPARE(bench->prompts.messages, messages);
        // The angle is read and shown all the same.
        QCOMPARE(bench->trace(), calls + powerOff(0) << "ReadAngle(0)");
        QCOMPARE(textOf(w, "Angle", 0) + " " + buttonStates(w), QStringLiteral("77.70 01"));
        QVERIFY(!window->context().powered);
        QCOMPARE(window->context().session.ChipState[0], 0);

        bench->clearTrace();
        bench->prompts.messages.clear();
        click(w, "SetpointB");
        QCOMPARE(bench->prompts.messages.last(), kNotInOwi);
        QVERIFY(!bench->trace().join(' ').contains(QRegularExpression("ReadAngle|SetSolver")));
        QCOMPARE(buttonStates(w), QStringLiteral("01"));
    }

    // A locked part cannot enter OWI mode: returned to ADC mode and refused.
    void getDPOnALockedPartIsRefused() {
        renewBench("locked=1");
        auto window = openPointWindow(*bench, 2);
        click(window.get(), "GetDP");
        QCOMPARE(bench->trace(), QStringList({"PowerOnChip(0)", "EnterOWIMode(0)", "ExitOWIMode(0)",
                                              "EnterADCMode(0)"}));
        QCOMPARE(bench->prompts.messages, QStringList({kCommLock, kNotInOwi}));
        QCOMPARE(textOf(window.get(), "DP"), QStringLiteral("260.00"));
    }
};

QTEST_MAIN(PointWindowsTest)
#include "PointWindowsTest.moc"
