#include "ui/dialogs/waitform.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QLabel>
#include <QVBoxLayout>

namespace rk31 {

waitform::waitform(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("waitform"));
    setWindowTitle(QString());
    setModal(false);
    // A close box would only invite a request that is refused anyway.
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    // It only tells; taking the activation would repaint the whole main window as inactive,
    // and again as active when it goes, on every command.
    setAttribute(Qt::WA_ShowWithoutActivating);

    m_label = new QLabel(QStringLiteral("Programming EEPROM...  Please Wait..."), this);
    m_label->setObjectName(QStringLiteral("Label1"));
    m_label->setAlignment(Qt::AlignCenter);
    m_label->setWordWrap(true);
    m_label->setMinimumWidth(m_label->fontMetrics().averageCharWidth() * 48);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->addWidget(m_label);
}

void waitform::showEvent(QShowEvent* event) {
    // The window's load.
    m_label->setText(m_message);
    QDialog::showEvent(event);
}

void waitform::TextChange(const QString& str) {
    m_label->setText(str);
    m_label->repaint();
}

void waitform::ShowModeless() {
    // A window that is shown again comes up on top by itself; raising it as well would only
    // stir the window system on every command.
    show();
    QCoreApplication::processEvents();
}

void waitform::unload() {
    m_unloading = true;
    close();
    m_unloading = false;
}

void waitform::reject() {
    // Escape is a close request like the close box: ignored while the sequence runs.
    if (m_unloading) {
        QDialog::reject();
    }
}

void waitform::closeEvent(QCloseEvent* event) {
    if (m_unloading) {
        QDialog::closeEvent(event);
    } else {
        event->ignore();
    }
}

}  // namespace rk31
