// What a user meets before any chip work: the validated boxes, the enabled controls, the status
// line and the connection through the port dialog.
#include <QtTest>

#include "device/ChipStateMachine.h"
#include "device/ModeChange.h"
#include "device/UpdateControl.h"
#include "support/WindowHarness.h"
#include "ui/windows/MainForm2Parts.h"

using namespace rk31;
using namespace rk31::test;

namespace {

const QString kEllipsis = QStringLiteral("\u2026");

std::unique_ptr<TwoPartWindow> makeWindow(Bench& bench, int variant) {
    if (variant == 0) {
        return std::make_unique<MainForm2Parts1Src>(bench.app);
    }
    return std::make_unique<MainForm2Parts2Src>(bench.app);
}

}  // namespace

class TwoPartEntryTest : public QObject {
    Q_OBJECT
  private slots:
    void init() { bench = std::make_unique<Bench>(); }
    void cleanup() { bench.reset(); }

    void opensWithItsDefaults_data();
    void opensWithItsDefaults();
    void boxesAreCorrectedWhenLeft_data();
    void boxesAreCorrectedWhenLeft();
    void storedValueKeepsTheTypedPrecision();
    void textOnlyBoxesKeepANonNumberAsTyped();
    void freshWindowOffersOnlyConnect();
    void connectedPartInAdcModeIsUsable();
    void lockedPartKeepsItsBoxesButNotItsOwiCommands();
    void oneSupplyWindowNeedsBothPartsActive();
    void unknownStateIsShownAsUnrecognized();
    void connectsThroughThePortDialogAndBack();
    void doNotConnectLeavesTheWindowOffline();
    void portWithoutProgrammerStillConnectsButReportsTheChannel();
    void aboutWhileOfflineShowsNoVersion();

  private:
    std::unique_ptr<Bench> bench;
};

void TwoPartEntryTest::opensWithItsDefaults_data() {
    QTest::addColumn<int>("variant");
    QTest::newRow("/0") << 0;
    QTest::newRow("/1") << 1;
}

void TwoPartEntryTest::opensWithItsDefaults() {
    QFETCH(int, variant);
    auto window = makeWindow(*bench, variant);
    QWidget* w = window.get();
    QCOMPARE(w->windowTitle(), QStringLiteral("RK31 GUI - QZ7734"));
    QCOMPARE(w->objectName(), variant == 0 ? QStringLiteral("MainForm2Parts1Src")
                                           : QStringLiteral("MainForm2Parts2Src"));
    for (int part = 0; part < 2; ++part) {
        QStringList texts;
        for (const char* box : {"VDD", "DP", "clamphigh", "clamplow", "hys", "Rangle", "OutMode",
                                "PWMFreq", "PWMPolarity"}) {
            texts << textOf(w, box, part);
        }
        QCOMPARE(texts, QStringList({"5.000", "260.00", "95.00", "5.00", "1.00", "360.00", "Analog",
                                     "1000 Hz", "high level valid"}));
        const PartParameters& p = window->context().params[part];
        QCOMPARE(QList<float>({p.DP, p.ClampHigh, p.ClampLow, p.Angle[2], p.Slope}),
                 QList<float>({260, 95, 5, 500, 500}));
    }
    QCOMPARE(find<QLabel>(w, "status")->text(),
             QStringLiteral("Ready: Offline Mode -- Part#1: Power Off -- Part#2: Power Off"));
    QVERIFY(bench->prompts.messages.isEmpty());
    QVERIFY(bench->trace().isEmpty());
    // Boxes carry their labels (as buddies), frames their captions.
    QCOMPARE(labelOf(w, find(w, "DP", 1)), QStringLiteral("DP (deg)"));
    QCOMPARE(labelOf(w, find(w, "Level", 6)), QStringLiteral("Level C [%VDD]"));
    QCOMPARE(labelOf(w, find(w, "OutMode", 0)), QStringLiteral("Output mode"));
    QCOMPARE(find<QGroupBox>(w, "PartFrame", 1)->title(), QStringLiteral("Part #2"));
    QVERIFY(find<QGroupBox>(w, "PartFrame", 1)->isAncestorOf(find(w, "DP", 1)));
}

