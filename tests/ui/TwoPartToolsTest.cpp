// Angle capture, switch output, settings files and the windows opened from the two-part windows.
#include <QTemporaryDir>
#include <QtTest>

#include "device/ModeChange.h"
#include "procedures/twopart/AngleCommands.h"
#include "procedures/twopart/WindowCommands.h"
#include "support/WindowHarness.h"
#include "ui/dialogs/RealTimeDisplayBar.h"
#include "ui/windows/MainForm2Parts.h"

using namespace rk31;
using namespace rk31::test;

namespace {

// Every control the settings file carries, as text, for comparing two windows.
QStringList settingsOf(QWidget* w) {
    QStringList values;
    for (int part = 0; part < 2; ++part) {
        for (const char* box : {"VDD", "DP", "clamphigh", "clamplow", "KforA", "op", "hys"}) {
            values << textOf(w, box, part);
        }
        for (int k = 0; k < 4; ++k) {
            values << textOf(w, "Angle", part * 4 + k) << textOf(w, "Level", part * 4 + k);
        }
        values << QString::number(find<QCheckBox>(w, "clockwise", part)->isChecked())
               << QString::number(find<QCheckBox>(w, "Kpolarity", part)->isChecked());
        for (const char* list : {"OutMode", "PWMFreq", "PWMPolarity"}) {
            values << QString::number(find<QComboBox>(w, list, part)->currentIndex());
        }
    }
    return values;
}

void selectListItem(QWidget* w, const QString& list, int part, int index) {
    auto* combo = find<QComboBox>(w, list, part);
    combo->setCurrentIndex(index);
    emit combo->activated(index);
}

}  // namespace

class TwoPartToolsTest : public QObject {
    Q_OBJECT
  private slots:
    void init() { bench = std::make_unique<Bench>(); }
    void cleanup() { bench.reset(); }

    void angleCapture_data();
    void angleCapture();
    void angleCaptureMovesAPartInAdcModeToOwiMode();
    void angleCaptureRefusesAPartThatCannotReachOwiMode();
    void oneSupplyCapturesWithBothPartsInOwiMode();
    void switchOutputControls();
    void pwmListsFollowTheOutputMode();
    void settingsSavedInOneWindowLoadInTheOther();
    void settingsSaveAsksBeforeOverwriting();
    void settingsLoadStopsAtTheFirstError_data();
    void settingsLoadStopsAtTheFirstError();
    void settingsLoadRevalidates();
    void advancedOpensForThePart();
    void advancedRefusesALockedPart();
    void linearGraph();
    void linearGraphBothParts();
    void viewOutputShowsTheMeasuredOutput();
    void viewOutputNeedsAdcMode();

  private:
    std::unique_ptr<Bench> bench;
};

void TwoPartToolsTest::angleCapture_data() {
    QTest::addColumn<double>("magnet");
    QTest::addColumn<QString>("readAngle");
    QTest::addColumn<QString>("dp");
    QTest::addColumn<float>("dpValue");
    QTest::newRow("10.004") << 10.004 << "10.00"
                            << "190.00" << 190.0f;
    QTest::newRow("180") << 180.0 << "180.00"
                         << "0.00" << 0.0f;
    QTest::newRow("359.5") << 359.5 << "359.50"
                           << "179.50" << 179.5f;
    QTest::newRow("200.125") << 200.125 << "200.13"
                             << "20.13" << 20.13f;
}

void TwoPartToolsTest::angleCapture() {
    QFETCH(double, magnet);
    QFETCH(QString, readAngle);
    QFETCH(QString, dp);
    QFETCH(float, dpValue);
    auto window = openConnected<MainForm2Parts2Src>(*bench, true);
    QWidget* w = window.get();
    bench->box().setMagnetAngle(magnet);
    click(w, "btnreadangle", 1);
    QCOMPARE(textOf(w, "Rangle", 1), readAngle);
    click(w, "GetDP", 1);
    QCOMPARE(textOf(w, "DP", 1), dp);
    QCOMPARE(window->context().params[1].DP, dpValue);
    click(w, "Setpoint", 6);  // Part#2, point C
    QCOMPARE(textOf(w, "Angle", 6), readAngle);
    QCOMPARE(window->context().params[1].Angle[2], readAngle.toFloat());
    QCOMPARE(bench->trace(), QStringList({"ReadAngle(1)", "ReadAngle(1)", "ReadAngle(1)"}));
    QVERIFY(bench->prompts.messages.isEmpty());
}

