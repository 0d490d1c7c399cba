#pragma once

#include <memory>

#include "app/Startup.h"
#include "pointwindows/widgets/PointWindows.h"
#include "support/WindowHarness.h"

namespace rk31::test {

// The teach-in window of switch "/2" to "/6", made as start-up makes it.
inline std::unique_ptr<PointProgrammingWindow> makePointWindow(int variant) {
    std::unique_ptr<QWidget> window = CreateMainWindow(variant);
    auto* point = qobject_cast<PointProgrammingWindow*>(window.get());
    if (!point) {
        qFatal("switch /%d opens no point window", variant);
    }
    window.release();
    return std::unique_ptr<PointProgrammingWindow>(point);
}

// A point window connected on COM1 through the port dialog; with `power`, the windows that have
// a Power On button are powered as well. Trace and messages emptied.
inline std::unique_ptr<PointProgrammingWindow> openPointWindow(Bench& bench, int variant,
                                                               bool power = true) {
    auto window = makePointWindow(variant);
    scriptPortChoice(bench.prompts, "COM1");
    click(window.get(), "connect");
    if (power && window->traits().powerButton) {
        click(window.get(), "PowerOn");
    }
    bench.trace().clear();
    bench.prompts.messages.clear();
    bench.prompts.modalTitles.clear();
    return window;
}

// The level of a part's drawn curve at a whole angle: the first segment that spans the angle
// and is not the vertical jump at DP. Nothing when no segment covers it.
inline std::optional<double> curveLevelAt(const CurveRows& rows, double angle) {
    for (int k = 0; k < 20; ++k) {
        const auto& a = rows[static_cast<std::size_t>(2 * k)];
        const auto& b = rows[static_cast<std::size_t>(2 * k + 1)];
        if (a[0] == 0 && a[1] == 0 && b[0] == 0 && b[1] == 0) {
            break;
        }
        const double lo = std::min(a[0], b[0]);
        const double hi = std::max(a[0], b[0]);
        if (a[0] == b[0] || angle < lo || angle > hi) {
            continue;
        }
        return a[1] + (angle - a[0]) * (b[1] - a[1]) / static_cast<double>(b[0] - a[0]);
    }
    return std::nullopt;
}

}  // namespace rk31::test