void TwoPartEntryTest::boxesAreCorrectedWhenLeft_data() {
    QTest::addColumn<int>("variant");
    QTest::addColumn<QString>("box");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<float>("stored");
    // The rules themselves are pinned in the validation tests; these rows prove that every box
    // of both windows runs its own rule, names its part and point, and keeps the value.
    const QString invalid =
        "Input is Invalid! Restoring to default" + kEllipsis + " Please try again!";
    const QString dp103 =
        "Part#1: : DP Input cannot be more than or equal to 360! Using 359.99 instead!";
    const struct {
        int variant;
        const char* box;
        int index;
        const char* typed;
        QString message;
        QString shown;
        float stored;
    } rows[] = {
        // clang-format off
        {1, "DP", 0, "360", dp103, "359.99", 359.99f},
        {0, "DP", 0, "360", dp103, "359.99", 359.99f},
        {1, "DP", 0, "-1", "Part#1: : DP Input cannot be less than 0! Using 0 instead!", "0", 0.0f},
        {1, "DP", 1, "1e2", "Part#2: : DP " + invalid, "260.00", 260.0f},
        {1, "DP", 0, "1E50", "Wrong Float Data Input Detected : 1E50 !!!", "0.00", 0.0f},
        {0, "KforA", 1, "-1E999999", "Wrong Float Data Input Detected : -1E999999 !!!", "0.0000", 0.0f},
        {1, "clamplow", 0, "150", "", "100", 100.0f},
        {0, "clamplow", 0, "150", "", "99.99", 99.99f},
        {0, "clamplow", 1, "abc", "Part#2: : Clamp Low " + invalid, "5.00", 5.0f},
        {1, "clamphigh", 1, "0", "", "0.00", 0.0f},
        {0, "clamphigh", 1, "0", "", "0.01", 0.01f},
        {1, "clamphigh", 0, "x", "Part#1: : Clamp High " + invalid, "95.00", 95.0f},
        {0, "Angle", 6, "-1", "Part#2: Angle C Input cannot be less than 0! Using 0 instead!", "0", 0.0f},
        {1, "Angle", 3, "360", "Part#1: Angle D Input cannot be more than or equal to 360! Using 359.99 instead!", "359.99", 359.99f},
        {1, "Angle", 5, "123.456", "", "123.46", 123.456f},
        {1, "Angle", 1, "", "", "", 500.0f},
        {0, "Level", 4, "150", "", "100.00", 100.0f},
        {1, "Level", 5, "abc", "Part#2: Level B " + invalid, "", 0.0f},
        {1, "KforA", 1, "-0.25", "", "-0.2500", -0.25f},
        {0, "KforA", 0, "abc", "Part#1: Slope " + invalid, "", 500.0f},
        // clang-format on
    };
    for (const auto& r : rows) {
        QTest::addRow("/%d %s_%d '%s'", r.variant, r.box, r.index, r.typed)
            << r.variant << r.box << r.index << r.typed << r.message << r.shown << r.stored;
    }
}

void TwoPartEntryTest::boxesAreCorrectedWhenLeft() {
    QFETCH(int, variant);
    QFETCH(QString, box);
    QFETCH(int, index);
    QFETCH(QString, typed);
    QFETCH(QString, message);
    QFETCH(QString, shown);
    QFETCH(float, stored);

    auto window = makeWindow(*bench, variant);
    // The message is shown before the box is rewritten: the box still holds the typed text.
    QString textWhenShown;
    bench->prompts.onMessage = [&](const QString&) {
        textWhenShown = textOf(window.get(), box, index);
    };
    typeInto(window.get(), box, index, typed);
    QCOMPARE(bench->prompts.messages, message.isEmpty() ? QStringList() : QStringList{message});
    if (!message.isEmpty()) {
        QCOMPARE(textWhenShown, typed);
    }
    QCOMPARE(textOf(window.get(), box, index), shown);

    const bool point = box == "Angle" || box == "Level";
    const PartParameters& p = window->context().params[point ? index / 4 : index];
    const float value = box == "DP"          ? p.DP
                        : box == "clamplow"  ? p.ClampLow
                        : box == "clamphigh" ? p.ClampHigh
                        : box == "Angle"     ? p.Angle[index % 4]
                        : box == "Level"     ? p.Level[index % 4]
                                             : p.Slope;
    QCOMPARE(value, stored);
}

void TwoPartEntryTest::textOnlyBoxesKeepANonNumberAsTyped() {
    MainForm2Parts2Src window(bench->app);
    for (const char* box : {"VDD", "Rangle"}) {
        typeInto(&window, box, 1, "1e2");
        QCOMPARE(textOf(&window, box, 1), QStringLiteral("1e2"));
    }
    typeInto(&window, "VDD", 0, "4.9");
    QCOMPARE(textOf(&window, "VDD", 0), QStringLiteral("4.900"));
    QVERIFY(bench->prompts.messages.isEmpty());
}

