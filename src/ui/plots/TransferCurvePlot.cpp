#include "ui/plots/TransferCurvePlot.h"

#include <QFontMetricsF>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace rk31 {

namespace {

constexpr double kGridStep = 10;
// The widest labels: the font shrinks until each fits into one grid column, so that neighbouring
// angle labels stay apart, "100" stays left of the level axis and "deg" inside the right edge.
// Where even the smallest legible size is too wide, the angle labels skip columns instead
// (AngleLabelStep).
const QString kColumnLabels[] = {QStringLiteral("360"), QStringLiteral("100"),
                                 QStringLiteral("deg")};
const QString kWidestAngleLabel = QStringLiteral("360");
constexpr int kLargestLabelPixels = 15;
// Below this a label is no longer read comfortably; the angle labels thin out instead.
constexpr int kSmallestLabelPixels = 8;
// Label every column, or every 2nd, 3rd, ... column: steps that divide the 36 columns evenly.
constexpr int kAngleLabelSteps[] = {1, 2, 3, 4, 6, 9, 12, 18, 36};

double columnPixels(QSizeF size) {
    return kGridStep * size.width() / (kPlotRight - kPlotLeft);
}

// Width-1 lines sit on pixel centres and width-2 lines on pixel edges, so that the grid stays
// crisp black instead of a two-pixel grey smear.
double snap(double coordinate, int penWidth) {
    return penWidth % 2 == 1 ? std::floor(coordinate) + 0.5 : std::round(coordinate);
}

// Room for one legend entry, in angle units; the last entry ends at the right of the grid.
constexpr double kLegendEntry = 60;
constexpr double kLegendEnd = 370;

// A line sample and the part's name for each curve (when there is more than one), then a
// diamond for the measured points (when there are any), above the grid at the right.
void drawLegend(PlotCanvas& canvas, const ShownParts& parts, bool measured) {
    const bool named = parts.size() > 1;
    const auto entries = static_cast<double>((named ? parts.size() : 0) + (measured ? 1 : 0));
    double x = kLegendEnd - kLegendEntry * entries;
    if (named) {
        for (const ShownPart& shown : parts) {
            canvas.SetPen(shown.colour, 2);
            canvas.Line(x, 114, x + 12, 114);
            canvas.SetPen(Qt::black, 1);
            canvas.DrawLabel(static_cast<std::int16_t>(x + 15), 118,
                             QStringLiteral("Part#%1").arg(shown.part + 1));
            x += kLegendEntry;
        }
    }
    if (measured) {
        canvas.Diamond(x + 6, 114, Qt::white);
        canvas.SetPen(Qt::black, 1);
        canvas.DrawLabel(static_cast<std::int16_t>(x + 15), 118, QStringLiteral("Measured"));
    }
}

bool anyReadings(const ShownParts& parts, const PartReadings& readings) {
    return std::any_of(parts.begin(), parts.end(), [&readings](const ShownPart& shown) {
        return shown.part >= 0 && shown.part <= 1 &&
               !readings[static_cast<std::size_t>(shown.part)].empty();
    });
}

}  // namespace

ShownParts SinglePart(std::int16_t part) {
    return {ShownPart{part, kFirstCurveColour}};
}

std::vector<int> ShownPartIndexes(const ShownParts& parts) {
    std::vector<int> indexes;
    for (const ShownPart& shown : parts) {
        indexes.push_back(shown.part);
    }
    return indexes;
}

ShownParts BothParts() {
    return {ShownPart{0, kFirstCurveColour}, ShownPart{1, kSecondCurveColour}};
}

PlotCanvas::PlotCanvas(QPainter& painter, QSizeF size)
    : m_painter(painter), m_transform(PlotTransform(size)) {}

QTransform PlotCanvas::PlotTransform(QSizeF size) {
    QTransform transform;
    transform.scale(size.width() / (kPlotRight - kPlotLeft),
                    -size.height() / (kPlotTop - kPlotBottom));
    transform.translate(-kPlotLeft, -kPlotTop);
    return transform;
}

