#include "ui/kit/QtPrompts.h"

#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QMessageBox>
#include <QThread>
#include <algorithm>

#include "domain/AppTitle.h"
#include "ui/kit/BusyCursor.h"

namespace rk31 {

QMessageBox::Icon IconFor(const QString& text) {
    // A box that only says what was put in place of a typed value informs; every other one
    // reports a refusal or a failure.
    return text.endsWith(QStringLiteral(" instead!")) ? QMessageBox::Information
                                                      : QMessageBox::Warning;
}

void QtPrompts::message(const QString& text) {
    const ArrowWhileAsking arrow;
    QMessageBox box(IconFor(text), QString::fromLatin1(kAppTitle), text, QMessageBox::Ok,
                    QApplication::activeWindow());
    box.exec();
}

bool QtPrompts::question(const QString& text) {
    const ArrowWhileAsking arrow;
    QMessageBox box(QMessageBox::Question, QString::fromLatin1(kAppTitle), text,
                    QMessageBox::Yes | QMessageBox::No, QApplication::activeWindow());
    return box.exec() == QMessageBox::Yes;
}

QString QtPrompts::openFileName(const QString& title, const QString& suggested) {
    const ArrowWhileAsking arrow;
    return QFileDialog::getOpenFileName(QApplication::activeWindow(), title, suggested);
}

QString QtPrompts::saveFileName(const QString& title, const QString& suggested,
                                const QStringList& filters, int* chosenFilter) {
    const ArrowWhileAsking arrow;
    QString selectedFilter;
    // The program asks its own overwrite question after adding an ending.
    const QString name = QFileDialog::getSaveFileName(
        QApplication::activeWindow(), title, suggested, filters.join(QStringLiteral(";;")),
        &selectedFilter, QFileDialog::DontConfirmOverwrite);
    if (chosenFilter) {
        *chosenFilter = std::max(0, static_cast<int>(filters.indexOf(selectedFilter)));
    }
    return NameWithFilterEnding(name, selectedFilter);
}

void QtPrompts::runModal(QDialog& dialog) {
    const ArrowWhileAsking arrow;
    dialog.exec();
}

void QtPause::sleep(int milliseconds) {
    QThread::msleep(static_cast<unsigned long>(milliseconds));
}

}  // namespace rk31