void TwoPartToolsTest::angleCaptureMovesAPartInAdcModeToOwiMode() {
    auto window = openConnected<MainForm2Parts2Src>(*bench, true);
    ToADCMode(window->context(), 0);
    bench->clearTrace();
    bench->box().setMagnetAngle(42);
    click(window.get(), "Setpoint", 1);
    QCOMPARE(bench->trace(), QStringList({"EnterOWIMode(0)", "ReadAngle(0)"}));
    QCOMPARE(textOf(window.get(), "Angle", 1), QStringLiteral("42.00"));
}

void TwoPartToolsTest::angleCaptureRefusesAPartThatCannotReachOwiMode() {
    auto window = openConnected<MainForm2Parts2Src>(*bench, true);
    WindowContext& ctx = window->context();
    ToADCMode(ctx, 0);
    ctx.session.CommLocked[0] = true;
    bench->clearTrace();
    GetDPMidPointCommand(ctx, 0);
    QCOMPARE(bench->prompts.messages,
             QStringList({"Failed to set OWI mode due to CommLock!...Return to ADC mode!",
                          "Error: Not in OWI mode"}));
    QCOMPARE(textOf(window.get(), "DP", 0), QStringLiteral("260.00"));
    QVERIFY(!bench->trace().contains("ReadAngle(0)"));
}

void TwoPartToolsTest::oneSupplyCapturesWithBothPartsInOwiMode() {
    auto window = openConnected<MainForm2Parts1Src>(*bench, true);
    click(window.get(), "viewoutput");  // both parts to ADC mode; the display closes at once
    bench->clearTrace();
    bench->box().setMagnetAngle(300);
    click(window.get(), "btnreadangle", 1);
    QCOMPARE(bench->trace(), QStringList({"EnterOWIMode(3)", "ReadAngle(1)"}));
    QCOMPARE(textOf(window.get(), "Rangle", 1), QStringLiteral("300.00"));
}

void TwoPartToolsTest::switchOutputControls() {
    auto window = openConnected<MainForm2Parts2Src>(*bench, true);
    QWidget* w = window.get();
    typeInto(w, "hys", 0, "2.125");
    QCOMPARE(textOf(w, "hys", 0), QStringLiteral("2.25"));
    typeInto(w, "hys", 0, "16");
    QCOMPARE(bench->prompts.messages,
             QStringList{"Part#1: HYS  Input cannot be more than 15.75! Using 15.75 instead!"});
    typeInto(w, "hys", 0, "15.6");
    click(w, "hysup", 0);
    QCOMPARE(textOf(w, "hys", 0), QStringLiteral("15.75"));
    typeInto(w, "hys", 1, "0.1");
    QCOMPARE(textOf(w, "hys", 1), QStringLiteral("0.00"));
    click(w, "hysdown", 1);
    QCOMPARE(textOf(w, "hys", 1), QStringLiteral("0"));
    typeInto(w, "op", 1, "360");
    QCOMPARE(textOf(w, "op", 1), QStringLiteral("359.99"));
    QCOMPARE(bench->prompts.messages.last(),
             QStringLiteral(
                 "Part#2: OP  Input cannot be more than or equal to 360! Using 359.99 instead!"));
    bench->box().setMagnetAngle(45.678);
    click(w, "swobtn", 1);
    QCOMPARE(textOf(w, "op", 1), QStringLiteral("45.68"));
    QCOMPARE(bench->trace(), QStringList{"ReadAngle(1)"});
}

void TwoPartToolsTest::pwmListsFollowTheOutputMode() {
    auto window = openConnected<MainForm2Parts2Src>(*bench, true);
    QWidget* w = window.get();
    QVERIFY(!usable(w, "PWMFreq", 0) && !usable(w, "PWMPolarity", 0));
    selectListItem(w, "OutMode", 0, 1);
    QVERIFY(usable(w, "PWMFreq", 0) && usable(w, "PWMPolarity", 0));
    QVERIFY(!usable(w, "PWMFreq", 1));
    selectListItem(w, "OutMode", 0, 0);
    QVERIFY(!usable(w, "PWMFreq", 0) && !usable(w, "PWMPolarity", 0));
}

