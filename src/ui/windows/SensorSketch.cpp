#include "ui/windows/SensorSketch.h"

#include <QPainter>
#include <QPainterPath>
#include <QtMath>
#include <algorithm>
#include <cmath>

namespace rk31 {

namespace {

const QColor kNorth{196, 64, 56};
const QColor kSouth{64, 104, 176};
const QColor kPackage{48, 48, 52};
constexpr double kArcStart = 135;  // degrees, counter-clockwise from three o'clock
constexpr double kArcSpan = 250;
constexpr double kRingGap = 10;

QPointF onCircle(QPointF centre, double radius, double degrees) {
    const double a = qDegreesToRadians(degrees);
    return {centre.x() + radius * std::cos(a), centre.y() - radius * std::sin(a)};
}

QString directionWord(bool clockwise) {
    return clockwise ? QStringLiteral("clockwise") : QStringLiteral("counter-clockwise");
}

// An arc around the magnet with its head at the end the angle grows towards.
void drawDirectionArrow(QPainter& painter, QPointF centre, double radius, const QColor& colour,
                        bool clockwise) {
    const double span = clockwise ? -kArcSpan : kArcSpan;
    QPen pen(colour, 2.5);
    pen.setCapStyle(Qt::FlatCap);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    const QRectF box(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius);
    painter.drawArc(box, qRound(kArcStart * 16), qRound(span * 16));

    const double end = kArcStart + span;
    const double a = qDegreesToRadians(end);
    // The way along the circle on screen (y down) in which the arc runs at its end.
    const QPointF along =
        clockwise ? QPointF(std::sin(a), std::cos(a)) : QPointF(-std::sin(a), -std::cos(a));
    const QPointF across(-along.y(), along.x());
    const QPointF tip = onCircle(centre, radius, end) + along * 6;
    const QPointF back = tip - along * 11;
    QPainterPath head;
    head.moveTo(tip);
    head.lineTo(back + across * 5);
    head.lineTo(back - across * 5);
    head.closeSubpath();
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawPath(head);
}

}  // namespace

SensorSketch::SensorSketch(DirectionsSource source, QWidget* parent)
    : QWidget(parent), m_source(std::move(source)) {
    setObjectName(QStringLiteral("Image1"));
    setAccessibleName(tr("Sensor over its magnet"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
}

QSize SensorSketch::sizeHint() const {
    return {240, 200};
}

QSize SensorSketch::minimumSizeHint() const {
    return {200, 170};
}

QString SensorSketch::describe() const {
    QString text = tr("The QZ7734 seen from above, centred over its diametric magnet.");
    for (const Direction& d : m_source ? m_source() : std::vector<Direction>{}) {
        text += u' ' + tr("%1 counts its angle %2.").arg(d.part, directionWord(d.clockwise));
    }
    return text;
}

void SensorSketch::refresh() {
    setAccessibleDescription(describe());
    update();
}

void SensorSketch::paintEvent(QPaintEvent* /*event*/) {
    const std::vector<Direction> directions = m_source ? m_source() : std::vector<Direction>{};
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.fillRect(rect(), palette().base());

    const QFontMetricsF metrics(font());
    const double legendHeight = metrics.height() * static_cast<double>(directions.size()) + 6;
    const QRectF area = QRectF(rect()).adjusted(8, 8, -8, -8 - legendHeight);
    const QPointF centre = area.center();
    const double outer = std::min(area.width(), area.height()) / 2;
    const double magnet =
        std::max(12.0, outer - kRingGap * static_cast<double>(directions.size()) - 6);

    // The magnet, magnetised across its diameter.
    const QRectF disc(centre.x() - magnet, centre.y() - magnet, 2 * magnet, 2 * magnet);
    painter.setPen(Qt::NoPen);
    painter.setBrush(kNorth);
    painter.drawPie(disc, 0, 180 * 16);
    painter.setBrush(kSouth);
    painter.drawPie(disc, 180 * 16, 180 * 16);
    QFont poles = font();
    poles.setBold(true);
    poles.setPixelSize(std::max(9, qRound(magnet * 0.32)));
    painter.setFont(poles);
    painter.setPen(Qt::white);
    const QRectF westHalf(disc.left(), disc.top(), magnet * 0.62, 2 * magnet);
    painter.drawText(westHalf.adjusted(0, 0, 0, -magnet), Qt::AlignCenter, QStringLiteral("N"));
    painter.drawText(westHalf.adjusted(0, magnet, 0, 0), Qt::AlignCenter, QStringLiteral("S"));

    // The chip package over the magnet's centre, pin 1 marked.
    const double side = magnet * 0.78;
    const QRectF chip(centre.x() - side / 2, centre.y() - side / 2, side, side);
    painter.setPen(QPen(palette().text().color(), 1));
    painter.setBrush(kPackage);
    painter.drawRoundedRect(chip, 3, 3);
    painter.setBrush(Qt::white);
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(chip.topLeft() + QPointF(side * 0.16, side * 0.16), side * 0.05,
                        side * 0.05);
    QFont mark = font();
    mark.setPixelSize(std::max(7, qRound(side * 0.2)));
    painter.setFont(mark);
    painter.setPen(Qt::white);
    painter.drawText(chip, Qt::AlignCenter, QStringLiteral("QZ7734"));

    // One arrow per shown part, the first innermost.
    for (std::size_t i = 0; i < directions.size(); ++i) {
        drawDirectionArrow(painter, centre, magnet + kRingGap * static_cast<double>(i + 1),
                           directions[i].colour, directions[i].clockwise);
    }

    painter.setFont(font());
    double y = rect().bottom() - legendHeight + 4;
    for (const Direction& d : directions) {
        const QRectF swatch(10, y + metrics.height() / 2 - 4, 14, 8);
        painter.fillRect(swatch, d.colour);
        painter.setPen(palette().text().color());
        painter.drawText(QRectF(30, y, width() - 36, metrics.height()),
                         Qt::AlignLeft | Qt::AlignVCenter,
                         tr("%1: angle grows %2").arg(d.part, directionWord(d.clockwise)));
        y += metrics.height();
    }
}

}  // namespace rk31
