// The five teach-in windows as a user meets them, on the simulated programmer: their controls,
// the button states of each variant, teaching two points (or one and the offsets), programming,
// and what the simulated chip puts out afterwards.
#include <QtTest>

#include "sim/SimulatedBox.h"
#include "ui/PointHarness.h"
#include "ui/plots/TransferCurvePlot.h"

using namespace rk31;
using namespace rk31::test;

namespace {

const QString kNotInOwi = QStringLiteral("Error: Not in OWI mode");

const QStringList kPreparePart1 = {
    "PowerOnChip(0)",    "EnterADCMode(0)",     "MeasureVDD(0)",       "EnterOWIMode(0)",
    "GetMemoryAccess()", "ReadMemory(0, &H48)", "GetSolverAccess()",   "ClearSolverSettings(0)",
    "ProgramEEPROM(0)",  "EnterOWIMode(0)",     "GetDACCalibration(0)"};
const QStringList kPowerOffPart1 = {"PowerOffChip(0)", "EnterADCMode(0)", "SelectOutputChannel(0)"};

QString param(int part, int id, const QString& value) {
    return QStringLiteral("SetSolverParameter(%1, %2, %3, 1)").arg(part).arg(id).arg(value);
}

// The point windows' solver image: clamps and DP, then A and B, C and D repeating B's angle.
QStringList solverImage(int part, const QStringList& v) {
    QStringList calls{"GetMemoryAccess()"};
    const int ids[] = {1, 2, 3, 4, 8, 5, 9};
    for (int i = 0; i < 7; ++i) {
        calls << param(part, ids[i], "Single:" + v[i]);
    }
    calls << param(part, 6, "Integer:0") << param(part, 10, "Single:" + v[6])
          << param(part, 7, "Integer:0") << param(part, 11, "Single:" + v[6]);
    return calls;
}

bool enabled(QWidget* w, const char* name) {
    return find(w, name)->isEnabled();
}

QString buttonStates(QWidget* w) {
    QString states;
    for (const char* name : {"SetpointA", "SetpointB", "PowerOn"}) {
        if (w->findChild<QWidget*>(name)) {
            states += enabled(w, name) ? '1' : '0';
        }
    }
    return states;
}

}  // namespace

class PointWindowsTest : public QObject {
    Q_OBJECT
  private slots:
    void init() { bench = std::make_unique<Bench>(); }
    void cleanup() { bench.reset(); }

    void opensWithItsControls_data();
    void opensWithItsControls();
    void buttonsFollowTheConnection_data();
    void buttonsFollowTheConnection();
    void setPointAPlacesTheDPOpposite_data();
    void setPointAPlacesTheDPOpposite();
    void setPointBProgramsTheChosenPart();
    void programmedChipFollowsTheDrawnCurve();
    void powerButtonComesFirst();
    void dualWindowsTeachBothParts_data();
    void dualWindowsTeachBothParts();
    void offsetsPlacePointBAndDP_data();
    void offsetsPlacePointBAndDP();
    void offsetBoxesCorrectSilently_data();
    void offsetBoxesCorrectSilently();
    void failedPreparationStillShowsTheAngle();
    void getDPOfflineIsRefused();
    void getDPReadsThePartInOwiMode();
    void failedProgramStillPowersOffAndRedraws();
    void flatPairDrawsItsPointSegmentsAlone();
    void partSelChoosesThePartAndItsCurve();

  private:
    // A fresh simulator with `faults`; the previous bench is gone first, so that its seams are
    // not restored over the new ones.
    void renewBench(const char* faults = "") {
        bench.reset();
        bench = std::make_unique<Bench>(sim::ParseSimConfig(faults, nullptr));
    }
    std::unique_ptr<Bench> bench;
};

void PointWindowsTest::opensWithItsControls_data() {
    QTest::addColumn<int>("variant");
    QTest::addColumn<QString>("className");
    QTest::newRow("/2") << 2 << "MainForm2PointsProgramming";
    QTest::newRow("/3") << 3 << "MainForm2PointsProgrammingforDual";
    QTest::newRow("/4") << 4 << "MainForm2PointsProgrammingWithPwr";
    QTest::newRow("/5") << 5 << "MainForm2PointsProgrammingforDualWithPwr";
    QTest::newRow("/6") << 6 << "MainForm1PointProgramming";
}

