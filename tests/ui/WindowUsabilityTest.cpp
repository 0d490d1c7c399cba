// What every main window offers on top of its controls: keyboard and screen-reader use, a size
// that fits a laptop screen, the busy cursor during device work and the note after Program.
#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

#include "ui/PointHarness.h"
#include "ui/kit/CommandHelp.h"
#include "ui/kit/QtPrompts.h"
#include "ui/windows/MainForm2Parts.h"
#include "ui/windows/Startup.h"

using namespace rk31;
using namespace rk31::test;

namespace {

QAccessibleInterface* accessible(QWidget* w) {
    return QAccessible::queryAccessibleInterface(w);
}

}  // namespace

class WindowUsabilityTest : public QObject {
    Q_OBJECT
  private slots:
    void init() { bench = std::make_unique<Bench>(); }
    void cleanup() { bench.reset(); }

    void everyWindow_data();
    void everyCommandHasAMnemonicAndATooltip();
    void everyCommandHasAMnemonicAndATooltip_data() { everyWindow_data(); }
    void groupsAndBoxesAreNamedForScreenReaders();
    void groupsAndBoxesAreNamedForScreenReaders_data() { everyWindow_data(); }
    void naturalSizeFitsALaptopScreen();
    void naturalSizeFitsALaptopScreen_data() { everyWindow_data(); }
    void mnemonicsSurviveACaptionChange();
    void partEnableFollowsAnAssistiveToggle();
    void labelsGreyWithTheirBoxes();
    void tabOrderRunsThroughPart1First();
    void busyCursorWhileDeviceWorkRuns();
    void programLeavesANoteUntilTheNextCommand();
    void messageBoxesCarryTheTitleAndAFittingIcon();

  private:
    std::unique_ptr<Bench> bench;
};

void WindowUsabilityTest::everyWindow_data() {
    QTest::addColumn<int>("variant");
    for (int variant = 0; variant <= 6; ++variant) {
        QTest::addRow("/%d", variant) << variant;
    }
}

void WindowUsabilityTest::everyCommandHasAMnemonicAndATooltip() {
    QFETCH(int, variant);
    const auto window = bench->window(variant);
    QSet<QString> seen;
    for (auto* button : window->findChildren<QAbstractButton*>()) {
        if (button->text().isEmpty()) {
            continue;  // the HYS arrows carry an accessible name instead
        }
        const QString caption = WithoutMnemonic(button->text());
        QVERIFY2(button->text().contains(QRegularExpression("&[^&]")),
                 qPrintable(button->objectName()));
        QCOMPARE(accessible(button)->text(QAccessible::Name), caption);
        if (qobject_cast<QPushButton*>(button)) {
            QVERIFY2(!button->toolTip().isEmpty(), qPrintable(button->objectName()));
        }
        seen << button->objectName();
    }
    QVERIFY(seen.contains("connect") && seen.contains("btnAbout"));
}

void WindowUsabilityTest::groupsAndBoxesAreNamedForScreenReaders() {
    QFETCH(int, variant);
    const auto window = bench->window(variant);
    for (auto* frame : window->findChildren<QGroupBox*>()) {
        QCOMPARE(accessible(frame)->text(QAccessible::Name), frame->title());
    }
    for (auto* box : window->findChildren<QLineEdit*>()) {
        QVERIFY2(!accessible(box)->text(QAccessible::Name).isEmpty(),
                 qPrintable(box->objectName()));
    }
}

void WindowUsabilityTest::naturalSizeFitsALaptopScreen() {
    QFETCH(int, variant);
    const auto window = bench->window(variant);
    // 1280 x 720 less a title bar and a panel.
    const QSize natural = window->sizeHint();
    QVERIFY2(natural.width() <= 1264 && natural.height() <= 680,
             qPrintable(QStringLiteral("%1 x %2").arg(natural.width()).arg(natural.height())));
    // Smaller than that, it scrolls rather than clipping.
    QVERIFY(window->minimumSizeHint().height() < 400);
}

void WindowUsabilityTest::mnemonicsSurviveACaptionChange() {
    auto window = openConnected<MainForm2Parts2Src>(*bench, false);
    auto* connect = find<QAbstractButton>(window.get(), "connect");
    QCOMPARE(connect->text(), QStringLiteral("Disco&nnect"));
    QCOMPARE(textOf(window.get(), "connect"), QStringLiteral("Disconnect"));
    click(window.get(), "PowerOn", 0);
    QCOMPARE(find<QAbstractButton>(window.get(), "PowerOn", 0)->text(),
             QStringLiteral("&Power Off"));
}

