#pragma once

#include "procedures/points/PointCommands.h"
#include "ui/kit/MainWindowBase.h"

class QGridLayout;
class QGroupBox;
class QLayout;

namespace rk31 {

class MeasurePanel;
class SensorSketch;
class TransferCurvePlot;

// The teach-in main window. One implementation serves the five variants; its traits say
// whether it shows one part (chosen in PartSel) or both side by side, whether a Power On button
// prepares the part, and whether point B and the DP follow from offsets against point A.
class PointProgrammingWindow : public MainWindowBase {
    Q_OBJECT
  public:
    PointProgrammingWindow(Application& app, const PointWindowTraits& traits,
                           const QString& className, QWidget* parent = nullptr);

    const PointWindowTraits& traits() const { return m_traits; }

  protected:
    void afterDeviceFailure() override;

  private:
    void buildUi();
    QLayout* buildTopBar();
    QGroupBox* buildOnePartFrame();
    QGroupBox* buildDualFrame();
    // DP, clamps and direction of a part (box index -1 for the single boxes) from `row` on.
    int addCurveBoxes(QGridLayout* grid, int row, int part, QWidget* frame);
    // Angle and Level of points A and B of a part from `row` on.
    int addPointBoxes(QGridLayout* grid, int row, int part, QWidget* frame);
    QGroupBox* buildOffsetFrame();
    // A command button after whose handler the pictures are repainted.
    QAbstractButton* addCommand(const QString& name, const QString& caption,
                                std::function<void()> handler);
    // Set point B, with the note that the part was programmed.
    void setPointB();
    // Repaints what shows the stored curve and the directions.
    void refreshPictures();

    const PointWindowTraits m_traits;
    TransferCurvePlot* m_plot = nullptr;
    MeasurePanel* m_measure = nullptr;
    SensorSketch* m_sketch = nullptr;
    QString m_lastExport;
};

}  // namespace rk31
