// The Program command of both two-part windows: what reaches the chip, in which order, what the
// programmed chip then outputs, and every refusal.
#include <QtTest>

#include "device/ModeChange.h"
#include "procedures/twopart/ProgramAction.h"
#include "support/WindowHarness.h"
#include "ui/windows/MainForm2Parts.h"

using namespace rk31;
using namespace rk31::test;

namespace {

struct Typed {
    const char* box;
    int index;
    const char* text;
};

// Types "box:index=text" entries separated by blanks; "clockwise" checks Part#1's box.
void typeEntries(QWidget* w, const QString& entries) {
    for (const QString& entry : entries.split(' ', Qt::SkipEmptyParts)) {
        if (entry == "clockwise") {
            check(w, "clockwise", 0, true);
        } else {
            typeInto(w, entry.section(':', 0, 0), entry.section(':', 1).section('=', 0, 0).toInt(),
                     entry.section('=', 1));
        }
    }
}

void typeAll(QWidget* w, const std::vector<Typed>& typed) {
    for (const Typed& t : typed) {
        typeInto(w, t.box, t.index, t.text);
    }
}

QString param(int part, int id, const QString& value, int mode = 1) {
    return QStringLiteral("SetSolverParameter(%1, %2, %3, %4)")
        .arg(part)
        .arg(id)
        .arg(value)
        .arg(mode);
}

// The eleven SolverImage calls of a part: clamps and DP, then level and angle of A to D.
QStringList image(int part, const QStringList& clampsAndDp, const QStringList& points,
                  int mode = 1) {
    static const int ids[] = {4, 8, 5, 9, 6, 10, 7, 11};
    QStringList calls{"GetMemoryAccess()"};
    for (int i = 0; i < 3; ++i) {
        calls << param(part, i + 1, "Single:" + clampsAndDp[i], mode);
    }
    for (int i = 0; i < 8; ++i) {
        calls << param(part, ids[i], "Single:" + points[i], mode);
    }
    return calls;
}

const std::vector<Typed> kTypedPoints = {
    {"Angle", 0, "100"},   {"Level", 0, "20"},     {"Angle", 1, "200"}, {"Level", 1, "80"},
    {"clamplow", 0, "10"}, {"clamphigh", 0, "90"}, {"DP", 0, "300"}};

float outputAt(Bench& bench, int part, double angle) {
    bench.box().setMagnetAngle(angle);
    float value = -1;
    bench.session().device().MeasureOutput(static_cast<std::int16_t>(part), 1, value);
    return value;
}

constexpr float kDacStep = 100.0f / 4095.0f;

}  // namespace

class TwoPartProgramTest : public QObject {
    Q_OBJECT
  private slots:
    void cleanup() { bench.reset(); }

    void programsTwoPointsAndTheChipOutputsThem();
    void pointsReachTheChipInSolverOrder_data();
    void pointsReachTheChipInSolverOrder();
    void switchOutputAndPwmReachTheChip();
    void refusalsSendNothing_data();
    void refusalsSendNothing();
    void writeBufferCodesStopBeforeTheEeprom_data();
    void writeBufferCodesStopBeforeTheEeprom();
    void eepromFailureStillReentersOwiMode();
    void aPartInAdcModeIsMovedToOwiModeFirst();
    void aLockedPartIsNotProgrammed();
    void oneSupplyProgramsBothParts();
    void oneSupplyUsesTheSlopeOnlyWhenBothPartsHaveOne();

  private:
    Bench& makeBench(const sim::SimConfig& config = {}) {
        bench = std::make_unique<Bench>(config);
        return *bench;
    }
    std::unique_ptr<Bench> bench;
};

void TwoPartProgramTest::programsTwoPointsAndTheChipOutputsThem() {
    Bench& b = makeBench();
    auto window = openConnected<MainForm2Parts2Src>(b, true);
    QWidget* w = window.get();
    typeAll(w, kTypedPoints);
    click(w, "btnconfigsolver", 0);
    QCOMPARE(b.prompts.messages, QStringList());
    QCOMPARE(b.trace(),
             image(0, {"10", "90", "300"}, {"20", "100", "80", "200", "0", "200", "0", "200"}) +
                 QStringList({"GetSolverAccess()", "WriteBufferToDevice(0)",
                              "SetOutputMode(0, 0, 0, 0)", "ProgramEEPROM(0)", "EnterOWIMode(0)"}));
    QCOMPARE(b.session().ChipState[0], 2);

    ToADCMode(window->context(), 0);
    QVERIFY(qAbs(outputAt(b, 0, 150) - 50.0f) <= kDacStep);
    QVERIFY(qAbs(outputAt(b, 0, 250) - 90.0f) <= kDacStep);
    QVERIFY(qAbs(outputAt(b, 0, 50) - 10.0f) <= kDacStep);
    // Part#2 was not touched: a blank die holds its clamp low.
    ToADCMode(window->context(), 1);
    QVERIFY(qAbs(outputAt(b, 1, 150) - 5.0f) <= kDacStep);
}

