// Power, New Device, Comm Lock and About in both two-part windows, on the simulated programmer.
#include <QtTest>

#include "device/ModeChange.h"
#include "procedures/twopart/SessionCommands.h"
#include "support/WindowHarness.h"
#include "ui/windows/MainForm2Parts.h"

using namespace rk31;
using namespace rk31::test;

namespace {

const QString kLockRefused = "Failed to set OWI mode due to CommLock!...Return to ADC mode!";
const QString kReset = "Please Reset hardware and try again!";
const QStringList kLocked = {kLockRefused, "OWI communication is locked: F5", kReset};
const QString kPart1Invalid = "Offset Parameters of Part#1 are invalid! K0: 0.2779412 B0: 0.0125";

// Device calls written one after another, "A() B(0, 1)".
QStringList calls(const QString& text) {
    return text.isEmpty() ? QStringList() : text.split(QRegularExpression(" (?![^(]*\\))"));
}

// The entries of "name=text;+usable;-unusable" that the window does not meet; "&name=text"
// compares a caption with its mnemonic.
QString unmet(QWidget* w, const QString& entries) {
    QStringList result;
    for (const QString& e : entries.split(';', Qt::SkipEmptyParts)) {
        const QString name = e.section('=', 0, 0);
        const QString shown = e[0] == '&'       ? find<QAbstractButton>(w, name.mid(1))->text()
                              : e.contains('=') ? textOf(w, name)
                                                : QString();
        if (e.contains('=') ? shown != e.section('=', 1) : usable(w, e.mid(1)) != (e[0] == '+')) {
            result << e + (e.contains('=') ? " but shows " + shown : QString());
        }
    }
    return result.join("; ");
}

}  // namespace

class TwoPartSessionTest : public QObject {
    Q_OBJECT
    std::unique_ptr<Bench> b;
    std::unique_ptr<TwoPartWindow> window;
    QWidget* w = nullptr;

    // A connected, unpowered window of switch "/variant" over a box set up by `config`.
    void open(const QString& config = {}, int variant = 1) {
        b = std::make_unique<Bench>(sim::ParseSimConfig(config, nullptr));
        window = variant
                     ? openConnected<MainForm2Parts2Src>(*b, false)
                     : std::unique_ptr<TwoPartWindow>(openConnected<MainForm2Parts1Src>(*b, false));
        w = window.get();
    }

  private slots:
    void cleanup() { window.reset(); }