QFont PlotCanvas::LabelFont(const QFont& base, QSizeF size) {
    const double column = columnPixels(size);
    const double rowPixels = kGridStep * size.height() / (kPlotTop - kPlotBottom);
    QFont font(base);
    int pixels =
        std::clamp(static_cast<int>(rowPixels * 0.8), kSmallestLabelPixels, kLargestLabelPixels);
    for (; pixels > kSmallestLabelPixels; --pixels) {
        font.setPixelSize(pixels);
        const QFontMetricsF metrics(font);
        double widest = 0;
        for (const QString& label : kColumnLabels) {
            widest = std::max(widest, metrics.horizontalAdvance(label));
        }
        if (widest <= column * 0.9) {
            break;
        }
    }
    font.setPixelSize(pixels);
    return font;
}

int PlotCanvas::AngleLabelStep(const QFont& font, QSizeF size) {
    const double width = QFontMetricsF(font).horizontalAdvance(kWidestAngleLabel);
    for (const int step : kAngleLabelSteps) {
        if (width <= columnPixels(size) * step * 0.9) {
            return step;
        }
    }
    return kAngleLabelSteps[std::size(kAngleLabelSteps) - 1];
}

void PlotCanvas::DrawLabel(std::int16_t x, std::int16_t y, const QString& str) {
    const QPointF topLeft = m_transform.map(QPointF(x, y));
    m_painter.drawText(QRectF(topLeft, QSizeF(0, 0)),
                       Qt::AlignLeft | Qt::AlignTop | Qt::TextDontClip, str);
}

void PlotCanvas::Line(double x1, double y1, double x2, double y2) {
    const int width = std::max(1, m_painter.pen().width());
    const QPointF from = m_transform.map(QPointF(x1, y1));
    const QPointF to = m_transform.map(QPointF(x2, y2));
    m_painter.drawLine(QPointF(snap(from.x(), width), snap(from.y(), width)),
                       QPointF(snap(to.x(), width), snap(to.y(), width)));
}

void PlotCanvas::Circle(double x, double y, double radius) {
    const double pixels = radius * std::abs(m_transform.m11());
    m_painter.drawEllipse(m_transform.map(QPointF(x, y)), pixels, pixels);
}

void PlotCanvas::Diamond(double x, double y, const QColor& fill) {
    // Outlined, so that a mark on a line of its own colour still stands out.
    constexpr double kHalf = 4.5;
    const QPointF at = m_transform.map(QPointF(x, y));
    const QPointF corners[] = {at + QPointF(0, -kHalf), at + QPointF(kHalf, 0),
                               at + QPointF(0, kHalf), at + QPointF(-kHalf, 0)};
    m_painter.save();
    QPen outline(Qt::black, 1);
    outline.setCosmetic(true);
    m_painter.setPen(outline);
    m_painter.setBrush(fill);
    m_painter.drawPolygon(corners, 4);
    m_painter.restore();
}

void PlotCanvas::SetPen(const QColor& colour, int width) {
    QPen pen(colour, width);
    pen.setCosmetic(true);
    m_painter.setPen(pen);
}

