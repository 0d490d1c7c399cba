#include <QMouseEvent>
#include <QPainter>
#include <QtTest>

#include "domain/Curve.h"
#include "ui/plots/TransferCurvePlot.h"

using namespace rk31;

namespace {

// Whether the ink shows anywhere in a rectangle given in plot units, give or take anti-aliasing.
bool inkIn(const QImage& image, QRectF area, QColor ink) {
    const QRect px = PlotCanvas::PlotTransform(image.size()).mapRect(area).toAlignedRect();
    for (int i = 0; i < px.width() * px.height(); ++i) {
        const QColor p = image.pixelColor(px.left() + i % px.width(), px.top() + i / px.width());
        if (std::abs(p.red() - ink.red()) < 75 && std::abs(p.green() - ink.green()) < 75 &&
            std::abs(p.blue() - ink.blue()) < 75) {
            return true;
        }
    }
    return false;
}

// Within about two pixels of the plot point: curves are two pixels wide.
bool inkNear(const QImage& image, double x, double y, QColor ink) {
    return inkIn(image, QRectF(x - 1, y - 0.6, 2, 1.2), ink);
}

// What the plots draw from.
CurveTables curves{};
RoundedImages rounded{};

void setSegment(int part, int k, CurvePoint from, CurvePoint to) {
    curves[static_cast<std::size_t>(part)][static_cast<std::size_t>(2 * k)] = from;
    curves[static_cast<std::size_t>(part)][static_cast<std::size_t>(2 * k + 1)] = to;
}

QImage render(const ShownParts& parts, int marked = 0) {
    TransferCurvePlot plot(curves, rounded);
    plot.setShownParts(parts);
    plot.setMarkedPoints(marked);
    plot.resize(800, 420);
    return plot.grab().toImage();
}

}  // namespace

class TransferCurvePlotTest : public QObject {
    Q_OBJECT

  private slots:
    void init() {
        curves = {};
        rounded = {};
    }

    void curvesAndLegendInTheirColours() {
        setSegment(0, 0, {100, 20}, {200, 80});
        setSegment(1, 0, {0, 45}, {300, 45});
        for (const std::int16_t shown : {0, 1, 2}) {  // Part#1 alone, Part#2 alone, both
            const bool both = shown == 2;
            const QImage image = render(both ? BothParts() : SinglePart(shown));
            QCOMPARE(inkNear(image, 150, 50, Qt::green), shown != 1);
            QCOMPARE(inkNear(image, 255, 45, Qt::green), shown == 1);
            QCOMPARE(inkNear(image, 255, 45, Qt::red), both);
            // The legend names the colours of two parts only.
            QCOMPARE(inkNear(image, 256, 114, Qt::green), both);
            QCOMPARE(inkNear(image, 316, 114, Qt::red), both);
        }
    }

    void gridAxesLabelsAndWhereCurvesEnd() {
        setSegment(0, 0, {20, 15}, {80, 15});
        setSegment(0, 2, {220, 75}, {280, 75});  // behind the empty segment 1
        for (int k = 0; k <= 11; ++k) {
            const auto from = static_cast<std::int16_t>(20 + 20 * k);
            setSegment(1, k, {from, 35}, {static_cast<std::int16_t>(from + 15), 35});
        }
        const QImage image = render(BothParts());
        QVERIFY(inkIn(image, {155, 55, 0.01, 0.01}, Qt::white));  // inside a grid cell
        QVERIFY(inkNear(image, 155, 50, Qt::black) && inkNear(image, 150, 55, Qt::black));
        QVERIFY(inkNear(image, 365, 0, Qt::black));    // the angle axis reaches 370
        QVERIFY(!inkNear(image, 365, 50, Qt::black));  // the grid stops at 360
        QVERIFY(!inkNear(image, 0, 115, Qt::black));   // the level axis stops at 110
        // "90" left of the level axis, "180" under the angle axis: upright and inside.
        QVERIFY(inkIn(image, QRectF(-9.5, 85, 8.5, 4.5), Qt::black));
        QVERIFY(inkIn(image, QRectF(180.5, -6, 8.5, 5), Qt::black));
        QVERIFY(inkNear(image, 30, 15, Qt::green) && !inkNear(image, 255, 75, Qt::green));
        // Part#2's longer list is drawn up to segment 10; segment 11 is never drawn.
        QVERIFY(inkNear(image, 225, 35, Qt::red) && !inkNear(image, 245, 35, Qt::red));
    }

