#include "display/RealTimeDisplayBar.h"

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

#include "core/DeviceError.h"
#include "core/Formats.h"
#include "core/Prompts.h"
#include "core/Rounding.h"
#include "core/Services.h"
#include "shell/DeviceSession.h"

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

// A bar cannot show a value outside its range; a reading just below 101 fills it.
int barValue(double value, const QProgressBar& bar) {
    return std::clamp(RoundToInt32(value), bar.minimum(), bar.maximum());
}

}  // namespace

RealTimeDisplayBar::RealTimeDisplayBar(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("RealTimeDisplayBar"));
    setWindowTitle(QStringLiteral("Real Time Output Display"));

    auto* layout = new QVBoxLayout(this);

    auto* optionRow = new QHBoxLayout;
    m_optionGroup = new QButtonGroup(this);
    for (int i = 0; i < 2; ++i) {
        auto* option = new QRadioButton(QStringLiteral("Part#%1").arg(i + 1), this);
        option->setObjectName(indexed("PartsOption", i));
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

        const QString percentCaption =
            QStringLiteral("Measured Output of %1 in Percentage of Voltage:").arg(partName);
        auto* percentLabel = new QLabel(percentCaption, frame);
        percentLabel->setObjectName(indexed("PercentCaption", i));
        m_percentBars[at] = makeBar(indexed("PercentBar", i), 100, percentCaption, frame);
        auto* percentScale = new QLabel(QStringLiteral("100%"), frame);
        percentScale->setObjectName(indexed("PercentScale", i));
        m_percentTexts[at] = makeNumberBox(indexed("PercentText", i), frame);
        percentLabel->setBuddy(m_percentTexts[at]);

        const QString angleCaption =
            QStringLiteral("Measured Output of %1 in Angle (deg):").arg(partName);
        auto* angleLabel = new QLabel(angleCaption, frame);
        angleLabel->setObjectName(indexed("AngleCaption", i));
        m_angleBars[at] = makeBar(indexed("AngleBar", i), 360, angleCaption, frame);
        auto* angleScale = new QLabel(QStringLiteral("360 deg"), frame);
        angleScale->setObjectName(indexed("AngleScale", i));
        m_angleTexts[at] = makeNumberBox(indexed("AngleText", i), frame);
        auto* angleUnit = new QLabel(QStringLiteral("deg"), frame);
        angleUnit->setObjectName(indexed("AngleUnit", i));
        angleLabel->setBuddy(m_angleTexts[at]);

        grid->addWidget(percentLabel, 0, 0, 1, 4);
        grid->addWidget(m_percentBars[at], 1, 0);
        grid->addWidget(percentScale, 1, 1);
        grid->addWidget(m_percentTexts[at], 1, 2);
        grid->addWidget(angleLabel, 2, 0, 1, 4);
        grid->addWidget(m_angleBars[at], 3, 0);
        grid->addWidget(angleScale, 3, 1);
        grid->addWidget(m_angleTexts[at], 3, 2);
        grid->addWidget(angleUnit, 3, 3);
        grid->setColumnStretch(0, 1);
        grid->setRowMinimumHeight(2, percentLabel->sizeHint().height() + 6);
        grid->setAlignment(angleLabel, Qt::AlignBottom);
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
    DeviceSession::instance().device().SelectOutputChannel(m_part, status);
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
    DeviceSession& session = DeviceSession::instance();
    if (!session.hasDevice()) {
        return;
    }
    try {
        float value = 0;
        session.device().MeasureOutput(m_part, 1, value);
        if (!(value >= 0 && value < 101)) {
            m_timer->stop();
            AppPrompts().message(QStringLiteral("Angle from Part#") + QString::number(m_part + 1) +
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
            DeviceSession::instance().device().SelectOutputChannel(static_cast<std::int16_t>(index),
                                                                   status);
            AppPause().sleep(kSwitchSettleMs);
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
    AppPrompts().message(description);
}

}  // namespace rk31
