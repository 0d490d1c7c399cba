#pragma once

#include <QDialog>
#include <QStringList>
#include <deque>
#include <functional>

#include "domain/Prompts.h"

namespace rk31::test {

// Records every message and answers questions, file dialogs and modal dialogs from scripts.
// An unscripted question answers No, an unscripted file dialog is cancelled, an unscripted modal
// dialog is closed with its close box.
class ScriptedPrompts : public Prompts {
  public:
    using DialogScript = std::function<void(QDialog&)>;

    void message(const QString& text) override;
    bool question(const QString& text) override;
    QString openFileName(const QString& title, const QString& suggested) override;
    // The scripted name, with the ending of filter `saveFilter` where it has none.
    QString saveFileName(const QString& title, const QString& suggested, const QStringList& filters,
                         int* chosenFilter) override;
    void runModal(QDialog& dialog) override;

    QStringList messages;   // every message shown, in order
    QStringList questions;  // every question asked, in order
    QStringList fileDialogTitles;
    QStringList suggestedNames;
    QStringList saveFilters;  // the filters of the last save dialog
    int saveFilter = 0;       // the filter the scripted save dialog chooses
    QStringList modalTitles;  // window titles of the dialogs run modally

    std::deque<bool> answers;
    std::deque<QString> fileNames;
    std::deque<DialogScript> dialogScripts;
    // Called for every message as it is shown (e.g. to look at the window at that moment).
    std::function<void(const QString&)> onMessage;

    void clear();
};

class RecordingPause : public Pause {
  public:
    void sleep(int milliseconds) override { pauses.push_back(milliseconds); }
    std::vector<int> pauses;
};

}  // namespace rk31::test
