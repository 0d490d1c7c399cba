#pragma once

#include <QColor>
#include <QFont>
#include <QTransform>
#include <QWidget>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "domain/Curve.h"
#include "domain/CurveMeasurements.h"
#include "domain/CurveTypes.h"

class QPainter;

namespace rk31 {

// Part#1, and the only part of a single-part plot, is drawn in pure green; Part#2 beside it in
// pure red.
inline const QColor kFirstCurveColour{0, 255, 0};
inline const QColor kSecondCurveColour{255, 0, 0};

struct ShownPart {
    std::int16_t part = 0;
    QColor colour = kFirstCurveColour;
};
using ShownParts = std::vector<ShownPart>;

// One part alone, in the single-part colour whatever its index.
ShownParts SinglePart(std::int16_t part);
// Part#1 in green and Part#2 in red.
ShownParts BothParts();
// The part indexes shown, in drawing order.
std::vector<int> ShownPartIndexes(const ShownParts& parts);

// The visible plot area in plot units: angle -20..380 left to right, level 120 (top) to -20.
inline constexpr double kPlotLeft = -20;
inline constexpr double kPlotRight = 380;
inline constexpr double kPlotTop = 120;
inline constexpr double kPlotBottom = -20;

// Drawing in plot units on a painter that covers a widget of `size` pixels. Lines and circles go
// through the plot transform; text is placed at the mapped point and drawn in device pixels, so
// that it stays upright and readable however the plot is stretched.
class PlotCanvas {
  public:
    PlotCanvas(QPainter& painter, QSizeF size);

    // Plot units onto pixels; the aspect ratio follows the widget.
    static QTransform PlotTransform(QSizeF size);
    // A label size that keeps the level labels left of their axis at this widget size.
    static QFont LabelFont(const QFont& base, QSizeF size);
    // Every how many grid columns an angle label fits without touching its neighbours: 1 on a
    // wide plot, more on a narrow one.
    static int AngleLabelStep(const QFont& font, QSizeF size);

    // The text's top-left corner at plot point (x, y).
    void DrawLabel(std::int16_t x, std::int16_t y, const QString& str);
    void Line(double x1, double y1, double x2, double y2);
    // A round circle whose radius is `radius` angle units.
    void Circle(double x, double y, double radius);
    // A filled diamond of a fixed size in pixels, outlined in black, centred on (x, y).
    void Diamond(double x, double y, const QColor& fill);
    // Pens are cosmetic: their width is in pixels whatever the scale.
    void SetPen(const QColor& colour, int width);

  private:
    QPainter& m_painter;
    QTransform m_transform;
};

// The whole plot: white background, axes, grid with its labels, the curve of each shown part
// from `curves` until its first empty segment, the first `markedPoints` rounded points of each
// part as circles and its `readings` as filled diamonds in its colour; a legend naming the
// colours when there is more than one part, and the diamonds when there are readings.
void PaintTransferCurves(QPainter& painter, QSizeF size, const ShownParts& parts, int markedPoints,
                         const CurveTables& curves, const RoundedImages& rounded,
                         const PartReadings& readings = {});

// The plot picture box of the Linear Graph window and of the point windows. It draws the curves
// and rounded images it is given (the session's, which it watches).
class TransferCurvePlot : public QWidget {
    Q_OBJECT
  public:
    using PartsSource = std::function<ShownParts()>;

    TransferCurvePlot(const CurveTables& curves, const RoundedImages& rounded,
                      QWidget* parent = nullptr);

    void setShownParts(ShownParts parts);
    // Asked on every paint, for plots whose part is chosen elsewhere (a part selector).
    void setShownPartsSource(PartsSource source);
    ShownParts shownParts() const;

    // How many of the points A..D are marked: 4 in the Linear Graph, 2 in the point windows.
    // A warning over the plot about what is drawn (a curve the chip does not hold); empty: none.
    // A screen reader reads it as the plot's description.
    void setCaption(const QString& caption);
    const QString& caption() const { return m_caption; }
    void setMarkedPoints(int count);
    int markedPoints() const { return m_markedPoints; }

    // The size the plot asks for when its window opens; the Linear Graph's unless set.
    void setPreferredSize(QSize size);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    const CurveTables& curves() const { return *m_curves; }
    const RoundedImages& rounded() const { return *m_rounded; }

    // The measured points of each part, drawn over the curves of the parts shown.
    void setReadings(PartReadings readings);
    const PartReadings& readings() const { return m_readings; }

    // The curve under the pointer's angle: "Angle 123° · Level 45.5 %VDD" for one part,
    // "Angle 123° · Part#1 45.5 %VDD · Part#2 50.0 %VDD" for two, "Angle 123° · no curve" where
    // none is drawn; empty when the pointer is not over the plot.
    QString hoverText() const;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    // The level of each shown part's curve at the hovered angle, where it has one.
    struct HoverLevel {
        int part;
        double level;
        QColor colour;
    };
    std::vector<HoverLevel> hoverLevels() const;

    std::optional<double> m_hover;  // the angle under the pointer, in whole degrees
    PartsSource m_source;
    int m_markedPoints = 4;
    QString m_caption;
    QSize m_preferredSize{880, 440};
    const CurveTables* m_curves;
    const RoundedImages* m_rounded;
    PartReadings m_readings;
};

}  // namespace rk31