void PointWindowsTest::opensWithItsControls() {
    QFETCH(int, variant);
    QFETCH(QString, className);
    bench->box().setMagnetAngle(0);
    auto window = makePointWindow(*bench, variant);
    QWidget* w = window.get();
    QCOMPARE(w->objectName(), className);
    QCOMPARE(w->windowTitle(), QStringLiteral("RK31 GUI - QZ7734"));
    QVERIFY(bench->trace().isEmpty());
    QVERIFY(bench->prompts.messages.isEmpty());
    const bool dual = variant == 3 || variant == 5;
    const bool power = variant == 4 || variant == 5;

    QCOMPARE(textOf(w, "PartFrame"), QStringLiteral("Part Configuration"));
    QCOMPARE(textOf(w, "Frame2"), dual ? QStringLiteral("Part#2") : QStringLiteral("2 Points"));
    if (dual) {
        QCOMPARE(textOf(w, "Frame1"), QStringLiteral("Part#1"));
    } else if (variant == 6) {
        QCOMPARE(textOf(w, "Frame1"), QStringLiteral("Offset setting against Angle A"));
    } else {
        QVERIFY(!w->findChild<QWidget*>("Frame1"));
    }
    const std::vector<std::pair<const char*, const char*>> buttons = {
        {"connect", "Connect"},       {"mOpen", "Load Settings"},
        {"mSaveAs", "Save Settings"}, {"btnAbout", "About"},
        {"SetpointA", "Set point A"}, {"SetpointB", variant == 6 ? "Program" : "Set point B"}};
    for (const auto& [name, caption] : buttons) {
        QCOMPARE(textOf(w, name), QString::fromUtf8(caption));
    }
    QCOMPARE(w->findChild<QWidget*>("PowerOn") != nullptr, power);
    QCOMPARE(w->findChild<QWidget*>("GetDP") != nullptr, variant != 6);
    if (variant != 6) {
        QCOMPARE(textOf(w, "GetDP"),
                 dual ? QStringLiteral("Get DP") : QStringLiteral("Get DP Mid Point"));
    }
    QCOMPARE(w->findChild<QWidget*>("OffsetDP") != nullptr, variant == 6);
    QCOMPARE(buttonStates(w), power ? QStringLiteral("000") : QStringLiteral("00"));
    QVERIFY(w->findChild<TransferCurvePlot*>("Picture1"));
    QVERIFY(!find(w, "Image1")->accessibleDescription().isEmpty());

    // Every box by its label, with its default text.
    const int parts = dual ? 2 : 1;
    for (int part = 0; part < parts; ++part) {
        const int index = dual ? part : -1;
        const std::vector<std::tuple<const char*, int, const char*, const char*>> boxes = {
            {"DP", index, "DP (deg)", "260.00"},
            {"clamphigh", index, "Clamp High (%VDD)", "95.00"},
            {"clamplow", index, "Clamp Low (%VDD)", "5.00"},
            {"Angle", dual ? 2 * part : 0, "Angle A (deg)", ""},
            {"Angle", dual ? 2 * part + 1 : 1, "Angle B (deg)", ""},
            {"Level", dual ? 2 * part : 0, "Level A [%VDD]", ""},
            {"Level", dual ? 2 * part + 1 : 1, "Level B [%VDD]", ""}};
        for (const auto& [name, i, label, text] : boxes) {
            QCOMPARE(labelOf(w, find(w, name, i)), QString::fromUtf8(label));
            QCOMPARE(textOf(w, name, i), QString::fromUtf8(text));
        }
        QCOMPARE(textOf(w, "clockwise", index),
                 dual ? QStringLiteral("CW (Part#%1)").arg(part + 1) : QStringLiteral("clockwise"));
    }
    if (variant == 6) {
        QCOMPARE(labelOf(w, find(w, "OffsetDP")), QStringLiteral("DP offset (deg)"));
        QCOMPARE(labelOf(w, find(w, "OffsetAngleB")), QStringLiteral("Angle B offset (deg)"));
        QCOMPARE(textOf(w, "OffsetDP") + textOf(w, "OffsetAngleB"), QStringLiteral("0.000.00"));
    }
    if (!dual) {
        auto* partSel = find<QComboBox>(w, "PartSel");
        QCOMPARE(partSel->count(), 2);
        QCOMPARE(partSel->itemText(0) + partSel->itemText(1), QStringLiteral("Part#1Part#2"));
        QCOMPARE(partSel->currentIndex(), 0);
        QVERIFY(!labelOf(w, partSel).isEmpty());
    }
    const WindowContext& ctx = window->context();
    QCOMPARE(ctx.params[0].DP, 260.0f);
    QCOMPARE(ctx.params[0].Angle[0], EmptyValue);
    QVERIFY(!ctx.powered);
}

