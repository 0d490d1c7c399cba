// Power, New Device, Comm Lock and About in both two-part windows, on the simulated programmer.
#include <QtTest>

#include "device/ModeChange.h"
#include "procedures/twopart/SessionCommands.h"
#include "support/WindowHarness.h"
#include "ui/windows/MainForm2Parts.h"

using namespace rk31;
using namespace rk31::test;

namespace {

const QString kLockRefused =
    QStringLiteral("Failed to set OWI mode due to CommLock!...Return to ADC mode!");
const QString kReset = QStringLiteral("Please Reset hardware and try again!");

const QStringList kPowerOnPart1 = {"PowerOnChip(0)",  "EnterADCMode(0)",   "MeasureVDD(0)",
                                   "EnterOWIMode(0)", "GetMemoryAccess()", "ReadMemory(0, &H48)"};
const QStringList kPowerOffPart1 = {"PowerOffChip(0)", "EnterADCMode(0)", "SelectOutputChannel(0)"};

QString status(QWidget* w) {
    return textOf(w, "status");
}

}  // namespace

class TwoPartSessionTest : public QObject {
    Q_OBJECT
  private slots:
    void cleanup() { bench.reset(); }

    void powerOnReadsTheSupplyAndChecksTheChip();
    void powerOnFailures_data();
    void powerOnFailures();
    void aLockedPartIsReportedAgainOnEveryPowerOn();
    void oneSupplyPowersBothParts();
    void newDeviceClearsProgramsAndCalibrates();
    void newDeviceFaults_data();
    void newDeviceFaults();
    void oneSupplyNewDeviceWorksOnBothParts();
    void commLockLocksForGood();
    void commLockNeedsConfirmation_data();
    void commLockNeedsConfirmation();
    void commLockFailureStillPowerCycles();
    void commLockPowersOnWhenTheCaptionSaysPowerOn();
    void aboutShowsTheProgrammerVersion();

  private:
    Bench& makeBench(const sim::SimConfig& config = {}) {
        bench = std::make_unique<Bench>(config);
        return *bench;
    }
    std::unique_ptr<Bench> bench;
};

void TwoPartSessionTest::powerOnReadsTheSupplyAndChecksTheChip() {
    Bench& b = makeBench();
    auto window = openConnected<MainForm2Parts2Src>(b, false);
    QWidget* w = window.get();
    click(w, "PowerOn", 0);
    QCOMPARE(b.trace(), kPowerOnPart1);
    QCOMPARE(textOf(w, "VDD", 0), QStringLiteral("4.996"));
    QCOMPARE(textOf(w, "VDD", 1), QStringLiteral("5.000"));
    QCOMPARE(textOf(w, "PowerOn", 0), QStringLiteral("Power Off"));
    QCOMPARE(status(w),
             QStringLiteral(
                 "Ready: Connected with Programmer -- Part#1: OWI Mode -- Part#2: Power Off"));
    QVERIFY(b.prompts.messages.isEmpty());
    QVERIFY(usable(w, "btnconfigsolver", 0));
    QVERIFY(!usable(w, "connect"));
    // No wait window is left behind.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    for (QWidget* top : QApplication::topLevelWidgets()) {
        QVERIFY(!(top->isVisible() && top->inherits("rk31::waitform")));
    }

    b.clearTrace();
    click(w, "PowerOn", 0);
    QCOMPARE(b.trace(), kPowerOffPart1);
    QCOMPARE(textOf(w, "PowerOn", 0), QStringLiteral("Power On"));
    QCOMPARE(b.session().ChipState[0], 0);
    QVERIFY(usable(w, "connect"));
}

void TwoPartSessionTest::powerOnFailures_data() {
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QStringList>("messages");
    QTest::addColumn<bool>("locked");
    QTest::newRow("no supply") << "no_supply" << QStringList() << false;
    QTest::newRow("identification read error")
        << "id_error" << QStringList{"Read Error! Please Check chip connections!", kReset} << false;
    QTest::newRow("locked chip") << "locked"
                                 << QStringList{kLockRefused, "OWI communication is locked: F5",
                                                kReset}
                                 << true;
}

