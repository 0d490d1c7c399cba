#pragma once

#include <QDialog>
#include <QString>
#include <QWidget>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "sim/SimulatedProgrammer.h"

namespace rk31::screenshot {

// What a scene may use: the simulated programmer the tool runs on. The prompt, pause and port
// seams are installed before any scene is built; messages are printed, questions answer No.
struct SceneContext {
    sim::Simulation simulation;
    // Answers for the modal dialogs a scene's clicks open, in order; unanswered ones are closed.
    std::deque<std::function<void(QDialog&)>> dialogScripts;
};

// One picture: a window built in the state worth looking at. The tool shows it, lets it lay
// itself out and grabs it.
struct Scene {
    QString name;
    std::function<std::unique_ptr<QWidget>(SceneContext&)> build;
};

const std::vector<Scene>& AllScenes();

}  // namespace rk31::screenshot