void PointWindowsTest::buttonsFollowTheConnection_data() {
    QTest::addColumn<int>("variant");
    QTest::addColumn<QString>("ready");  // SetpointA, SetpointB (, PowerOn) once the dialog closed
    QTest::newRow("/2") << 2 << "10";
    QTest::newRow("/3") << 3 << "10";
    QTest::newRow("/4") << 4 << "001";
    QTest::newRow("/5") << 5 << "001";
    QTest::newRow("/6") << 6 << "10";
}

void PointWindowsTest::buttonsFollowTheConnection() {
    QFETCH(int, variant);
    QFETCH(QString, ready);
    auto window = makePointWindow(*bench, variant);
    QWidget* w = window.get();
    // "Do not connect" leaves the window offline but readies its buttons all the same.
    scriptDialogClick(bench->prompts, "Donotconnect");
    click(w, "connect");
    QCOMPARE(textOf(w, "connect"), QStringLiteral("Connect"));
    QCOMPARE(buttonStates(w), ready);
    QVERIFY(bench->trace().isEmpty());

    scriptPortChoice(bench->prompts, "COM1");
    click(w, "connect");
    QCOMPARE(textOf(w, "connect"), QStringLiteral("Disconnect"));
    QCOMPARE(buttonStates(w), ready);
    QCOMPARE(bench->prompts.modalTitles, QStringList({"Select Com port", "Select Com port"}));

    click(w, "connect");
    QCOMPARE(textOf(w, "connect"), QStringLiteral("Connect"));
    QCOMPARE(buttonStates(w), QString(ready.size(), '0'));
    QCOMPARE(bench->trace().last(), QStringLiteral("CloseChannel(-1)"));
}

void PointWindowsTest::setPointAPlacesTheDPOpposite_data() {
    QTest::addColumn<double>("sensed");
    QTest::addColumn<QString>("angle");
    QTest::addColumn<QString>("dp");
    QTest::addColumn<float>("dpValue");
    QTest::newRow("before half a turn") << 100.5 << "100.50"
                                        << "280.50" << 280.5f;
    QTest::newRow("after half a turn") << 200.0 << "200.00"
                                       << "20.00" << 20.0f;
    QTest::newRow("exactly half a turn") << 180.0 << "180.00"
                                         << "0.00" << 0.0f;
    QTest::newRow("rounded as shown") << 12.345 << "12.35"
                                      << "192.35" << 192.35f;
}

void PointWindowsTest::setPointAPlacesTheDPOpposite() {
    QFETCH(double, sensed);
    QFETCH(QString, angle);
    QFETCH(QString, dp);
    QFETCH(float, dpValue);
    auto window = openPointWindow(*bench, 2);
    QWidget* w = window.get();
    bench->box().setMagnetAngle(sensed);
    click(w, "SetpointA");
    QCOMPARE(bench->trace(), kPreparePart1 + QStringList{"ReadAngle(0)"});
    QCOMPARE(textOf(w, "Angle", 0), angle);
    QCOMPARE(textOf(w, "DP"), dp);
    QCOMPARE(window->context().params[0].DP, dpValue);
    QCOMPARE(buttonStates(w), QStringLiteral("01"));
    QVERIFY(window->context().powered);
    QVERIFY(bench->prompts.messages.isEmpty());
}

