#include "procedures/points/PointCommands.h"

#include <cstdint>
#include <functional>
#include <optional>

#include "device/ChipStateMachine.h"
#include "device/DeviceSession.h"
#include "device/FieldValidation.h"
#include "device/ModeChange.h"
#include "device/WindowContext.h"
#include "domain/ControlView.h"
#include "domain/Curve.h"
#include "domain/Formats.h"
#include "domain/Messages.h"
#include "domain/NumberText.h"
#include "domain/PointSolvers.h"
#include "domain/Prompts.h"
#include "domain/Validation.h"
#include "procedures/points/PointPreparation.h"
#include "rk31/DeviceError.h"

namespace rk31 {

namespace {

constexpr float kFullTurn = 360.0f;

// The per-part boxes of a part: single boxes (-1) in the one-part windows.
int partBox(const PointWindowTraits& traits, int part) {
    return traits.bothParts ? part : -1;
}

// The Angle and Level box of point k (0 = A, 1 = B) of a part.
int pointBox(const PointWindowTraits& traits, int part, int k) {
    return PointBoxIndex(FamilyOf(traits), part, k);
}

// The part the one-part windows work on: whatever PartSel names when the button is pressed.
std::int16_t chosenPart(const WindowContext& ctx) {
    return static_cast<std::int16_t>(ctx.selectedPart());
}

float readAngle(WindowContext& ctx, std::int16_t part) {
    float angle = 0;
    ctx.session.device().ReadAngle(part, angle);
    return angle;
}

// Writes a sensed angle into a point's Angle box and checks it as if typed.
void showAngle(WindowContext& ctx, const PointWindowTraits& traits, int part, int k, float angle) {
    const int box = pointBox(traits, part, k);
    ctx.view.setText(ctl::Angle, box, FormatSingle(angle, 2));
    ValidateField(ctx, Field::Angle, box);
}

// The DP half a turn away from `angle`; the part keeps the value shown, not the exact one.
void placeDPOpposite(WindowContext& ctx, const PointWindowTraits& traits, int part, float angle) {
    const QString text = FormatSingle(MidPointOf(angle), 2);
    ctx.view.setText(ctl::DP, partBox(traits, part), text);
    ctx.params[static_cast<std::size_t>(traits.bothParts ? part : 0)].DP =
        TextToValue(text, ctx.prompts);
}

float offsetValue(const WindowContext& ctx, const QString& box) {
    return TextToSingle(ctx.view.text(box)).value_or(0.0f);
}

// `angle` moved by `offset` against (clockwise) or with the direction of increasing angle,
// kept within one turn.
float offsetAngle(float angle, float offset, bool clockwise) {
    if (clockwise) {
        const float moved = angle - offset;
        return moved < 0.0f ? moved + kFullTurn : moved;
    }
    const float moved = angle + offset;
    return moved >= kFullTurn ? moved - kFullTurn : moved;
}

// The one-point window: point B and the DP follow from point A and the two offsets.
void placeFromOffsets(WindowContext& ctx, float angle) {
    const bool clockwise = ctx.view.value(ctl::clockwise) == 1;
    const float b = offsetAngle(angle, offsetValue(ctx, ctl::OffsetAngleB), clockwise);
    const float dp = offsetAngle(angle, offsetValue(ctx, ctl::OffsetDP), clockwise);
    ctx.view.setText(ctl::Angle, 1, FormatSingle(b, 2));
    ctx.view.setText(ctl::DP, -1, FormatSingle(dp, 2));
    ValidateField(ctx, Field::Angle, 1);
    ValidateField(ctx, Field::DP, -1);
}

// "Point A taken": only Set point B can follow.
void pointATaken(WindowContext& ctx, const PointWindowTraits& traits) {
    ctx.view.setEnabled(ctl::SetpointA, -1, false);
    ctx.view.setEnabled(ctl::SetpointB, -1, true);
    if (traits.powerButton) {
        ctx.view.setEnabled(ctl::PowerOn, -1, false);
    }
}

// A step whose device call may fail as a whole: reported, and the steps after it still run so
// that the part is powered off and the window returns to its ready state. False when it threw.
bool attempt(WindowContext& ctx, const std::function<void()>& step) {
    try {
        step();
        return true;
    } catch (const DeviceError& e) {
        ctx.prompts.message(e.description());
        return false;
    }
}

bool inOwiMode(const WindowContext& ctx, const PointWindowTraits& traits, std::int16_t part) {
    const auto& state = ctx.session.ChipState;
    return traits.bothParts ? state[0] == OwiMode && state[1] == OwiMode
                            : state[static_cast<std::size_t>(part)] == OwiMode;
}

// The windows without a power button prepare the part on Set point A; those with one need it
// prepared already. Either way the click does nothing in the other case.
bool setPointAApplies(const WindowContext& ctx, const PointWindowTraits& traits) {
    return traits.powerButton ? ctx.powered : !ctx.powered;
}

}  // namespace

void PointWindowLoad(WindowContext& ctx, const PointWindowTraits& traits) {
    ctx.pointWindowHasPower = traits.powerButton;
    ctx.session.ResetForWindowLoad(false);
    Machine(ctx).SetConnectionState(0);
    for (const Field field : {Field::ClampLow, Field::ClampHigh, Field::DP}) {
        for (int part = 0; part < (traits.bothParts ? 2 : 1); ++part) {
            ValidateField(ctx, field, partBox(traits, part));
        }
    }
    for (auto& params : ctx.params) {
        params.Angle.fill(EmptyValue);
        params.Level.fill(0.0f);
    }
    if (!traits.bothParts) {
        ctx.view.setListItems(ctl::PartSel, -1,
                              {QStringLiteral("Part#1"), QStringLiteral("Part#2")});
        ctx.view.setListIndex(ctl::PartSel, -1, 0);
    }
    ctx.view.setEnabled(ctl::SetpointA, -1, false);
    ctx.view.setEnabled(ctl::SetpointB, -1, false);
    if (traits.powerButton) {
        ctx.view.setEnabled(ctl::PowerOn, -1, false);
    }
    ctx.powered = false;
}

void PointPowerOnCommand(WindowContext& ctx, const PointWindowTraits& traits) {
    PrepareDevice(ctx, traits.bothParts ? kBothParts : chosenPart(ctx));
}

void SetPointACommand(WindowContext& ctx, const PointWindowTraits& traits) {
    if (!setPointAApplies(ctx, traits)) {
        return;
    }
    if (traits.bothParts) {
        if (!traits.powerButton) {
            PrepareDevice(ctx, kBothParts);
        }
        // Whatever the preparation reported: a failed one is refused by Set point B.
        const float a0 = readAngle(ctx, 0);
        showAngle(ctx, traits, 0, 0, a0);
        const float a1 = readAngle(ctx, 1);
        showAngle(ctx, traits, 1, 0, a1);
        placeDPOpposite(ctx, traits, 0, a0);
        placeDPOpposite(ctx, traits, 1, a1);
        pointATaken(ctx, traits);
        return;
    }
    const std::int16_t part = chosenPart(ctx);
    if (!traits.powerButton) {
        PrepareDevice(ctx, part);
    }
    const float a = readAngle(ctx, part);
    showAngle(ctx, traits, part, 0, a);
    pointATaken(ctx, traits);
    if (traits.offsets) {
        placeFromOffsets(ctx, a);
    } else {
        placeDPOpposite(ctx, traits, part, a);
    }
}

bool SetPointBCommand(WindowContext& ctx, const PointWindowTraits& traits,
                      const SetPointBOptions& options) {
    const std::int16_t part = traits.bothParts ? kBothParts : chosenPart(ctx);
    if (traits.bothParts) {
        ToOWIModeBothParts(ctx);
    } else {
        ToOWIMode(ctx, part);
    }
    if (!ctx.powered || !inOwiMode(ctx, traits, part)) {
        ctx.prompts.message(kNotInOwiModeText);
        return false;
    }
    if (options.capturePointB && traits.bothParts) {
        showAngle(ctx, traits, 0, 1, readAngle(ctx, 0));
        showAngle(ctx, traits, 1, 1, readAngle(ctx, 1));
    } else if (options.capturePointB && !traits.offsets) {
        showAngle(ctx, traits, part, 1, readAngle(ctx, part));
    }
    bool programmed = false;
    attempt(ctx, [&ctx, part, &programmed] { programmed = PointProgramAction(ctx, part); });
    if (options.beforePowerOff) {
        attempt(ctx, [&options, programmed] { options.beforePowerOff(programmed); });
    }
    attempt(ctx, [&ctx, part] { PowerOffIfPowered(ctx, part); });
    // Whatever happened above, the flag must not outlive the attempt to power the part off.
    ctx.powered = false;
    ReadyPointButtons(ctx);
    auto& curves = ctx.session.CurveTable;
    if (traits.bothParts) {
        curves = CurveTables{};
        ShowMessages(ctx.prompts, CalLinearGraph(0, 2, 1, 2, ctx.session.rounded, curves));
    } else {
        curves[static_cast<std::size_t>(part)] = CurveRows{};
        ShowMessages(ctx.prompts, CalLinearGraph(part, 2, 0, 0, ctx.session.rounded, curves));
    }
    return programmed;
}

void PointGetDPCommand(WindowContext& ctx, const PointWindowTraits& traits) {
    if (traits.bothParts) {
        ToOWIModeBothParts(ctx);
    } else {
        ToOWIMode(ctx, chosenPart(ctx));
    }
    const std::int16_t part = chosenPart(ctx);
    if (!inOwiMode(ctx, traits, part)) {
        ctx.prompts.message(kNotInOwiModeText);
        return;
    }
    if (traits.bothParts) {
        for (std::int16_t p : {0, 1}) {
            placeDPOpposite(ctx, traits, p, readAngle(ctx, p));
        }
        return;
    }
    placeDPOpposite(ctx, traits, part, readAngle(ctx, part));
}

void OffsetLeft(WindowContext& ctx, const QString& box) {
    ctx.view.setText(box, -1, ValidateOffset(ctx.view.text(box), ctx.prompts));
}

}  // namespace rk31