void TwoPartProgramTest::pointsReachTheChipInSolverOrder_data() {
    QTest::addColumn<QString>("typed");  // "box:index=text ...", "clockwise" checks part 1's box
    QTest::addColumn<QString>("sent");   // levels and angles of A..D as sent
    QTest::addColumn<bool>("reversed");
    // clang-format off
    QTest::newRow("four points upwards") << "Angle:0=10 Level:0=10 Angle:1=100 Level:1=30 Angle:2=200 Level:2=60 Angle:3=300 Level:3=90" << "10 10 30 100 60 200 90 300" << false;
    QTest::newRow("four points downwards") << "Angle:0=300 Level:0=90 Angle:1=200 Level:1=60 Angle:2=100 Level:2=30 Angle:3=10 Level:3=10" << "10 10 30 100 60 200 90 300" << true;
    QTest::newRow("four points through zero") << "Angle:0=350 Level:0=10 Angle:1=20 Level:1=30 Angle:2=100 Level:2=60 Angle:3=200 Level:3=90" << "10 350 30 20 60 100 90 200" << false;
    QTest::newRow("three points downwards") << "Angle:0=200 Level:0=80 Angle:1=100 Level:1=50 Angle:2=10 Level:2=20" << "20 10 50 100 80 200 0 200" << true;
    QTest::newRow("two points, D ignored") << "Angle:0=100 Level:0=20 Angle:1=200 Level:1=80 Angle:3=300 Level:3=90" << "20 100 80 200 0 200 0 200" << false;
    QTest::newRow("two points clockwise") << "Angle:0=200 Level:0=20 Angle:1=100 Level:1=80 clockwise" << "80 100 20 200 0 200 0 200" << true;
    QTest::newRow("point and slope, B ignored") << "Angle:0=100 Level:0=20 KforA:0=0.5 Angle:1=300 Level:1=90" << "20 100 25 110 0 110 0 110" << false;
    QTest::newRow("point and slope clockwise") << "Angle:0=100 Level:0=20 KforA:0=0.5 clockwise" << "25 110 20 100 0 100 0 100" << true;
    QTest::newRow("negative slope") << "Angle:0=0 Level:0=50 KforA:0=-1.5" << "50 0 35 10 0 10 0 10" << false;
    // clang-format on
}

void TwoPartProgramTest::pointsReachTheChipInSolverOrder() {
    QFETCH(QString, typed);
    QFETCH(QString, sent);
    QFETCH(bool, reversed);
    Bench& b = makeBench();
    auto window = openConnected<MainForm2Parts2Src>(b, true);
    QWidget* w = window.get();
    typeEntries(w, typed);
    click(w, "btnconfigsolver", 0);
    QCOMPARE(b.prompts.messages, QStringList());
    QCOMPARE(b.trace().mid(0, 12), image(0, {"5", "95", "260"}, sent.split(' ')));
    QCOMPARE(b.session().rounded.PointsReversed[0], reversed);
    QCOMPARE(b.trace().last(), QStringLiteral("EnterOWIMode(0)"));
}

void TwoPartProgramTest::switchOutputAndPwmReachTheChip() {
    Bench& b = makeBench();
    auto window = openConnected<MainForm2Parts2Src>(b, true);
    QWidget* w = window.get();
    typeAll(w, {{"Angle", 4, "100"},
                {"Level", 4, "20"},
                {"Angle", 5, "200"},
                {"Level", 5, "80"},
                {"op", 1, "45"},
                {"hys", 1, "2.1"}});
    check(w, "Kpolarity", 1, true);
    auto* mode = find<QComboBox>(w, "OutMode", 1);
    mode->setCurrentIndex(1);
    emit mode->activated(1);
    find<QComboBox>(w, "PWMFreq", 1)->setCurrentIndex(2);
    find<QComboBox>(w, "PWMPolarity", 1)->setCurrentIndex(1);
    click(w, "btnconfigsolver", 1);
    QCOMPARE(b.prompts.messages, QStringList());
    const QStringList expected =
        image(1, {"5", "95", "260"}, {"20", "100", "80", "200", "0", "200", "0", "200"}, 0) +
        QStringList{
            "GetMemoryAccess()",         param(1, 12, "Single:45", 0), param(1, 13, "Single:2", 0),
            param(1, 14, "Long:1", 0),   "GetSolverAccess()",          "WriteBufferToDevice(1)",
            "SetOutputMode(1, 1, 2, 1)", "ProgramEEPROM(1)",           "EnterOWIMode(1)"};
    QCOMPARE(b.trace(), expected);
}

