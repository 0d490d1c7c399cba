#include "core/widgets/QtPrompts.h"

#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QMessageBox>
#include <QThread>

#include "core/AppTitle.h"

namespace rk31 {

namespace {

QString applicationTitle() {
    const QString name = QApplication::applicationDisplayName();
    return name.isEmpty() ? QString::fromLatin1(kAppTitle) : name;
}

}  // namespace

void QtPrompts::message(const QString& text) {
    QMessageBox box(QMessageBox::NoIcon, applicationTitle(), text, QMessageBox::Ok,
                    QApplication::activeWindow());
    box.exec();
}

bool QtPrompts::question(const QString& text) {
    QMessageBox box(QMessageBox::NoIcon, applicationTitle(), text,
                    QMessageBox::Yes | QMessageBox::No, QApplication::activeWindow());
    return box.exec() == QMessageBox::Yes;
}

QString QtPrompts::openFileName(const QString& title, const QString& suggested) {
    return QFileDialog::getOpenFileName(QApplication::activeWindow(), title, suggested);
}

QString QtPrompts::saveFileName(const QString& title, const QString& suggested) {
    // The program asks its own overwrite question after adding ".txt".
    return QFileDialog::getSaveFileName(QApplication::activeWindow(), title, suggested, QString(),
                                        nullptr, QFileDialog::DontConfirmOverwrite);
}

void QtPrompts::runModal(QDialog& dialog) {
    dialog.exec();
}

void QtPause::sleep(int milliseconds) {
    QThread::msleep(static_cast<unsigned long>(milliseconds));
}

}  // namespace rk31
