#include "ui/dialogs/confirm.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace rk31 {

confirm::confirm(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("confirm"));
    setWindowTitle(QStringLiteral("RK28 GUI - QZ7734"));

    auto* label = new QLabel(
        QStringLiteral("The OWI Communication will be DISABLED...please confirm to move on..."),
        this);
    label->setObjectName(QStringLiteral("Label1"));

    m_yes = new QPushButton(QStringLiteral("C&onfirm"), this);
    m_yes->setObjectName(QStringLiteral("yes"));
    m_yes->setToolTip(QStringLiteral("Locks the part's communication for good"));
    m_no = new QPushButton(QStringLiteral("C&ancel"), this);
    m_no->setObjectName(QStringLiteral("no"));
    m_no->setToolTip(QStringLiteral("Leaves the part as it is"));
    // Locking is for good: Enter must not confirm it by accident.
    m_yes->setAutoDefault(false);
    m_no->setDefault(true);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_yes);
    buttons->addWidget(m_no);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addSpacing(8);
    layout->addLayout(buttons);

    connect(m_yes, &QPushButton::clicked, this, [this] {
        m_selection = true;
        accept();
    });
    connect(m_no, &QPushButton::clicked, this, [this] {
        m_selection = false;
        reject();
    });
}

void confirm::showEvent(QShowEvent* event) {
    m_selection = false;
    QDialog::showEvent(event);
}

}  // namespace rk31