void TwoPartToolsTest::settingsSavedInOneWindowLoadInTheOther() {
    QTemporaryDir dir;
    const QString name = dir.filePath("profile");
    {
        auto window = openConnected<MainForm2Parts2Src>(*bench, true);
        QWidget* w = window.get();
        const std::vector<std::tuple<const char*, int, const char*>> typed = {
            {"DP", 0, "300"},      {"clamphigh", 0, "90"}, {"clamplow", 1, "12.5"},
            {"Angle", 0, "100"},   {"Level", 0, "20"},     {"Angle", 1, "200"},
            {"Level", 1, "80"},    {"Angle", 6, "33.3"},   {"Level", 7, "99"},
            {"KforA", 1, "-0.25"}, {"op", 1, "45"},        {"hys", 0, "2.5"}};
        for (const auto& [box, index, text] : typed) {
            typeInto(w, box, index, text);
        }
        check(w, "Kpolarity", 1, true);
        check(w, "clockwise", 0, true);
        selectListItem(w, "OutMode", 1, 1);
        find<QComboBox>(w, "PWMFreq", 1)->setCurrentIndex(3);
        bench->prompts.fileNames.push_back(name);
        click(w, "mSaveAs");
        QCOMPARE(bench->prompts.fileDialogTitles, QStringList{"Select file name..."});
        QVERIFY(QFile::exists(name + ".txt"));
        const QStringList saved = settingsOf(w);

        bench->prompts.messages.clear();
        MainForm2Parts1Src other(bench->app);
        bench->prompts.fileNames.push_back(name + ".txt");
        click(&other, "mOpen");
        QCOMPARE(bench->prompts.messages, QStringList());
        QCOMPARE(settingsOf(&other), saved);
        QCOMPARE(other.context().params[1].Slope, -0.25f);
        QCOMPARE(other.context().params[1].Angle[2], 33.3f);
        // The loaded output mode took effect (the list waits only for its frame to be enabled).
        QVERIFY(!find(&other, "PWMFreq", 1)->testAttribute(Qt::WA_ForceDisabled));
    }
    QFile file(name + ".txt");
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray content = file.readAll();
    QVERIFY(content.startsWith(
        "Part #1:\r\nVDD is(V):4.996\r\nDirection is:CW\r\nDP is(deg):300.00\r\n"));
    QVERIFY(content.endsWith("PWMFreq is:3\r\nPWMPolarity is0\r\n"));
    QCOMPARE(content.count("\r\n"), 42);
}

void TwoPartToolsTest::settingsSaveAsksBeforeOverwriting() {
    QTemporaryDir dir;
    const QString path = dir.filePath("a.txt");
    QFile old(path);
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write("old content\r\n");
    old.close();
    MainForm2Parts2Src window(bench->app);
    bench->prompts.fileNames.push_back(path);
    bench->prompts.answers.push_back(false);
    click(&window, "mSaveAs");
    QCOMPARE(bench->prompts.questions,
             QStringList{"The file with the same name already exists, would you override?"});
    QVERIFY(old.open(QIODevice::ReadOnly));
    QCOMPARE(old.readAll(), QByteArray("old content\r\n"));
    old.close();
    // The dialog offers the last chosen name again.
    bench->prompts.fileNames.push_back(path);
    bench->prompts.answers.push_back(true);
    click(&window, "mSaveAs");
    QCOMPARE(bench->prompts.suggestedNames.last(), path);
    QVERIFY(old.open(QIODevice::ReadOnly));
    QCOMPARE(old.readAll().count("\r\n"), 42);
}

void TwoPartToolsTest::settingsLoadStopsAtTheFirstError_data() {
    QTest::addColumn<bool>("shortened");  // else line 19 holds a letter
    QTest::addColumn<int>("error");
    QTest::addColumn<QString>("dp2");  // part 2's DP lies beyond line 19
    QTest::newRow("41 lines") << true << 62 << "123.00";
    QTest::newRow("letter in line 19") << false << 13 << "260.00";
}