void PointWindowsTest::setPointBProgramsTheChosenPart() {
    auto window = openPointWindow(*bench, 2);
    QWidget* w = window.get();
    typeInto(w, "Level", 0, "20");
    typeInto(w, "Level", 1, "80");
    bench->box().setMagnetAngle(100);
    click(w, "SetpointA");
    bench->box().setMagnetAngle(200);
    bench->clearTrace();
    click(w, "SetpointB");
    QStringList expected{"ReadAngle(0)"};
    expected << solverImage(0, {"5", "95", "280", "20", "100", "80", "200"}) << "GetSolverAccess()"
             << "WriteBufferToDevice(0)"
             << "ProgramEEPROM(0)"
             << "EnterOWIMode(0)" << kPowerOffPart1;
    QCOMPARE(bench->trace(), expected);
    QVERIFY(bench->prompts.messages.isEmpty());
    QCOMPARE(textOf(w, "Angle", 1), QStringLiteral("200.00"));
    QCOMPARE(window->context().session.ChipState[0], 0);
    QVERIFY(!window->context().powered);
    QCOMPARE(buttonStates(w), QStringLiteral("10"));
    // The curve of the example: extensions to the clamps and the jump at DP 280.
    const CurveRows& curve = window->context().session.CurveTable[0];
    QCOMPARE(curve[0], (std::array<std::int16_t, 2>{75, 5}));
    QCOMPARE(curve[2], (std::array<std::int16_t, 2>{100, 20}));
    QCOMPARE(curve[3], (std::array<std::int16_t, 2>{200, 80}));
    QCOMPARE(curve[5], (std::array<std::int16_t, 2>{225, 95}));
}

void PointWindowsTest::programmedChipFollowsTheDrawnCurve() {
    for (const int variant : {2, 4, 6}) {
        renewBench();
        auto window = openPointWindow(*bench, variant);
        QWidget* w = window.get();
        typeInto(w, "Level", 0, "30");
        typeInto(w, "Level", 1, "70");
        check(w, "clockwise", -1, true);
        if (variant == 6) {
            typeInto(w, "OffsetAngleB", -1, "90");
            typeInto(w, "OffsetDP", -1, "180");
        }
        bench->box().setMagnetAngle(300);
        click(w, "SetpointA");
        bench->box().setMagnetAngle(210);
        click(w, "SetpointB");
        QVERIFY2(bench->prompts.messages.isEmpty(), qPrintable(bench->prompts.messages.join('|')));
        // Powered again by hand, in ADC mode: the chip reloads its EEPROM.
        bench->box().powerOn(0);
        bench->box().enterAdc(0);
        const CurveRows& curve = window->context().session.CurveTable[0];
        for (const double angle : {220.0, 255.0, 290.0}) {
            bench->box().setMagnetAngle(angle);
            const auto drawn = CurveLevelAt(curve, angle);
            QVERIFY(drawn);
            // Whole degrees and whole percent in the drawing, a 12-bit DAC in the chip.
            QVERIFY2(std::abs(bench->box().output(0) - *drawn) < 1.5,
                     qPrintable(QStringLiteral("/%1 at %2: chip %3, drawn %4")
                                    .arg(variant)
                                    .arg(angle)
                                    .arg(bench->box().output(0))
                                    .arg(*drawn)));
        }
    }
}

void PointWindowsTest::powerButtonComesFirst() {
    auto window = openPointWindow(*bench, 4, false);
    QWidget* w = window.get();
    QCOMPARE(buttonStates(w), QStringLiteral("001"));
    click(w, "PowerOn");
    QCOMPARE(bench->trace(), kPreparePart1);
    QCOMPARE(buttonStates(w), QStringLiteral("100"));
    bench->clearTrace();
    typeInto(w, "Level", 0, "10");
    typeInto(w, "Level", 1, "90");
    click(w, "SetpointA");
    QCOMPARE(bench->trace(), QStringList{"ReadAngle(0)"});
    QCOMPARE(buttonStates(w), QStringLiteral("010"));
    bench->box().setMagnetAngle(90);
    click(w, "SetpointB");
    QVERIFY(bench->prompts.messages.isEmpty());
    // Asks for Power On again.
    QCOMPARE(buttonStates(w), QStringLiteral("001"));
    QCOMPARE(bench->trace().mid(bench->trace().size() - 3), kPowerOffPart1);
}

void PointWindowsTest::dualWindowsTeachBothParts_data() {
    QTest::addColumn<int>("variant");
    QTest::newRow("/3") << 3;
    QTest::newRow("/5") << 5;
}