void TwoPartSessionTest::powerOnFailures() {
    QFETCH(QString, fault);
    QFETCH(QStringList, messages);
    QFETCH(bool, locked);
    Bench& b = makeBench(sim::ParseSimConfig(fault + "=1", nullptr));
    auto window = openConnected<MainForm2Parts2Src>(b, false);
    click(window.get(), "PowerOn", 0);
    QCOMPARE(b.prompts.messages, messages);
    // The part is powered off again at once and the window says so.
    QCOMPARE(b.session().ChipState[0], 0);
    QCOMPARE(textOf(window.get(), "PowerOn", 0), QStringLiteral("Power On"));
    QCOMPARE(b.trace().mid(b.trace().size() - 3), kPowerOffPart1);
    QCOMPARE(b.session().CommLocked[0], locked);
    QCOMPARE(textOf(window.get(), "VDD", 0),
             fault == "no_supply" ? QStringLiteral("5.000") : QStringLiteral("4.996"));
    QVERIFY(!usable(window.get(), "btnconfigsolver", 0));
}

void TwoPartSessionTest::aLockedPartIsReportedAgainOnEveryPowerOn() {
    Bench& b = makeBench(sim::ParseSimConfig("locked=1", nullptr));
    auto window = openConnected<MainForm2Parts2Src>(b, false);
    click(window.get(), "PowerOn", 0);
    b.clearTrace();
    b.prompts.messages.clear();
    click(window.get(), "PowerOn", 0);
    // Known locked: the part is started straight into ADC mode and never asked for OWI mode.
    QCOMPARE(b.trace(), QStringList({"EnterADCMode(0)", "MeasureVDD(0)", "EnterADCMode(0)",
                                     "GetMemoryAccess()", "ReadMemory(0, &H48)", "PowerOffChip(0)",
                                     "EnterADCMode(0)", "SelectOutputChannel(0)"}));
    QCOMPARE(b.prompts.messages,
             QStringList({kLockRefused, "OWI communication is locked: F5", kReset}));
}

void TwoPartSessionTest::oneSupplyPowersBothParts() {
    Bench& b = makeBench();
    auto window = openConnected<MainForm2Parts1Src>(b, false);
    QWidget* w = window.get();
    click(w, "PowerOn");
    QCOMPARE(b.trace(),
             QStringList({"PowerOnChip(0)", "EnterADCMode(0)", "PowerOnChip(1)", "EnterADCMode(1)",
                          "MeasureVDD(3)", "EnterOWIMode(3)", "GetMemoryAccess()",
                          "ReadMemory(0, &H48)", "GetMemoryAccess()", "ReadMemory(1, &H48)"}));
    QCOMPARE(textOf(w, "VDD", 0), QStringLiteral("4.996"));
    QCOMPARE(textOf(w, "VDD", 1), QStringLiteral("4.996"));
    QVERIFY(status(w).endsWith("-- Part#1: OWI Mode -- Part#2: OWI Mode"));
    QVERIFY(usable(w, "btnconfigsolver") && usable(w, "viewoutput"));

    b.clearTrace();
    click(w, "PowerOn");
    QCOMPARE(b.trace(), QStringList({"PowerOffChip(0)", "PowerOffChip(1)", "EnterADCMode(0)",
                                     "EnterADCMode(1)", "SelectOutputChannel(0)"}));
    QCOMPARE(textOf(w, "PowerOn"), QStringLiteral("Power On"));
}

void TwoPartSessionTest::newDeviceClearsProgramsAndCalibrates() {
    Bench& b = makeBench();
    auto window = openConnected<MainForm2Parts2Src>(b, false);
    click(window.get(), "PowerOn", 1);
    b.clearTrace();
    click(window.get(), "newdevice", 1);
    QCOMPARE(b.trace(),
             QStringList({"GetSolverAccess()", "ClearSolverSettings(1)", "ProgramEEPROM(1)",
                          "EnterOWIMode(1)", "GetDACCalibration(1)"}));
    QVERIFY(b.prompts.messages.isEmpty());
    const DeviceSession& s = b.session();
    QCOMPARE(s.K[1], b.box().dies[1].k);
    QCOMPARE(s.B[1], b.box().dies[1].b);
    QCOMPARE(s.K[0], DeviceSession::kDefaultK);  // the other part's pair is untouched
}

