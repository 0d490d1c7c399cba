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

std::unique_ptr<TwoPartWindow> makeWindow(Bench& bench, int variant) {
    return variant
               ? std::make_unique<MainForm2Parts2Src>(bench.app)
               : std::unique_ptr<TwoPartWindow>(std::make_unique<MainForm2Parts1Src>(bench.app));
}

// "DP GetDP" of part 1 as "DP_1 GetDP_1".
QString indexed(QString names, int index) {
    return names.replace(QRegularExpression("(\\S+)"), "\\1_" + QString::number(index));
}

// The names among `names` ("DP_0 connect") whose control the user can operate.
QString usableAmong(QWidget* w, const QString& names) {
    QStringList result;
    for (const QString& name : names.split(' ')) {
        if (usable(w, name)) {
            result << name;
        }
    }
    return result.join(' ');
}

const QString kConnected = "Ready: Connected with Programmer -- ";
const QString kInvalid =
    QStringLiteral("Input is Invalid! Restoring to default\u2026 Please try again!");
constexpr float kNotKept = -1;  // a box that keeps no value of its own

// The rules themselves are pinned in the validation tests; these rows prove that every box of
// both windows runs its own rule, names its part and point, and keeps the value.
const struct BoxCase {
    int variant;
    const char* box;
    int index;
    const char* typed;
    QString message;
    const char* shown;
    float stored;
} kBoxCases[] = {
    // clang-format off
    {1, "DP", 0, "360", "Part#1: : DP Input cannot be more than or equal to 360! Using 359.99 instead!", "359.99", 359.99f},
    {1, "clamplow", 0, "150", "", "100", 100.0f},
    {0, "clamplow", 0, "150", "", "99.99", 99.99f},
    {0, "clamplow", 1, "abc", "Part#2: : Clamp Low " + kInvalid, "5.00", 5.0f},
    {1, "clamphigh", 1, "0", "", "0.00", 0.0f},
    {0, "clamphigh", 1, "0", "", "0.01", 0.01f},
    {1, "clamphigh", 0, "x", "Part#1: : Clamp High " + kInvalid, "95.00", 95.0f},
    {0, "Angle", 6, "-1", "Part#2: Angle C Input cannot be less than 0! Using 0 instead!", "0", 0.0f},
    {1, "Level", 5, "abc", "Part#2: Level B " + kInvalid, "", 0.0f},
    {1, "KforA", 1, "-0.25", "", "-0.2500", -0.25f},
    {0, "KforA", 0, "abc", "Part#1: Slope " + kInvalid, "", 500.0f},
    {0, "KforA", 1, "-1E999999", "Wrong Float Data Input Detected : -1E999999 !!!", "0.0000", 0.0f},
    {1, "op", 1, "360", "Part#2: OP  Input cannot be more than or equal to 360! Using 359.99 instead!", "359.99", 359.99f},
    {1, "hys", 0, "16", "Part#1: HYS  Input cannot be more than 15.75! Using 15.75 instead!", "15.75", 15.75f},
    // Boxes that only show a value put a number in their format.
    {1, "VDD", 0, "4.9876", "", "4.988", kNotKept},
    {1, "Rangle", 0, "12.345", "", "12.35", kNotKept},
    // clang-format on
};

float storedOf(TwoPartWindow& window, const BoxCase& c) {
    const QString box = c.box;
    const bool point = box == "Angle" || box == "Level";
    const PartParameters& p = window.context().params[point ? c.index / 4 : c.index];
    // clang-format off
    const QMap<QString, float> kept{{"DP", p.DP}, {"clamplow", p.ClampLow}, {"clamphigh", p.ClampHigh},
        {"Angle", p.Angle[c.index % 4]}, {"Level", p.Level[c.index % 4]}, {"KforA", p.Slope}, {"op", p.OP}, {"hys", p.HYS}};
    // clang-format on
    return kept.value(box, kNotKept);
}

}  // namespace

class TwoPartEntryTest : public QObject {
    Q_OBJECT
    std::unique_ptr<Bench> bench;

  private slots:
    void init() { bench = std::make_unique<Bench>(); }
    void cleanup() { bench.reset(); }

    void opensWithItsDefaults_data() {
        QTest::addColumn<int>("variant");
        QTest::newRow("/0") << 0;
        QTest::newRow("/1") << 1;
    }