void TwoPartToolsTest::settingsLoadStopsAtTheFirstError() {
    // The window keeps what was read before the error and runs no validation.
    QFETCH(bool, shortened);
    QFETCH(int, error);
    QFETCH(QString, dp2);
    QTemporaryDir dir;
    const QString path = dir.filePath("profile.txt");
    MainForm2Parts2Src source(bench->app);
    typeInto(&source, "DP", 0, "111");
    typeInto(&source, "DP", 1, "123");
    bench->prompts.fileNames.push_back(path);
    click(&source, "mSaveAs");
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QByteArray content = file.readAll();
    if (shortened) {
        content = content.left(content.lastIndexOf("PWMPolarity is"));
    } else {
        content.replace("OutMode is:0\r\nPWMFreq", "OutMode is:x\r\nPWMFreq");
    }
    file.resize(0);
    file.write(content);
    file.close();

    MainForm2Parts2Src window(bench->app);
    typeInto(&window, "DP", 0, "5");
    bench->prompts.fileNames.push_back(path);
    click(&window, "mOpen");
    QCOMPARE(bench->prompts.messages,
             QStringList{QStringLiteral("Error with number:%1 occurs! Please check the "
                                        "integrity of profile file!")
                             .arg(error)});
    QCOMPARE(textOf(&window, "DP", 0), QStringLiteral("111.00"));
    QCOMPARE(textOf(&window, "DP", 1), dp2);
    QCOMPARE(window.context().params[0].DP, 5.0f);
}

void TwoPartToolsTest::settingsLoadRevalidates() {
    QTemporaryDir dir;
    const QString path = dir.filePath("p.txt");
    MainForm2Parts2Src source(bench->app);
    bench->prompts.fileNames.push_back(path);
    click(&source, "mSaveAs");
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QStringList content = QString::fromUtf8(file.readAll()).split("\r\n");
    file.close();
    content[3] = "DP is(deg):400";
    content[1] = "vdd IS(v):4.9";  // a misspelt label: only the position counts
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(content.join("\n").toUtf8());  // LF-only lines
    file.close();
    MainForm2Parts2Src window(bench->app);
    bench->prompts.fileNames.push_back(path);
    click(&window, "mOpen");
    QCOMPARE(bench->prompts.messages,
             QStringList{
                 "Part#1: : DP Input cannot be more than or equal to 360! Using 359.99 instead!"});
    QCOMPARE(textOf(&window, "DP", 0), QStringLiteral("359.99"));
    QCOMPARE(textOf(&window, "VDD", 0), QStringLiteral("4.900"));
}

void TwoPartToolsTest::advancedOpensForThePart() {
    auto window = openConnected<MainForm2Parts2Src>(*bench, true);
    bool optionsEnabled = true;
    QString word;
    bench->prompts.dialogScripts.push_back([&](QDialog& dialog) {
        optionsEnabled = dialog.findChild<QWidget*>("PartOption_0")->isEnabled();
        dialog.findChild<QAbstractButton*>("memread")->click();
        word = dialog.findChild<QLineEdit*>("out_19")->text();
    });
    click(window.get(), "Advanced", 1);
    QCOMPARE(bench->prompts.modalTitles, QStringList{"Advanced Commands"});
    QVERIFY(!optionsEnabled);
    QCOMPARE(word, QStringLiteral("36"));  // Part#2's identification word

    MainForm2Parts1Src both(bench->app);
    scriptPortChoice(bench->prompts, "COM1");
    click(&both, "connect");
    click(&both, "PowerOn");
    bench->prompts.dialogScripts.push_back([&](QDialog& dialog) {
        optionsEnabled = dialog.findChild<QWidget*>("PartOption_1")->isEnabled();
    });
    click(&both, "Advanced");
    QVERIFY(optionsEnabled);
}

void TwoPartToolsTest::advancedRefusesALockedPart() {
    auto window = openConnected<MainForm2Parts2Src>(*bench, true);
    WindowContext& ctx = window->context();
    ToADCMode(ctx, 0);
    ctx.session.CommLocked[0] = true;
    AdvancedCommand(ctx, 0);
    QCOMPARE(bench->prompts.messages.last(), QStringLiteral("Error: Not in OWI Mode!"));
    QVERIFY(bench->prompts.modalTitles.isEmpty());
}

