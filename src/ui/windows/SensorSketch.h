#pragma once

#include <QColor>
#include <QString>
#include <QWidget>
#include <functional>
#include <vector>

namespace rk31 {

// The picture beside the teach-in controls: the chip seen from above, centred over its
// diametric magnet, with the direction in which each shown part's angle counts as it is set in
// the window (an arrow per part, in the colour of that part's curve). It tells a newcomer what
// "Set point A", "Set point B" and "clockwise" are about before the first chip is on the bench.
class SensorSketch : public QWidget {
    Q_OBJECT
  public:
    struct Direction {
        QString part;  // "Part#1", "Part#2"
        QColor colour;
        bool clockwise = false;
    };
    using DirectionsSource = std::function<std::vector<Direction>()>;

    explicit SensorSketch(DirectionsSource source, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    // What a screen reader says about the picture as it stands.
    QString describe() const;

  public slots:
    // The directions changed: repaint and update the description.
    void refresh();

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    DirectionsSource m_source;
};

}  // namespace rk31