    void opensWithItsDefaults() {
        QFETCH(int, variant);
        auto window = makeWindow(*bench, variant);
        QWidget* w = window.get();
        QCOMPARE(w->windowTitle(), "RK31 GUI - QZ7734");
        QCOMPARE(w->objectName(), variant == 0 ? "MainForm2Parts1Src" : "MainForm2Parts2Src");
        const QString boxes = "VDD DP clamphigh clamplow hys Rangle OutMode PWMFreq PWMPolarity";
        for (int part = 0; part < 2; ++part) {
            QStringList texts;
            for (const QString& name : indexed(boxes, part).split(' ')) {
                texts << textOf(w, name);
            }
            QCOMPARE(texts.join('|'),
                     "5.000|260.00|95.00|5.00|1.00|360.00|Analog|1000 Hz|high level valid");
            const PartParameters& p = window->context().params[part];
            QCOMPARE(QList<float>({p.DP, p.ClampHigh, p.ClampLow, p.Angle[2], p.Slope}),
                     QList<float>({260, 95, 5, 500, 500}));
        }
        QCOMPARE(textOf(w, "status"),
                 "Ready: Offline Mode -- Part#1: Power Off -- Part#2: Power Off");
        QVERIFY(bench->prompts.messages.isEmpty());
        QVERIFY(bench->trace().isEmpty());
        // Boxes carry their labels (as buddies), frames their captions.
        QCOMPARE(labelOf(w, find(w, "DP", 1)), "DP (deg)");
        QCOMPARE(labelOf(w, find(w, "Level", 6)), "Level C [%VDD]");
        QCOMPARE(labelOf(w, find(w, "OutMode", 0)), "Output mode");
        QCOMPARE(find<QGroupBox>(w, "PartFrame", 1)->title(), "Part #2");
        QVERIFY(find<QGroupBox>(w, "PartFrame", 1)->isAncestorOf(find(w, "DP", 1)));
    }

    void boxesAreCorrectedWhenLeft_data() {
        QTest::addColumn<int>("row");
        for (int i = 0; i < int(std::size(kBoxCases)); ++i) {
            const BoxCase& c = kBoxCases[i];
            QTest::addRow("/%d %s_%d '%s'", c.variant, c.box, c.index, c.typed) << i;
        }
    }

    void boxesAreCorrectedWhenLeft() {
        QFETCH(int, row);
        const BoxCase& c = kBoxCases[row];
        auto window = makeWindow(*bench, c.variant);
        // The message is shown before the box is rewritten: the box still holds the typed text.
        QString textWhenShown;
        bench->prompts.onMessage = [&](const QString&) {
            textWhenShown = textOf(window.get(), c.box, c.index);
        };
        typeInto(window.get(), c.box, c.index, c.typed);
        QCOMPARE(bench->prompts.messages,
                 c.message.isEmpty() ? QStringList() : QStringList{c.message});
        QCOMPARE(textWhenShown, c.message.isEmpty() ? QString() : QString(c.typed));
        QCOMPARE(textOf(window.get(), c.box, c.index), QString(c.shown));
        QCOMPARE(storedOf(*window, c), c.stored);
    }

    void freshWindowOffersOnlyConnect() {
        auto window = makeWindow(*bench, 1);
        QWidget* w = window.get();
        check(w, "PartEnable", 0, true);  // a user cannot: the boxes are disabled
        check(w, "PartEnable", 1, true);
        const QString part =
            "PartEnable PowerOn newdevice lineargraph PartFrame owilock Advanced "
            "btnconfigsolver viewoutput DP GetDP PWMFreq";
        QCOMPARE(usableAmong(w, "connect mOpen mSaveAs btnAbout Setpoint_3 Setpoint_7 " +
                                    indexed(part, 0) + ' ' + indexed(part, 1)),
                 "connect mOpen mSaveAs btnAbout");
        // The labels naming the boxes grey with them.
        QVERIFY(!labelOf(w, find(w, "VDD", 0)).isEmpty() &&
                !labelOf(w, find(w, "op", 0)).isEmpty());
        for (auto* label : w->findChildren<QLabel*>()) {
            if (label->buddy()) {
                QCOMPARE(label->isEnabled(), label->buddy()->isEnabled());
            }
        }
    }