void PointWindowsTest::dualWindowsTeachBothParts() {
    QFETCH(int, variant);
    auto window = openPointWindow(*bench, variant);
    QWidget* w = window.get();
    const bool power = variant == 5;
    for (const auto& [box, text] :
         std::vector<std::pair<int, const char*>>{{0, "10"}, {1, "90"}, {2, "80"}, {3, "20"}}) {
        typeInto(w, "Level", box, text);
    }
    bench->clearTrace();
    bench->box().setMagnetAngle(50);
    click(w, "SetpointA");
    const QStringList read = {"ReadAngle(0)", "ReadAngle(1)"};
    QCOMPARE(bench->trace().mid(bench->trace().size() - 2), read);
    QCOMPARE(bench->trace().contains("MeasureVDD(3)"), !power);
    QCOMPARE(textOf(w, "Angle", 0) + textOf(w, "Angle", 2), QStringLiteral("50.0050.00"));
    QCOMPARE(textOf(w, "DP", 0) + textOf(w, "DP", 1), QStringLiteral("230.00230.00"));
    QCOMPARE(buttonStates(w), power ? QStringLiteral("010") : QStringLiteral("01"));

    bench->box().setMagnetAngle(170);
    bench->clearTrace();
    click(w, "SetpointB");
    QVERIFY2(bench->prompts.messages.isEmpty(), qPrintable(bench->prompts.messages.join('|')));
    QStringList expected = read;
    expected << solverImage(0, {"5", "95", "230", "10", "50", "90", "170"})
             << solverImage(1, {"5", "95", "230", "80", "50", "20", "170"}) << "GetSolverAccess()"
             << "WriteBufferToDevice(0)"
             << "GetSolverAccess()"
             << "WriteBufferToDevice(1)"
             << "ProgramEEPROM(0)"
             << "ProgramEEPROM(1)"
             << "EnterOWIMode(3)"
             << "PowerOffChip(0)"
             << "PowerOffChip(1)"
             << "EnterADCMode(0)"
             << "EnterADCMode(1)"
             << "SelectOutputChannel(0)";
    QCOMPARE(bench->trace(), expected);
    QCOMPARE(textOf(w, "Angle", 1) + textOf(w, "Angle", 3), QStringLiteral("170.00170.00"));
    QCOMPARE(buttonStates(w), power ? QStringLiteral("001") : QStringLiteral("10"));
    const auto& curves = window->context().session.CurveTable;
    QVERIFY(curves[0][0] != curves[0][40] && curves[1][0] != curves[1][40]);
    QCOMPARE(w->findChild<TransferCurvePlot*>("Picture1")->shownParts().size(), std::size_t{2});
}

void PointWindowsTest::offsetsPlacePointBAndDP_data() {
    QTest::addColumn<bool>("clockwise");
    QTest::addColumn<double>("sensed");
    QTest::addColumn<QString>("angleB");
    QTest::addColumn<QString>("dp");
    QTest::newRow("counter-clockwise over the seam") << false << 300.0 << "30.00"
                                                     << "120.00";
    QTest::newRow("clockwise") << true << 300.0 << "210.00"
                               << "120.00";
    QTest::newRow("clockwise below zero") << true << 45.0 << "315.00"
                                          << "225.00";
    QTest::newRow("counter-clockwise, no wrap") << false << 10.0 << "100.00"
                                                << "190.00";
}

void PointWindowsTest::offsetsPlacePointBAndDP() {
    QFETCH(bool, clockwise);
    QFETCH(double, sensed);
    QFETCH(QString, angleB);
    QFETCH(QString, dp);
    auto window = openPointWindow(*bench, 6);
    QWidget* w = window.get();
    typeInto(w, "OffsetAngleB", -1, "90");
    typeInto(w, "OffsetDP", -1, "180");
    check(w, "clockwise", -1, clockwise);
    bench->box().setMagnetAngle(sensed);
    click(w, "SetpointA");
    QCOMPARE(textOf(w, "Angle", 1), angleB);
    QCOMPARE(textOf(w, "DP"), dp);
    QCOMPARE(window->context().params[0].Angle[1], angleB.toFloat());
    QCOMPARE(window->context().params[0].DP, dp.toFloat());

    // "Program" reads no angle: point B came from the offset.
    typeInto(w, "Level", 0, "10");
    typeInto(w, "Level", 1, "90");
    bench->clearTrace();
    click(w, "SetpointB");
    QVERIFY(!bench->trace().contains("ReadAngle(0)"));
    QVERIFY(bench->trace().contains("ProgramEEPROM(0)"));
}

