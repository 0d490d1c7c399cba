#include "ui/dialogs/RealTimeDisplayBar.h"

#include <QButtonGroup>
#include <QCoreApplication>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHideEvent>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QRadioButton>
#include <QShowEvent>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "device/DeviceSession.h"
#include "domain/Formats.h"
#include "domain/Prompts.h"
#include "domain/Rounding.h"
#include "rk31/DeviceError.h"

namespace rk31 {

namespace {

constexpr int kTickMs = 100;
constexpr int kSwitchSettleMs = 200;
constexpr double kDegreesPerPercent = 3.6;

QString indexed(const char* name, int index) {
    return QStringLiteral("%1_%2").arg(QLatin1String(name)).arg(index);
}

QProgressBar* makeBar(const QString& name, int maximum, const QString& caption, QWidget* parent) {
    auto* bar = new QProgressBar(parent);
    bar->setObjectName(name);
    bar->setRange(0, maximum);
    bar->setValue(0);
    // The number box beside the bar gives the value; a bar text would read "%" on the angle bar.
    bar->setTextVisible(false);
    bar->setMinimumWidth(320);
    bar->setAccessibleName(caption);
    return bar;
}

QLineEdit* makeNumberBox(const QString& name, QWidget* parent) {
    auto* box = new QLineEdit(parent);
    box->setObjectName(name);
    box->setReadOnly(true);
    box->setFocusPolicy(Qt::ClickFocus);  // read by its label, not visited with the tab key
    box->setAlignment(Qt::AlignRight);
    box->setMaximumWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("0000.000")) + 16);
    return box;
}

// What one reading of a part shows: its caption, a bar up to `maximum` with the full scale
// beside it, the number, and the number's unit when it has one. Control names start with
// `name` ("Percent", "Angle").
struct ReadingLook {
    const char* name;
    QString caption;
    int maximum;
    QString scale;
    QString unit;
};

struct ReadingRow {
    QLabel* label;
    QProgressBar* bar;
    QLineEdit* text;
};

// The caption on grid row `row`, the bar and its number on the row below.
ReadingRow addReadingRow(QGridLayout* grid, int row, int part, const ReadingLook& look,
                         QWidget* frame) {
    const auto named = [&look, part](const char* what) {
        return QStringLiteral("%1%2_%3")
            .arg(QLatin1String(look.name), QLatin1String(what))
            .arg(part);
    };
    auto* label = new QLabel(look.caption, frame);
    label->setObjectName(named("Caption"));
    auto* bar = makeBar(named("Bar"), look.maximum, look.caption, frame);
    auto* scale = new QLabel(look.scale, frame);
    scale->setObjectName(named("Scale"));
    auto* text = makeNumberBox(named("Text"), frame);
    label->setBuddy(text);
    grid->addWidget(label, row, 0, 1, 4);
    grid->addWidget(bar, row + 1, 0);
    grid->addWidget(scale, row + 1, 1);
    grid->addWidget(text, row + 1, 2);
    if (!look.unit.isEmpty()) {
        auto* unit = new QLabel(look.unit, frame);
        unit->setObjectName(named("Unit"));
        grid->addWidget(unit, row + 1, 3);
    }
    return {label, bar, text};
}

// A bar cannot show a value outside its range; a reading just below 101 fills it.
int barValue(double value, const QProgressBar& bar) {
    return std::clamp(RoundToInt32(value), bar.minimum(), bar.maximum());
}

}  // namespace