void PaintTransferCurves(QPainter& painter, QSizeF size, const ShownParts& parts, int markedPoints,
                         const CurveTables& curves, const RoundedImages& rounded,
                         const PartReadings& readings) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setRenderHint(QPainter::TextAntialiasing, true);
    painter.fillRect(QRectF(QPointF(0, 0), size), Qt::white);
    const QFont labelFont = PlotCanvas::LabelFont(painter.font(), size);
    const int angleLabelStep = PlotCanvas::AngleLabelStep(labelFont, size);
    painter.setFont(labelFont);
    painter.setBrush(Qt::NoBrush);

    // "deg" stands at 370, or further left where a narrow plot would cut it off at the right
    // edge; an angle label that would run into it is left out.
    const QFontMetricsF metrics(labelFont);
    const double unitsPerPixel = (kPlotRight - kPlotLeft) / size.width();
    const QString unit = QStringLiteral("deg");
    const auto unitAt = static_cast<std::int16_t>(
        std::min(370.0, std::floor(kPlotRight - metrics.horizontalAdvance(unit) * unitsPerPixel)));

    PlotCanvas canvas(painter, size);
    canvas.SetPen(Qt::black, 1);
    canvas.Line(0, 0, 370, 0);
    canvas.Line(0, 0, 0, 110);
    for (std::int16_t i = 1; i <= 10; ++i) {
        const auto level = static_cast<std::int16_t>(10 * i);
        canvas.Line(0, level, 360, level);
        canvas.DrawLabel(-10, level, QString::number(level));
    }
    for (std::int16_t j = 1; j <= 36; ++j) {
        const auto angle = static_cast<std::int16_t>(10 * j);
        canvas.Line(angle, 0, angle, 100);
        const QString label = QString::number(angle);
        if (j % angleLabelStep == 0 &&
            angle + metrics.horizontalAdvance(label) * unitsPerPixel <= unitAt) {
            canvas.DrawLabel(angle, 0, label);
        }
    }
    canvas.DrawLabel(-5, 0, QStringLiteral("O"));
    canvas.DrawLabel(unitAt, 0, unit);
    canvas.DrawLabel(0, 110, QStringLiteral("%VDD"));

    for (const ShownPart& shown : parts) {
        if (shown.part < 0 || shown.part > 1) {
            continue;
        }
        const auto index = static_cast<std::size_t>(shown.part);
        const CurveRows& rows = curves[index];
        canvas.SetPen(shown.colour, 2);
        for (int k = 0; k < DrawnSegmentCount(rows); ++k) {
            const auto& from = rows[static_cast<std::size_t>(2 * k)];
            const auto& to = rows[static_cast<std::size_t>(2 * k + 1)];
            canvas.Line(from[0], from[1], to[0], to[1]);
        }
        const auto& points = rounded.RoundedPoints[index];
        for (int p = 0; p < std::clamp(markedPoints, 0, 4); ++p) {
            canvas.Circle(points[static_cast<std::size_t>(p)],
                          points[static_cast<std::size_t>(p + 4)], 2);
        }
    }
    // Over every curve, so that a reading off its own curve is not hidden under the other.
    for (const ShownPart& shown : parts) {
        if (shown.part < 0 || shown.part > 1) {
            continue;
        }
        for (const AngleReading& r : readings[static_cast<std::size_t>(shown.part)]) {
            canvas.Diamond(r.angle, r.measured, shown.colour);
        }
    }
    const bool measured = anyReadings(parts, readings);
    if (parts.size() > 1 || measured) {
        drawLegend(canvas, parts, measured);
    }
    painter.restore();
}

