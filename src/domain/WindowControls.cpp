#include "domain/WindowControls.h"

#include <initializer_list>

#include "domain/ControlNames.h"
#include "domain/PartParameters.h"

namespace rk31 {

namespace {

void add(std::vector<ControlSeed>& controls, std::initializer_list<QString> names, int index) {
    for (const QString& name : names) {
        controls.push_back({name, index, QString()});
    }
}

// DP and the clamps with their opening texts.
void addCurveBoxes(std::vector<ControlSeed>& controls, int index) {
    controls.push_back({ctl::DP, index, DefaultDPText});
    controls.push_back({ctl::clamphigh, index, DefaultClampHighText});
    controls.push_back({ctl::clamplow, index, DefaultClampLowText});
    add(controls, {ctl::clockwise}, index);
}

}  // namespace

std::vector<ControlSeed> TwoPartControls(bool oneSupply) {
    std::vector<ControlSeed> controls{{ctl::connect, -1, kConnectCaption},
                                      {ctl::status, -1, kStatusOnOpen}};
    add(controls, {ctl::mOpen, ctl::mSaveAs, ctl::btnAbout}, -1);
    // The session commands: single buttons for both parts on one supply, a set per part else.
    for (int part = 0; part < (oneSupply ? 1 : 2); ++part) {
        const int index = oneSupply ? -1 : part;
        controls.push_back({ctl::PowerOn, index, kPowerOnCaption});
        add(controls,
            {ctl::newdevice, ctl::owilock, ctl::Advanced, ctl::btnconfigsolver, ctl::lineargraph,
             ctl::viewoutput},
            index);
    }
    for (int part = 0; part < 2; ++part) {
        if (!oneSupply) {
            add(controls, {ctl::PartEnable}, part);
        }
        add(controls,
            {ctl::PartFrame, ctl::GetDP, ctl::btnreadangle, ctl::swobtn, ctl::hysup, ctl::hysdown,
             ctl::KforA, ctl::op, ctl::Kpolarity, ctl::OutMode, ctl::PWMFreq, ctl::PWMPolarity},
            part);
        controls.push_back({ctl::VDD, part, DefaultVDDText});
        controls.push_back({ctl::Rangle, part, DefaultReadAngleText});
        controls.push_back({ctl::hys, part, DefaultHYSText});
        addCurveBoxes(controls, part);
        for (int point = 0; point < 4; ++point) {
            add(controls, {ctl::Angle, ctl::Level, ctl::Setpoint}, part * 4 + point);
        }
    }
    return controls;
}

std::vector<ControlSeed> PointControls(const PointWindowTraits& traits) {
    std::vector<ControlSeed> controls{{ctl::connect, -1, kConnectCaption}};
    add(controls,
        {ctl::mOpen, ctl::mSaveAs, ctl::btnAbout, ctl::SetpointA, ctl::SetpointB, ctl::PartFrame},
        -1);
    if (traits.powerButton) {
        controls.push_back({ctl::PowerOn, -1, kPowerOnCaption});
    }
    if (traits.bothParts) {
        add(controls, {ctl::GetDP}, -1);
        for (int part = 0; part < 2; ++part) {
            addCurveBoxes(controls, part);
            for (int point = 0; point < 2; ++point) {
                add(controls, {ctl::Angle, ctl::Level}, part * 2 + point);
            }
        }
        return controls;
    }
    add(controls, {ctl::PartSel}, -1);
    if (!traits.offsets) {
        add(controls, {ctl::GetDP}, -1);
    }
    addCurveBoxes(controls, -1);
    for (int point = 0; point < 2; ++point) {
        add(controls, {ctl::Angle, ctl::Level}, point);
    }
    if (traits.offsets) {
        controls.push_back({ctl::OffsetDP, -1, DefaultOffsetText});
        controls.push_back({ctl::OffsetAngleB, -1, DefaultOffsetText});
    }
    return controls;
}

}  // namespace rk31
