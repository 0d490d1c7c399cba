#pragma once

#include <QPointer>
#include <QWidget>

#include "core/Prompts.h"

namespace rk31 {

// Message boxes and file dialogs of the desktop, parented to the active window.
class QtPrompts : public Prompts {
  public:
    void message(const QString& text) override;
    bool question(const QString& text) override;
    QString openFileName(const QString& title, const QString& suggested) override;
    QString saveFileName(const QString& title, const QString& suggested) override;
    void runModal(QDialog& dialog) override;
};

class QtPause : public Pause {
  public:
    void sleep(int milliseconds) override;
};

}  // namespace rk31
