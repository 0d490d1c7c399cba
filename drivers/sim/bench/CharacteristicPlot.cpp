#include "sim/bench/CharacteristicPlot.h"

#include <QFontMetrics>
#include <QLocale>
#include <QPainter>

namespace rk31::sim {

namespace {

constexpr QColor kMagnetColour{40, 90, 220};
constexpr QColor kGridColour{210, 210, 210};
constexpr int kAngleStep = 30;   // a grid column
constexpr int kAngleLabel = 90;  // a labelled column
constexpr int kLevelStep = 25;   // a grid row, labelled

}  // namespace

QColor PartColour(int part) {
    return part == 0 ? QColor(0, 255, 0) : QColor(255, 0, 0);
}

std::vector<double> SampleLevels(const Characteristic& characteristic) {
    std::vector<double> levels;
    levels.reserve(361);
    for (int degree = 0; degree < 360; ++degree) {
        levels.push_back(characteristic.Level(degree));
    }
    // The curve runs up to the seam: 360 itself would wrap to the level at 0.
    levels.push_back(characteristic.Level(359.999));
    return levels;
}

CharacteristicPlot::CharacteristicPlot(QColor colour, QWidget* parent)
    : QWidget(parent), m_colour(colour) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void CharacteristicPlot::setCurve(DieCurve curve) {
    if (curve == m_curve) {
        return;
    }
    m_curve = std::move(curve);
    update();
}

void CharacteristicPlot::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    QFont font = painter.font();
    font.setPixelSize(10);
    painter.setFont(font);
    const QFontMetrics metrics(font);
    // The labels stand outside the grid: the levels left of it, the angles under it.
    const QRectF area(metrics.horizontalAdvance(QStringLiteral("100")) + 6.0, 4.0,
                      width() - metrics.horizontalAdvance(QStringLiteral("100")) - 16.0,
                      height() - metrics.height() - 10.0);
    const auto x = [&area](double degrees) { return area.left() + area.width() * degrees / 360; };
    const auto y = [&area](double level) { return area.bottom() - area.height() * level / 100; };
    const QLocale c = QLocale::c();

    painter.setPen(kGridColour);
    for (int angle = kAngleStep; angle < 360; angle += kAngleStep) {
        painter.drawLine(QPointF(x(angle), area.top()), QPointF(x(angle), area.bottom()));
    }
    for (int level = kLevelStep; level < 100; level += kLevelStep) {
        painter.drawLine(QPointF(area.left(), y(level)), QPointF(area.right(), y(level)));
    }
    painter.setPen(Qt::black);
    painter.drawRect(area);
    for (int level = 0; level <= 100; level += kLevelStep) {
        const QRectF box(0, y(level) - metrics.height() / 2.0, area.left() - 3, metrics.height());
        painter.drawText(box, Qt::AlignRight | Qt::AlignVCenter, c.toString(level));
    }
    for (int angle = 0; angle <= 360; angle += kAngleLabel) {
        const QString text = c.toString(angle);
        const double w = metrics.horizontalAdvance(text);
        painter.drawText(QRectF(x(angle) - w / 2, area.bottom() + 2, w, metrics.height()),
                         Qt::AlignCenter, text);
    }

    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setPen(QPen(m_colour, 2));
    const auto& levels = m_curve.levels;
    for (std::size_t i = 1; i < levels.size(); ++i) {
        painter.drawLine(QPointF(x(static_cast<double>(i - 1)), y(levels[i - 1])),
                         QPointF(x(static_cast<double>(i)), y(levels[i])));
    }
    painter.setPen(QPen(kMagnetColour, 1));
    painter.drawLine(QPointF(x(m_curve.magnet), area.top()),
                     QPointF(x(m_curve.magnet), area.bottom()));
    if (m_curve.output) {
        painter.setBrush(kMagnetColour);
        painter.drawEllipse(QPointF(x(m_curve.magnet), y(*m_curve.output)), 3.5, 3.5);
    }
}

}  // namespace rk31::sim
