#include "sim/bench/SimulationBench.h"

#include <QScreen>
#include <QWidget>
#include <QtGlobal>
#include <algorithm>
#include <array>
#include <limits>

#include "sim/bench/ProgrammerBench.h"

namespace rk31::sim {

SimulationBench::SimulationBench(Simulation simulation) : m_simulation(std::move(simulation)) {
    // From the first window that offers the bench on: opened later, it shows every call.
    m_simulation.traffic->setRecording(true);
}

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
        const QRect frame = PlaceBench(main->frameGeometry(), m_window->size() + decoration,
                                       screen ? screen->availableGeometry() : QRect());
        m_window->resize(frame.size() - decoration);
        m_window->move(frame.topLeft());
    }
    m_window->showNormal();
    m_window->raise();
    m_window->activateWindow();
}

QRect PlaceBench(const QRect& main, const QSize& size, const QRect& screen) {
    if (screen.isEmpty()) {
        return {main.topRight() + QPoint(1, 0), size};
    }
    const QSize fit = size.boundedTo(screen.size());
    const auto inX = [&](int x) {
        return std::clamp(x, screen.left(), screen.right() + 1 - fit.width());
    };
    const auto inY = [&](int y) {
        return std::clamp(y, screen.top(), screen.bottom() + 1 - fit.height());
    };
    const int top = inY(main.top());
    const int left = inX(main.left());
    const std::array<QPoint, 4> besides{{{main.right() + 1, top},
                                         {main.left() - fit.width(), top},
                                         {left, main.bottom() + 1},
                                         {left, main.top() - fit.height()}}};
    for (const QPoint& at : besides) {
        if (screen.contains(QRect(at, fit))) {
            return {at, fit};
        }
    }
    // No room beside it: against an edge of the screen, hiding as little of it as can be.
    const std::array<QPoint, 4> overlapping{{{inX(screen.right() + 1), top},
                                             {screen.left(), top},
                                             {left, inY(screen.bottom() + 1)},
                                             {left, screen.top()}}};
    QRect best;
    qint64 hidden = std::numeric_limits<qint64>::max();
    for (const QPoint& at : overlapping) {
        const QRect over = QRect(at, fit).intersected(main);
        const qint64 area = over.isEmpty() ? 0 : qint64{over.width()} * over.height();
        if (area < hidden) {
            hidden = area;
            best = QRect(at, fit);
        }
    }
    return best;
}

}  // namespace rk31::sim
