// Angle capture, switch output, settings files and the windows opened from the two-part windows.
#include <QTemporaryDir>
#include <QtTest>

#include "device/ModeChange.h"
#include "procedures/twopart/AngleCommands.h"
#include "procedures/twopart/ProgramAction.h"
#include "procedures/twopart/WindowCommands.h"
#include "support/WindowHarness.h"
#include "ui/dialogs/RealTimeDisplayBar.h"
#include "ui/windows/MainForm2Parts.h"

using namespace rk31;
using namespace rk31::test;

namespace {

// Types "box_i=text" entries separated by blanks.
void typeEntries(QWidget* w, const QString& entries) {
    for (const QString& entry : entries.split(' ')) {
        typeInto(w, entry.section('=', 0, 0), -1, entry.section('=', 1));
    }
}

// Every box, list and check box a user sets, with its value, for comparing two windows.
QStringList settingsOf(QWidget* w) {
    QStringList values;
    for (auto* box : w->findChildren<QLineEdit*>()) {
        values << box->objectName() + '=' + box->text();
    }
    for (auto* list : w->findChildren<QComboBox*>()) {
        values << list->objectName() + '=' + list->currentText();
    }
    for (auto* box : w->findChildren<QCheckBox*>()) {
        if (!box->objectName().startsWith("PartEnable")) {
            values << box->objectName() + '=' + QString::number(box->isChecked());
        }
    }
    values.sort();
    return values;
}

void selectListItem(QWidget* w, const QString& list, int part, int index) {
    auto* combo = find<QComboBox>(w, list, part);
    combo->setCurrentIndex(index);
    emit combo->activated(index);
}

// Clicks `button` and tells what the dialog it opens shows in `names`: a box its text, any other
// control whether it is usable and in sight; "!name" clicks that button of the dialog first,
// "tick" runs the real-time display's timer once.
QString dialogShows(Bench& bench, QWidget* w, const QString& button, const QString& names) {
    QStringList shown;
    bench.prompts.dialogScripts.push_back([&](QDialog& dialog) {
        for (const QString& name : names.split(' ')) {
            auto* control = dialog.findChild<QWidget*>(name.mid(name.startsWith('!') ? 1 : 0));
            if (name == "tick") {
                static_cast<RealTimeDisplayBar&>(dialog).Timer1Tick();
            } else if (name.startsWith('!')) {
                static_cast<QAbstractButton*>(control)->click();
            } else if (auto* box = qobject_cast<QLineEdit*>(control)) {
                shown << box->text();
            } else {
                shown << QString::number(control->isEnabled() && !control->isHidden());
            }
        }
    });
    click(w, button);
    return shown.join('|');
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace

class TwoPartToolsTest : public QObject {
    Q_OBJECT
    std::unique_ptr<Bench> bench;
    std::unique_ptr<TwoPartWindow> window;
    QWidget* w = nullptr;

    // A window of switch "/variant", connected and powered.
    void open(int variant = 1) {
        window =
            variant
                ? openConnected<MainForm2Parts2Src>(*bench, true)
                : std::unique_ptr<TwoPartWindow>(openConnected<MainForm2Parts1Src>(*bench, true));
        w = window.get();
    }
    // Saves the settings of `source` to `path` through the Save As dialog.
    void save(QWidget* source, const QString& path) {
        bench->prompts.fileNames.push_back(path);
        click(source, "mSaveAs");
    }

    void fresh() {
        window.reset();
        bench = std::make_unique<Bench>();
    }

  private slots:
    void init() { fresh(); }
    void cleanup() { window.reset(); }

    void capturesAnglesIntoTheBoxes() {
        open();
        // The magnet, then read angle and the DP across from it; point C of Part#2 takes the angle.
        for (const char* row : {"10.004 10.00 190.00", "180 180.00 0.00", "359.5 359.50 179.50",
                                "200.125 200.13 20.13"}) {
            const QStringList v = QString(row).split(' ');
            bench->clearTrace();
            bench->box().setMagnetAngle(v[0].toDouble());
            click(w, "btnreadangle", 1);
            click(w, "GetDP", 1);
            click(w, "Setpoint", 6);
            QCOMPARE(
                textOf(w, "Rangle", 1) + ' ' + textOf(w, "DP", 1) + ' ' + textOf(w, "Angle", 6),
                v[1] + ' ' + v[2] + ' ' + v[1]);
            QCOMPARE(window->context().params[1].DP, v[2].toFloat());
            QCOMPARE(window->context().params[1].Angle[2], v[1].toFloat());
            QCOMPARE(bench->trace(), QStringList({"ReadAngle(1)", "ReadAngle(1)", "ReadAngle(1)"}));
        }
        // The switch point takes the angle as well; the HYS arrows step without the device.
        typeEntries(w, "hys_0=15.6 hys_1=0.1");
        bench->clearTrace();
        bench->box().setMagnetAngle(45.678);
        click(w, "hysup", 0);
        click(w, "hysdown", 1);
        click(w, "swobtn", 1);
        QCOMPARE(textOf(w, "hys", 0) + ' ' + textOf(w, "hys", 1) + ' ' + textOf(w, "op", 1),
                 "15.75 0 45.68");
        QCOMPARE(bench->trace(), QStringList{"ReadAngle(1)"});
        // A part in ADC mode is taken to OWI mode first.
        ToADCMode(window->context(), 0);
        bench->clearTrace();
        bench->box().setMagnetAngle(42);
        click(w, "Setpoint", 1);
        QCOMPARE(bench->trace(), QStringList({"EnterOWIMode(0)", "ReadAngle(0)"}));
        QCOMPARE(textOf(w, "Angle", 1), "42.00");
        QVERIFY(bench->prompts.messages.isEmpty());
    }

    void oneSupplyCapturesWithBothPartsInOwiMode() {
        open(0);
        click(w, "viewoutput");  // both parts to ADC mode; the display closes at once
        QVERIFY(bench->prompts.messages.isEmpty());
        QCOMPARE(bench->session().ChipState[0], AdcMode);
        QCOMPARE(bench->session().ChipState[1], AdcMode);
        bench->clearTrace();
        bench->box().setMagnetAngle(300);
        click(w, "btnreadangle", 1);
        QCOMPARE(bench->trace(), QStringList({"EnterOWIMode(3)", "ReadAngle(1)"}));
        QCOMPARE(textOf(w, "Rangle", 1), "300.00");
    }

    // The buttons are disabled in these states; the commands refuse on their own as well.
    void commandsRefuseAPartInTheWrongState() {
        const QString lockRefused = "Failed to set OWI mode due to CommLock!...Return to ADC mode!";
        using Command = void (*)(WindowContext&, std::int16_t);
        const std::pair<Command, const char*> locked[] = {
            {GetDPMidPointCommand, "Error: Not in OWI mode"},
            {AdvancedCommand, "Error: Not in OWI Mode!"},
            {[](WindowContext& ctx, std::int16_t part) { ProgramAction(ctx, part); },
             "Error: Not in OWI mode"}};
        for (const auto& [command, refusal] : locked) {
            fresh();
            open();
            ToADCMode(window->context(), 0);
            window->context().session.CommLocked[0] = true;
            bench->clearTrace();
            command(window->context(), 0);
            QCOMPARE(bench->prompts.messages, QStringList({lockRefused, refusal}));
            QCOMPARE(bench->trace(), QStringList{"EnterADCMode(0)"});
            QVERIFY(bench->prompts.modalTitles.isEmpty());
            QCOMPARE(textOf(w, "DP", 0), "260.00");
        }
        window->context().session.ChipState[0] = 7;
        bench->prompts.messages.clear();
        ViewOutputCommand(window->context(), 0);
        QCOMPARE(bench->prompts.messages, QStringList{"Error: Not in ADC mode"});
        QVERIFY(bench->prompts.modalTitles.isEmpty());
        // One supply: both parts must reach ADC mode, Part#1 as well as Part#2.
        fresh();
        open(0);
        window->context().session.ChipState[0] = 7;
        ViewOutputCommand(window->context(), 0);
        QCOMPARE(bench->prompts.messages, QStringList{"Error: Not in ADC mode"});
        QVERIFY(bench->prompts.modalTitles.isEmpty());

        fresh();
        MainForm2Parts2Src offline(bench->app);
        LinearGraphCommand(offline.context(), 0);
        QCOMPARE(bench->prompts.messages, QStringList{"Error: in Offline mode"});
    }

    void settingsSavedInOneWindowLoadInTheOther() {
        QTemporaryDir dir;
        const QString name = dir.filePath("profile");
        open();
        typeEntries(w,
                    "DP_0=300 clamphigh_0=90 clamplow_1=12.5 Angle_0=100 Level_0=20 Angle_1=200 "
                    "Level_1=80 Angle_6=33.3 Level_7=99 KforA_1=-0.25 op_1=45 hys_0=2.5");
        check(w, "Kpolarity", 1, true);
        check(w, "clockwise", 0, true);
        // The PWM lists are for the PWM output mode only.
        QVERIFY(!usable(w, "PWMFreq", 1) && !usable(w, "PWMPolarity", 1));
        selectListItem(w, "OutMode", 1, 1);
        QVERIFY(usable(w, "PWMFreq", 1) && usable(w, "PWMPolarity", 1) && !usable(w, "PWMFreq", 0));
        find<QComboBox>(w, "PWMFreq", 1)->setCurrentIndex(3);
        save(w, name);
        QCOMPARE(bench->prompts.fileDialogTitles, QStringList{"Select file name..."});
        const QByteArray content = contentOf(name + ".txt");
        QVERIFY(content.startsWith(
            "Part #1:\r\nVDD is(V):4.996\r\nDirection is:CW\r\nDP is(deg):300.00\r\n"));
        QVERIFY(content.endsWith("PWMFreq is:3\r\nPWMPolarity is0\r\n"));
        QCOMPARE(content.count("\r\n"), 42);

        bench->prompts.messages.clear();
        MainForm2Parts1Src other(bench->app);
        bench->prompts.fileNames.push_back(name + ".txt");
        click(&other, "mOpen");
        QCOMPARE(bench->prompts.messages, QStringList());
        QCOMPARE(settingsOf(&other), settingsOf(w));
        QCOMPARE(other.context().params[1].Slope, -0.25f);
        QCOMPARE(other.context().params[1].Angle[2], 33.3f);
        // The loaded output mode took effect (the list waits only for its frame to be enabled).
        QVERIFY(!find(&other, "PWMFreq", 1)->testAttribute(Qt::WA_ForceDisabled));

        // Saving over the file asks first; the dialog offers the last chosen name again.
        selectListItem(w, "OutMode", 1, 0);
        QVERIFY(!usable(w, "PWMFreq", 1) && !usable(w, "PWMPolarity", 1));
        bench->prompts.answers = {false, true};
        save(w, name + ".txt");
        QCOMPARE(bench->prompts.questions,
                 QStringList{"The file with the same name already exists, would you override?"});
        QCOMPARE(contentOf(name + ".txt"), content);
        save(w, name + ".txt");
        QCOMPARE(bench->prompts.suggestedNames.last(), name + ".txt");
        QCOMPARE(contentOf(name + ".txt"),
                 QByteArray(content).replace("OutMode is:1", "OutMode is:0"));
    }

    void settingsLoadStopsAtTheFirstErrorOrRevalidates_data() {
        QTest::addColumn<QStringList>("edits");  // pattern, replacement, ...
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("shown");  // DP_0 DP_1 VDD_0 after loading
        QTest::addColumn<float>("dp");       // Part#1's DP value after loading
        const QString error =
            "Error with number:%1 occurs! Please check the integrity of profile file!";
        // An error keeps what was read before it (part 2's DP lies beyond line 19) and runs no
        // validation.
        QTest::newRow("41 lines") << QStringList{"PWMPolarity is0\r\n$", ""} << error.arg(62)
                                  << "111.00 123.00 5.000" << 5.0f;
        QTest::newRow("letter in line 19") << QStringList{"OutMode is:0", "OutMode is:x"}
                                           << error.arg(13) << "111.00 260.00 5.000" << 5.0f;
        // Only the position of a line counts, not its label; LF-only lines do as well.
        QTest::newRow("revalidated")
            << QStringList{"DP is\\(deg\\):111.00", "DP is(deg):400", "VDD is\\(V\\):5.000",
                           "vdd IS(v):4.9",         "\r\n",           "\n"}
            << "Part#1: : DP Input cannot be more than or equal to 360! Using 359.99 instead!"
            << "359.99 123.00 4.900" << 359.99f;
    }

    void settingsLoadStopsAtTheFirstErrorOrRevalidates() {
        QFETCH(QStringList, edits);
        QFETCH(QString, message);
        QFETCH(QString, shown);
        QFETCH(float, dp);
        QTemporaryDir dir;
        const QString path = dir.filePath("profile.txt");
        MainForm2Parts2Src source(bench->app);
        typeEntries(&source, "DP_0=111 DP_1=123");
        save(&source, path);
        QString content = QString::fromUtf8(contentOf(path));
        for (int i = 0; i < edits.size(); i += 2) {
            content.replace(QRegularExpression(edits[i]), edits[i + 1]);
        }
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(content.toUtf8());
        file.close();

        MainForm2Parts2Src form(bench->app);
        typeEntries(&form, "DP_0=5");
        bench->prompts.fileNames.push_back(path);
        click(&form, "mOpen");
        QCOMPARE(bench->prompts.messages, QStringList{message});
        QCOMPARE(
            textOf(&form, "DP", 0) + ' ' + textOf(&form, "DP", 1) + ' ' + textOf(&form, "VDD", 0),
            shown);
        QCOMPARE(form.context().params[0].DP, dp);
    }

    void windowsOpenedForThePart() {
        open();
        // Advanced for Part#2 alone reads Part#2's identification word.
        QCOMPARE(dialogShows(*bench, w, "Advanced_1", "PartOption_0 !memread out_19"), "0|36");
        typeEntries(w,
                    "Angle_4=100 Level_4=20 Angle_5=200 Level_5=80 clamplow_1=10 "
                    "clamphigh_1=90 DP_1=300");
        QCOMPARE(dialogShows(*bench, w, "lineargraph_1",
                             "high_0 low_0 dpdisp_0 A_0 B_0 C_0 D_0 Labelpart2"),
                 "90|10|300|100:20|200:80|Not Used|Not Used|0");
        QCOMPARE(bench->session().CurveTable[1][0], (std::array<std::int16_t, 2>{83, 10}));
        QCOMPARE(bench->session().CurveTable[1][3], (std::array<std::int16_t, 2>{200, 80}));
        bench->box().setMagnetAngle(100);
        bench->clearTrace();
        // A blank die holds clamp low, in DAC steps.
        QCOMPARE(dialogShows(*bench, w, "viewoutput_1", "PartsOption_0 tick PercentText_1"),
                 "0|5.01");
        QCOMPARE(bench->trace(), QStringList({"ExitOWIMode(1)", "EnterADCMode(1)",
                                              "SelectOutputChannel(1)", "MeasureOutput(1, 1)"}));
        QCOMPARE(bench->prompts.modalTitles,
                 QStringList({"Advanced Commands", "Linear Graph", "Real Time Output Display"}));
        QCOMPARE(bench->prompts.messages, QStringList());

        // A refused solve shows its message and no graph.
        typeEntries(w, "Level_5=");
        click(w, "lineargraph", 1);
        QCOMPARE(bench->prompts.modalTitles.size(), 3);
        QCOMPARE(bench->prompts.messages, QStringList{"Please noted: Part#2-Level#1 is Empty!"});

        // With one supply both parts are shown; each is solved on its own, Part#2 with its point
        // and slope.
        fresh();
        open(0);
        QCOMPARE(dialogShows(*bench, w, "Advanced", "PartOption_1"), "1");
        typeEntries(w,
                    "Angle_0=100 Level_0=20 Angle_1=200 Level_1=80 Angle_4=10 Level_4=20 "
                    "KforA_1=1");
        QCOMPARE(dialogShows(*bench, w, "lineargraph", "A_1 B_1 C_1"), "10:20|20:30|20:0");
        QCOMPARE(bench->prompts.messages, QStringList());
    }
};

QTEST_MAIN(TwoPartToolsTest)
#include "TwoPartToolsTest.moc"
