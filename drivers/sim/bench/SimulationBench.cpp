#include "sim/bench/SimulationBench.h"

#include <QScreen>
#include <QWidget>
#include <QtGlobal>
#include <algorithm>

#include "sim/bench/ProgrammerBench.h"

namespace rk31::sim {

SimulationBench::SimulationBench(Simulation simulation) : m_simulation(std::move(simulation)) {}

SimulationBench::~SimulationBench() = default;

void SimulationBench::open(QWidget* window) {
    if (!m_window) {
        m_window = std::make_unique<ProgrammerBench>(m_simulation);
        m_window->resize(m_window->sizeHint());
    }
    // An open bench stays where the user put it.
    if (!m_window->isVisible() && window != nullptr) {
        const QWidget* main = window->window();
        const QScreen* screen = main->screen();
        // The bench's frame is not known before it is first shown: take the main window's.
        const QSize decoration = main->frameGeometry().size() - main->geometry().size();
        const QPoint frameAt = PlaceBeside(main->frameGeometry(), m_window->size() + decoration,
                                           screen ? screen->availableGeometry() : QRect());
        m_window->move(frameAt);
    }
    m_window->showNormal();
    m_window->raise();
    m_window->activateWindow();
}

QPoint PlaceBeside(const QRect& main, const QSize& size, const QRect& screen) {
    if (screen.isEmpty()) {
        return main.topRight() + QPoint(1, 0);
    }
    const int top = std::clamp(main.top(), screen.top(),
                               std::max(screen.top(), screen.bottom() + 1 - size.height()));
    if (main.right() + 1 + size.width() <= screen.right() + 1) {
        return {main.right() + 1, top};
    }
    if (main.left() - size.width() >= screen.left()) {
        return {main.left() - size.width(), top};
    }
    return {std::max(screen.left(), screen.right() + 1 - size.width()), top};
}

}  // namespace rk31::sim