void PointWindowsTest::offsetBoxesCorrectSilently_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::newRow("lowercase e") << "1e2"
                                 << "0.00";
    QTest::newRow("uppercase E") << "1E2"
                                 << "100.00";
    QTest::newRow("below zero") << "-5"
                                << "0.00";
    QTest::newRow("a turn or more") << "400"
                                    << "359.99";
    QTest::newRow("exactly a turn") << "360"
                                    << "359.99";
    QTest::newRow("letters") << "abc"
                             << "0.00";
    QTest::newRow("empty") << ""
                           << "0.00";
    QTest::newRow("rounded as typed") << "12.345"
                                      << "12.35";
}

void PointWindowsTest::offsetBoxesCorrectSilently() {
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    auto window = makePointWindow(*bench, 6);
    for (const char* box : {"OffsetDP", "OffsetAngleB"}) {
        typeInto(window.get(), box, -1, typed);
        QCOMPARE(textOf(window.get(), box), shown);
    }
    QVERIFY(bench->prompts.messages.isEmpty());
}

void PointWindowsTest::failedPreparationStillShowsTheAngle() {
    for (const char* fault : {"id_error=1", "no_supply=1", "locked=1"}) {
        renewBench(fault);
        auto window = openPointWindow(*bench, 2);
        QWidget* w = window.get();
        bench->box().setMagnetAngle(77.7);
        click(w, "SetpointA");
        QCOMPARE(textOf(w, "Angle", 0), QStringLiteral("77.70"));
        QCOMPARE(buttonStates(w), QStringLiteral("01"));
        QVERIFY(!window->context().powered);
        QCOMPARE(window->context().session.ChipState[0], 0);
        // Set point B then refuses, reading and writing nothing.
        bench->clearTrace();
        bench->prompts.messages.clear();
        click(w, "SetpointB");
        QCOMPARE(bench->prompts.messages.last(), kNotInOwi);
        QVERIFY(!bench->trace().contains("ReadAngle(0)"));
        QVERIFY(!bench->trace().join(' ').contains("SetSolverParameter"));
        QCOMPARE(buttonStates(w), QStringLiteral("01"));
    }
}

void PointWindowsTest::getDPOfflineIsRefused() {
    for (const int variant : {2, 3, 5}) {
        bench->prompts.messages.clear();
        auto window = makePointWindow(*bench, variant);
        const QString dpBefore = textOf(window.get(), "DP", variant == 2 ? -1 : 0);
        click(window.get(), "GetDP");
        QCOMPARE(bench->prompts.messages, QStringList{kNotInOwi});
        QVERIFY(bench->trace().isEmpty());
        QCOMPARE(textOf(window.get(), "DP", variant == 2 ? -1 : 0), dpBefore);
    }
}

void PointWindowsTest::getDPReadsThePartInOwiMode() {
    auto window = openPointWindow(*bench, 2);
    QWidget* w = window.get();
    bench->box().setMagnetAngle(10.25);
    click(w, "GetDP");
    QCOMPARE(bench->trace(), QStringList({"PowerOnChip(0)", "EnterOWIMode(0)", "ReadAngle(0)"}));
    QCOMPARE(textOf(w, "DP"), QStringLiteral("190.25"));
    QCOMPARE(window->context().params[0].DP, 190.25f);
    // Nothing else changes: the buttons stay as the connect left them.
    QCOMPARE(buttonStates(w), QStringLiteral("10"));

    // A locked part cannot enter OWI mode: returned to ADC mode and refused.
    window.reset();
    renewBench("locked=1");
    window = openPointWindow(*bench, 2);
    click(window.get(), "GetDP");
    QCOMPARE(
        bench->prompts.messages,
        QStringList({"Failed to set OWI mode due to CommLock!...Return to ADC mode!", kNotInOwi}));
    QCOMPARE(textOf(window.get(), "DP"), QStringLiteral("260.00"));
}