void TwoPartEntryTest::storedValueKeepsTheTypedPrecision() {
    MainForm2Parts2Src window(bench->app);
    typeInto(&window, "DP", 0, "123.456");
    QCOMPARE(textOf(&window, "DP", 0), QStringLiteral("123.46"));
    QCOMPARE(window.context().params[0].DP, 123.456f);
    typeInto(&window, "VDD", 1, "abc");  // no check: stays as typed
    QCOMPARE(textOf(&window, "VDD", 1), QStringLiteral("abc"));
    typeInto(&window, "VDD", 1, "4.9876");
    QCOMPARE(textOf(&window, "VDD", 1), QStringLiteral("4.988"));
    typeInto(&window, "Rangle", 0, "12.345");
    QCOMPARE(textOf(&window, "Rangle", 0), QStringLiteral("12.35"));
    QVERIFY(bench->prompts.messages.isEmpty());
}

void TwoPartEntryTest::freshWindowOffersOnlyConnect() {
    MainForm2Parts2Src window(bench->app);
    QWidget* w = &window;
    QVERIFY(usable(w, "connect"));
    for (int part = 0; part < 2; ++part) {
        check(w, "PartEnable", part, true);  // a user cannot: the boxes are disabled
        QVERIFY(!usable(w, "PartEnable", part));
        for (const char* name : {"PowerOn", "newdevice", "lineargraph", "PartFrame", "owilock",
                                 "Advanced", "btnconfigsolver", "viewoutput", "DP", "GetDP"}) {
            QVERIFY2(!usable(w, name, part), name);
        }
        QVERIFY(!usable(w, "Setpoint", part * 4 + 3));
    }
    QVERIFY(usable(w, "mOpen"));
    QVERIFY(usable(w, "mSaveAs"));
    QVERIFY(usable(w, "btnAbout"));
}

void TwoPartEntryTest::connectedPartInAdcModeIsUsable() {
    MainForm2Parts2Src window(bench->app);
    QWidget* w = &window;
    scriptPortChoice(bench->prompts, "COM1");
    click(w, "connect");
    check(w, "PartEnable", 0, true);
    ToADCMode(window.context(), 0);
    QCOMPARE(find<QLabel>(w, "status")->text(),
             QStringLiteral(
                 "Ready: Connected with Programmer -- Part#1: ADC Mode -- Part#2: Power Off"));
    for (const char* name :
         {"PartFrame", "PowerOn", "newdevice", "lineargraph", "DP", "VDD", "Rangle", "KforA", "op",
          "hys", "hysup", "Kpolarity", "viewoutput", "GetDP", "btnreadangle", "owilock", "Advanced",
          "btnconfigsolver", "swobtn"}) {
        QVERIFY2(usable(w, name, 0), name);
        QVERIFY2(!usable(w, name, 1), name);
    }
    QVERIFY(usable(w, "Setpoint", 2) && !usable(w, "Setpoint", 6));
    QVERIFY(usable(w, "Level", 3) && !usable(w, "Level", 7));
    QVERIFY(usable(w, "PartEnable", 1));
    QVERIFY(!usable(w, "connect"));  // no disconnect while a part is powered
}

void TwoPartEntryTest::lockedPartKeepsItsBoxesButNotItsOwiCommands() {
    MainForm2Parts2Src window(bench->app);
    QWidget* w = &window;
    scriptPortChoice(bench->prompts, "COM1");
    click(w, "connect");
    check(w, "PartEnable", 1, true);
    window.context().session.CommLocked[1] = true;
    ToADCMode(window.context(), 1);
    for (const char* name : {"DP", "clamphigh", "KforA", "viewoutput", "PowerOn"}) {
        QVERIFY2(usable(w, name, 1), name);
    }
    for (const char* name :
         {"btnconfigsolver", "owilock", "Advanced", "btnreadangle", "GetDP", "swobtn"}) {
        QVERIFY2(!usable(w, name, 1), name);
    }
    QVERIFY(!usable(w, "Setpoint", 4));
}

void TwoPartEntryTest::oneSupplyWindowNeedsBothPartsActive() {
    MainForm2Parts1Src window(bench->app);
    QWidget* w = &window;
    scriptPortChoice(bench->prompts, "COM1");
    click(w, "connect");
    QVERIFY(usable(w, "PowerOn") && usable(w, "newdevice") && usable(w, "lineargraph"));
    ToADCMode(window.context(), 0);
    QVERIFY(usable(w, "DP", 0) && usable(w, "GetDP", 0) && usable(w, "Setpoint", 1));
    QVERIFY(!usable(w, "DP", 1) && !usable(w, "GetDP", 1));
    for (const char* name : {"viewoutput", "btnconfigsolver", "owilock", "Advanced"}) {
        QVERIFY2(!usable(w, name), name);
    }
    ToADCMode(window.context(), 1);
    for (const char* name : {"viewoutput", "btnconfigsolver", "owilock", "Advanced"}) {
        QVERIFY2(usable(w, name), name);
    }
}

