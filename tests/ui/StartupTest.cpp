// The switch on the command line chooses the one main window; anything else chooses none. What
// each window shows when it opens is for the windows' own tests.
#include <QtTest>

#include "domain/WindowControls.h"
#include "procedures/points/PointCommands.h"
#include "procedures/twopart/SessionCommands.h"
#include "support/FakeWindow.h"
#include "support/WindowHarness.h"
#include "ui/windows/PointWindow.h"
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

    // rk31prog runs the windows' procedures on their controls held as values: every control it
    // holds is the window's, and after the window's load both show the same texts and states.
    void controlsHeldAsValuesAreTheWindows() {
        test::Bench bench;
        test::FakeUi ui;
        for (int variant = 0; variant < 7; ++variant) {
            const auto window = bench.window(variant);
            const auto* point = qobject_cast<PointProgrammingWindow*>(window.get());
            const auto controls =
                point ? PointControls(point->traits()) : TwoPartControls(variant == 0);
            const WindowFamily family = point ? FamilyOf(point->traits())
                                              : (variant == 0 ? WindowFamily::TwoPartOneSupply
                                                              : WindowFamily::TwoPartTwoSupplies);
            ValueControlView values(controls);
            WindowContext ctx(family, bench.session(), values, bench.prompts, bench.pause, ui);
            point ? PointWindowLoad(ctx, point->traits()) : TwoPartWindowLoad(ctx);
            for (const ControlSeed& c : controls) {
                const QString where =
                    QStringLiteral("/%1 %2_%3").arg(variant).arg(c.name).arg(c.index);
                QWidget* widget = test::find(window.get(), c.name, c.index);
                QCOMPARE(values.isEnabled(c.name, c.index),
                         !widget->testAttribute(Qt::WA_ForceDisabled));
                if (!c.text.isEmpty() || c.name == ctl::status) {
                    QVERIFY2(
                        test::textOf(window.get(), c.name, c.index) == values.text(c.name, c.index),
                        qPrintable(where));
                }
            }
        }
    }
};

QTEST_MAIN(StartupTest)
#include "StartupTest.moc"
