#pragma once

#include <QGroupBox>
#include <memory>

#include "sim/SimulatedBox.h"

class QDial;
class QDoubleSpinBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace rk31::sim {

// The magnet both dies sense: a dial to drag, a box to type the angle, a rotation speed with
// start and stop, and the angle now.
class MagnetPanel : public QGroupBox {
    Q_OBJECT
  public:
    explicit MagnetPanel(std::shared_ptr<SimulatedBox> box, QWidget* parent = nullptr);

    void refresh();

  private:
    void applyTypedAngle();
    // Moves the magnet there, turning on as it turned.
    void moveTo(double degrees);
    void startOrStop();

    std::shared_ptr<SimulatedBox> m_box;
    QDial* m_dial = nullptr;
    QLineEdit* m_angle = nullptr;
    QLabel* m_refusal = nullptr;
    QDoubleSpinBox* m_speed = nullptr;
    QPushButton* m_rotate = nullptr;
    QLabel* m_now = nullptr;
};

}  // namespace rk31::sim
