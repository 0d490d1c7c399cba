#include <QLabel>
#include <QPushButton>
#include <QtTest>

#include "support/WindowHarness.h"
#include "ui/dialogs/About.h"
#include "ui/dialogs/waitform.h"

using namespace rk31;

// The windows' tests open these dialogs; here is what they do not reach.
class ShellDialogsTest : public QObject {
    Q_OBJECT

  private slots:
    void aboutCalibrationReadout() {
        test::Bench bench;
        About box(bench.session(), bench.prompts);
        box.show();
        auto* hidden = box.findChild<QLabel*>("debugonly");
        QTest::mouseClick(hidden, Qt::LeftButton);
        QCOMPARE(
            bench.prompts.messages,
            QStringList{"sysoffset is: 0; K(0)&B(0): 0.2777778 & 0; K(1)&B(1): 0.2777778 & 0 !"});
        box.findChild<QPushButton*>("Command1")->click();
        QVERIFY(!box.isVisible());

        bench.session().K = {0.25f, 12345678.0f};
        bench.session().B = {-1.5f, 0.00001f};
        QCOMPARE(CalibrationReadoutText(bench.session()),
                 QStringLiteral("sysoffset is: 0; K(0)&B(0): 0.25 & -1.5; "
                                "K(1)&B(1): 1.234568E+07 & 1E-05 !"));
    }

    void waitformIgnoresCloseRequestsUntilUnloaded() {
        waitform wait;
        wait.Init(QStringLiteral("Part#1: Programming..."));
        wait.ShowModeless();
        auto* label = wait.findChild<QLabel*>("Label1");
        QVERIFY(!wait.isModal());
        QCOMPARE(label->text(), QStringLiteral("Part#1: Programming..."));
        QVERIFY(!wait.close());
        QTest::keyClick(&wait, Qt::Key_Escape);
        QVERIFY(wait.isVisible());
        wait.TextChange(QStringLiteral("Verifying..."));
        QCOMPARE(label->text(), QStringLiteral("Verifying..."));
        wait.unload();
        QVERIFY(!wait.isVisible());
    }
};

QTEST_MAIN(ShellDialogsTest)
#include "DialogsTest.moc"
