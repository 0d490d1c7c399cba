// Writes the display windows in their interesting states as PNG files into the folder given on
// the command line, for looking at them after a change.
#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QRadioButton>

#include "core/Services.h"
#include "display/RealTimeDisplayBar.h"
#include "display/TransferCurvePlot.h"
#include "display/frmLinearGraph.h"
#include "shell/DeviceSession.h"
#include "support/ScriptedPrompts.h"

using namespace rk31;

namespace {

void setPart(int part, std::array<std::int16_t, 8> points, std::int16_t dp, std::int16_t high,
             std::int16_t low, bool reversed) {
    RoundedImages& rounded = DeviceSession::instance().rounded;
    const auto p = static_cast<std::size_t>(part);
    rounded.RoundedPoints[p] = points;
    rounded.RoundedDP[p] = dp;
    rounded.RoundedClampHigh[p] = high;
    rounded.RoundedClampLow[p] = low;
    rounded.PointsReversed[p] = reversed;
}

// The offscreen screen is small, so a window is given the size a desktop would give it: its size
// hint unless told otherwise.
bool save(QWidget& widget, const QDir& folder, const QString& name, QSize size = {}) {
    widget.resize(size.isValid() ? size : widget.sizeHint());
    widget.show();
    QApplication::processEvents();
    const bool saved = widget.grab().save(folder.filePath(name + QStringLiteral(".png")));
    widget.hide();
    return saved;
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const QDir folder(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QDir::currentPath());
    test::ScriptedPrompts prompts;
    test::RecordingPause pause;
    ScopedServices services(Services{&prompts, &pause, nullptr});

    setPart(0, {100, 150, 250, 300, 20, 40, 60, 80}, 20, 95, 5, false);
    setPart(1, {200, 100, 500, 500, 20, 80, 0, 0}, 300, 90, 10, true);
    bool ok = true;

    frmLinearGraph both;
    both.Init(0, 4, 1, 2);
    ok = save(both, folder, QStringLiteral("linear_graph_two_parts")) && ok;

    frmLinearGraph one;
    one.Init(1, 2, 0, 0);
    ok = save(one, folder, QStringLiteral("linear_graph_part2_alone")) && ok;

    TransferCurvePlot small;
    small.setShownParts(BothParts());
    small.setMarkedPoints(2);
    ok = save(small, folder, QStringLiteral("plot_smallest"), small.minimumSizeHint()) && ok;

    RealTimeDisplayBar display;
    display.show();
    display.ShowReadings(50.5f, 0);
    ok = save(display, folder, QStringLiteral("realtime_part1_fixed")) && ok;

    for (const QString& message : prompts.messages) {
        qWarning("message: %s", qPrintable(message));
    }
    return ok ? 0 : 1;
}
