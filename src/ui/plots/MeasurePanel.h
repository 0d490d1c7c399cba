#pragma once

#include <QGroupBox>
#include <cstdint>
#include <functional>
#include <vector>

#include "domain/CurveMeasurements.h"

class QLabel;
class QPushButton;
class QSpinBox;

namespace rk31 {

class MagnetFixture;
class TransferCurvePlot;
struct WindowContext;

// What measuring needs of the main window it measures for: its context, the station's magnet
// fixture (nullptr where a hand turns the magnet), and its way of running a command, which
// reports a device failure and brings the window's record of the chip back in line.
struct MeasureSeams {
    WindowContext& ctx;
    MagnetFixture* fixture = nullptr;
    std::function<void(const std::function<void()>&)> run;
};

// The Measure group beside a plot: measures the parts the plot shows and marks the readings on
// it. With a fixture, Measure steps the magnet through a whole turn (a new sweep replaces the
// part's earlier readings); without one, Add measurement reads where the hand has left the magnet
// and adds a point. The result line gives each part's largest deviation from its drawn curve.
class MeasurePanel : public QGroupBox {
    Q_OBJECT
  public:
    MeasurePanel(MeasureSeams seams, TransferCurvePlot& plot, QWidget* parent = nullptr);

    // Rewrites the result line from the plot's parts, curves and readings.
    void refresh();
    // Forgets every reading.
    void clear();

  private:
    std::vector<std::int16_t> measuredParts() const;
    void sweep();
    void addMeasurement();
    // Puts `taken` on the plot: over the earlier readings of each part, or after them.
    void show(const PartReadings& taken, bool replace);

    MeasureSeams m_seams;
    TransferCurvePlot& m_plot;
    QSpinBox* m_step = nullptr;
    QLabel* m_result = nullptr;
};

}  // namespace rk31
