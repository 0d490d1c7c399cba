#include "device/ChipStateMachine.h"

#include <vector>

#include "device/DeviceSession.h"
#include "device/WindowContext.h"
#include "domain/Messages.h"
#include "domain/Prompts.h"
#include "rk31/DeviceError.h"

namespace rk31 {

namespace {

// The device calls whose status out-value nobody reads.
using StatusCall = void (QZ7734Device::*)(std::int16_t, std::int32_t&);

// What a call does to its part, as far as the program can know: the state the part is in
// after it, from the state before it.
enum class Effect { PowerOn, PowerOff, EnterAdc, ExitOwi, Settle };

// One device call of a change.
struct Step {
    StatusCall op;
    std::int16_t part;
    Effect effect;
};

// A change as the device sees it: its calls in order, then perhaps the OWI entry whose answer
// decides the result.
struct Plan {
    std::vector<Step> steps;
    bool pauseFirst = false;
    std::int16_t enterOwiPart = -1;  // -1: no EnterOWIMode
    bool result = true;              // when there is no EnterOWIMode to ask
};

Step powerOn(std::int16_t part) {
    return {&QZ7734Device::PowerOnChip, part, Effect::PowerOn};
}
Step exitOwi(std::int16_t part) {
    return {&QZ7734Device::ExitOWIMode, part, Effect::ExitOwi};
}
Step enterAdc(std::int16_t part) {
    return {&QZ7734Device::EnterADCMode, part, Effect::EnterAdc};
}
Step powerOff(std::int16_t part) {
    return {&QZ7734Device::PowerOffChip, part, Effect::PowerOff};
}
// After PowerOffChip these only settle the output path of a part that stays off.
Step settleAdc(std::int16_t part) {
    return {&QZ7734Device::EnterADCMode, part, Effect::Settle};
}
Step settleChannel(std::int16_t part) {
    return {&QZ7734Device::SelectOutputChannel, part, Effect::Settle};
}

std::int32_t after(Effect effect, std::int32_t state, bool locked) {
    switch (effect) {
        case Effect::PowerOn:
            return AdcMode;
        case Effect::PowerOff:
            return PowerOff;
        case Effect::EnterAdc:
            // A part without supply stays off, unless it is locked: a locked part cannot take
            // the OWI power-up, so the programmer starts it straight into analog mode.
            return state != PowerOff || locked ? AdcMode : PowerOff;
        case Effect::ExitOwi:
            return state == OwiMode ? AdcMode : state;
        case Effect::Settle:
            break;
    }
    return state;
}

Plan onePartPlan(std::int16_t part, bool locked, std::int32_t from, std::int32_t to) {
    Plan plan;
    switch (to) {
        case AdcMode:
            if (locked) {
                plan.steps = {enterAdc(part)};
            } else if (from == PowerOff) {
                plan.steps = {powerOn(part), enterAdc(part)};
            } else if (from == OwiMode) {
                plan.steps = {exitOwi(part), enterAdc(part)};
            }
            break;
        case OwiMode:
            if (locked) {
                plan.result = false;
            } else if (from == PowerOff) {
                plan.steps = {powerOn(part)};
                plan.enterOwiPart = part;
            } else if (from == AdcMode || from == OwiMode) {
                plan.enterOwiPart = part;
            }
            break;
        case PowerOff:
            if (from == AdcMode || from == OwiMode) {
                plan.steps = {powerOff(part), settleAdc(part), settleChannel(part)};
            }
            break;
        default:
            break;
    }
    return plan;
}

Plan bothPartsPlan(const std::array<bool, 2>& locked, std::int32_t from, std::int32_t to) {
    Plan plan;
    switch (to) {
        case AdcMode:
            if (locked[0] && locked[1]) {
                plan.steps = {enterAdc(0), enterAdc(1)};
            } else if (from == PowerOff) {
                plan.steps = {powerOn(0), powerOn(1), enterAdc(0), enterAdc(1)};
            } else if (from == OwiMode) {
                plan.steps = {exitOwi(0), exitOwi(1), enterAdc(0), enterAdc(1)};
            }
            break;
        case OwiMode:
            if (locked[0] || locked[1]) {
                plan.result = false;
            } else if (from == PowerOff) {
                plan.steps = {powerOn(0), powerOn(1)};
                plan.enterOwiPart = 3;
            } else if (from == AdcMode) {
                plan.enterOwiPart = 3;
            } else if (from == OwiMode) {
                // Both dies need time to leave their OWI session before a new one starts.
                plan.pauseFirst = true;
                plan.enterOwiPart = 3;
            }
            break;
        case PowerOff:
            if (from == AdcMode || from == OwiMode) {
                plan.steps = {powerOff(0), powerOff(1), settleAdc(0), settleAdc(1),
                              settleChannel(0)};
            }
            break;
        default:
            break;
    }
    return plan;
}

// Makes the plan's calls, following in `reached` the state each call leaves its part in. A call
// that fails as a whole records what the calls before it reached, and goes on to the caller.
bool carryOut(DeviceSession& session, Pause& pause, const Plan& plan, ChipStates& reached) {
    try {
        for (const Step& step : plan.steps) {
            std::int32_t status = 0;
            (session.device().*step.op)(step.part, status);
            auto& state = reached[static_cast<std::size_t>(step.part)];
            state = after(step.effect, state, session.CommLocked[step.part]);
        }
        if (plan.enterOwiPart < 0) {
            return plan.result;
        }
        if (plan.pauseFirst) {
            pause.sleep(500);
        }
        std::int32_t result = 0;
        session.device().EnterOWIMode(plan.enterOwiPart, result);
        if (result == 1) {
            return false;
        }
        for (const std::int16_t part : PartsOf(plan.enterOwiPart)) {
            reached[static_cast<std::size_t>(part)] = OwiMode;
        }
        return true;
    } catch (const DeviceError&) {
        session.ChipState = reached;
        throw;
    }
}

}  // namespace

bool ChipStateMachine::ChipChangeToState(std::int16_t index, std::int32_t from, std::int32_t to) {
    if (index < 0 || index > 2) {
        m_prompts.message(kStateArgumentsText);
        return false;
    }
    const std::int16_t parts = index == 2 ? kBothParts : index;
    // Where the parts really are: as recorded, except that a refused change to OWI mode records
    // OWI mode without reaching it.
    ChipStates reached = m_session.ChipState;
    for (const std::int16_t part : PartsOf(parts)) {
        const auto p = static_cast<std::size_t>(part);
        if (m_session.RefusedOwiFrom[p] && reached[p] == OwiMode) {
            reached[p] = *m_session.RefusedOwiFrom[p];
        }
        m_session.RefusedOwiFrom[p].reset();
        // The wanted state is recorded before any device call, whatever the outcome.
        m_session.ChipState[p] = to;
    }
    if (to != PowerOff && to != AdcMode && to != OwiMode) {
        m_prompts.message(kNoSuchStateText + QString::number(to));
        return true;
    }
    const Plan plan = index == 2 ? bothPartsPlan(m_session.CommLocked, from, to)
                                 : onePartPlan(index, m_session.CommLocked[index], from, to);
    const bool result = carryOut(m_session, m_pause, plan, reached);
    for (const std::int16_t part : PartsOf(parts)) {
        const auto p = static_cast<std::size_t>(part);
        if (!result) {
            // OWI mode stays recorded until the caller's return to ADC mode, which then starts
            // from where the part really is.
            m_session.RefusedOwiFrom[p] = reached[p];
        } else if (to == AdcMode && reached[p] == PowerOff) {
            // Entering ADC mode powers no part by itself: one that was off stays off.
            m_session.ChipState[p] = PowerOff;
        }
    }
    return result;
}

void ChipStateMachine::SetConnectionState(std::int32_t value) {
    m_session.ProgrammerConnected = value;
    if (value == 1) {
        ChipChangeToState(0, m_session.ChipState[0], PowerOff);
        ChipChangeToState(1, m_session.ChipState[1], PowerOff);
    }
}

}  // namespace rk31