    void controlsFollowEachPartsState() {
        auto window = makeWindow(*bench, 1);
        QWidget* w = window.get();
        scriptPortChoice(bench->prompts, "COM1");
        click(w, "connect");
        WindowContext& ctx = window->context();
        check(w, "PartEnable", 0, true);
        ToADCMode(ctx, 0);
        QCOMPARE(textOf(w, "status"), kConnected + "Part#1: ADC Mode -- Part#2: Power Off");
        const QString part =
            "PartFrame PowerOn newdevice lineargraph DP VDD Rangle KforA op hys "
            "hysup Kpolarity viewoutput GetDP btnreadangle owilock Advanced "
            "btnconfigsolver swobtn";
        // No disconnect while a part is powered.
        QCOMPARE(usableAmong(w, indexed(part, 0) + ' ' + indexed(part, 1) +
                                    " Setpoint_2 Setpoint_6 Level_3 Level_7 PartEnable_1 connect"),
                 indexed(part, 0) + " Setpoint_2 Level_3 PartEnable_1");

        // A locked part keeps its boxes but not its OWI commands.
        check(w, "PartEnable", 1, true);
        ctx.session.CommLocked[1] = true;
        ToADCMode(ctx, 1);
        const QString kept = indexed("DP clamphigh KforA viewoutput PowerOn", 1);
        const QString owi =
            indexed("btnconfigsolver owilock Advanced btnreadangle GetDP swobtn", 1);
        QCOMPARE(usableAmong(w, kept + ' ' + owi + " Setpoint_4"), kept);

        Machine(ctx).ChipChangeToState(1, ctx.session.ChipState[1], 7);
        UpdateControl(ctx);
        QCOMPARE(bench->prompts.messages, QStringList{"Error: There is no such state: 7"});
        QVERIFY(textOf(w, "status").endsWith(" -- Part#1: ADC Mode -- Part#2: Unrecognized Mode!"));
        QCOMPARE(usableAmong(w, "DP_1 btnconfigsolver_1"), QString());
    }

    void oneSupplyWindowNeedsBothPartsActive() {
        auto window = makeWindow(*bench, 0);
        QWidget* w = window.get();
        scriptPortChoice(bench->prompts, "COM1");
        click(w, "connect");
        QCOMPARE(textOf(w, "status"), kConnected + "Part#1: Power Off -- Part#2: Power Off");
        const QString owiCommands = "viewoutput btnconfigsolver owilock Advanced";
        QCOMPARE(usableAmong(w, "PowerOn newdevice lineargraph"), "PowerOn newdevice lineargraph");
        ToADCMode(window->context(), 0);
        QCOMPARE(usableAmong(w, "DP_0 GetDP_0 Setpoint_1 DP_1 GetDP_1 " + owiCommands),
                 "DP_0 GetDP_0 Setpoint_1");
        ToADCMode(window->context(), 1);
        QCOMPARE(usableAmong(w, owiCommands), owiCommands);
    }

    void connectsThroughThePortDialog() {
        auto window = makeWindow(*bench, 1);
        QWidget* w = window.get();
        // Refused with its button or its close box, the dialog leaves the window offline.
        scriptDialogClick(bench->prompts, "Donotconnect");
        bench->prompts.dialogScripts.push_back(nullptr);
        click(w, "connect");
        click(w, "connect");
        QCOMPARE(textOf(w, "connect"), "Connect");
        QVERIFY(bench->trace().isEmpty());
        QCOMPARE(bench->session().ProgrammerConnected, 0);

        scriptPortChoice(bench->prompts, "COM1");
        click(w, "connect");
        QCOMPARE(bench->prompts.modalTitles, QStringList(3, "Select Com port"));
        QCOMPARE(textOf(w, "connect"), "Disconnect");
        QCOMPARE(bench->session().ProgrammerConnected, 1);
        QCOMPARE(bench->trace(), QStringList{"OpenChannel(1)"});
        QCOMPARE(textOf(w, "status"), kConnected + "Part#1: Power Off -- Part#2: Power Off");
        click(w, "connect");
        QCOMPARE(textOf(w, "connect"), "Connect");
        QVERIFY(!bench->session().hasDevice());
        QCOMPARE(bench->session().ProgrammerConnected, 0);
        QCOMPARE(bench->trace(), QStringList({"OpenChannel(1)", "CloseChannel(-1)"}));
        QVERIFY(textOf(w, "status").startsWith("Ready: Offline Mode"));
        QVERIFY(bench->prompts.messages.isEmpty());

        // A port without a programmer still connects; later commands find no open channel and
        // say so instead of failing.
        scriptPortChoice(bench->prompts, "COM3");
        click(w, "connect");
        QCOMPARE(bench->prompts.messages, QStringList{"Failed in Connecting Channel"});
        QCOMPARE(textOf(w, "connect"), "Disconnect");
        check(w, "PartEnable", 0, true);
        click(w, "PowerOn", 0);
        QCOMPARE(bench->prompts.messages.last(), "Programmer is not connected!");
    }
};

QTEST_MAIN(TwoPartEntryTest)
#include "TwoPartEntryTest.moc"
