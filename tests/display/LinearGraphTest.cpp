#include <QLabel>
#include <QLineEdit>
#include <QtTest>

#include "core/Services.h"
#include "display/TransferCurvePlot.h"
#include "display/frmLinearGraph.h"
#include "shell/DeviceSession.h"
#include "support/ScriptedPrompts.h"

using namespace rk31;

namespace {

const char* const kBoxes[] = {"high", "low", "dpdisp", "A", "B", "C", "D"};

QLineEdit* box(const QWidget& window, const QString& name, int column) {
    auto* found = window.findChild<QLineEdit*>(QStringLiteral("%1_%2").arg(name).arg(column));
    if (found == nullptr) {
        qFatal("no box %s_%d", qPrintable(name), column);
    }
    return found;
}

QStringList column(const QWidget& window, int index) {
    QStringList texts;
    for (const char* name : kBoxes) {
        texts << box(window, name, index)->text();
    }
    return texts;
}

using Row = std::array<std::int16_t, 2>;

bool hasSegment(const CurveRows& rows, std::pair<Row, Row> segment) {
    for (std::size_t k = 0; k < 20; ++k) {
        if (rows[2 * k] == segment.first && rows[2 * k + 1] == segment.second) {
            return true;
        }
    }
    return false;
}

}  // namespace

class LinearGraphTest : public QObject {
    Q_OBJECT

    test::ScriptedPrompts prompts;
    std::unique_ptr<ScopedServices> services;

    static void setPart(int part, std::array<std::int16_t, 8> points, std::int16_t dp,
                        std::int16_t high, std::int16_t low) {
        RoundedImages& rounded = DeviceSession::instance().rounded;
        const auto p = static_cast<std::size_t>(part);
        rounded.RoundedPoints[p] = points;
        rounded.RoundedDP[p] = dp;
        rounded.RoundedClampHigh[p] = high;
        rounded.RoundedClampLow[p] = low;
        rounded.PointsReversed[p] = false;
    }

  private slots:
    void init() {
        prompts.clear();
        services = std::make_unique<ScopedServices>(Services{&prompts, nullptr, nullptr});
        DeviceSession::instance().resetToFreshProcess();
        // Part#1: four points; Part#2: two points, C and D not in use.
        setPart(0, {100, 150, 250, 300, 20, 40, 60, 80}, 20, 95, 5);
        setPart(1, {100, 200, 500, 500, 20, 80, 0, 0}, 300, 90, 10);
    }
    void cleanup() {
        services.reset();
        DeviceSession::instance().resetToFreshProcess();
    }

    void initChoosesOneOrBothParts_data() {
        QTest::addColumn<int>("part");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("part2");
        QTest::addColumn<int>("count2");
        QTest::addColumn<int>("firstPart");
        QTest::addColumn<int>("firstCount");
        QTest::addColumn<int>("secondCount");
        QTest::newRow("Part#2 alone") << 1 << 3 << 0 << 0 << 1 << 3 << 0;
        QTest::newRow("both") << 1 << 4 << 1 << 2 << 0 << 4 << 2;
        QTest::newRow("low four bits") << 1 << 0x12 << 1 << 0x34 << 0 << 2 << 4;
        QTest::newRow("second part without count") << 1 << 2 << 1 << 0 << 0 << 2 << 0;
    }
    void initChoosesOneOrBothParts() {
        QFETCH(int, part);
        QFETCH(int, count);
        QFETCH(int, part2);
        QFETCH(int, count2);
        frmLinearGraph graph;
        graph.Init(static_cast<std::int16_t>(part), static_cast<std::int16_t>(count),
                   static_cast<std::int16_t>(part2), static_cast<std::int16_t>(count2));
        QTEST(static_cast<int>(graph.firstPart()), "firstPart");
        QTEST(static_cast<int>(graph.firstCount()), "firstCount");
        QTEST(static_cast<int>(graph.secondCount()), "secondCount");
    }

