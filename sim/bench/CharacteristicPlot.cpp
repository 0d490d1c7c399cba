#include "sim/bench/CharacteristicPlot.h"

#include <QPainter>

#include "display/TransferCurvePlot.h"

namespace rk31::sim {

namespace {

constexpr QColor kMagnetColour{40, 90, 220};

}  // namespace

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
    static const CurveTables kNoCurves{};
    static const RoundedImages kNoPoints{};
    QPainter painter(this);
    PaintTransferCurves(painter, size(), {}, 0, kNoCurves, kNoPoints);

    painter.setRenderHint(QPainter::Antialiasing, true);
    PlotCanvas canvas(painter, size());
    canvas.SetPen(m_colour, 2);
    const auto& levels = m_curve.levels;
    for (std::size_t i = 1; i < levels.size(); ++i) {
        canvas.Line(static_cast<double>(i - 1), levels[i - 1], static_cast<double>(i), levels[i]);
    }
    canvas.SetPen(kMagnetColour, 1);
    canvas.Line(m_curve.magnet, 0, m_curve.magnet, 100);
    if (m_curve.output) {
        painter.setBrush(kMagnetColour);
        canvas.Circle(m_curve.magnet, *m_curve.output, 4);
    }
}

}  // namespace rk31::sim
