#include <QImage>
#include <QtTest>

#include "display/TransferCurvePlot.h"

using namespace rk31;

namespace {

constexpr int kWidth = 800;
constexpr int kHeight = 420;

enum class Ink { White, Black, Green, Red, Other };

Ink inkOf(QColor c) {
    if (c.red() > 240 && c.green() > 240 && c.blue() > 240) {
        return Ink::White;
    }
    if (c.red() < 90 && c.green() < 90 && c.blue() < 90) {
        return Ink::Black;
    }
    if (c.green() > 180 && c.red() < 110 && c.blue() < 110) {
        return Ink::Green;
    }
    if (c.red() > 180 && c.green() < 110 && c.blue() < 110) {
        return Ink::Red;
    }
    return Ink::Other;
}

// Whether the ink shows within a pixel or two of the plot point (lines are two pixels wide).
bool inkNear(const QImage& image, double x, double y, Ink ink) {
    const QPointF at = PlotCanvas::PlotTransform(image.size()).map(QPointF(x, y));
    for (int dx = -2; dx <= 2; ++dx) {
        for (int dy = -2; dy <= 2; ++dy) {
            if (inkOf(image.pixelColor(qRound(at.x()) + dx, qRound(at.y()) + dy)) == ink) {
                return true;
            }
        }
    }
    return false;
}

Ink inkAt(const QImage& image, double x, double y) {
    const QPointF at = PlotCanvas::PlotTransform(image.size()).map(QPointF(x, y));
    return inkOf(image.pixelColor(qFloor(at.x()), qFloor(at.y())));
}

void setSegment(CurveRows& rows, int k, std::int16_t a0, std::int16_t l0, std::int16_t a1,
                std::int16_t l1) {
    rows[static_cast<std::size_t>(2 * k)] = {a0, l0};
    rows[static_cast<std::size_t>(2 * k + 1)] = {a1, l1};
}

}  // namespace

class TransferCurvePlotTest : public QObject {
    Q_OBJECT

    CurveTables curves{};
    RoundedImages rounded{};

    QImage render(const ShownParts& parts, int marked = 4) {
        TransferCurvePlot plot;
        plot.setSources(&curves, &rounded);
        plot.setShownParts(parts);
        plot.setMarkedPoints(marked);
        plot.resize(kWidth, kHeight);
        return plot.grab().toImage();
    }

  private slots:
    void init() {
        curves = {};
        rounded = {};
    }

    void emptyTableShowsGridOnly() {
        const QImage image = render(BothParts(), 0);
        QCOMPARE(image.size(), QSize(kWidth, kHeight));
        QCOMPARE(inkAt(image, -18, 118), Ink::White);
        QCOMPARE(inkAt(image, 375, -15), Ink::White);
        QCOMPARE(inkAt(image, 155, 55), Ink::White);   // inside a grid cell
        QVERIFY(inkNear(image, 155, 50, Ink::Black));  // grid line
        QVERIFY(inkNear(image, 150, 55, Ink::Black));
        QVERIFY(inkNear(image, 365, 0, Ink::Black));    // axis beyond the grid
        QVERIFY(!inkNear(image, 365, 50, Ink::Black));  // the grid stops at 360
        QVERIFY(!inkNear(image, 0, 115, Ink::Black));   // the level axis stops at 110
    }

    void curvesInTheirColours_data() {
        QTest::addColumn<bool>("both");
        QTest::addColumn<int>("part");
        QTest::newRow("Part#1 alone") << false << 0;
        QTest::newRow("Part#2 alone is green") << false << 1;
        QTest::newRow("both parts") << true << 0;
    }
    void curvesInTheirColours() {
        QFETCH(bool, both);
        QFETCH(int, part);
        setSegment(curves[0], 0, 100, 20, 200, 80);
        setSegment(curves[0], 1, 200, 80, 217, 90);
        setSegment(curves[1], 0, 0, 45, 300, 45);
        const QImage image =
            render(both ? BothParts() : SinglePart(static_cast<std::int16_t>(part)));
        const bool first = both || part == 0;
        const bool second = both || part == 1;
        QCOMPARE(inkNear(image, 150, 50, Ink::Green), first);
        QCOMPARE(inkNear(image, 208, 85, Ink::Green), first);
        QCOMPARE(inkNear(image, 255, 45, both ? Ink::Red : Ink::Green), second);
        QCOMPARE(inkNear(image, 255, 45, Ink::Red), both);
        QCOMPARE(inkAt(image, 125, 65), Ink::White);
    }

