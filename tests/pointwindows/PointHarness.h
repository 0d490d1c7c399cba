#pragma once

#include <memory>

#include "ui/windows/Startup.h"
#include "ui/windows/PointWindows.h"
#include "domain/Curve.h"
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

}  // namespace rk31::test
