#include "sim/bench/MagnetPanel.h"

#include <QDial>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <cmath>

#include "sim/bench/BenchControls.h"
#include "sim/bench/BenchText.h"

namespace rk31::sim {

namespace {

// The dial counts hundredths of a degree.
constexpr int kDialScale = 100;
constexpr double kDefaultSpeed = 30;

}  // namespace

MagnetPanel::MagnetPanel(std::shared_ptr<SimulatedBox> box, QWidget* parent)
    : QGroupBox(QStringLiteral("Magnet"), parent), m_box(std::move(box)) {
    setObjectName(QStringLiteral("magnet"));

    m_dial = new QDial(this);
    m_dial->setObjectName(QStringLiteral("magnetDial"));
    m_dial->setAccessibleName(QStringLiteral("Magnet angle dial"));
    m_dial->setToolTip(
        QStringLiteral("Drag to turn the magnet: 0 degrees at the bottom, growing "
                       "clockwise; arrow keys turn it by 1, Page keys by 15"));
    m_dial->setRange(0, 360 * kDialScale - 1);
    m_dial->setSingleStep(kDialScale);
    m_dial->setPageStep(15 * kDialScale);
    m_dial->setWrapping(true);
    m_dial->setFixedSize(96, 96);
    connect(m_dial, &QDial::valueChanged, this,
            [this](int value) { moveTo(static_cast<double>(value) / kDialScale); });

    m_now = new QLabel(this);
    m_now->setObjectName(QStringLiteral("magnetNow"));
    QFont big = m_now->font();
    big.setPointSizeF(big.pointSizeF() * 1.6);
    big.setBold(true);
    m_now->setFont(big);
    m_now->setAccessibleName(QStringLiteral("Magnet angle now"));

    m_angle = new QLineEdit(this);
    m_angle->setObjectName(QStringLiteral("magnetAngle"));
    m_angle->setMaximumWidth(80);
    m_angle->setToolTip(QStringLiteral("0.00 to 359.99 degrees; Enter moves the magnet"));
    connect(m_angle, &QLineEdit::editingFinished, this, &MagnetPanel::applyTypedAngle);

    m_refusal = new QLabel(this);
    m_refusal->setObjectName(QStringLiteral("magnetAngleMessage"));
    m_refusal->setWordWrap(true);
    m_refusal->setStyleSheet(QStringLiteral("color: #b00020;"));
    m_refusal->hide();

    m_speed = new QDoubleSpinBox(this);
    m_speed->setObjectName(QStringLiteral("magnetSpeed"));
    m_speed->setRange(-720, 720);
    m_speed->setDecimals(1);
    m_speed->setSingleStep(5);
    m_speed->setValue(m_box->magnetSpeed() != 0 ? m_box->magnetSpeed() : kDefaultSpeed);
    m_speed->setToolTip(QStringLiteral("Degrees per second; negative turns the other way"));
    connect(m_speed, &QDoubleSpinBox::valueChanged, this, [this](double speed) {
        if (m_box->magnetSpeed() != 0) {
            m_box->setMagnetAngle(m_box->magnetAngle(), speed);
        }
    });

    m_rotate = BenchButton(QString(), QStringLiteral("magnetRotate"), this);
    connect(m_rotate, &QPushButton::clicked, this, &MagnetPanel::startOrStop);

    auto* grid = new QGridLayout(this);
    grid->addWidget(m_dial, 0, 0, 4, 1);
    grid->addWidget(BuddyLabel(QStringLiteral("Angle now"), m_now, this), 0, 1);
    grid->addWidget(m_now, 0, 2);
    grid->addWidget(BuddyLabel(QStringLiteral("&Angle (deg)"), m_angle, this), 1, 1);
    grid->addWidget(m_angle, 1, 2);
    grid->addWidget(BuddyLabel(QStringLiteral("&Speed (deg/s)"), m_speed, this), 2, 1);
    grid->addWidget(m_speed, 2, 2);
    // Under the speed it starts, so that the panel stays narrow.
    grid->addWidget(m_rotate, 3, 2);
    grid->addWidget(m_refusal, 4, 0, 1, 3);
    grid->setColumnStretch(2, 1);
    grid->setRowStretch(5, 1);
    refresh();
}

void MagnetPanel::refresh() {
    const double angle = m_box->magnetAngle();
    const QString text = AngleText(angle) + QStringLiteral("\u00b0");
    ShowText(m_now, text);
    // A screen reader reads the name, so the name carries the value.
    if (const QString name = QStringLiteral("Magnet angle now ") + text;
        m_now->accessibleName() != name) {
        m_now->setAccessibleName(name);
    }
    // Neither the dial under the mouse nor a box being typed into is pulled away from the user.
    if (!m_dial->isSliderDown()) {
        const QSignalBlocker quiet(m_dial);
        m_dial->setValue(static_cast<int>(std::lround(angle * kDialScale)) % (360 * kDialScale));
    }
    if (!m_angle->hasFocus() && !m_angle->isModified()) {
        m_angle->setText(AngleText(angle));
    }
    const bool turning = m_box->magnetSpeed() != 0;
    m_rotate->setText(turning ? QStringLiteral("S&top") : QStringLiteral("S&tart"));
    if (turning && !m_speed->hasFocus() && m_speed->value() != m_box->magnetSpeed()) {
        const QSignalBlocker quiet(m_speed);
        m_speed->setValue(m_box->magnetSpeed());
    }
}

void MagnetPanel::applyTypedAngle() {
    if (!m_angle->isModified()) {
        return;
    }
    m_angle->setModified(false);
    const auto angle = TypedAngle(m_angle->text());
    if (!angle) {
        m_refusal->setText(RefusedAngleMessage(m_angle->text(), m_box->magnetAngle()));
        m_refusal->show();
        m_angle->selectAll();
        return;
    }
    m_refusal->hide();
    moveTo(*angle);
}

void MagnetPanel::moveTo(double degrees) {
    m_box->setMagnetAngle(degrees, m_box->magnetSpeed());
    refresh();
}

void MagnetPanel::startOrStop() {
    const bool turning = m_box->magnetSpeed() != 0;
    m_box->setMagnetAngle(m_box->magnetAngle(), turning ? 0.0 : m_speed->value());
    refresh();
}

}  // namespace rk31::sim