void TwoPartToolsTest::linearGraph() {
    MainForm2Parts2Src offline(bench->app);
    LinearGraphCommand(offline.context(), 0);
    QCOMPARE(bench->prompts.messages, QStringList{"Error: in Offline mode"});

    auto window = openConnected<MainForm2Parts2Src>(*bench, true);
    QWidget* w = window.get();
    for (const auto& [box, index, text] :
         std::vector<std::tuple<const char*, int, const char*>>{{"Angle", 4, "100"},
                                                                {"Level", 4, "20"},
                                                                {"Angle", 5, "200"},
                                                                {"Level", 5, "80"},
                                                                {"clamplow", 1, "10"},
                                                                {"clamphigh", 1, "90"},
                                                                {"DP", 1, "300"}}) {
        typeInto(w, box, index, text);
    }
    QStringList values;
    bool secondColumn = true;
    bench->prompts.dialogScripts.push_back([&](QDialog& graph) {
        for (const char* name : {"high_0", "low_0", "dpdisp_0", "A_0", "B_0", "C_0", "D_0"}) {
            values << graph.findChild<QLineEdit*>(name)->text();
        }
        secondColumn = !graph.findChild<QWidget*>("Labelpart2")->isHidden();
    });
    click(w, "lineargraph", 1);
    QCOMPARE(bench->prompts.modalTitles, QStringList{"Linear Graph"});
    QCOMPARE(values, QStringList({"90", "10", "300", "100:20", "200:80", "Not Used", "Not Used"}));
    QVERIFY(!secondColumn);
    const CurveRows& curve = bench->session().CurveTable[1];
    QCOMPARE(curve[0], (std::array<std::int16_t, 2>{83, 10}));
    QCOMPARE(curve[3], (std::array<std::int16_t, 2>{200, 80}));

    // A refused solve shows its message and no graph.
    bench->prompts.modalTitles.clear();
    typeInto(w, "Level", 5, "");
    click(w, "lineargraph", 1);
    QVERIFY(bench->prompts.modalTitles.isEmpty());
    QCOMPARE(bench->prompts.messages.last(),
             QStringLiteral("Please noted: Part#2-Level#1 is Empty!"));
}

void TwoPartToolsTest::linearGraphBothParts() {
    auto window = openConnected<MainForm2Parts1Src>(*bench, true);
    QWidget* w = window.get();
    for (const auto& [box, index, text] :
         std::vector<std::tuple<const char*, int, const char*>>{{"Angle", 0, "100"},
                                                                {"Level", 0, "20"},
                                                                {"Angle", 1, "200"},
                                                                {"Level", 1, "80"},
                                                                {"Angle", 4, "10"},
                                                                {"Level", 4, "20"},
                                                                {"KforA", 1, "1"}}) {
        typeInto(w, box, index, text);
    }
    QStringList second;
    bench->prompts.dialogScripts.push_back([&](QDialog& graph) {
        for (const char* name : {"A_1", "B_1", "C_1"}) {
            second << graph.findChild<QLineEdit*>(name)->text();
        }
    });
    click(w, "lineargraph");
    QCOMPARE(bench->prompts.messages, QStringList());
    // Each part is solved on its own here: Part#2 takes its point and slope.
    QCOMPARE(second, QStringList({"10:20", "20:30", "Not Used"}).mid(0, 2) + QStringList{"20:0"});
}

void TwoPartToolsTest::viewOutputShowsTheMeasuredOutput() {
    auto window = openConnected<MainForm2Parts2Src>(*bench, true);
    bench->box().setMagnetAngle(100);
    QString percent;
    bool optionEnabled = true;
    bench->prompts.dialogScripts.push_back([&](QDialog& dialog) {
        optionEnabled = dialog.findChild<QWidget*>("PartsOption_0")->isEnabled();
        static_cast<RealTimeDisplayBar&>(dialog).Timer1Tick();
        percent = dialog.findChild<QLineEdit*>("PercentText_1")->text();
    });
    click(window.get(), "viewoutput", 1);
    QCOMPARE(bench->prompts.modalTitles, QStringList{"Real Time Output Display"});
    QVERIFY(!optionEnabled);
    QCOMPARE(percent, QStringLiteral("5.01"));  // a blank die holds clamp low, in DAC steps
    QCOMPARE(bench->trace(), QStringList({"ExitOWIMode(1)", "EnterADCMode(1)",
                                          "SelectOutputChannel(1)", "MeasureOutput(1, 1)"}));
}

void TwoPartToolsTest::viewOutputNeedsAdcMode() {
    auto window = openConnected<MainForm2Parts2Src>(*bench, true);
    WindowContext& ctx = window->context();
    ctx.session.ChipState[0] = 7;
    ViewOutputCommand(ctx, 0);
    QCOMPARE(bench->prompts.messages, QStringList{"Error: Not in ADC mode"});
    QVERIFY(bench->prompts.modalTitles.isEmpty());
}

QTEST_MAIN(TwoPartToolsTest)
#include "TwoPartToolsTest.moc"