    void commands_data() {
        QTest::addColumn<QString>("config");
        QTest::addColumn<int>("variant");
        QTest::addColumn<QString>("steps");  // buttons clicked, "yes", "no", "close" answer dialogs
        QTest::addColumn<QString>("trace");  // of the last click
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<QString>("controls");  // "name=text;+usable;-unusable" afterwards
        const QString p1On =
            "PowerOnChip(0) EnterADCMode(0) MeasureVDD(0) EnterOWIMode(0) GetMemoryAccess() "
            "ReadMemory(0, &H48)";
        const QString p1Off = "PowerOffChip(0) EnterADCMode(0) SelectOutputChannel(0)";
        const QString failed = "VDD_0=4.996;PowerOn_0=Power On;-btnconfigsolver_0";
        // clang-format off
        QTest::newRow("power on") << "" << 1 << "PowerOn_0" << p1On << QStringList() << "VDD_0=4.996;VDD_1=5.000;PowerOn_0=Power Off;&PowerOn_0=&Power Off;&connect=Disco&nnect;status=Ready: Connected with Programmer -- Part#1: OWI Mode -- Part#2: Power Off;+btnconfigsolver_0;-connect";
        QTest::newRow("power off") << "" << 1 << "PowerOn_0 PowerOn_0" << p1Off << QStringList() << "PowerOn_0=Power On;+connect";
        QTest::newRow("no supply") << "no_supply=1" << 1 << "PowerOn_0" << "PowerOnChip(0) EnterADCMode(0) MeasureVDD(0) " + p1Off << QStringList() << "VDD_0=5.000;PowerOn_0=Power On;-btnconfigsolver_0";
        QTest::newRow("identification read error") << "id_error=1" << 1 << "PowerOn_0" << p1On + ' ' + p1Off << QStringList{"Read Error! Please Check chip connections!", kReset} << failed;
        QTest::newRow("locked chip") << "locked=1" << 1 << "PowerOn_0" << "PowerOnChip(0) EnterADCMode(0) MeasureVDD(0) EnterOWIMode(0) ExitOWIMode(0) EnterADCMode(0) GetMemoryAccess() ReadMemory(0, &H48) " + p1Off << kLocked << failed;
        // Known locked: the part is started straight into ADC mode, never asked for OWI mode.
        QTest::newRow("locked chip again") << "locked=1" << 1 << "PowerOn_0 PowerOn_0" << "EnterADCMode(0) MeasureVDD(0) EnterADCMode(0) GetMemoryAccess() ReadMemory(0, &H48) " + p1Off << kLocked << failed;
        QTest::newRow("/0 power on") << "" << 0 << "PowerOn" << "PowerOnChip(0) EnterADCMode(0) PowerOnChip(1) EnterADCMode(1) MeasureVDD(3) EnterOWIMode(3) GetMemoryAccess() ReadMemory(0, &H48) GetMemoryAccess() ReadMemory(1, &H48)" << QStringList() << "VDD_0=4.996;VDD_1=4.996;status=Ready: Connected with Programmer -- Part#1: OWI Mode -- Part#2: OWI Mode;+btnconfigsolver;+viewoutput";
        QTest::newRow("/0 power off") << "" << 0 << "PowerOn PowerOn" << "PowerOffChip(0) PowerOffChip(1) EnterADCMode(0) EnterADCMode(1) SelectOutputChannel(0)" << QStringList() << "PowerOn=Power On";
        QTest::newRow("new device") << "" << 1 << "PowerOn_1 newdevice_1" << "GetSolverAccess() ClearSolverSettings(1) ProgramEEPROM(1) EnterOWIMode(1) GetDACCalibration(1)" << QStringList() << "";
        // Whatever fails, the part is back in OWI mode and calibrated.
        const QString newDevice0 = "GetSolverAccess() ClearSolverSettings(0) ProgramEEPROM(0) EnterOWIMode(0) GetDACCalibration(0)";
        QTest::newRow("clear fails") << "clear_fail=1" << 1 << "PowerOn_0 newdevice_0" << newDevice0 << QStringList{"Errors in ClearSolverSettings!"} << "";
        QTest::newRow("eeprom fails") << "eeprom_fail=1" << 1 << "PowerOn_0 newdevice_0" << newDevice0 << QStringList{"Failed in programming device"} << "";
        QTest::newRow("part 1 offsets invalid") << "dac_status=3" << 1 << "PowerOn_0 newdevice_0" << newDevice0 << QStringList{kPart1Invalid} << "";
        QTest::newRow("negative status by its absolute value") << "dac_status=-2" << 1 << "PowerOn_0 newdevice_0" << newDevice0 << QStringList{kPart1Invalid} << "";
        QTest::newRow("only part 2 offsets invalid") << "dac_status=4" << 1 << "PowerOn_0 newdevice_0" << newDevice0 << QStringList() << "";
        QTest::newRow("/0 new device") << "dac_status=-12;clear_fail=2" << 0 << "PowerOn newdevice" << "GetSolverAccess() ClearSolverSettings(0) ClearSolverSettings(1) ProgramEEPROM(0) ProgramEEPROM(1) EnterOWIMode(3) GetDACCalibration(3)" << QStringList({"Error in ClearSolverSettings", "Offset Parameters of Part#2 are invalid! K1: 0.277615 B1: -0.0087"}) << "";
        QTest::newRow("comm lock") << "" << 1 << "PowerOn_0 yes owilock_0" << "GetSolverAccess() CommLock(0) " + p1Off << QStringList() << "PowerOn_0=Power On";
        QTest::newRow("comm lock cancelled") << "" << 1 << "PowerOn_0 no owilock_0" << "" << QStringList() << "PowerOn_0=Power Off";
        QTest::newRow("comm lock closed") << "" << 1 << "PowerOn_0 close owilock_0" << "" << QStringList() << "PowerOn_0=Power Off";
        QTest::newRow("/0 comm lock fails, still power cycles") << "commlock_fail=both" << 0 << "PowerOn yes owilock" << "GetSolverAccess() CommLock(0) CommLock(1) PowerOffChip(0) PowerOffChip(1) EnterADCMode(0) EnterADCMode(1) SelectOutputChannel(0)" << QStringList({"Errors in Commlock", "Errors in Commlock"}) << "PowerOn=Power On";
        // clang-format on
    }