RealTimeDisplayBar::RealTimeDisplayBar(DeviceSession& session, Prompts& prompts, Pause& pause,
                                       QWidget* parent)
    : QDialog(parent), m_session(session), m_prompts(prompts), m_pause(pause) {
    setObjectName(QStringLiteral("RealTimeDisplayBar"));
    setWindowTitle(QStringLiteral("Real Time Output Display"));

    auto* layout = new QVBoxLayout(this);

    auto* optionRow = new QHBoxLayout;
    m_optionGroup = new QButtonGroup(this);
    for (int i = 0; i < 2; ++i) {
        auto* option = new QRadioButton(QStringLiteral("Part#&%1").arg(i + 1), this);
        option->setObjectName(indexed("PartsOption", i));
        option->setToolTip(QStringLiteral("Shows the output of Part#%1").arg(i + 1));
        m_optionGroup->addButton(option, i);
        optionRow->addWidget(option);
        m_options[static_cast<std::size_t>(i)] = option;
    }
    optionRow->addStretch(1);
    layout->addLayout(optionRow);

    for (int i = 0; i < 2; ++i) {
        const auto at = static_cast<std::size_t>(i);
        const QString partName = QStringLiteral("Part#%1").arg(i + 1);
        auto* frame = new QGroupBox(partName, this);
        frame->setObjectName(indexed("Frame", i));
        auto* grid = new QGridLayout(frame);

        const ReadingRow percent = addReadingRow(
            grid, 0, i,
            {"Percent",
             QStringLiteral("Measured Output of %1 in Percentage of Voltage:").arg(partName), 100,
             QStringLiteral("100%"), QString()},
            frame);
        const ReadingRow angle = addReadingRow(
            grid, 2, i,
            {"Angle", QStringLiteral("Measured Output of %1 in Angle (deg):").arg(partName), 360,
             QStringLiteral("360 deg"), QStringLiteral("deg")},
            frame);
        m_percentBars[at] = percent.bar;
        m_percentTexts[at] = percent.text;
        m_angleBars[at] = angle.bar;
        m_angleTexts[at] = angle.text;
        grid->setColumnStretch(0, 1);
        grid->setRowMinimumHeight(2, percent.label->sizeHint().height() + 6);
        grid->setAlignment(angle.label, Qt::AlignBottom);
        layout->addWidget(frame);
    }

    m_timer = new QTimer(this);
    m_timer->setObjectName(QStringLiteral("Timer1"));
    m_timer->setTimerType(Qt::PreciseTimer);
    m_timer->setInterval(kTickMs);
    connect(m_timer, &QTimer::timeout, this, &RealTimeDisplayBar::Timer1Tick);
    connect(m_optionGroup, &QButtonGroup::idClicked, this, &RealTimeDisplayBar::PartsOptionClick);
}

void RealTimeDisplayBar::Init(std::int16_t chipindex, std::int16_t num) {
    m_part = chipindex;
    m_num = num;
    std::int32_t status = 0;
    m_session.device().SelectOutputChannel(m_part, status);
}

void RealTimeDisplayBar::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (!event->spontaneous()) {
        Load();
    }
}

void RealTimeDisplayBar::hideEvent(QHideEvent* event) {
    if (!event->spontaneous()) {
        m_timer->stop();
    }
    QDialog::hideEvent(event);
}

void RealTimeDisplayBar::Load() {
    ShowReadings(0, 0);
    checkStoredPart();
    const bool switchable = m_num != 1;
    for (QRadioButton* option : m_options) {
        option->setEnabled(switchable);
    }
    m_timer->start(kTickMs);
}

void RealTimeDisplayBar::checkStoredPart() {
    // Neither option is checked for a part index other than 0 or 1.
    m_optionGroup->setExclusive(false);
    for (int i = 0; i < 2; ++i) {
        m_options[static_cast<std::size_t>(i)]->setChecked(i == m_part);
    }
    m_optionGroup->setExclusive(true);
}

void RealTimeDisplayBar::ShowReadings(float value1, float value2) {
    const std::array<float, 2> values{value1, value2};
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double angle = static_cast<double>(values[i]) * kDegreesPerPercent;
        m_percentBars[i]->setValue(barValue(values[i], *m_percentBars[i]));
        m_angleBars[i]->setValue(barValue(angle, *m_angleBars[i]));
        m_percentTexts[i]->setText(FormatSingle(values[i], 2));
        m_angleTexts[i]->setText(FormatDouble(angle, 2));
    }
}

void RealTimeDisplayBar::Timer1Tick() {
    // A driver waiting on its line runs this timer too; the reading waits for the next tick.
    if (!m_session.hasDevice() || m_session.callInProgress()) {
        return;
    }
    try {
        float value = 0;
        m_session.device().MeasureOutput(m_part, 1, value);
        if (!(value >= 0 && value < 101)) {
            m_timer->stop();
            m_prompts.message(QStringLiteral("Angle from Part#") + QString::number(m_part + 1) +
                              QStringLiteral(" is out of scope [") + SingleText(value) +
                              QStringLiteral("],Will be set to 0 instead!"));
            value = 0;
            hide();
        }
        if (m_part == 0) {
            ShowReadings(value, 0);
        } else {
            ShowReadings(0, value);
        }
        QCoreApplication::processEvents();
    } catch (const DeviceError& error) {
        stopAfterDeviceError(error.description());
    }
}

void RealTimeDisplayBar::PartsOptionClick(int index) {
    try {
        if (index != m_part) {
            std::int32_t status = 0;
            m_session.device().SelectOutputChannel(static_cast<std::int16_t>(index), status);
            m_pause.sleep(kSwitchSettleMs);
        }
        m_part = static_cast<std::int16_t>(index);
    } catch (const DeviceError& error) {
        // The measured part did not change, so the options go back to show it.
        checkStoredPart();
        stopAfterDeviceError(error.description());
    }
}

void RealTimeDisplayBar::stopAfterDeviceError(const QString& description) {
    m_timer->stop();
    m_prompts.message(description);
}

}  // namespace rk31
