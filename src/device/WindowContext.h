#pragma once

#include <QString>
#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "domain/ControlNames.h"
#include "domain/PartParameters.h"
#include "domain/WindowFamily.h"

namespace rk31 {

// Part index of the device operations and window procedures that address both parts at once.
inline constexpr std::int16_t kBothParts = 3;

// The parts an index stands for: Part#1 and Part#2 for kBothParts, else the part itself.
inline std::vector<std::int16_t> PartsOf(std::int16_t part) {
    return part == kBothParts ? std::vector<std::int16_t>{0, 1} : std::vector<std::int16_t>{part};
}

class ControlView;
class DeviceSession;
class Pause;
class Prompts;

// A wait window created for one long sequence; destroying it unloads the window, so an
// abandoned sequence never leaves one behind.
class WaitWindow {
  public:
    virtual ~WaitWindow() = default;
    // Shows it modeless over the main window.
    virtual void show() = 0;
    virtual void TextChange(const QString& text) = 0;
};

// What the window procedures need of their window beyond its controls: the dialogs it opens
// and the event loop.
class WindowUi {
  public:
    virtual ~WindowUi() = default;
    // A new wait window holding `text`, not shown yet.
    virtual std::unique_ptr<WaitWindow> createWaitWindow(const QString& text) = 0;
    // Lets pending window events run once, so that a new text is painted.
    virtual void processEvents() = 0;
    // The port dialog: the chosen port, 0 for "Do not connect".
    virtual std::int16_t choosePort() = 0;
    // The Comm Lock confirmation: true when confirmed.
    virtual bool confirmCommLock() = 0;
    virtual void showAbout(const QString& hardwareVersion) = 0;
    virtual void showLinearGraph(std::int16_t part, std::int16_t count, std::int16_t part2,
                                 std::int16_t count2) = 0;
    virtual void showRealTimeDisplay(std::int16_t part, std::int16_t num) = 0;
    virtual void showAdvanced(std::int16_t part, std::int16_t num) = 0;
};

// Everything a main window's procedures work on: the session, the window's controls and seams,
// and the window's own values.
struct WindowContext {
    WindowContext(WindowFamily family, DeviceSession& session, ControlView& view, Prompts& prompts,
                  Pause& pause, WindowUi& ui)
        : family(family), session(session), view(view), prompts(prompts), pause(pause), ui(ui) {}

    const WindowFamily family;
    DeviceSession& session;
    ControlView& view;
    Prompts& prompts;
    Pause& pause;
    WindowUi& ui;

    std::array<PartParameters, 2> params{};
    std::array<SolverInputs, 2> inputs{};
    bool powered = false;              // point windows: the part went through PrepareDevice
    bool pointWindowHasPower = false;  // point windows with their own Power On button
    QString lastFileName;              // offered again by the next file dialog

    bool isTwoPart() const { return IsTwoPartFamily(family); }
    bool oneSupply() const { return family == WindowFamily::TwoPartOneSupply; }
    // Index of a session command's control: per part in MainForm2Parts2Src, single elsewhere.
    int sessionIndex(int part) const { return oneSupply() ? -1 : part; }
    // The part the one-part point windows work on (their PartSel list); 0 elsewhere.
    int selectedPart() const;
};

}  // namespace rk31
