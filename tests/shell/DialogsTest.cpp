#include <QLabel>
#include <QPushButton>
#include <QtTest>

#include "core/Services.h"
#include "shell/DeviceSession.h"
#include "shell/widgets/About.h"
#include "shell/widgets/confirm.h"
#include "shell/widgets/waitform.h"
#include "support/ScriptedPrompts.h"

using namespace rk31;

class ShellDialogsTest : public QObject {
    Q_OBJECT

    test::ScriptedPrompts prompts;
    test::RecordingPause pause;
    std::unique_ptr<ScopedServices> services;

    template <typename T>
    static T* child(QWidget& parent, const char* name) {
        return parent.findChild<T*>(QString::fromLatin1(name));
    }

  private slots:
    void init() {
        prompts.clear();
        DeviceSession::instance().resetToFreshProcess();
        services = std::make_unique<ScopedServices>(Services{&prompts, &pause, nullptr});
    }
    void cleanup() { services.reset(); }

    void confirmSelection_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<bool>("selection");
        QTest::newRow("Confirm") << QStringLiteral("yes") << true;
        QTest::newRow("Cancel") << QStringLiteral("no") << false;
        QTest::newRow("close box") << QString() << false;
    }
    void confirmSelection() {
        QFETCH(QString, button);
        QFETCH(bool, selection);
        confirm dialog;
        QCOMPARE(dialog.windowTitle(), QStringLiteral("RK28 GUI - QZ7734"));
        // A previous showing was confirmed: every showing starts from false again.
        prompts.dialogScripts.push_back([](QDialog& d) { child<QPushButton>(d, "yes")->click(); });
        prompts.runModal(dialog);
        QVERIFY(dialog.CheckSelection());

        prompts.dialogScripts.push_back([&](QDialog& d) {
            QVERIFY(!dialog.CheckSelection());
            if (!button.isEmpty()) {
                d.findChild<QPushButton*>(button)->click();
                QVERIFY(!d.isVisible());
            }
        });
        prompts.runModal(dialog);
        QCOMPARE(dialog.CheckSelection(), selection);
    }

    void aboutShowsHardwareVersionAndHides() {
        About box;
        box.Init(QStringLiteral("0.0.0"));
        box.show();
        QCOMPARE(child<QLabel>(box, "HWversion")->text(),
                 QStringLiteral("Hardware Version: 0.0.0"));
        child<QPushButton>(box, "Command1")->click();
        QVERIFY(!box.isVisible());
    }

    void aboutReadoutBeforeAnyCalibration() {
        About box;
        box.show();
        auto* hidden = child<QLabel>(box, "debugonly");
        QCOMPARE(hidden->text(), QStringLiteral("   "));
        QTest::mouseClick(hidden, Qt::LeftButton);
        QCOMPARE(
            prompts.messages,
            QStringList{"sysoffset is: 0; K(0)&B(0): 0.2777778 & 0; K(1)&B(1): 0.2777778 & 0 !"});
    }

    void aboutReadoutAfterCalibration() {
        DeviceSession& session = DeviceSession::instance();
        session.K = {0.25f, 12345678.0f};
        session.B = {-1.5f, 0.00001f};
        QCOMPARE(CalibrationReadoutText(session),
                 QStringLiteral("sysoffset is: 0; K(0)&B(0): 0.25 & -1.5; "
                                "K(1)&B(1): 1.234568E+07 & 1E-05 !"));
    }

    void waitformIgnoresCloseRequestsUntilUnloaded() {
        waitform wait;
        wait.Init(QStringLiteral("Part#1: Programming..."));
        wait.ShowModeless();
        QVERIFY(wait.windowTitle().isEmpty());
        QVERIFY(!wait.isModal());
        QCOMPARE(child<QLabel>(wait, "Label1")->text(), QStringLiteral("Part#1: Programming..."));

        QVERIFY(!wait.close());
        QTest::keyClick(&wait, Qt::Key_Escape);
        QVERIFY(wait.isVisible());

        wait.TextChange(QStringLiteral("Verifying..."));
        QCOMPARE(child<QLabel>(wait, "Label1")->text(), QStringLiteral("Verifying..."));
        wait.unload();
        QVERIFY(!wait.isVisible());
    }
};

QTEST_MAIN(ShellDialogsTest)
#include "DialogsTest.moc"
