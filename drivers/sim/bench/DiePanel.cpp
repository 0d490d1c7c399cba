#include "sim/bench/DiePanel.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "sim/bench/BenchControls.h"
#include "sim/bench/BenchText.h"
#include "sim/bench/CharacteristicPlot.h"

namespace rk31::sim {

DiePanel::DiePanel(std::shared_ptr<SimulatedBox> box, int part, QWidget* parent)
    : QGroupBox(QStringLiteral("Part #%1").arg(part + 1), parent),
      m_box(std::move(box)),
      m_part(part) {
    setObjectName(QStringLiteral("die_%1").arg(part));
    auto* layout = new QVBoxLayout(this);
    m_form = new QFormLayout;
    m_form->setContentsMargins(0, 0, 0, 0);
    m_form->setVerticalSpacing(0);
    layout->addLayout(m_form);

    addSupply();
    m_vdd = addRow(QStringLiteral("VDD"), QStringLiteral("vdd"));
    m_mode = addRow(QStringLiteral("Mode"), QStringLiteral("mode"));
    m_lock = addRow(QStringLiteral("Communication"), QStringLiteral("lock"));
    m_id = addRow(QStringLiteral("Identification"), QStringLiteral("id"));
    m_output = addRow(QStringLiteral("Output now"), QStringLiteral("output"));
    m_eeprom = addRow(QStringLiteral("EEPROM"), QStringLiteral("eeprom"));

    m_plot = new CharacteristicPlot(PartColour(part), this);
    m_plot->setObjectName(QStringLiteral("characteristic_%1").arg(part));
    m_plot->setAccessibleName(QStringLiteral("Part #%1 EEPROM characteristic").arg(part + 1));
    m_plot->setToolTip(
        QStringLiteral("The characteristic burnt into the EEPROM, in %VDD over the magnet angle; "
                       "the blue line is the magnet, the dot the output in ADC mode."));
    layout->addWidget(m_plot, 1);
    refresh();
}

void DiePanel::addSupply() {
    m_supply = new QCheckBox(QStringLiteral("on"), this);
    m_supply->setObjectName(QStringLiteral("supply_%1").arg(m_part));
    m_supply->setToolTip(
        QStringLiteral("Switches the die's supply as a bench supply would: on, "
                       "the die starts in ADC mode from its EEPROM"));
    connect(m_supply, &QCheckBox::toggled, this, [this](bool on) {
        if (on) {
            m_box->powerOn(m_part);
        } else {
            m_box->powerOff(m_part);
        }
        refresh();
    });
    m_form->addRow(BuddyLabel(QStringLiteral("Supply"), m_supply, this), m_supply);
}

QLabel* DiePanel::addRow(const QString& caption, const QString& name) {
    auto* value = new QLabel(this);
    value->setObjectName(QStringLiteral("%1_%2").arg(name).arg(m_part));
    value->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_form->addRow(BuddyLabel(caption, value, this), value);
    return value;
}

void DiePanel::refresh() {
    const SimulatedBox& box = *m_box;
    const Die& die = box.dies[static_cast<std::size_t>(m_part)];
    CheckQuietly(m_supply, die.powered);
    ShowText(m_vdd, VddText(box, m_part));
    ShowText(m_mode, ModeText(die.mode));
    ShowText(m_lock, die.locked ? QStringLiteral("locked for good") : QStringLiteral("open"));
    ShowText(m_id, IdentificationText(box, m_part));
    ShowText(m_output, OutputText(box, m_part));
    ShowText(m_eeprom,
             die.eeprom.blank ? QStringLiteral("blank (clamp low)") : QStringLiteral("programmed"));

    DieCurve curve{SampleLevels(die.eeprom), box.magnetAngle(), std::nullopt};
    if (die.inAdc() || box.config.outputOverride) {
        curve.output = box.output(m_part);
    }
    m_plot->setCurve(std::move(curve));
}

}  // namespace rk31::sim