void WindowUsabilityTest::partEnableFollowsAnAssistiveToggle() {
    auto window = std::make_unique<MainForm2Parts2Src>(bench->app);
    scriptPortChoice(bench->prompts, "COM1");
    click(window.get(), "connect");
    auto* enable = find<QCheckBox>(window.get(), "PartEnable", 0);
    QAccessibleActionInterface* actions = accessible(enable)->actionInterface();
    QVERIFY(actions);
    actions->doAction(QAccessibleActionInterface::toggleAction());
    QVERIFY(enable->isChecked());
    QVERIFY(find(window.get(), "PowerOn", 0)->isEnabled());
    actions->doAction(QAccessibleActionInterface::toggleAction());
    QVERIFY(!find(window.get(), "PowerOn", 0)->isEnabled());
}

void WindowUsabilityTest::labelsGreyWithTheirBoxes() {
    auto window = std::make_unique<MainForm2Parts2Src>(bench->app);
    QWidget* w = window.get();
    // Offline: the parts' boxes are disabled, and so are the labels naming them.
    for (const char* box : {"DP", "VDD", "op"}) {
        QWidget* edit = find(w, box, 0);
        QLabel* label = nullptr;
        for (auto* l : w->findChildren<QLabel*>()) {
            if (l->buddy() == edit) {
                label = l;
            }
        }
        QVERIFY(label);
        QCOMPARE(label->isEnabled(), edit->isEnabled());
    }
    auto* pwm = find(w, "PWMFreq", 0);
    QVERIFY(!pwm->isEnabled());
}

void WindowUsabilityTest::tabOrderRunsThroughPart1First() {
    MainForm2Parts2Src window(bench->app);
    QStringList order;
    QWidget* start = find(&window, "connect");
    for (QWidget* w = start->nextInFocusChain(); w != start; w = w->nextInFocusChain()) {
        order << w->objectName();
    }
    const auto at = [&order](const char* name) { return order.indexOf(QString::fromLatin1(name)); };
    QVERIFY(at("VDD_0") < at("DP_0") && at("DP_0") < at("Angle_0"));
    QVERIFY(at("Angle_0") < at("Angle_1") && at("Level_3") < at("VDD_1"));
    QVERIFY(at("Angle_7") > at("VDD_1"));
}

void WindowUsabilityTest::busyCursorWhileDeviceWorkRuns() {
    auto window = openConnected<MainForm2Parts2Src>(*bench, true);
    QList<int> shapes;
    bench->prompts.onMessage = [&shapes](const QString&) {
        shapes << (QApplication::overrideCursor() ? QApplication::overrideCursor()->shape() : -1);
    };
    // No points: the solver refuses with a message while Program holds the busy cursor.
    click(window.get(), "btnconfigsolver", 0);
    QVERIFY(!bench->prompts.messages.isEmpty());
    QCOMPARE(shapes.first(), static_cast<int>(Qt::WaitCursor));
    QVERIFY(!QApplication::overrideCursor());
}

void WindowUsabilityTest::programLeavesANoteUntilTheNextCommand() {
    auto window = openConnected<MainForm2Parts2Src>(*bench, true);
    QWidget* w = window.get();
    for (const auto& [box, text] :
         std::vector<std::pair<int, const char*>>{{0, "100"}, {1, "200"}}) {
        typeInto(w, "Angle", box, text);
    }
    typeInto(w, "Level", 0, "20");
    typeInto(w, "Level", 1, "80");
    click(w, "btnconfigsolver", 0);
    QVERIFY(bench->prompts.messages.isEmpty());
    QVERIFY(window->notice().startsWith(QStringLiteral("Part#1 programmed \u2014 ")));
    // The specified status line is left as it is.
    QVERIFY(textOf(w, "status").startsWith(QStringLiteral("Ready: Connected")));
    click(w, "btnreadangle", 0);
    QVERIFY(window->notice().isEmpty());
    // A failed Program leaves no note.
    bench->box().config.eepromFail = sim::kPart1;
    click(w, "btnconfigsolver", 0);
    QCOMPARE(bench->prompts.messages, QStringList{"Failed in programming device"});
    QVERIFY(window->notice().isEmpty());
}

void WindowUsabilityTest::messageBoxesCarryTheTitleAndAFittingIcon() {
    const struct {
        const char* text;
        QMessageBox::Icon icon;
    } cases[] = {
        {"Error: Not in OWI mode", QMessageBox::Warning},
        {"Failed in programming device", QMessageBox::Warning},
        {"Part#1: : DP Input cannot be less than 0! Using 0 instead!", QMessageBox::Information},
    };
    QtPrompts prompts;
    for (const auto& c : cases) {
        QString title;
        QMessageBox::Icon icon = QMessageBox::NoIcon;
        QTimer::singleShot(0, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            QVERIFY(box);
            title = box->windowTitle();
            icon = box->icon();
            box->accept();
        });
        prompts.message(QString::fromLatin1(c.text));
        QCOMPARE(title, QStringLiteral("RK31 GUI - QZ7734"));
        QCOMPARE(icon, c.icon);
    }
}

QTEST_MAIN(WindowUsabilityTest)
#include "WindowUsabilityTest.moc"
