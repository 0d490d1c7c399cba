#pragma once

#include <QGroupBox>
#include <memory>

#include "sim/SimulatedBox.h"

class QCheckBox;
class QFormLayout;
class QLabel;

namespace rk31::sim {

class CharacteristicPlot;

// One die as the programmer cannot see it: supply, mode, lock, identification, what its EEPROM
// holds and what it puts out now. Only the supply can be switched here, as on a test bench, to
// watch a programmed die's output in ADC mode; everything else changes through device calls.
class DiePanel : public QGroupBox {
    Q_OBJECT
  public:
    DiePanel(std::shared_ptr<SimulatedBox> box, int part, QWidget* parent = nullptr);

    void refresh();

  private:
    QLabel* addRow(const QString& caption, const QString& name);
    void addSupply();

    std::shared_ptr<SimulatedBox> m_box;
    int m_part;
    QFormLayout* m_form = nullptr;
    QCheckBox* m_supply = nullptr;
    QLabel* m_vdd = nullptr;
    QLabel* m_mode = nullptr;
    QLabel* m_lock = nullptr;
    QLabel* m_id = nullptr;
    QLabel* m_eeprom = nullptr;
    QLabel* m_output = nullptr;
    CharacteristicPlot* m_plot = nullptr;
};

}  // namespace rk31::sim
