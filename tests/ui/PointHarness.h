#pragma once

#include <memory>

#include "domain/Curve.h"
#include "support/WindowHarness.h"
#include "ui/windows/PointWindows.h"

namespace rk31::test {

// The teach-in window of switch "/2" to "/6", made as start-up makes it.
inline std::unique_ptr<PointProgrammingWindow> makePointWindow(Bench& bench, int variant) {
    auto* point = qobject_cast<PointProgrammingWindow*>(bench.window(variant).release());
    if (!point) {
        qFatal("switch /%d opens no point window", variant);
    }
    return std::unique_ptr<PointProgrammingWindow>(point);
}

// A point window connected on COM1 through the port dialog; with `power`, the windows that have
// a Power On button are powered as well. Trace and messages emptied.
inline std::unique_ptr<PointProgrammingWindow> openPointWindow(Bench& bench, int variant,
                                                               bool power = true) {
    auto window = makePointWindow(bench, variant);
    scriptPortChoice(bench.prompts, "COM1");
    click(window.get(), "connect");
    if (power && window->traits().powerButton) {
        click(window.get(), "PowerOn");
    }
    bench.clearTrace();
    bench.prompts.messages.clear();
    bench.prompts.modalTitles.clear();
    return window;
}

}  // namespace rk31::test