void TwoPartProgramTest::refusalsSendNothing_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QStringList>("messages");
    const QString config = "Error Config Solver in programee_click";
    // clang-format off
    QTest::newRow("clamps equal") << "clamphigh:0=50 clamplow:0=50 Angle:0=1 Level:0=1 Angle:1=2 Level:1=2" << QStringList{"Please noted: Clamp HIGH Setting is not greater than Clamp LOW Setting! Stopping... Please try again!"};
    QTest::newRow("angle A empty") << "Angle:1=100 Level:1=20" << QStringList{"Error Angles of Point A and Point B input", config};
    QTest::newRow("slope without angle A") << "KforA:0=0.5 Angle:1=100 Level:1=20" << QStringList{"Error Angles of Point A and Point B input", config};
    QTest::newRow("same rounded angles") << "Angle:0=10.2 Level:0=10 Angle:1=10.4 Level:1=20" << QStringList{"Rules: Angles should be DIFFERENT in CCW/CW within [0.0, 360.0) to fill in!", config};
    QTest::newRow("level B empty") << "Angle:0=10 Level:0=10 Angle:1=100" << QStringList{"Please noted: Part#1-Level#1 is Empty!", config};
    QTest::newRow("level C empty") << "Angle:0=10 Level:0=10 Angle:1=100 Level:1=20 Angle:2=200" << QStringList{"Please noted: Part#1-Level#2 is Empty!", config};
    QTest::newRow("four angles out of order") << "Angle:0=10 Level:0=1 Angle:1=200 Level:1=2 Angle:2=100 Level:2=3 Angle:3=300 Level:3=4" << QStringList{"Error: The order of 4 Points angles is unable to be determined in-DrawMain!", config};
    QTest::newRow("same rounded levels") << "Angle:0=10 Level:0=50.2 Angle:1=100 Level:1=49.6" << QStringList{"Please noted: Part#1-Level#0 is the same as Part#1-Level#1 !", config};
    QTest::newRow("slope with level A empty") << "Angle:0=10 KforA:0=1" << QStringList{"Please noted: Part#1-Level#0 is Empty!", config};
    // clang-format on
}

void TwoPartProgramTest::refusalsSendNothing() {
    QFETCH(QString, typed);
    QFETCH(QStringList, messages);
    Bench& b = makeBench();
    auto window = openConnected<MainForm2Parts2Src>(b, true);
    QWidget* w = window.get();
    typeEntries(w, typed);
    b.prompts.messages.clear();
    click(w, "btnconfigsolver", 0);
    QCOMPARE(b.prompts.messages, messages);
    QCOMPARE(b.trace(), QStringList());
    if (QString(QTest::currentDataTag()) == "same rounded levels") {
        QCOMPARE(textOf(w, "Level", 1), QString());
        QCOMPARE(window->context().params[0].Level[1], 0.0f);
    }
}

void TwoPartProgramTest::writeBufferCodesStopBeforeTheEeprom_data() {
    QTest::addColumn<int>("code");
    QTest::addColumn<QStringList>("messages");
    QTest::newRow("1") << 1 << QStringList{"Chip Index Error!"};
    QTest::newRow("2") << 2 << QStringList{"Error in WriteBufferToDevice!"};
    QTest::newRow("3") << 3 << QStringList{"Die1: Clamp High <= Clamp Low!"};
    QTest::newRow("4") << 4 << QStringList{"Die2: Clamp High <= Clamp Low!"};
    QTest::newRow("5") << 5 << QStringList();
}

void TwoPartProgramTest::writeBufferCodesStopBeforeTheEeprom() {
    QFETCH(int, code);
    QFETCH(QStringList, messages);
    sim::SimConfig config;
    config.writeBufferCode = code;
    Bench& b = makeBench(config);
    auto window = openConnected<MainForm2Parts2Src>(b, true);
    typeAll(window.get(), kTypedPoints);
    click(window.get(), "btnconfigsolver", 0);
    QCOMPARE(b.prompts.messages, messages);
    QCOMPARE(b.trace().last(), QStringLiteral("WriteBufferToDevice(0)"));
    QVERIFY(!b.trace().contains("ProgramEEPROM(0)"));
}

