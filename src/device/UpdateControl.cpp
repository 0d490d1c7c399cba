#include "device/UpdateControl.h"

#include <initializer_list>

#include "device/DeviceSession.h"
#include "device/WindowContext.h"
#include "domain/ControlView.h"

namespace rk31 {

namespace {

QString stateText(int part, std::int32_t state) {
    const QString head = QStringLiteral(" -- Part#") + QString::number(part + 1);
    switch (state) {
        case PowerOff:
            return head + QStringLiteral(": Power Off");
        case AdcMode:
            return head + QStringLiteral(": ADC Mode");
        case OwiMode:
            return head + QStringLiteral(": OWI Mode");
        default:
            return head + QStringLiteral(": Unrecognized Mode!");
    }
}

void enable(ControlView& view, std::initializer_list<QString> names, int index, bool on) {
    for (const QString& name : names) {
        view.setEnabled(name, index, on);
    }
}

// The part's parameter boxes that follow Active(i) in both windows.
void enablePartBoxes(ControlView& view, int part, bool active) {
    enable(view,
           {ctl::clamphigh, ctl::clamplow, ctl::DP, ctl::VDD, ctl::Rangle, ctl::op, ctl::hys,
            ctl::hysup, ctl::hysdown, ctl::Kpolarity, ctl::KforA},
           part, active);
    for (int k = 0; k < 4; ++k) {
        view.setEnabled(ctl::Angle, part * 4 + k, active);
        view.setEnabled(ctl::Level, part * 4 + k, active);
    }
}

void enablePartButtons(ControlView& view, int part, bool on) {
    enable(view, {ctl::GetDP, ctl::btnreadangle, ctl::swobtn}, part, on);
    for (int k = 0; k < 4; ++k) {
        view.setEnabled(ctl::Setpoint, part * 4 + k, on);
    }
}

bool inUse(std::int32_t state) {
    return state == AdcMode || state == OwiMode;
}

void writeStatus(WindowContext& ctx) {
    const auto& s = ctx.session;
    QString text = ctx.view.text(ctl::status);
    if (s.ProgrammerConnected == 0) {
        text = QStringLiteral("Ready: Offline Mode");
    } else if (s.ProgrammerConnected == 1) {
        text = QStringLiteral("Ready: Connected with Programmer");
    }
    ctx.view.setText(ctl::status, -1,
                     text + stateText(0, s.ChipState[0]) + stateText(1, s.ChipState[1]));
}

}  // namespace

void UpdateControl(WindowContext& ctx) {
    ControlView& view = ctx.view;
    const auto& s = ctx.session;
    const bool connected = s.ProgrammerConnected == 1;
    view.setEnabled(
        ctl::connect, -1,
        s.ProgrammerConnected == 0 || (s.ChipState[0] == PowerOff && s.ChipState[1] == PowerOff));

    if (ctx.oneSupply()) {
        enable(view, {ctl::PowerOn, ctl::newdevice, ctl::lineargraph}, -1, connected);
        bool active[2];
        for (int i = 0; i < 2; ++i) {
            view.setEnabled(ctl::PartFrame, i, connected);
            active[i] = connected && inUse(s.ChipState[i]);
            enablePartBoxes(view, i, active[i]);
            enablePartButtons(view, i, active[i] && !s.CommLocked[i]);
        }
        view.setEnabled(ctl::viewoutput, -1, active[0] && active[1]);
        enable(view, {ctl::owilock, ctl::Advanced, ctl::btnconfigsolver}, -1,
               active[0] && active[1] && !s.CommLocked[0] && !s.CommLocked[1]);
    } else {
        for (int i = 0; i < 2; ++i) {
            view.setEnabled(ctl::PartEnable, i, connected);
            const bool usable =
                view.isEnabled(ctl::PartEnable, i) && view.value(ctl::PartEnable, i) == 1;
            enable(view, {ctl::PowerOn, ctl::newdevice, ctl::lineargraph, ctl::PartFrame}, i,
                   usable);
            const bool active = usable && inUse(s.ChipState[i]);
            enablePartBoxes(view, i, active);
            view.setEnabled(ctl::viewoutput, i, active);
            const bool unlocked = active && !s.CommLocked[i];
            enablePartButtons(view, i, unlocked);
            enable(view, {ctl::owilock, ctl::Advanced, ctl::btnconfigsolver}, i, unlocked);
        }
    }
    writeStatus(ctx);
}

void OutModeSelected(WindowContext& ctx, std::int16_t part) {
    const bool pwm = ctx.view.listIndex(ctl::OutMode, part) == 1;
    ctx.view.setEnabled(ctl::PWMFreq, part, pwm);
    ctx.view.setEnabled(ctl::PWMPolarity, part, pwm);
}

}  // namespace rk31