void TwoPartSessionTest::newDeviceFaults_data() {
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QStringList>("messages");
    QTest::newRow("clear fails") << "clear_fail=1" << QStringList{"Errors in ClearSolverSettings!"};
    QTest::newRow("eeprom fails") << "eeprom_fail=1" << QStringList{"Failed in programming device"};
    QTest::newRow("part 1 offsets invalid")
        << "dac_status=3"
        << QStringList{"Offset Parameters of Part#1 are invalid! K0: 0.2779412 B0: 0.0125"};
    QTest::newRow("negative status judged by its absolute value")
        << "dac_status=-2"
        << QStringList{"Offset Parameters of Part#1 are invalid! K0: 0.2779412 B0: 0.0125"};
    QTest::newRow("only part 2 offsets invalid") << "dac_status=4" << QStringList();
}

void TwoPartSessionTest::newDeviceFaults() {
    QFETCH(QString, fault);
    QFETCH(QStringList, messages);
    Bench& b = makeBench(sim::ParseSimConfig(fault, nullptr));
    auto window = openConnected<MainForm2Parts2Src>(b, false);
    click(window.get(), "PowerOn", 0);
    b.clearTrace();
    click(window.get(), "newdevice", 0);
    QCOMPARE(b.prompts.messages, messages);
    // Whatever failed, the part is back in OWI mode and calibrated.
    QVERIFY(b.trace().contains("EnterOWIMode(0)"));
    QCOMPARE(b.trace().last(), QStringLiteral("GetDACCalibration(0)"));
    QCOMPARE(b.session().K[0], b.box().dies[0].k);
}

void TwoPartSessionTest::oneSupplyNewDeviceWorksOnBothParts() {
    Bench& b = makeBench(sim::ParseSimConfig("dac_status=-12;clear_fail=2", nullptr));
    auto window = openConnected<MainForm2Parts1Src>(b, false);
    click(window.get(), "PowerOn");
    b.clearTrace();
    b.pause.pauses.clear();
    click(window.get(), "newdevice");
    QCOMPARE(b.trace(),
             QStringList({"GetSolverAccess()", "ClearSolverSettings(0)", "ClearSolverSettings(1)",
                          "ProgramEEPROM(0)", "ProgramEEPROM(1)", "EnterOWIMode(3)",
                          "GetDACCalibration(3)"}));
    QCOMPARE(b.pause.pauses, std::vector<int>{500});
    QCOMPARE(b.prompts.messages,
             QStringList({"Error in ClearSolverSettings",
                          "Offset Parameters of Part#2 are invalid! K1: 0.277615 B1: -0.0087"}));
    QCOMPARE(b.session().K[0], b.box().dies[0].k);
    QCOMPARE(b.session().B[1], b.box().dies[1].b);
}

void TwoPartSessionTest::commLockLocksForGood() {
    Bench& b = makeBench();
    auto window = openConnected<MainForm2Parts2Src>(b, false);
    QWidget* w = window.get();
    click(w, "PowerOn", 0);
    b.clearTrace();
    scriptDialogClick(b.prompts, "yes");
    click(w, "owilock", 0);
    QCOMPARE(b.prompts.modalTitles.last(), QStringLiteral("RK28 GUI - QZ7734"));
    QCOMPARE(b.trace(), QStringList({"GetSolverAccess()", "CommLock(0)"}) + kPowerOffPart1);
    QCOMPARE(textOf(w, "PowerOn", 0), QStringLiteral("Power On"));
    QVERIFY(b.prompts.messages.isEmpty());

    click(w, "PowerOn", 0);
    QCOMPARE(b.prompts.messages,
             QStringList({kLockRefused, "OWI communication is locked: F5", kReset}));
    QVERIFY(b.session().CommLocked[0]);
    // Even after a reconnect the chip stays locked and its OWI commands stay off.
    click(w, "connect");
    scriptPortChoice(b.prompts, "COM1");
    click(w, "connect");
    check(w, "PartEnable", 0, true);
    b.prompts.messages.clear();
    click(w, "PowerOn", 0);
    QCOMPARE(b.prompts.messages.size(), 3);
    QCOMPARE(b.prompts.messages[1], QStringLiteral("OWI communication is locked: F5"));
    ToADCMode(window->context(), 0);
    QVERIFY(usable(w, "viewoutput", 0));
    QVERIFY(!usable(w, "owilock", 0) && !usable(w, "btnconfigsolver", 0));
}

