#pragma once

#include <QFileInfo>
#include <QStringList>

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
    // `filters` ("PNG picture (*.png)", ...) are offered in turn; a name chosen without an
    // ending gets the ending of the filter chosen with it (see NameWithFilterEnding), whose
    // index goes to `chosenFilter` when it is given.
    virtual QString saveFileName(const QString& title, const QString& suggested,
                                 const QStringList& filters, int* chosenFilter) = 0;
    // Shows an already built dialog modally and returns when it is hidden or closed.
    virtual void runModal(QDialog& dialog) = 0;
};

// Blocking sleep on the GUI thread.
class Pause {
  public:
    virtual ~Pause() = default;
    virtual void sleep(int milliseconds) = 0;
};

// `name` as chosen in a save dialog under `filter` ("PNG picture (*.png)"): a name without an
// ending gets the filter's; any other name is kept as typed.
inline QString NameWithFilterEnding(const QString& name, const QString& filter) {
    const qsizetype star = filter.indexOf(QStringLiteral("(*."));
    const qsizetype close = filter.indexOf(u')', star);
    if (name.isEmpty() || star < 0 || close < 0 || !QFileInfo(name).suffix().isEmpty()) {
        return name;
    }
    return name + filter.mid(star + 2, close - star - 2);
}

// Shows each message in turn, as the calculations that return them would have shown them.
inline void ShowMessages(Prompts& prompts, const QStringList& messages) {
    for (const QString& text : messages) {
        prompts.message(text);
    }
}

}  // namespace rk31
