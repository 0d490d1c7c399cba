#pragma once

#include <QColor>
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

    QSize sizeHint() const override { return {240, 150}; }
    QSize minimumSizeHint() const override { return {220, 140}; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QColor m_colour;
    DieCurve m_curve;
};

}  // namespace rk31::sim
