#include "sim/bench/FaultsPanel.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSpinBox>

#include "sim/bench/BenchControls.h"

namespace rk31::sim {

namespace {

// The name RK31_SIM knows a setting by goes in the control's tip, kept off the row so that the
// bench fits beside a main window.
void tipKey(QWidget* control, const char* key) {
    const QString name = QStringLiteral("RK31_SIM name: ") + QString::fromLatin1(key);
    control->setToolTip(control->toolTip().isEmpty() ? name : control->toolTip() + u'\n' + name);
}

template <typename Control, typename Value>
void showQuietly(Control* control, Value value) {
    if (control->value() != value && !control->hasFocus()) {
        const QSignalBlocker quiet(control);
        control->setValue(value);
    }
}

}  // namespace

FaultsPanel::FaultsPanel(std::shared_ptr<SimulatedBox> box, QWidget* parent)
    : QGroupBox(QStringLiteral("Faults and settings"), parent), m_box(std::move(box)) {
    setObjectName(QStringLiteral("faults"));
    auto* grid = new QGridLayout(this);
    grid->setVerticalSpacing(3);
    int row = 0;
    addPartSwitches(grid, row);
    addValues(grid, row);
    grid->setColumnStretch(0, 1);
    grid->setRowStretch(row, 1);
    // What a switch turned on stands out at once, not at the next look at the box.
    connect(this, &FaultsPanel::switched, this, &FaultsPanel::refresh);
    refresh();
}

void FaultsPanel::addPartSwitches(QGridLayout* grid, int& row) {
    for (const PartsSetting& setting : PartsSettings()) {
        auto* label = new QLabel(QString::fromLatin1(setting.title), this);
        tipKey(label, setting.key);
        grid->addWidget(label, row, 0);
        m_refreshers.push_back([this, label, &setting] {
            MarkOn(label, m_box->partSetting(setting, 0) || m_box->partSetting(setting, 1));
        });
        for (int part = 0; part < 2; ++part) {
            auto* box = new QCheckBox(QStringLiteral("#%1").arg(part + 1), this);
            box->setObjectName(
                QStringLiteral("%1_%2").arg(QString::fromLatin1(setting.key)).arg(part));
            box->setAccessibleName(QStringLiteral("%1, Part #%2").arg(label->text()).arg(part + 1));
            if (part == 0) {
                label->setBuddy(box);
            }
            tipKey(box, setting.key);
            grid->addWidget(box, row, 1 + part);
            connect(box, &QCheckBox::toggled, this, [this, &setting, part](bool on) {
                m_box->setPartSetting(setting, part, on);
                switched();
            });
            m_refreshers.push_back([this, box, &setting, part] {
                CheckQuietly(box, m_box->partSetting(setting, part));
                MarkOn(box, box->isChecked());
            });
        }
        ++row;
    }
    for (const FlagSetting& setting : FlagSettings()) {
        auto* box = new QCheckBox(QString::fromLatin1(setting.title), this);
        box->setObjectName(QString::fromLatin1(setting.key));
        tipKey(box, setting.key);
        grid->addWidget(box, row++, 0, 1, 3);
        connect(box, &QCheckBox::toggled, this, [this, &setting](bool on) {
            m_box->config.*setting.flag = on;
            switched();
        });
        m_refreshers.push_back([this, box, &setting] {
            CheckQuietly(box, m_box->config.*setting.flag);
            MarkOn(box, box->isChecked());
        });
    }
}

void FaultsPanel::addValues(QGridLayout* grid, int& row) {
    const auto place = [this, grid, &row](const char* title, QWidget* control, const char* key) {
        auto* label = BuddyLabel(QString::fromLatin1(title), control, this);
        tipKey(control, key);
        grid->addWidget(label, row, 0);
        grid->addWidget(control, row++, 1, 1, 2);
        return label;
    };
    // A code or status word other than 0 is a fault.
    enum Kind { Setting, Fault };
    const auto whole = [this, &place](const char* key, const char* title, int low, int high,
                                      int SimConfig::*field, Kind kind,
                                      const QString& suffix = {}) {
        auto* spin = new QSpinBox(this);
        spin->setObjectName(QString::fromLatin1(key));
        spin->setRange(low, high);
        spin->setSuffix(suffix);
        QLabel* label = place(title, spin, key);
        connect(spin, &QSpinBox::valueChanged, this, [this, field](int v) {
            m_box->config.*field = v;
            switched();
        });
        m_refreshers.push_back([this, spin, label, field, kind] {
            showQuietly(spin, m_box->config.*field);
            MarkOn(label, kind == Fault && m_box->config.*field != 0);
        });
    };
    whole("latency", "Latency per call", 0, 5000, &SimConfig::latencyMs, Setting,
          QStringLiteral(" ms"));
    whole("wbd_code", "WriteBufferToDevice code", -99, 99, &SimConfig::writeBufferCode, Fault);
    whole("dac_status", "DAC calibration status", -32768, 32767, &SimConfig::dacStatus, Fault);
    // The station: which chips the per-part faults hit, and how many chips the feeder holds.
    whole("fault_every", "Faults hit every n-th chip", 1, 9999, &SimConfig::faultEvery, Setting);
    whole("chips", "Chips in the feeder, 0 endless", 0, 99999, &SimConfig::chips, Setting);
    auto* fixture = new QCheckBox(QStringLiteral("Magnet fixture"), this);
    fixture->setObjectName(QStringLiteral("fixture"));
    fixture->setToolTip(
        QStringLiteral("The station turns the magnet; untick for a bench where a hand does"));
    tipKey(fixture, "fixture");
    grid->addWidget(fixture, row++, 0, 1, 3);
    connect(fixture, &QCheckBox::toggled, this, [this](bool on) { m_box->config.fixture = on; });
    m_refreshers.push_back([this, fixture] { CheckQuietly(fixture, m_box->config.fixture); });

    auto* vdd = new QDoubleSpinBox(this);
    vdd->setObjectName(QStringLiteral("vdd"));
    vdd->setRange(0, 9.99);
    vdd->setDecimals(2);
    vdd->setSingleStep(0.1);
    vdd->setSuffix(QStringLiteral(" V"));
    place("Supply voltage", vdd, "vdd");
    connect(vdd, &QDoubleSpinBox::valueChanged, this,
            [this](double v) { m_box->config.vdd = static_cast<float>(v); });
    m_refreshers.push_back([this, vdd] {
        if (!vdd->hasFocus() && static_cast<float>(vdd->value()) != m_box->config.vdd) {
            const QSignalBlocker quiet(vdd);
            vdd->setValue(m_box->config.vdd);
        }
    });

    auto* fixed = new QCheckBox(QStringLiteral("Fixed output reading"), this);
    fixed->setObjectName(QStringLiteral("outputFixed"));
    tipKey(fixed, "output");
    auto* output = new QDoubleSpinBox(this);
    output->setObjectName(QStringLiteral("output"));
    output->setRange(-999, 999);
    output->setDecimals(2);
    output->setSuffix(QStringLiteral(" %"));
    output->setValue(150);
    output->setAccessibleName(QStringLiteral("Fixed output reading in percent"));
    grid->addWidget(fixed, row, 0);
    grid->addWidget(output, row++, 1, 1, 2);
    const auto applyOutput = [this, fixed, output] {
        m_box->config.outputOverride =
            fixed->isChecked() ? std::optional(static_cast<float>(output->value())) : std::nullopt;
        switched();
    };
    connect(fixed, &QCheckBox::toggled, this, applyOutput);
    connect(fixed, &QCheckBox::toggled, output, &QWidget::setEnabled);
    connect(output, &QDoubleSpinBox::valueChanged, this, applyOutput);
    m_refreshers.push_back([this, fixed, output] {
        const auto& fixedAt = m_box->config.outputOverride;
        CheckQuietly(fixed, fixedAt.has_value());
        MarkOn(fixed, fixedAt.has_value());
        output->setEnabled(fixedAt.has_value());
        if (fixedAt && static_cast<float>(output->value()) != *fixedAt && !output->hasFocus()) {
            const QSignalBlocker quiet(output);
            output->setValue(*fixedAt);
        }
    });
}

void FaultsPanel::refresh() {
    for (const auto& bringInLine : m_refreshers) {
        bringInLine();
    }
}

}  // namespace rk31::sim
