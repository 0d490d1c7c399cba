// The switch on the command line chooses the one main window; anything else chooses none.
#include <QtTest>

#include "support/WindowHarness.h"
#include "ui/windows/Startup.h"

using namespace rk31;

class StartupTest : public QObject {
    Q_OBJECT
  private slots:
    void switches_data() {
        QTest::addColumn<QString>("commandLine");
        QTest::addColumn<int>("variant");
        QTest::addColumn<QString>("window");
        const char* classes[] = {"MainForm2Parts1Src",
                                 "MainForm2Parts2Src",
                                 "MainForm2PointsProgramming",
                                 "MainForm2PointsProgrammingforDual",
                                 "MainForm2PointsProgrammingWithPwr",
                                 "MainForm2PointsProgrammingforDualWithPwr",
                                 "MainForm1PointProgramming"};
        for (int i = 0; i < 7; ++i) {
            const QString s = "/" + QString::number(i);
            QTest::newRow(qPrintable(s)) << s << i << classes[i];
        }
        for (const char* bad : {"/7", "1", "/a", "/1 /2", " /1", "/1 ", "", "/01", "-1", "/"}) {
            QTest::newRow(qPrintable(QString("bad '%1'").arg(bad))) << bad << -1 << "";
        }
    }

    void switches() {
        QFETCH(QString, commandLine);
        QFETCH(int, variant);
        QFETCH(QString, window);
        test::Bench bench;
        QCOMPARE(VariantForCommandLine(commandLine), variant);
        const auto created = bench.window(variant);
        QCOMPARE(created != nullptr, variant >= 0);
        if (created) {
            QCOMPARE(created->objectName(), window);
            QCOMPARE(created->windowTitle(), QStringLiteral("RK31 GUI - QZ7734"));
            // Opening a window touches no device and shows no message.
            QVERIFY(bench.trace().isEmpty());
            QVERIFY(bench.prompts.messages.isEmpty());
            QCOMPARE(bench.session().ProgrammerConnected, 0);
        }
    }
};

QTEST_MAIN(StartupTest)
#include "StartupTest.moc"
