#pragma once

#include <QColor>
#include <QFontMetricsF>
#include <QRectF>
#include <QWidget>
#include <optional>
#include <vector>

#include "sim/Characteristic.h"

namespace rk31::sim {

// The colour of each die's curve: the colours the program draws its parts in.
QColor PartColour(int part);

// What one die's small plot shows: its EEPROM characteristic, where the magnet is and, in ADC
// mode, the output it puts out there.
struct DieCurve {
    // The characteristic's level at every whole degree 0..359, and just below 360 last.
    std::vector<double> levels;
    double magnet = 0;
    std::optional<double> output;

    friend bool operator==(const DieCurve&, const DieCurve&) = default;
};

std::vector<double> SampleLevels(const Characteristic& characteristic);

// Where the parts of a small plot go in a widget of a given size.
struct PlotLayout {
    struct Label {
        QString text;
        double value = 0;     // the angle or level it names
        QPointF origin;       // the start of its baseline
        bool turned = false;  // written upwards, when the angles do not fit side by side
        QRectF box;           // the ink, in the widget's coordinates
    };
    static constexpr double kTick = 3;

    QRectF area;                // the grid
    std::vector<Label> levels;  // left of the grid, every 25 %VDD
    std::vector<Label> angles;  // under the grid, every 30 degrees
    double x(double degrees) const { return area.left() + area.width() * degrees / 360; }
    double y(double level) const { return area.bottom() - area.height() * level / 100; }
};

// Every label beside its axis and centred on its tick; the angles are turned upright when,
// written across, neighbours would touch.
PlotLayout LayOutPlot(QSizeF size, const QFontMetricsF& metrics);

// A small plot of a die: a grid over 0..360 degrees and 0..100 %VDD with its labels beside the
// axes, the die's curve in the part's colour, a line at the magnet's angle and a dot at the
// output.
class CharacteristicPlot : public QWidget {
    Q_OBJECT
  public:
    CharacteristicPlot(QColor colour, QWidget* parent = nullptr);

    // Repaints only when something changed.
    void setCurve(DieCurve curve);
    const DieCurve& curve() const { return m_curve; }
    // The labels' font: a little smaller than the window's, never below 10 pixels.
    QFont labelFont() const;

    QSize sizeHint() const override { return {240, 170}; }
    QSize minimumSizeHint() const override { return {200, 150}; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QColor m_colour;
    DieCurve m_curve;
};

}  // namespace rk31::sim