    void curveEndsAtItsFirstEmptySegment() {
        setSegment(curves[0], 0, 20, 15, 80, 15);
        setSegment(curves[0], 2, 220, 75, 280, 75);  // behind the empty segment 1
        setSegment(curves[1], 0, 20, 35, 80, 35);
        for (int k = 1; k <= 11; ++k) {
            setSegment(curves[1], k, static_cast<std::int16_t>(20 + 20 * k), 35,
                       static_cast<std::int16_t>(20 + 20 * k + 15), 35);
        }
        const QImage image = render(BothParts(), 0);
        QVERIFY(inkNear(image, 55, 15, Ink::Green));
        QVERIFY(!inkNear(image, 255, 75, Ink::Green));
        // Part#2's longer list is drawn up to segment 10; segment 11 is never drawn.
        QVERIFY(inkNear(image, 55, 35, Ink::Red));
        QVERIFY(inkNear(image, 225, 35, Ink::Red));
        QVERIFY(!inkNear(image, 245, 35, Ink::Red));
    }

    void pointsAreMarkedWithCircles_data() {
        QTest::addColumn<int>("marked");
        QTest::newRow("Linear Graph: A to D") << 4;
        QTest::newRow("point window: A and B") << 2;
    }
    void pointsAreMarkedWithCircles() {
        QFETCH(int, marked);
        rounded.RoundedPoints[0] = {105, 155, 255, 500, 25, 45, 65, 85};
        const QImage image = render(SinglePart(0), marked);
        // A ring of radius 2 angle units: coloured on the ring, white at its centre.
        QVERIFY(inkNear(image, 107, 25, Ink::Green));
        QVERIFY(inkNear(image, 153, 45, Ink::Green));
        QCOMPARE(inkAt(image, 105, 25), Ink::White);
        QCOMPARE(inkNear(image, 257, 65, Ink::Green), marked == 4);
    }

    void partSourceIsAskedAtPaintTime() {
        setSegment(curves[0], 0, 20, 15, 80, 15);
        setSegment(curves[1], 0, 20, 35, 80, 35);
        std::int16_t selected = 0;
        TransferCurvePlot plot;
        plot.setSources(&curves, &rounded);
        plot.setShownPartsSource([&selected] { return SinglePart(selected); });
        plot.resize(kWidth, kHeight);
        QImage image = plot.grab().toImage();
        QVERIFY(inkNear(image, 55, 15, Ink::Green));
        QVERIFY(!inkNear(image, 55, 35, Ink::Green));
        selected = 1;
        image = plot.grab().toImage();
        QVERIFY(!inkNear(image, 55, 15, Ink::Green));
        QVERIFY(inkNear(image, 55, 35, Ink::Green));
    }

    void plotDrawsTheSessionTablesByDefault() {
        DeviceSession::instance().resetToFreshProcess();
        setSegment(DeviceSession::instance().CurveTable[0], 0, 20, 15, 80, 15);
        TransferCurvePlot plot;
        plot.resize(kWidth, kHeight);
        QVERIFY(inkNear(plot.grab().toImage(), 55, 15, Ink::Green));
        DeviceSession::instance().resetToFreshProcess();
    }

    void labelsStayUprightAndInside() {
        // Labels of the grid: the level labels left of the level axis, the angle labels under the
        // angle axis.
        const QImage image = render({}, 0);
        bool inkLeftOfAxis = false;
        for (double y = 89.5; y >= 85 && !inkLeftOfAxis; y -= 0.5) {
            for (double x = -9.5; x < -1; x += 0.5) {
                inkLeftOfAxis = inkLeftOfAxis || inkAt(image, x, y) == Ink::Black;
            }
        }
        QVERIFY(inkLeftOfAxis);
        bool inkBelowAxis = false;
        for (double x = 180.5; x < 189 && !inkBelowAxis; x += 0.5) {
            for (double y = -1; y > -6; y -= 0.5) {
                inkBelowAxis = inkBelowAxis || inkAt(image, x, y) == Ink::Black;
            }
        }
        QVERIFY(inkBelowAxis);
        const QFont small = PlotCanvas::LabelFont(QFont(), QSize(400, 200));
        const QFont large = PlotCanvas::LabelFont(QFont(), QSize(1200, 600));
        QVERIFY(small.pixelSize() >= 7);
        QVERIFY(large.pixelSize() > small.pixelSize());
    }
};

QTEST_MAIN(TransferCurvePlotTest)
#include "TransferCurvePlotTest.moc"