void TwoPartProgramTest::eepromFailureStillReentersOwiMode() {
    Bench& b = makeBench(sim::ParseSimConfig("eeprom_fail=1", nullptr));
    auto window = openConnected<MainForm2Parts2Src>(b, true);
    typeAll(window.get(), kTypedPoints);
    click(window.get(), "btnconfigsolver", 0);
    QCOMPARE(b.prompts.messages, QStringList{"Failed in programming device"});
    QCOMPARE(b.trace().mid(b.trace().size() - 2),
             QStringList({"ProgramEEPROM(0)", "EnterOWIMode(0)"}));
}

void TwoPartProgramTest::aPartInAdcModeIsMovedToOwiModeFirst() {
    Bench& b = makeBench();
    auto window = openConnected<MainForm2Parts2Src>(b, true);
    typeAll(window.get(), kTypedPoints);
    ToADCMode(window->context(), 0);
    b.clearTrace();
    click(window.get(), "btnconfigsolver", 0);
    QCOMPARE(b.trace().first(), QStringLiteral("EnterOWIMode(0)"));
    QCOMPARE(b.trace()[1], QStringLiteral("GetMemoryAccess()"));
    QVERIFY(b.prompts.messages.isEmpty());
}

void TwoPartProgramTest::aLockedPartIsNotProgrammed() {
    Bench& b = makeBench();
    auto window = openConnected<MainForm2Parts2Src>(b, true);
    typeAll(window.get(), kTypedPoints);
    ToADCMode(window->context(), 0);
    b.session().CommLocked[0] = true;
    b.clearTrace();
    // The button is disabled for a locked part; the sequence refuses on its own as well.
    ProgramAction(window->context(), 0);
    QCOMPARE(b.prompts.messages,
             QStringList({"Failed to set OWI mode due to CommLock!...Return to ADC mode!",
                          "Error: Not in OWI mode"}));
    QCOMPARE(b.trace(), QStringList{"EnterADCMode(0)"});
}

void TwoPartProgramTest::oneSupplyProgramsBothParts() {
    Bench& b = makeBench();
    auto window = openConnected<MainForm2Parts1Src>(b, true);
    QWidget* w = window.get();
    typeAll(w, kTypedPoints);
    typeAll(w, {{"Angle", 4, "200"}, {"Level", 4, "20"}, {"Angle", 5, "100"}, {"Level", 5, "80"}});
    check(w, "clockwise", 1, true);
    click(w, "btnconfigsolver");
    QCOMPARE(b.prompts.messages, QStringList());
    const QStringList expected =
        image(0, {"10", "90", "300"}, {"20", "100", "80", "200", "0", "200", "0", "200"}) +
        image(1, {"5", "95", "260"}, {"80", "100", "20", "200", "0", "200", "0", "200"}) +
        QStringList{"GetSolverAccess()", "WriteBufferToDevice(0)", "SetOutputMode(0, 0, 0, 0)",
                    "GetSolverAccess()", "WriteBufferToDevice(1)", "SetOutputMode(1, 0, 0, 0)",
                    "ProgramEEPROM(0)",  "ProgramEEPROM(1)",       "EnterOWIMode(3)"};
    QCOMPARE(b.trace(), expected);
    QCOMPARE(b.pause.pauses, std::vector<int>{500});
    click(w, "viewoutput");  // both parts to ADC mode; the display is closed at once
    QVERIFY(qAbs(outputAt(b, 0, 150) - 50.0f) <= kDacStep);
    QVERIFY(qAbs(outputAt(b, 1, 150) - 50.0f) <= kDacStep);
    QVERIFY(qAbs(outputAt(b, 1, 120) - 68.0f) <= kDacStep);
}

void TwoPartProgramTest::oneSupplyUsesTheSlopeOnlyWhenBothPartsHaveOne() {
    Bench& b = makeBench();
    auto window = openConnected<MainForm2Parts1Src>(b, true);
    QWidget* w = window.get();
    // Part#1 has a slope, Part#2 only points: both go through the multi-point solver, which
    // takes Part#1's point B instead of its slope.
    typeAll(w, {{"Angle", 0, "100"},
                {"Level", 0, "20"},
                {"KforA", 0, "1"},
                {"Angle", 1, "150"},
                {"Level", 1, "40"},
                {"Angle", 4, "10"},
                {"Level", 4, "10"},
                {"Angle", 5, "20"},
                {"Level", 5, "20"}});
    click(w, "btnconfigsolver");
    QCOMPARE(b.prompts.messages, QStringList());
    QCOMPARE(b.trace()[7], param(0, 9, "Single:150"));
}

QTEST_MAIN(TwoPartProgramTest)
#include "TwoPartProgramTest.moc"