TransferCurvePlot::TransferCurvePlot(const CurveTables& curves, const RoundedImages& rounded,
                                     QWidget* parent)
    : QWidget(parent), m_curves(&curves), m_rounded(&rounded) {
    setObjectName(QStringLiteral("Picture1"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setMouseTracking(true);
    setShownParts(SinglePart(0));
}

std::vector<TransferCurvePlot::HoverLevel> TransferCurvePlot::hoverLevels() const {
    std::vector<HoverLevel> levels;
    if (!m_hover) {
        return levels;
    }
    for (const ShownPart& shown : shownParts()) {
        if (shown.part < 0 || shown.part > 1) {
            continue;
        }
        const CurveRows& rows = (*m_curves)[static_cast<std::size_t>(shown.part)];
        if (const auto level = CurveLevelAt(rows, *m_hover)) {
            levels.push_back({shown.part, *level, shown.colour});
        }
    }
    return levels;
}

QString TransferCurvePlot::hoverText() const {
    if (!m_hover) {
        return {};
    }
    // The curve's level where the pointer's angle is, not the pointer's height: that is what
    // the chip puts out there.
    const QString angle = QLocale::c().toString(*m_hover, 'f', 0);
    const std::vector<HoverLevel> levels = hoverLevels();
    if (levels.empty()) {
        return QStringLiteral("Angle %1\u00B0 \u00B7 no curve").arg(angle);
    }
    QStringList parts;
    for (const HoverLevel& l : levels) {
        const QString level = QLocale::c().toString(l.level, 'f', 1);
        parts << (shownParts().size() > 1
                      ? QStringLiteral("Part#%1 %2 %VDD").arg(l.part + 1).arg(level)
                      : QStringLiteral("Level %1 %VDD").arg(level));
    }
    return QStringLiteral("Angle %1\u00B0 \u00B7 ").arg(angle) +
           parts.join(QStringLiteral(" \u00B7 "));
}

void TransferCurvePlot::mouseMoveEvent(QMouseEvent* event) {
    const QPointF at = PlotCanvas::PlotTransform(size()).inverted().map(event->position());
    const bool overPlot = at.x() >= 0 && at.x() <= 360 && at.y() >= 0 && at.y() <= 100;
    // Whole degrees: the curve is drawn in them.
    m_hover = overPlot ? std::optional<double>(std::round(at.x())) : std::nullopt;
    update();
    QWidget::mouseMoveEvent(event);
}

void TransferCurvePlot::leaveEvent(QEvent* event) {
    m_hover.reset();
    update();
    QWidget::leaveEvent(event);
}

void TransferCurvePlot::setShownParts(ShownParts parts) {
    m_source = [parts = std::move(parts)] { return parts; };
    update();
}

void TransferCurvePlot::setShownPartsSource(PartsSource source) {
    m_source = std::move(source);
    update();
}

ShownParts TransferCurvePlot::shownParts() const {
    return m_source ? m_source() : ShownParts{};
}

void TransferCurvePlot::setReadings(PartReadings readings) {
    m_readings = std::move(readings);
    update();
}

void TransferCurvePlot::setCaption(const QString& caption) {
    if (caption == m_caption) {
        return;
    }
    m_caption = caption;
    setAccessibleDescription(caption);
    update();
}

void TransferCurvePlot::setMarkedPoints(int count) {
    m_markedPoints = count;
    update();
}

void TransferCurvePlot::setPreferredSize(QSize size) {
    m_preferredSize = size;
    updateGeometry();
}

QSize TransferCurvePlot::sizeHint() const {
    return m_preferredSize;
}

QSize TransferCurvePlot::minimumSizeHint() const {
    return {640, 300};
}

void TransferCurvePlot::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    PaintTransferCurves(painter, size(), shownParts(), m_markedPoints, *m_curves, *m_rounded,
                        m_readings);
    double captionBottom = 0;
    if (!m_caption.isEmpty()) {
        // In the band above the grid, from its left end, clear of the legend at the right (the
        // read-out moves below it).
        QFont bold = font();
        bold.setBold(true);
        painter.setFont(bold);
        const QFontMetricsF metrics(bold);
        const QSizeF text = metrics.size(0, m_caption);
        const double left = PlotCanvas::PlotTransform(size()).map(QPointF(0, 0)).x();
        const QRectF box(QPointF(left, 4), text + QSizeF(12, 4));
        painter.fillRect(box, QColor(255, 235, 235));
        painter.setPen(QColor(0xa0, 0, 0));
        painter.drawRect(box);
        painter.drawText(box, Qt::AlignCenter, m_caption);
        painter.setFont(font());
        captionBottom = box.bottom();
    }
    if (!m_hover) {
        return;
    }
    // A line at the pointer's angle, a dot where it meets each curve, and the read-out in the
    // top left corner.
    const QTransform transform = PlotCanvas::PlotTransform(size());
    const double x = transform.map(QPointF(*m_hover, 0)).x();
    painter.setPen(QPen(Qt::darkGray, 1, Qt::DashLine));
    painter.drawLine(QPointF(x, 0), QPointF(x, height()));
    painter.setRenderHint(QPainter::Antialiasing, true);
    for (const HoverLevel& l : hoverLevels()) {
        painter.setPen(QPen(Qt::black, 1));
        painter.setBrush(l.colour);
        painter.drawEllipse(transform.map(QPointF(*m_hover, l.level)), 4.0, 4.0);
    }
    painter.setBrush(Qt::NoBrush);
    const QString text = hoverText();
    const QRectF box = QRectF(QPointF(6, 6), QFontMetricsF(font()).size(0, text))
                           .adjusted(-4, -2, 4, 2)
                           .translated(4, 2 + captionBottom);
    painter.fillRect(box, QColor(255, 255, 224));
    painter.setPen(Qt::black);
    painter.drawRect(box);
    painter.drawText(box, Qt::AlignCenter, text);
}

}  // namespace rk31
