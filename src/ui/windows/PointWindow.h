#pragma once

#include <array>

#include "procedures/points/PointCommands.h"
#include "ui/kit/MainWindowBase.h"

class QCheckBox;
class QGridLayout;
class QGroupBox;
class QLabel;
class QLayout;
class QTimer;

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

    // How often "Watch angle" reads the angle.
    static constexpr int kWatchIntervalMs = 250;

  protected:
    void afterDeviceFailure() override;
    void commandStarting() override;
    void commandFinished() override;

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
    // Set point A, marking the drawn curve as the earlier one.
    void setPointA();
    // Set point B, with the note that the part was programmed.
    void setPointB();
    // The parts the point commands act on now.
    std::vector<int> commandParts() const;
    QString pointBCaption() const;
    // The box that shows the watched angle of a part, beside its Angle B.
    QLabel* addWatchedAngle(int part, QWidget* frame);
    QCheckBox* addWatchToggle(QWidget* frame);
    // Watching runs while it is asked for and point A is taken with the part(s) in OWI mode.
    void updateWatch();
    void watchTick();
    // Repaints what shows the stored curve and the directions.
    void refreshPictures();

    const PointWindowTraits m_traits;
    TransferCurvePlot* m_plot = nullptr;
    MeasurePanel* m_measure = nullptr;
    SensorSketch* m_sketch = nullptr;
    QString m_lastExport;
    // Per part: what the plot says over that part's curve.
    std::array<QString, 2> m_curveCaption;
    QCheckBox* m_watch = nullptr;
    std::array<QLabel*, 2> m_watchedAngle{};
    QTimer* m_watchTimer = nullptr;
};

}  // namespace rk31
