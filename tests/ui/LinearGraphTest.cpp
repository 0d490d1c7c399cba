#include <QLabel>
#include <QLineEdit>
#include <QtTest>
#include <algorithm>

#include "device/DeviceSession.h"
#include "support/WindowHarness.h"
#include "ui/kit/MainWindowBase.h"
#include "ui/plots/TransferCurvePlot.h"
#include "ui/plots/frmLinearGraph.h"

using namespace rk31;

class LinearGraphTest : public QObject {
    Q_OBJECT

  private slots:
    void showsTheChosenParts_data() {
        QTest::addColumn<QList<int>>("init");       // part, count, part2, count2; DP of Part#2
        QTest::addColumn<QList<int>>("shown");      // the parts in the columns and on the plot
        QTest::addColumn<QList<int>>("curveRows");  // rows in use per part: the count taken
        QTest::addColumn<QStringList>("messages");
        // clang-format off
        QTest::newRow("both") << QList{0, 4, 1, 2, 300} << QList{0, 1} << QList{18, 14} << QStringList();
        QTest::newRow("low four bits of the counts") << QList{1, 0x12, 1, 0x32, 300} << QList{0, 1} << QList{14, 14} << QStringList();
        QTest::newRow("Part#2 without count") << QList{1, 4, 1, 0, 300} << QList{0} << QList{18, 0} << QStringList();
        QTest::newRow("Part#2 alone, first column, DP on the curve") << QList{1, 2, 0, 0, 150} << QList{1} << QList{0, 6}
            << QStringList{"DP Point is Invalid with two angle ends-(83 And 217) And (CCW) direction!"};
        // clang-format on
    }
    void showsTheChosenParts() {
        QFETCH(QList<int>, init);
        QFETCH(QList<int>, shown);
        test::Bench bench;
        const auto window = bench.window(1);
        test::ScriptedPrompts& prompts = bench.prompts;
        DeviceSession& session = bench.session();
        // Part#1: four points; Part#2: two points, C and D not in use. Then DP, clamp high, low.
        session.rounded = {
            {{{100, 150, 250, 300, 20, 40, 60, 80}, {100, 200, 500, 500, 20, 80, 0, 0}}},
            {20, static_cast<std::int16_t>(init[4])},
            {95, 90},
            {5, 10}};
        const QString texts[] = {"95|5|20|100:20|150:40|250:60|300:80",
                                 QString("90|10|%1|100:20|200:80|Not Used|Not Used").arg(init[4])};

        frmLinearGraph graph(static_cast<MainWindowBase*>(window.get())->measureSeams());
        graph.Init(static_cast<std::int16_t>(init[0]), static_cast<std::int16_t>(init[1]),
                   static_cast<std::int16_t>(init[2]), static_cast<std::int16_t>(init[3]));
        QVERIFY(prompts.messages.isEmpty());
        graph.show();
        graph.hide();
        graph.show();  // computed once per use
        // The messages come once the window stands at its size, which they leave alone.
        QVERIFY(prompts.messages.isEmpty());
        QCoreApplication::processEvents();
        QTEST(prompts.messages, "messages");
        QVERIFY(graph.findChild<QWidget*>("Picture1")->height() >= 300);
        const bool second = shown.size() == 2;
        QCOMPARE(graph.findChild<QLabel*>("Labelpart2")->isHidden(), !second);
        for (int c = 0; c < 2; ++c) {
            QStringList column;
            for (const char* row : {"high", "low", "dpdisp", "A", "B", "C", "D"}) {
                auto* box = graph.findChild<QLineEdit*>(QString("%1_%2").arg(row).arg(c));
                QCOMPARE(box->isHidden(), c == 1 && !second);
                column << box->text();
            }
            // A hidden column is left empty.
            QCOMPARE(column.join('|'), c < shown.size() ? texts[shown[c]] : "||||||");
        }
        // The first part in the first colour, whichever it is.
        const ShownParts plotted = graph.findChild<TransferCurvePlot*>("Picture1")->shownParts();
        QCOMPARE(ShownPartIndexes(plotted), std::vector<int>(shown.begin(), shown.end()));
        QCOMPARE(plotted.front().colour, QColor(0, 255, 0));
        QVERIFY(!second || plotted.back().colour == QColor(255, 0, 0));
        QList<int> used;
        for (const CurveRows& rows : session.CurveTable) {
            used << static_cast<int>(
                std::ranges::count_if(rows, [](auto r) { return r[0] || r[1]; }));
        }
        QTEST(used, "curveRows");
    }
};

QTEST_MAIN(LinearGraphTest)
#include "LinearGraphTest.moc"