    void labelsNeverTouchNorLeaveTheRightEdge() {
        // Wide plots label every grid line; narrow ones skip lines rather than overlap.
        const std::pair<QSizeF, bool> cases[] = {
            {{1200, 600}, true}, {{800, 420}, true}, {{420, 280}, false}, {{200, 120}, false}};
        for (const auto& [size, everyLine] : cases) {
            const QFont font = PlotCanvas::LabelFont(QFont(), size);
            const int step = PlotCanvas::AngleLabelStep(font, size);
            QVERIFY(QFontMetricsF(font).horizontalAdvance("360") < step * 10 * size.width() / 400);
            QCOMPARE(step == 1, everyLine);
            QVERIFY(36 % step == 0 && font.pixelSize() >= 8);
        }
        // "deg" moves in from 370 on a narrow plot (the bench's small plots) rather than run off
        // the edge, and the angle labels give way to it. The grid stops well before the edge:
        // any grey in the last column is a cut label.
        for (const QSize size : {QSize(220, 140), QSize(420, 280), QSize(800, 420)}) {
            QImage image(size, QImage::Format_RGB32);
            QPainter painter(&image);
            PaintTransferCurves(painter, size, {}, 0, CurveTables{}, RoundedImages{});
            painter.end();
            for (int y = 0; y < size.height(); ++y) {
                QVERIFY2(image.pixelColor(size.width() - 1, y).lightness() > 230,
                         qPrintable(QStringLiteral("%1 px wide, row %2").arg(size.width()).arg(y)));
            }
        }
    }

    void hoverReadsTheCurveAtThePointersAngle() {
        setSegment(0, 0, {100, 20}, {200, 80});
        setSegment(1, 0, {0, 45}, {300, 45});
        TransferCurvePlot plot(curves, rounded);
        plot.resize(800, 420);
        const auto hover = [&plot](QPointF point) {
            const QPointF at = PlotCanvas::PlotTransform(plot.size()).map(point);
            QMouseEvent move(QEvent::MouseMove, at, plot.mapToGlobal(at), Qt::NoButton,
                             Qt::NoButton, Qt::NoModifier);
            QApplication::sendEvent(&plot, &move);
            return plot.hoverText();
        };
        // Wherever the pointer is on the height, the read-out is the curve's level there.
        QCOMPARE(hover({180, 10}), QStringLiteral("Angle 180\u00B0 \u00B7 Level 68.0 %VDD"));
        QCOMPARE(hover({149.8, 95}), QStringLiteral("Angle 150\u00B0 \u00B7 Level 50.0 %VDD"));
        QCOMPARE(hover({50, 50}), QStringLiteral("Angle 50\u00B0 \u00B7 no curve"));
        QVERIFY(hover({-15, 50}).isEmpty());
        QVERIFY2(plot.toolTip().isEmpty(), "shown once, on the plot");
        plot.setShownParts(BothParts());
        QCOMPARE(hover({180, 10}),
                 QStringLiteral("Angle 180\u00B0 \u00B7 Part#1 68.0 %VDD \u00B7 Part#2 45.0 %VDD"));
        QCOMPARE(hover({320, 10}), QStringLiteral("Angle 320\u00B0 \u00B7 no curve"));
    }

    void pointsAreMarkedWithCircles() {
        rounded.RoundedPoints[0] = {105, 155, 255, 500, 25, 45, 65, 85};
        for (const int marked : {4, 2}) {  // Linear Graph: A to D; point windows: A and B
            const QImage image = render(SinglePart(0), marked);
            // A ring of radius 2 angle units: coloured on the ring, white at its centre.
            QVERIFY(inkNear(image, 107, 25, Qt::green) && inkNear(image, 153, 45, Qt::green));
            QVERIFY(inkIn(image, {105, 25, 0.01, 0.01}, Qt::white));
            QCOMPARE(inkNear(image, 257, 65, Qt::green), marked == 4);
        }
    }
};

QTEST_MAIN(TransferCurvePlotTest)
#include "TransferCurvePlotTest.moc"
