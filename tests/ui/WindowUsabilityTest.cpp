// What every main window offers on top of its controls: keyboard and screen-reader use, a size
// that fits a laptop screen and titled message boxes. (The busy cursor, the note after Program
// and captions keeping their mnemonics are checked where those commands are.)
#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QComboBox>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include "support/WindowHarness.h"
#include "ui/dialogs/About.h"
#include "ui/dialogs/RealTimeDisplayBar.h"
#include "ui/dialogs/confirm.h"
#include "ui/dialogs/frmComport.h"
#include "ui/dialogs/frmadvanced.h"
#include "ui/kit/CommandHelp.h"
#include "ui/kit/QtPrompts.h"
#include "ui/windows/MainForm2Parts.h"

using namespace rk31;
using namespace rk31::test;

namespace {

QString accessibleName(QWidget* w) {
    return QAccessible::queryAccessibleInterface(w)->text(QAccessible::Name);
}

}  // namespace

class WindowUsabilityTest : public QObject {
    Q_OBJECT
    std::unique_ptr<Bench> bench;

  private slots:
    void init() { bench = std::make_unique<Bench>(); }
    void cleanup() { bench.reset(); }

    void everyWindowIsUsableWithoutAMouse_data() {
        QTest::addColumn<int>("variant");
        for (int variant = 0; variant <= 6; ++variant) {
            QTest::addRow("/%d", variant) << variant;
        }
    }

    void everyWindowIsUsableWithoutAMouse() {
        QFETCH(int, variant);
        const auto window = bench->window(variant);
        QSet<QString> seen;
        // Every button has a key; one key is one command: within a part, among the window's
        // single buttons, and a part's key never also belongs to a single button.
        QHash<QString, QString> commandOfKey;
        QHash<QString, QString> scopeOfKey;
        for (auto* button : window->findChildren<QAbstractButton*>()) {
            const QString name = button->objectName();
            const QString key = button->shortcut().toString();
            QVERIFY2(!key.isEmpty(), qPrintable(name));
            QVERIFY2(!button->toolTip().isEmpty(), qPrintable(name));
            if (button->text().isEmpty()) {
                QVERIFY2(!accessibleName(button).isEmpty(), qPrintable(name));
            } else {
                QCOMPARE(accessibleName(button), WithoutMnemonic(button->text()));
            }
            QString scope;
            for (QWidget* w = button; w; w = w->parentWidget()) {
                if (w->objectName().startsWith("PartFrame_")) {
                    scope = w->objectName();
                }
            }
            const QString command = name.section('_', 0, 0);
            if (scopeOfKey.contains(key)) {
                const bool otherPart =
                    !scope.isEmpty() && !scopeOfKey[key].isEmpty() && scope != scopeOfKey[key];
                QVERIFY2(otherPart && command == commandOfKey[key],
                         qPrintable(name + " and " + commandOfKey[key] + " share " + key));
            }
            scopeOfKey[key] = scope;
            commandOfKey[key] = command;
            seen << name;
        }
        QVERIFY(seen.contains("connect") && seen.contains("btnAbout"));
        for (auto* frame : window->findChildren<QGroupBox*>()) {
            QCOMPARE(accessibleName(frame), frame->title());
        }
        for (auto* box : window->findChildren<QLineEdit*>()) {
            // A spin box is read as one control; its inner text box is not read on its own.
            QWidget* read = qobject_cast<QAbstractSpinBox*>(box->parentWidget())
                                ? box->parentWidget()
                                : static_cast<QWidget*>(box);
            QVERIFY2(!accessibleName(read).isEmpty(), qPrintable(read->objectName()));
        }
        // Its natural size fits 1280 x 720 less a title bar and a panel; smaller, it scrolls
        // rather than clipping.
        const QSize natural = window->sizeHint();
        QVERIFY2(natural.width() <= 1264 && natural.height() <= 680,
                 qPrintable(QStringLiteral("%1 x %2").arg(natural.width()).arg(natural.height())));
        QVERIFY(window->minimumSizeHint().height() < 400);

        // Ctrl+O and Ctrl+S press Load Settings and Save Settings (both dialogs cancelled).
        window->show();
        QApplication::setActiveWindow(window.get());
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        QTest::keyClick(window.get(), Qt::Key_O, Qt::ControlModifier);
        QTest::keyClick(window.get(), Qt::Key_S, Qt::ControlModifier);
        QCOMPARE(bench->prompts.fileDialogTitles.size(), 2);
    }

