#include "chipsession/ChipStateMachine.h"

#include <vector>

#include "core/DeviceError.h"
#include "core/Prompts.h"
#include "shell/DeviceSession.h"

namespace rk31 {

namespace {

// The device calls whose status out-value nobody reads.
using StatusCall = void (QZ7734Device::*)(std::int16_t, std::int32_t&);

// One device call of a change and the state its part is in once the call has gone through.
struct Step {
    StatusCall op;
    std::int16_t part;
    std::int32_t leaves;
};

// A change as the device sees it: its calls in order, then perhaps the OWI entry whose answer
// decides the result.
struct Plan {
    std::vector<Step> steps;
    bool pauseFirst = false;
    std::int16_t enterOwiPart = -1;  // -1: no EnterOWIMode
    bool result = true;              // when there is no EnterOWIMode to ask
};

// The calls that power a part and leave it in analog mode, leave OWI mode, or cut its supply.
Step powerOn(std::int16_t part) {
    return {&QZ7734Device::PowerOnChip, part, AdcMode};
}
Step exitOwi(std::int16_t part) {
    return {&QZ7734Device::ExitOWIMode, part, AdcMode};
}
Step enterAdc(std::int16_t part) {
    return {&QZ7734Device::EnterADCMode, part, AdcMode};
}
Step powerOff(std::int16_t part) {
    return {&QZ7734Device::PowerOffChip, part, PowerOff};
}
// After PowerOffChip these only settle the output path of a part that stays off.
Step settleAdc(std::int16_t part) {
    return {&QZ7734Device::EnterADCMode, part, PowerOff};
}
Step settleChannel(std::int16_t part) {
    return {&QZ7734Device::SelectOutputChannel, part, PowerOff};
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

// Makes the plan's calls. A call that fails as a whole leaves the recorded states at what the
// calls before it reached, and goes on to the caller.
bool carryOut(DeviceSession& session, Pause& pause, const Plan& plan,
              std::array<std::int32_t, 2> reached) {
    try {
        for (const Step& step : plan.steps) {
            std::int32_t status = 0;
            (session.device().*step.op)(step.part, status);
            reached[static_cast<std::size_t>(step.part)] = step.leaves;
        }
        if (plan.enterOwiPart < 0) {
            return plan.result;
        }
        if (plan.pauseFirst) {
            pause.sleep(500);
        }
        std::int32_t result = 0;
        session.device().EnterOWIMode(plan.enterOwiPart, result);
        return result != 1;
    } catch (const DeviceError&) {
        session.ChipState = reached;
        throw;
    }
}

}  // namespace

bool ChipStateMachine::ChipChangeToState(std::int16_t index, std::int32_t from, std::int32_t to) {
    if (index < 0 || index > 2) {
        m_prompts.message(QStringLiteral("Error arguments in ChipChangeToState!"));
        return false;
    }
    // The wanted state is recorded before any device call, whatever the outcome; only a call
    // that fails as a whole takes it back to what the calls before it really reached.
    const auto before = m_session.ChipState;
    if (index == 2) {
        m_session.ChipState = {to, to};
    } else {
        m_session.ChipState[index] = to;
    }
    if (to != PowerOff && to != AdcMode && to != OwiMode) {
        m_prompts.message(QStringLiteral("Error: There is no such state: ") + QString::number(to));
        return true;
    }
    const Plan plan = index == 2 ? bothPartsPlan(m_session.CommLocked, from, to)
                                 : onePartPlan(index, m_session.CommLocked[index], from, to);
    return carryOut(m_session, m_pause, plan, before);
}

void ChipStateMachine::SetConnectionState(std::int32_t value) {
    m_session.ProgrammerConnected = value;
    if (value == 1) {
        ChipChangeToState(0, m_session.ChipState[0], PowerOff);
        ChipChangeToState(1, m_session.ChipState[1], PowerOff);
    }
}

}  // namespace rk31
