#pragma once

#include <QMessageBox>
#include <QPointer>
#include <QWidget>

#include "domain/Prompts.h"

namespace rk31 {

// The icon of a message box: information for a value put in place of a typed one, a warning
// for every refusal and failure.
QMessageBox::Icon IconFor(const QString& text);

// Message boxes and file dialogs of the desktop, parented to the active window, titled like the
// windows.
class QtPrompts : public Prompts {
  public:
    void message(const QString& text) override;
    bool question(const QString& text) override;
    QString openFileName(const QString& title, const QString& suggested) override;
    QString saveFileName(const QString& title, const QString& suggested, const QStringList& filters,
                         int* chosenFilter) override;
    void runModal(QDialog& dialog) override;
};

class QtPause : public Pause {
  public:
    void sleep(int milliseconds) override;
};

}  // namespace rk31