void PointWindowsTest::failedProgramStillPowersOffAndRedraws() {
    renewBench("eeprom_fail=1");
    auto window = openPointWindow(*bench, 4);
    QWidget* w = window.get();
    typeInto(w, "Level", 0, "20");
    typeInto(w, "Level", 1, "80");
    bench->box().setMagnetAngle(100);
    click(w, "SetpointA");
    bench->box().setMagnetAngle(200);
    bench->prompts.messages.clear();
    click(w, "SetpointB");
    QCOMPARE(bench->prompts.messages, QStringList{"Failed in programming device"});
    QCOMPARE(bench->trace().mid(bench->trace().size() - 3), kPowerOffPart1);
    QCOMPARE(buttonStates(w), QStringLiteral("001"));
    QCOMPARE(window->context().session.CurveTable[0][2], (std::array<std::int16_t, 2>{100, 20}));

    // A refused solve: no programming, but still powered off and drawn.
    click(w, "PowerOn");
    typeInto(w, "Level", 1, "");
    bench->box().setMagnetAngle(30);
    click(w, "SetpointA");
    bench->box().setMagnetAngle(60);
    bench->prompts.messages.clear();
    bench->clearTrace();
    click(w, "SetpointB");
    QCOMPARE(bench->prompts.messages,
             QStringList({"Please noted: Part#1-Level#1 is Empty!", "Error: Not 2 points Mode!"}));
    QVERIFY(!bench->trace().contains("ProgramEEPROM(0)"));
    QCOMPARE(bench->trace().mid(bench->trace().size() - 3), kPowerOffPart1);
    QCOMPARE(buttonStates(w), QStringLiteral("001"));
}

void PointWindowsTest::flatPairDrawsItsPointSegmentsAlone() {
    auto window = openPointWindow(*bench, 2);
    QWidget* w = window.get();
    typeInto(w, "Level", 0, "82");
    typeInto(w, "Level", 1, "82.47");
    bench->box().setMagnetAngle(322);
    click(w, "SetpointA");
    bench->box().setMagnetAngle(238.06);
    click(w, "SetpointB");
    QCOMPARE(bench->prompts.messages,
             QStringList({"Please noted: Part#1-Level#0 is the same as Part#1-Level#1 !",
                          "Error: Not 2 points Mode!"}));
    QCOMPARE(textOf(w, "Level", 1), QString());
    CurveRows expected{};
    expected[0] = {322, 82};
    expected[1] = {360, 82};
    expected[2] = {0, 82};
    expected[3] = {238, 82};
    QCOMPARE(window->context().session.CurveTable[0], expected);
    QCOMPARE(window->context().session.ChipState[0], 0);
}

void PointWindowsTest::partSelChoosesThePartAndItsCurve() {
    auto window = openPointWindow(*bench, 2);
    QWidget* w = window.get();
    auto* plot = w->findChild<TransferCurvePlot*>("Picture1");
    find<QComboBox>(w, "PartSel")->setCurrentIndex(1);
    QCOMPARE(plot->shownParts().front().part, std::int16_t{1});
    typeInto(w, "Angle", 0, "x");
    QCOMPARE(bench->prompts.messages,
             QStringList{"Part#2: Angle 0 Input is Invalid! Restoring to default\u2026 Please try "
                         "again!"});
    typeInto(w, "Level", 0, "10");
    typeInto(w, "Level", 1, "90");
    bench->box().setMagnetAngle(100);
    click(w, "SetpointA");
    QCOMPARE(bench->trace().first(), QStringLiteral("PowerOnChip(1)"));
    bench->box().setMagnetAngle(200);
    bench->clearTrace();
    click(w, "SetpointB");
    QVERIFY(bench->trace().contains("WriteBufferToDevice(1)"));
    QCOMPARE(bench->trace().last(), QStringLiteral("SelectOutputChannel(1)"));
    const auto& curves = window->context().session.CurveTable;
    QVERIFY(curves[1][2] == (std::array<std::int16_t, 2>{100, 10}));
    QVERIFY(curves[0] == CurveRows{});
    find<QComboBox>(w, "PartSel")->setCurrentIndex(0);
    QCOMPARE(plot->shownParts().front().part, std::int16_t{0});
}

QTEST_MAIN(PointWindowsTest)
#include "PointWindowsTest.moc"