void TwoPartEntryTest::unknownStateIsShownAsUnrecognized() {
    MainForm2Parts2Src window(bench->app);
    scriptPortChoice(bench->prompts, "COM1");
    click(&window, "connect");
    check(&window, "PartEnable", 0, true);
    check(&window, "PartEnable", 1, true);
    Machine(window.context()).ChipChangeToState(1, 0, 7);
    UpdateControl(window.context());
    QCOMPARE(bench->prompts.messages, QStringList{"Error: There is no such state: 7"});
    QVERIFY(find<QLabel>(&window, "status")
                ->text()
                .endsWith(" -- Part#1: Power Off -- Part#2: Unrecognized Mode!"));
    QVERIFY(!usable(&window, "DP", 1));
    QVERIFY(!usable(&window, "btnconfigsolver", 1));
}

void TwoPartEntryTest::connectsThroughThePortDialogAndBack() {
    MainForm2Parts1Src window(bench->app);
    QWidget* w = &window;
    scriptPortChoice(bench->prompts, "COM1");
    click(w, "connect");
    QCOMPARE(bench->prompts.modalTitles, QStringList{"Select Com port"});
    QCOMPARE(textOf(w, "connect"), QStringLiteral("Disconnect"));
    QCOMPARE(bench->session().ProgrammerConnected, 1);
    QCOMPARE(bench->trace(), QStringList{"OpenChannel(1)"});
    QCOMPARE(find<QLabel>(w, "status")->text(),
             QStringLiteral(
                 "Ready: Connected with Programmer -- Part#1: Power Off -- Part#2: Power Off"));

    click(w, "connect");
    QCOMPARE(textOf(w, "connect"), QStringLiteral("Connect"));
    QVERIFY(!bench->session().hasDevice());
    QCOMPARE(bench->session().ProgrammerConnected, 0);
    QCOMPARE(bench->trace(), QStringList({"OpenChannel(1)", "CloseChannel(-1)"}));
    QVERIFY(find<QLabel>(w, "status")->text().startsWith("Ready: Offline Mode"));
    QVERIFY(bench->prompts.messages.isEmpty());
}

void TwoPartEntryTest::doNotConnectLeavesTheWindowOffline() {
    MainForm2Parts2Src window(bench->app);
    scriptDialogClick(bench->prompts, "Donotconnect");
    click(&window, "connect");
    QCOMPARE(textOf(&window, "connect"), QStringLiteral("Connect"));
    bench->prompts.dialogScripts.push_back(nullptr);  // the close box
    click(&window, "connect");
    QCOMPARE(textOf(&window, "connect"), QStringLiteral("Connect"));
    QVERIFY(bench->trace().isEmpty());
    QCOMPARE(bench->session().ProgrammerConnected, 0);
}

void TwoPartEntryTest::portWithoutProgrammerStillConnectsButReportsTheChannel() {
    MainForm2Parts2Src window(bench->app);
    scriptPortChoice(bench->prompts, "COM3");
    click(&window, "connect");
    QCOMPARE(bench->prompts.messages, QStringList{"Failed in Connecting Channel"});
    QCOMPARE(textOf(&window, "connect"), QStringLiteral("Disconnect"));
    // Later commands find no open channel and say so instead of failing.
    check(&window, "PartEnable", 0, true);
    click(&window, "PowerOn", 0);
    QCOMPARE(bench->prompts.messages.last(), QStringLiteral("Programmer is not connected!"));
}

void TwoPartEntryTest::aboutWhileOfflineShowsNoVersion() {
    MainForm2Parts2Src window(bench->app);
    QString shown;
    bench->prompts.dialogScripts.push_back(
        [&](QDialog& about) { shown = about.findChild<QLabel*>("HWversion")->text(); });
    click(&window, "btnAbout");
    QCOMPARE(bench->prompts.messages,
             QStringList{
                 "Cannot read version, Programmer is not connected or Device is not powered on!"});
    QCOMPARE(shown, QStringLiteral("Hardware Version: 0.0.0"));
}

QTEST_MAIN(TwoPartEntryTest)
#include "TwoPartEntryTest.moc"