void TwoPartSessionTest::commLockNeedsConfirmation_data() {
    QTest::addColumn<QString>("answer");
    QTest::newRow("cancel") << "no";
    QTest::newRow("close box") << "";
}

void TwoPartSessionTest::commLockNeedsConfirmation() {
    QFETCH(QString, answer);
    Bench& b = makeBench();
    auto window = openConnected<MainForm2Parts2Src>(b, false);
    click(window.get(), "PowerOn", 0);
    b.clearTrace();
    if (answer.isEmpty()) {
        b.prompts.dialogScripts.push_back(nullptr);
    } else {
        scriptDialogClick(b.prompts, answer);
    }
    click(window.get(), "owilock", 0);
    QVERIFY(b.trace().isEmpty());
    QVERIFY(!b.box().dies[0].locked);
    QCOMPARE(textOf(window.get(), "PowerOn", 0), QStringLiteral("Power Off"));
}

void TwoPartSessionTest::commLockFailureStillPowerCycles() {
    Bench& b = makeBench(sim::ParseSimConfig("commlock_fail=both", nullptr));
    auto window = openConnected<MainForm2Parts1Src>(b, false);
    click(window.get(), "PowerOn");
    b.clearTrace();
    scriptDialogClick(b.prompts, "yes");
    click(window.get(), "owilock");
    QCOMPARE(b.prompts.messages, QStringList({"Errors in Commlock", "Errors in Commlock"}));
    QCOMPARE(b.trace().mid(0, 3), QStringList({"GetSolverAccess()", "CommLock(0)", "CommLock(1)"}));
    QCOMPARE(textOf(window.get(), "PowerOn"), QStringLiteral("Power On"));
    QCOMPARE(b.session().ChipState[1], 0);
}

void TwoPartSessionTest::commLockPowersOnWhenTheCaptionSaysPowerOn() {
    Bench& b = makeBench();
    auto window = openConnected<MainForm2Parts2Src>(b, false);
    WindowContext& ctx = window->context();
    ToOWIMode(ctx, 0);  // OWI mode without the power command: the caption still reads "Power On"
    b.clearTrace();
    scriptDialogClick(b.prompts, "yes");
    CommLockCommand(ctx, 0);
    // The power command after the lock powers the part on, and finds it locked.
    QCOMPARE(b.trace().mid(0, 4), QStringList({"GetSolverAccess()", "CommLock(0)", "ExitOWIMode(0)",
                                               "EnterADCMode(0)"}));
    QCOMPARE(b.prompts.messages,
             QStringList({kLockRefused, "OWI communication is locked: F5", kReset}));
}

void TwoPartSessionTest::aboutShowsTheProgrammerVersion() {
    Bench& b = makeBench(sim::ParseSimConfig("version_fail=1", nullptr));
    auto window = openConnected<MainForm2Parts2Src>(b, false);
    QString shown;
    b.prompts.dialogScripts.push_back(
        [&](QDialog& about) { shown = about.findChild<QLabel*>("HWversion")->text(); });
    click(window.get(), "btnAbout");
    QCOMPARE(b.prompts.messages, QStringList{"Cannot Read Programmer Version!"});
    QCOMPARE(shown, QStringLiteral("Hardware Version: 2.1.7"));
    QCOMPARE(b.trace(), QStringList{"GetHardwareVersion()"});
}

QTEST_MAIN(TwoPartSessionTest)
#include "TwoPartSessionTest.moc"
