// The switch on the command line chooses the one main window; anything else chooses none. What
// each window shows when it opens is for the windows' own tests.
#include <QtTest>

#include "support/WindowHarness.h"
#include "ui/windows/Startup.h"

using namespace rk31;

class StartupTest : public QObject {
    Q_OBJECT
  private slots:
    void switches() {
        test::Bench bench;
        const QStringList windows =
            QStringLiteral(
                "2Parts1Src 2Parts2Src 2PointsProgramming 2PointsProgrammingforDual "
                "2PointsProgrammingWithPwr 2PointsProgrammingforDualWithPwr "
                "1PointProgramming")
                .split(u' ');
        for (int variant = 0; variant < 7; ++variant) {
            QCOMPARE(VariantForCommandLine(u'/' + QString::number(variant)), variant);
            QCOMPARE(bench.window(variant)->objectName(), "MainForm" + windows[variant]);
        }
        for (const char* bad : {"/7", "1", "/a", "/1 /2", " /1", "/1 ", "", "/01", "-1", "/"}) {
            QCOMPARE(VariantForCommandLine(bad), -1);
        }
        QVERIFY(!bench.window(-1));
        QVERIFY(bench.trace().isEmpty() && bench.prompts.messages.isEmpty());
    }
};

QTEST_MAIN(StartupTest)
#include "StartupTest.moc"