    void bothPartsFillBothColumns() {
        frmLinearGraph graph;
        graph.Init(0, 4, 1, 2);
        graph.show();
        QCOMPARE(graph.windowTitle(), QString("Linear Graph"));
        QCOMPARE(column(graph, 0),
                 (QStringList{"95", "5", "20", "100:20", "150:40", "250:60", "300:80"}));
        QCOMPARE(column(graph, 1),
                 (QStringList{"90", "10", "300", "100:20", "200:80", "Not Used", "Not Used"}));
        QVERIFY(!graph.findChild<QLabel*>("Labelpart2")->isHidden());
        QVERIFY(!box(graph, "D", 1)->isHidden());
        const ShownParts parts = graph.findChild<TransferCurvePlot*>("Picture1")->shownParts();
        QCOMPARE(parts.size(), std::size_t{2});
        QCOMPARE(parts[1].colour, QColor(255, 0, 0));
        // Both curves were computed with their own counts.
        const CurveTables& curves = DeviceSession::instance().CurveTable;
        QVERIFY(hasSegment(curves[0], {{250, 60}, {300, 80}}));
        QVERIFY(hasSegment(curves[1], {{200, 80}, {217, 90}}));
        QVERIFY(prompts.messages.isEmpty());
    }

    void onePartUsesTheFirstColumnWhateverItsIndex() {
        frmLinearGraph graph;
        graph.Init(1, 2, 0, 0);
        graph.show();
        QCOMPARE(column(graph, 0),
                 (QStringList{"90", "10", "300", "100:20", "200:80", "Not Used", "Not Used"}));
        QVERIFY(graph.findChild<QLabel*>("Labelpart2")->isHidden());
        for (const char* name : kBoxes) {
            QVERIFY2(box(graph, name, 1)->isHidden(), name);
        }
        const ShownParts parts = graph.findChild<TransferCurvePlot*>("Picture1")->shownParts();
        QCOMPARE(parts.size(), std::size_t{1});
        QCOMPARE(parts[0].part, std::int16_t{1});
        QCOMPARE(parts[0].colour, QColor(0, 255, 0));
        const CurveTables& curves = DeviceSession::instance().CurveTable;
        QVERIFY(hasSegment(curves[1], {{300, 90}, {300, 10}}));
        QCOMPARE(curves[0], CurveRows{});  // only the shown part is computed
    }

    void countLimitsThePointsOfTheCurve() {
        frmLinearGraph graph;
        graph.Init(0, 0x12, 0, 0);  // two points of the four entered
        graph.show();
        const CurveRows& rows = DeviceSession::instance().CurveTable[0];
        QVERIFY(hasSegment(rows, {{100, 20}, {150, 40}}));
        QVERIFY(!hasSegment(rows, {{150, 40}, {250, 60}}));
    }

    void curveMessagesAppearWhileLoading() {
        setPart(0, {100, 200, 500, 500, 20, 80, 0, 0}, 150, 90, 10);
        frmLinearGraph graph;
        graph.Init(0, 2, 0, 0);
        QVERIFY(prompts.messages.isEmpty());
        graph.show();
        QCOMPARE(prompts.messages,
                 QStringList{
                     "DP Point is Invalid with two angle ends-(83 And 217) And (CCW) direction!"});
        graph.hide();
        graph.show();  // loads once per use
        QCOMPARE(prompts.messages.size(), 1);
    }

    void labelsAreBuddiesOfTheirBoxes() {
        frmLinearGraph graph;
        const struct {
            const char* label;
            const char* caption;
            const char* box;
        } rows[] = {
            {"Label8", "Part#1", nullptr},
            {"Labelpart2", "Part#2", nullptr},
            {"Label7", "Clamp High [%VDD]", "high_0"},
            {"Label6", "Clamp Low [%VDD]", "low_0"},
            {"Label5", "DP [deg]", "dpdisp_0"},
            {"Label4", "Point A [deg:%VDD]", "A_0"},
            {"Label3", "Point B [deg:%VDD]", "B_0"},
            {"Label2", "Point C [deg:%VDD]", "C_0"},
            {"Label1", "Point D [deg:%VDD]", "D_0"},
        };
        for (const auto& row : rows) {
            auto* label = graph.findChild<QLabel*>(row.label);
            QVERIFY2(label != nullptr, row.label);
            QCOMPARE(label->text(), QString(row.caption));
            if (row.box != nullptr) {
                QCOMPARE(label->buddy(), graph.findChild<QLineEdit*>(row.box));
            }
        }
    }
};

QTEST_MAIN(LinearGraphTest)
#include "LinearGraphTest.moc"