    void commands() {
        QFETCH(QString, config);
        QFETCH(int, variant);
        QFETCH(QString, steps);
        QFETCH(QString, trace);
        QFETCH(QStringList, messages);
        QFETCH(QString, controls);
        open(config, variant);
        for (const QString& step : steps.split(' ')) {
            if (steps.endsWith(step)) {  // what the last click does
                b->clearTrace();
                b->prompts.messages.clear();
                b->pause.pauses.clear();
            }
            if (step == "close") {
                b->prompts.dialogScripts.push_back(nullptr);
            } else if (step == "yes" || step == "no") {
                scriptDialogClick(b->prompts, step);
            } else {
                click(w, step);
            }
        }
        QCOMPARE(b->prompts.messages, messages);
        QCOMPARE(b->trace(), calls(trace));
        QCOMPARE(unmet(w, controls), QString());
        QCOMPARE(b->prompts.modalTitles,
                 steps.contains("owilock") ? QStringList{"RK28 GUI - QZ7734"} : QStringList());
        const DeviceSession& s = b->session();
        QCOMPARE(s.CommLocked[0], config == "locked=1");
        // The power caption is the record of the power: it must match the chip's state.
        for (int part = 0; part < 2; ++part) {
            const QString caption = textOf(w, "PowerOn", variant == 0 ? -1 : part);
            QCOMPARE(caption == "Power On", s.ChipState[part] == 0);
        }
        if (steps.contains("newdevice")) {
            for (int part = 0; part < 2; ++part) {
                const bool calibrated = variant == 0 || steps.endsWith(QString::number(part));
                QCOMPARE(s.K[part], calibrated ? b->box().dies[part].k : DeviceSession::kDefaultK);
                QCOMPARE(s.B[part], calibrated ? b->box().dies[part].b : 0.0f);
            }
            QCOMPARE(b->pause.pauses, variant == 0 ? std::vector<int>{500} : std::vector<int>{});
        }
        // No wait window is left behind.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        for (QWidget* top : QApplication::topLevelWidgets()) {
            QVERIFY(!(top->isVisible() && top->inherits("rk31::waitform")));
        }
    }

    void commLockLocksForGood() {
        open();
        click(w, "PowerOn", 0);
        scriptDialogClick(b->prompts, "yes");
        click(w, "owilock", 0);
        click(w, "PowerOn", 0);
        QCOMPARE(b->prompts.messages, kLocked);
        QVERIFY(b->session().CommLocked[0]);
        // Even after a reconnect the chip stays locked and its OWI commands stay off.
        click(w, "connect");
        scriptPortChoice(b->prompts, "COM1");
        click(w, "connect");
        check(w, "PartEnable", 0, true);
        b->prompts.messages.clear();
        click(w, "PowerOn", 0);
        QCOMPARE(b->prompts.messages, kLocked);
        ToADCMode(window->context(), 0);
        QCOMPARE(unmet(w, "+viewoutput_0;-owilock_0;-btnconfigsolver_0"), QString());
    }

    void commLockPowersOnWhenTheCaptionSaysPowerOn() {
        open();
        WindowContext& ctx = window->context();
        // OWI mode without the power command: the caption still reads "Power On".
        ToOWIMode(ctx, 0);
        b->clearTrace();
        scriptDialogClick(b->prompts, "yes");
        CommLockCommand(ctx, 0);
        // The power command after the lock powers the part on, and finds it locked.
        QCOMPARE(b->trace().mid(0, 4),
                 calls("GetSolverAccess() CommLock(0) ExitOWIMode(0) EnterADCMode(0)"));
        QCOMPARE(b->prompts.messages, kLocked);
    }

    void aboutShowsTheProgrammerVersion() {
        // Offline there is no version to read; a failed read still shows the one the box gave.
        for (const bool connected : {false, true}) {
            cleanup();
            b = std::make_unique<Bench>(sim::ParseSimConfig("version_fail=1", nullptr));
            window = connected ? openConnected<MainForm2Parts2Src>(*b, false)
                               : std::make_unique<MainForm2Parts2Src>(b->app);
            QString shown;
            b->prompts.dialogScripts.push_back(
                [&](QDialog& about) { shown = about.findChild<QLabel*>("HWversion")->text(); });
            click(window.get(), "btnAbout");
            QCOMPARE(b->prompts.messages,
                     QStringList{connected ? "Cannot Read Programmer Version!"
                                           : "Cannot read version, Programmer is not connected or "
                                             "Device is not powered on!"});
            QCOMPARE(shown, connected ? "Hardware Version: 2.1.7" : "Hardware Version: 0.0.0");
            QCOMPARE(b->trace(), connected ? QStringList{"GetHardwareVersion()"} : QStringList());
        }
    }
};

QTEST_MAIN(TwoPartSessionTest)
#include "TwoPartSessionTest.moc"
