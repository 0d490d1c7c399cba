#include "sim/bench/CharacteristicPlot.h"

#include <QFontInfo>
#include <QLocale>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace rk31::sim {

namespace {

constexpr QColor kMagnetColour{40, 90, 220};
constexpr QColor kGridColour{210, 210, 210};
constexpr int kAngleStep = 30;  // a grid column, labelled
constexpr int kLevelStep = 25;  // a grid row, labelled
constexpr double kGap = 2;      // between a tick and its label's ink
constexpr double kSpacing = 4;  // at least between the ink of neighbouring labels
constexpr double kRim = 2;      // between a label and the widget's edge

QRectF ink(const QFontMetricsF& metrics, const QString& text) {
    return metrics.tightBoundingRect(text);
}

// The widest ink among the labels from 0 to `last`.
double widest(const QFontMetricsF& metrics, int step, int last) {
    double width = 0;
    for (int value = 0; value <= last; value += step) {
        width = std::max(width, ink(metrics, QLocale::c().toString(value)).width());
    }
    return width;
}

// A label whose baseline starts at `origin`; whole pixels keep the digits crisp.
PlotLayout::Label placed(const QString& text, int value, QPointF origin, bool turned,
                         const QRectF& ink) {
    origin = QPointF(std::round(origin.x()), std::round(origin.y()));
    const QRectF box =
        turned ? QRectF(origin.x() + ink.top(), origin.y() - ink.right(), ink.height(), ink.width())
               : ink.translated(origin);
    return {text, static_cast<double>(value), origin, turned, box};
}

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

PlotLayout LayOutPlot(QSizeF size, const QFontMetricsF& metrics) {
    const QLocale c = QLocale::c();
    const double reach = PlotLayout::kTick + kGap;
    const double digits = metrics.capHeight();
    const double levelWidth = widest(metrics, kLevelStep, 100);
    const double angleWidth = widest(metrics, kAngleStep, 360);

    const double left = kRim + levelWidth + reach;
    const double top = kRim + digits / 2;
    double right = kRim + angleWidth / 2;
    double bottom = reach + digits + kRim;
    const bool across = (size.width() - left - right) / (360 / kAngleStep) >= angleWidth + kSpacing;
    if (!across) {
        right = kRim + digits / 2;
        bottom = reach + angleWidth + kRim;
    }
    PlotLayout layout;
    layout.area = QRectF(left, top, std::max(1.0, size.width() - left - right),
                         std::max(1.0, size.height() - top - bottom));

    for (int level = 0; level <= 100; level += kLevelStep) {
        const QString text = c.toString(level);
        const QRectF r = ink(metrics, text);
        const QPointF origin(layout.area.left() - reach - r.right(),
                             layout.y(level) - (r.top() + r.height() / 2));
        layout.levels.push_back(placed(text, level, origin, false, r));
    }
    const double under = layout.area.bottom() + reach;
    for (int angle = 0; angle <= 360; angle += kAngleStep) {
        const QString text = c.toString(angle);
        const QRectF r = ink(metrics, text);
        const double x = layout.x(angle);
        // Turned a quarter to the left, the text runs upwards and ends next to its tick.
        const QPointF origin = across ? QPointF(x - (r.left() + r.width() / 2), under - r.top())
                                      : QPointF(x - (r.top() + r.height() / 2), under + r.right());
        layout.angles.push_back(placed(text, angle, origin, !across, r));
    }
    return layout;
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

QFont CharacteristicPlot::labelFont() const {
    QFont small = font();
    small.setPixelSize(
        std::max(10, static_cast<int>(std::lround(QFontInfo(font()).pixelSize() * 0.9))));
    return small;
}

void CharacteristicPlot::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    const QFont font = labelFont();
    painter.setFont(font);
    const PlotLayout layout = LayOutPlot(size(), QFontMetricsF(font, this));
    const QRectF& area = layout.area;

    painter.setPen(kGridColour);
    for (const auto& label : layout.angles) {
        painter.drawLine(QPointF(layout.x(label.value), area.top()),
                         QPointF(layout.x(label.value), area.bottom()));
    }
    for (const auto& label : layout.levels) {
        painter.drawLine(QPointF(area.left(), layout.y(label.value)),
                         QPointF(area.right(), layout.y(label.value)));
    }
    painter.setPen(Qt::black);
    painter.drawRect(area);
    for (const auto& label : layout.angles) {
        const double x = layout.x(label.value);
        painter.drawLine(QPointF(x, area.bottom()), QPointF(x, area.bottom() + PlotLayout::kTick));
    }
    for (const auto& label : layout.levels) {
        const double y = layout.y(label.value);
        painter.drawLine(QPointF(area.left() - PlotLayout::kTick, y), QPointF(area.left(), y));
    }
    for (const auto* labels : {&layout.levels, &layout.angles}) {
        for (const auto& label : *labels) {
            painter.save();
            painter.translate(label.origin);
            if (label.turned) {
                painter.rotate(-90);
            }
            painter.drawText(QPointF(0, 0), label.text);
            painter.restore();
        }
    }

    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setPen(QPen(m_colour, 2));
    const auto& levels = m_curve.levels;
    for (std::size_t i = 1; i < levels.size(); ++i) {
        painter.drawLine(QPointF(layout.x(static_cast<double>(i - 1)), layout.y(levels[i - 1])),
                         QPointF(layout.x(static_cast<double>(i)), layout.y(levels[i])));
    }
    painter.setPen(QPen(kMagnetColour, 1));
    painter.drawLine(QPointF(layout.x(m_curve.magnet), area.top()),
                     QPointF(layout.x(m_curve.magnet), area.bottom()));
    if (m_curve.output) {
        painter.setBrush(kMagnetColour);
        painter.drawEllipse(QPointF(layout.x(m_curve.magnet), layout.y(*m_curve.output)), 3.5, 3.5);
    }
}

}  // namespace rk31::sim