    // Alt+P with both parts enabled: Qt alone would only move the focus between the two
    // Power On buttons.
    void aSharedKeyActsOnThePartThatHoldsTheFocus() {
        MainForm2Parts2Src window(bench->app);
        window.show();
        scriptPortChoice(bench->prompts, "COM1");
        click(&window, "connect");
        check(&window, "PartEnable", 0, true);
        check(&window, "PartEnable", 1, true);
        QApplication::setActiveWindow(&window);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        // The focus on Part#2's own button, then in a box of Part#2 (enabled once it is powered).
        for (const auto& [focus, power] :
             {std::pair{"PowerOn_1", "PowerOnChip(1)"}, std::pair{"DP_1", "PowerOffChip(1)"}}) {
            bench->clearTrace();
            QApplication::setActiveWindow(&window);  // the wait window had it
            find(&window, focus)->setFocus();
            QTest::keyClick(&window, Qt::Key_P, Qt::AltModifier);
            QTRY_VERIFY2(bench->trace().contains(power), focus);
            QVERIFY(bench->trace().filter("(0)").isEmpty());
        }
        QVERIFY(find(&window, "PowerOn", 0)->toolTip().contains("acts on the part"));
    }

    // The settings folder, the port that connected and where the window stood, across starts;
    // a settings file dropped on a window loads as Load Settings loads it.
    void theWindowsRememberAcrossStarts() {
        bench.reset();
        QTemporaryDir dir;
        StartSettings settings;
        settings.preferencesFile = dir.filePath("preferences.ini");
        sim::SimConfig config;
        config.programmerPort = 3;
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        const QString profile = dir.filePath("profile.txt");
        {
            Bench first(config, settings);
            auto window = first.window(2);
            auto* base = static_cast<MainWindowBase*>(window.get());
            window->show();
            typeInto(window.get(), "Level", 0, "12.5");
            first.prompts.fileNames = {dir.filePath("profile")};
            click(window.get(), "mSaveAs");
            QCOMPARE(base->notice(), "Settings saved to " + QDir::toNativeSeparators(profile));
            scriptPortChoice(first.prompts, "COM3");
            click(window.get(), "connect");
            QCOMPARE(first.session().ProgrammerConnected, 1);
            window->setGeometry(screen.right() + 500, screen.bottom() + 300, 700, 450);
            window->close();
        }
        Bench second(config, settings);
        auto window = second.window(2);
        auto* base = static_cast<MainWindowBase*>(window.get());
        window->show();
        QVERIFY(QRect(screen).contains(window->geometry()));
        QCOMPARE(window->size(), QSize(700, 450));
        click(window.get(), "mOpen");  // cancelled
        QCOMPARE(second.prompts.suggestedNames, QStringList{dir.path() + '/'});
        QString preselected;
        second.prompts.dialogScripts.push_back([&preselected](QDialog& dialog) {
            preselected = dialog.findChild<QComboBox*>("Port")->currentText();
            dialog.reject();
        });
        click(window.get(), "connect");
        QCOMPARE(preselected, "COM3");

        for (const auto& [file, notice, messages] :
             {std::tuple{profile, "Settings loaded from " + QDir::toNativeSeparators(profile),
                         QStringList()},
              std::tuple{dir.filePath("missing.txt"), QString(),
                         QStringList{"The selected file cannot be found!"}}}) {
            QMimeData data;
            data.setUrls({QUrl::fromLocalFile(file)});
            QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, {});
            QApplication::sendEvent(window.get(), &enter);
            QVERIFY(enter.isAccepted());
            QDropEvent drop({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, {});
            QApplication::sendEvent(window.get(), &drop);
            QCOMPARE(base->notice(), notice);
            QCOMPARE(second.prompts.messages, messages);
        }
        QCOMPARE(textOf(window.get(), "Level", 0), "12.50");
    }

