#include "support/ScriptedPrompts.h"

#include <QCoreApplication>

namespace rk31::test {

void ScriptedPrompts::message(const QString& text) {
    messages << text;
    if (onMessage) {
        onMessage(text);
    }
}

bool ScriptedPrompts::question(const QString& text) {
    questions << text;
    if (answers.empty()) {
        return false;
    }
    const bool answer = answers.front();
    answers.pop_front();
    return answer;
}

QString ScriptedPrompts::openFileName(const QString& title, const QString& suggested) {
    fileDialogTitles << title;
    suggestedNames << suggested;
    if (fileNames.empty()) {
        return {};
    }
    QString name = fileNames.front();
    fileNames.pop_front();
    return name;
}

QString ScriptedPrompts::saveFileName(const QString& title, const QString& suggested,
                                      const QStringList& filters, int* chosenFilter) {
    saveFilters = filters;
    if (chosenFilter) {
        *chosenFilter = saveFilter;
    }
    return NameWithFilterEnding(openFileName(title, suggested), filters.value(saveFilter));
}

void ScriptedPrompts::runModal(QDialog& dialog) {
    modalTitles << dialog.windowTitle();
    dialog.show();
    QCoreApplication::processEvents();
    if (!dialogScripts.empty()) {
        DialogScript script = std::move(dialogScripts.front());
        dialogScripts.pop_front();
        if (script) {
            script(dialog);
        }
    }
    if (dialog.isVisible()) {
        dialog.close();  // the close box
    }
}

void ScriptedPrompts::clear() {
    messages.clear();
    questions.clear();
    fileDialogTitles.clear();
    suggestedNames.clear();
    modalTitles.clear();
    answers.clear();
    fileNames.clear();
    dialogScripts.clear();
}

}  // namespace rk31::test
