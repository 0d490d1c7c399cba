#pragma once

#include <QString>
#include <QStringList>

class QDialog;

namespace rk31 {

// Every user-visible message and every modal interaction goes through this seam, so that a
// test can script the answers and assert the exact texts.
class Prompts {
  public:
    virtual ~Prompts() = default;

    // A modal box with an OK button only, no icon, the application's title.
    virtual void message(const QString& text) = 0;
    // A modal Yes/No question; true means Yes.
    virtual bool question(const QString& text) = 0;
    // File dialogs; an empty result means cancelled. `suggested` is the last chosen name.
    virtual QString openFileName(const QString& title, const QString& suggested) = 0;
    virtual QString saveFileName(const QString& title, const QString& suggested) = 0;
    // Shows an already built dialog modally and returns when it is hidden or closed.
    virtual void runModal(QDialog& dialog) = 0;
};

// Blocking sleep on the GUI thread.
class Pause {
  public:
    virtual ~Pause() = default;
    virtual void sleep(int milliseconds) = 0;
};

// Shows each message in turn, as the calculations that return them would have shown them.
inline void ShowMessages(Prompts& prompts, const QStringList& messages) {
    for (const QString& text : messages) {
        prompts.message(text);
    }
}

}  // namespace rk31
