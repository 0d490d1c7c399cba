// Any bytes as the settings file of a window of each layout, read into the window's controls as the
// load command reads it. Whatever the controls then hold must come back unchanged through the file
// the save command writes from them: a second read takes it without error, and the file written
// again has the same lines and the same bytes. The lines are compared as well as the bytes, because
// a value holding half of a character beyond 16 bits would be written as U+FFFD and so could hide
// behind equal bytes.
#include <QByteArray>
#include <vector>

#include "FuzzSupport.h"
#include "domain/SettingsFile.h"
#include "domain/ValueControlView.h"
#include "domain/WindowControls.h"

using namespace rk31;

namespace {

struct Window {
    WindowFamily family;
    std::vector<ControlSeed> controls;
};

// A window of each layout. The windows sharing a layout differ only in controls no settings line
// names, and each costs a round trip per input.
const std::vector<Window>& windows() {
    static const std::vector<Window> all = {
        {WindowFamily::TwoPartTwoSupplies, TwoPartControls(false)},
        {WindowFamily::OnePartPoint, PointControls(kTwoPoints)},
        {WindowFamily::DualPoint, PointControls(kTwoPointsDual)},
    };
    return all;
}

void roundTrip(const QStringList& lines, const Window& window) {
    ValueControlView loaded(window.controls);
    const SettingsReadResult read = ApplySettingsLines(lines, window.family, loaded);
    const auto layoutLines = static_cast<int>(LayoutOf(window.family).size());
    RK31_FUZZ_CHECK(read.error == 0 || (read.line >= 1 && read.line <= layoutLines));

    const QStringList written = SettingsLinesOf(loaded, window.family);
    const QByteArray bytes = BytesOfLines(written);
    ValueControlView reloaded(window.controls);
    RK31_FUZZ_CHECK(ApplySettingsLines(LinesOfBytes(bytes), window.family, reloaded).error == 0);
    const QStringList rewritten = SettingsLinesOf(reloaded, window.family);
    RK31_FUZZ_CHECK(rewritten == written);
    RK31_FUZZ_CHECK(BytesOfLines(rewritten) == bytes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QStringList lines =
        LinesOfBytes(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    for (const Window& window : windows()) {
        roundTrip(lines, window);
    }
    // Each line's value as a list index or check value.
    for (const QString& line : lines) {
        if (const auto n = TextToInt16(line)) {
            RK31_FUZZ_CHECK(*n >= -32768 && *n <= 32767);
        }
    }
    return 0;
}
