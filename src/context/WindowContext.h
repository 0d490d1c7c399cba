#pragma once

#include <QString>
#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "context/PartParameters.h"
#include "context/WindowFamily.h"

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

// Control names shared by the window procedures.
namespace ctl {
inline const QString connect = QStringLiteral("connect");
inline const QString status = QStringLiteral("status");
inline const QString PowerOn = QStringLiteral("PowerOn");
inline const QString newdevice = QStringLiteral("newdevice");
inline const QString owilock = QStringLiteral("owilock");
inline const QString Advanced = QStringLiteral("Advanced");
inline const QString btnconfigsolver = QStringLiteral("btnconfigsolver");
inline const QString lineargraph = QStringLiteral("lineargraph");
inline const QString viewoutput = QStringLiteral("viewoutput");
inline const QString PartEnable = QStringLiteral("PartEnable");
inline const QString PartFrame = QStringLiteral("PartFrame");
inline const QString GetDP = QStringLiteral("GetDP");
inline const QString btnreadangle = QStringLiteral("btnreadangle");
inline const QString swobtn = QStringLiteral("swobtn");
inline const QString Setpoint = QStringLiteral("Setpoint");
inline const QString hysup = QStringLiteral("hysup");
inline const QString hysdown = QStringLiteral("hysdown");
inline const QString VDD = QStringLiteral("VDD");
inline const QString DP = QStringLiteral("DP");
inline const QString clamphigh = QStringLiteral("clamphigh");
inline const QString clamplow = QStringLiteral("clamplow");
inline const QString Angle = QStringLiteral("Angle");
inline const QString Level = QStringLiteral("Level");
inline const QString KforA = QStringLiteral("KforA");
inline const QString hys = QStringLiteral("hys");
inline const QString op = QStringLiteral("op");
inline const QString Rangle = QStringLiteral("Rangle");
inline const QString Kpolarity = QStringLiteral("Kpolarity");
inline const QString clockwise = QStringLiteral("clockwise");
inline const QString OutMode = QStringLiteral("OutMode");
inline const QString PWMFreq = QStringLiteral("PWMFreq");
inline const QString PWMPolarity = QStringLiteral("PWMPolarity");
inline const QString mOpen = QStringLiteral("mOpen");
inline const QString mSaveAs = QStringLiteral("mSaveAs");
inline const QString btnAbout = QStringLiteral("btnAbout");
// The point-programming windows.
inline const QString PartSel = QStringLiteral("PartSel");
inline const QString SetpointA = QStringLiteral("SetpointA");
inline const QString SetpointB = QStringLiteral("SetpointB");
inline const QString OffsetDP = QStringLiteral("OffsetDP");
inline const QString OffsetAngleB = QStringLiteral("OffsetAngleB");
inline const QString Frame1 = QStringLiteral("Frame1");
inline const QString Frame2 = QStringLiteral("Frame2");
inline const QString Picture1 = QStringLiteral("Picture1");
inline const QString Image1 = QStringLiteral("Image1");
}  // namespace ctl

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
