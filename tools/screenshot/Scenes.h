#pragma once

#include <QDialog>
#include <QString>
#include <QWidget>
#include <cstdio>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "device/Application.h"
#include "domain/Prompts.h"
#include "sim/SimulatedProgrammer.h"

namespace rk31::screenshot {

using DialogScript = std::function<void(QDialog&)>;

// Nobody answers in a batch run: messages go to standard error, questions answer No, file
// dialogs are cancelled, and modal dialogs follow the scene's scripts or are closed at once.
class PrintingPrompts : public Prompts {
  public:
    explicit PrintingPrompts(std::deque<DialogScript>& scripts) : m_scripts(scripts) {}
    void message(const QString& text) override { print(QStringLiteral("message: ") + text); }
    bool question(const QString& text) override {
        print(QStringLiteral("question (answered No): ") + text);
        return false;
    }
    QString openFileName(const QString&, const QString&) override { return {}; }
    QString saveFileName(const QString&, const QString&, const QStringList&, int*) override {
        return {};
    }
    void runModal(QDialog& dialog) override {
        if (m_scripts.empty()) {
            dialog.close();
            return;
        }
        const auto script = std::move(m_scripts.front());
        m_scripts.pop_front();
        dialog.show();
        script(dialog);
        dialog.close();
    }

  private:
    static void print(const QString& text) { std::fprintf(stderr, "%s\n", qPrintable(text)); }
    std::deque<DialogScript>& m_scripts;
};

class NoPause : public Pause {
  public:
    void sleep(int) override {}
};

// What a scene runs on: the application over a fresh simulated programmer, as the program runs.
struct SceneContext {
    // Answers for the modal dialogs a scene's clicks open, in order; unanswered ones are closed.
    std::deque<DialogScript> dialogScripts;
    PrintingPrompts prompts{dialogScripts};
    NoPause pause;
    sim::SimulatedProgrammer programmer{sim::SimConfig{}};
    Application app{StartSettings{}, prompts, pause, &programmer};
    // Windows the pictured one needs behind it (the main window a Linear Graph measures
    // through); they go before the application.
    std::vector<std::unique_ptr<QWidget>> behind;
};

// One picture: a window built in the state worth looking at. The tool shows it, lets it lay
// itself out and grabs it.
struct Scene {
    QString name;
    std::function<std::unique_ptr<QWidget>(SceneContext&)> build;
};

const std::vector<Scene>& AllScenes();

}  // namespace rk31::screenshot