    void aWindowIsKeptWholeOnTheScreen_data() {
        QTest::addColumn<QRect>("wanted");
        QTest::addColumn<QRect>("placed");
        const QRect screen(0, 0, 1366, 728);
        // clang-format off
        QTest::newRow("inside stays") << QRect(100, 100, 800, 500) << QRect(100, 100, 800, 500);
        QTest::newRow("off the right") << QRect(1900, 100, 800, 500) << QRect(558, 100, 800, 500);
        QTest::newRow("above the top") << QRect(10, -400, 800, 500) << QRect(10, 32, 800, 500);
        QTest::newRow("larger than the screen") << QRect(0, 0, 1920, 1080) << QRect(8, 32, 1350, 688);
        // clang-format on
    }

    void aWindowIsKeptWholeOnTheScreen() {
        QFETCH(QRect, wanted);
        QFETCH(QRect, placed);
        QCOMPARE(FitInside(wanted, QRect(0, 0, 1366, 728)), placed);
    }

    // The dialogs' buttons too: a key each, unique in the dialog, read as their captions.
    void everyDialogButtonHasAKey() {
        DeviceSession& session = bench->session();
        About about(session, bench->prompts);
        confirm lock;
        frmComport ports(bench->app.ports(), bench->prompts);
        frmadvanced advanced(session, bench->prompts, bench->pause);
        RealTimeDisplayBar display(session, bench->prompts, bench->pause);
        for (QDialog* dialog :
             std::initializer_list<QDialog*>{&about, &lock, &ports, &advanced, &display}) {
            QSet<QString> keys;
            for (auto* button : dialog->findChildren<QAbstractButton*>()) {
                const QString where = dialog->objectName() + ' ' + button->objectName();
                const QString key = button->shortcut().toString();
                QVERIFY2(!key.isEmpty() && !keys.contains(key), qPrintable(where));
                QVERIFY2(!button->toolTip().isEmpty(), qPrintable(where));
                QCOMPARE(accessibleName(button), WithoutMnemonic(button->text()));
                keys << key;
            }
        }
    }

    void partEnableFollowsAnAssistiveToggle() {
        MainForm2Parts2Src window(bench->app);
        scriptPortChoice(bench->prompts, "COM1");
        click(&window, "connect");
        auto* enable = find<QCheckBox>(&window, "PartEnable", 0);
        QAccessibleActionInterface* actions =
            QAccessible::queryAccessibleInterface(enable)->actionInterface();
        QVERIFY(actions);
        actions->doAction(QAccessibleActionInterface::toggleAction());
        QVERIFY(enable->isChecked());
        QVERIFY(usable(&window, "PowerOn", 0));
        actions->doAction(QAccessibleActionInterface::toggleAction());
        QVERIFY(!usable(&window, "PowerOn", 0));
    }

    void tabOrderRunsThroughPart1First() {
        MainForm2Parts2Src window(bench->app);
        QStringList order;
        QWidget* start = find(&window, "connect");
        for (QWidget* w = start->nextInFocusChain(); w != start; w = w->nextInFocusChain()) {
            order << w->objectName();
        }
        const auto at = [&order](const char* name) { return order.indexOf(name); };
        QVERIFY(at("VDD_0") < at("DP_0") && at("DP_0") < at("Angle_0"));
        QVERIFY(at("Angle_0") < at("Angle_1") && at("Level_3") < at("VDD_1"));
        QVERIFY(at("Angle_7") > at("VDD_1"));
    }

    void messageBoxesCarryTheTitleAndAFittingIcon() {
        QtPrompts prompts;
        for (const auto& [text, icon] :
             {std::pair{"Error: Not in OWI mode", QMessageBox::Warning},
              {"Failed in programming device", QMessageBox::Warning},
              {"Part#1: : DP Input cannot be less than 0! Using 0 instead!",
               QMessageBox::Information}}) {
            QString shown;
            QTimer::singleShot(0, [&shown] {
                if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                    shown = box->windowTitle() + ' ' + QString::number(box->icon());
                    box->accept();
                }
            });
            prompts.message(text);
            QCOMPARE(shown, "RK31 GUI - QZ7734 " + QString::number(icon));
        }
    }
};

QTEST_MAIN(WindowUsabilityTest)
#include "WindowUsabilityTest.moc"
