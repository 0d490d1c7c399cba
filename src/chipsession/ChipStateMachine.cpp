#include "chipsession/ChipStateMachine.h"

#include "core/Prompts.h"
#include "shell/DeviceSession.h"

namespace rk31 {

namespace {

// The device calls whose status out-value nobody reads.
using StatusCall = void (QZ7734Device::*)(std::int16_t, std::int32_t&);

void call(QZ7734Device& device, StatusCall op, std::int16_t part) {
    std::int32_t status = 0;
    (device.*op)(part, status);
}

bool enterOwi(QZ7734Device& device, std::int16_t part) {
    std::int32_t result = 0;
    device.EnterOWIMode(part, result);
    return result != 1;
}

}  // namespace

bool ChipStateMachine::ChipChangeToState(std::int16_t index, std::int32_t from, std::int32_t to) {
    if (index == 0 || index == 1) {
        return changeOnePart(index, from, to);
    }
    if (index == 2) {
        return changeBothParts(from, to);
    }
    m_prompts.message(QStringLiteral("Error arguments in ChipChangeToState!"));
    return false;
}

void ChipStateMachine::unknownState(std::int32_t to) {
    m_prompts.message(QStringLiteral("Error: There is no such state: ") + QString::number(to));
}

bool ChipStateMachine::changeOnePart(std::int16_t part, std::int32_t from, std::int32_t to) {
    m_session.ChipState[part] = to;
    const bool locked = m_session.CommLocked[part];
    switch (to) {
        case AdcMode: {
            if (locked) {
                call(m_session.device(), &QZ7734Device::EnterADCMode, part);
            } else if (from == PowerOff) {
                call(m_session.device(), &QZ7734Device::PowerOnChip, part);
                call(m_session.device(), &QZ7734Device::EnterADCMode, part);
            } else if (from == OwiMode) {
                call(m_session.device(), &QZ7734Device::ExitOWIMode, part);
                call(m_session.device(), &QZ7734Device::EnterADCMode, part);
            }
            return true;
        }
        case OwiMode: {
            if (locked) {
                return false;
            }
            if (from == PowerOff) {
                call(m_session.device(), &QZ7734Device::PowerOnChip, part);
                return enterOwi(m_session.device(), part);
            }
            if (from == AdcMode || from == OwiMode) {
                return enterOwi(m_session.device(), part);
            }
            return true;
        }
        case PowerOff: {
            if (from == AdcMode || from == OwiMode) {
                call(m_session.device(), &QZ7734Device::PowerOffChip, part);
                call(m_session.device(), &QZ7734Device::EnterADCMode, part);
                call(m_session.device(), &QZ7734Device::SelectOutputChannel, part);
            }
            return true;
        }
        default:
            unknownState(to);
            return true;
    }
}

bool ChipStateMachine::changeBothParts(std::int32_t from, std::int32_t to) {
    m_session.ChipState = {to, to};
    const auto& locked = m_session.CommLocked;
    switch (to) {
        case AdcMode: {
            if (locked[0] && locked[1]) {
                call(m_session.device(), &QZ7734Device::EnterADCMode, 0);
                call(m_session.device(), &QZ7734Device::EnterADCMode, 1);
            } else if (from == PowerOff) {
                call(m_session.device(), &QZ7734Device::PowerOnChip, 0);
                call(m_session.device(), &QZ7734Device::PowerOnChip, 1);
                call(m_session.device(), &QZ7734Device::EnterADCMode, 0);
                call(m_session.device(), &QZ7734Device::EnterADCMode, 1);
            } else if (from == OwiMode) {
                call(m_session.device(), &QZ7734Device::ExitOWIMode, 0);
                call(m_session.device(), &QZ7734Device::ExitOWIMode, 1);
                call(m_session.device(), &QZ7734Device::EnterADCMode, 0);
                call(m_session.device(), &QZ7734Device::EnterADCMode, 1);
            }
            return true;
        }
        case OwiMode: {
            if (locked[0] || locked[1]) {
                return false;
            }
            if (from == PowerOff) {
                call(m_session.device(), &QZ7734Device::PowerOnChip, 0);
                call(m_session.device(), &QZ7734Device::PowerOnChip, 1);
            } else if (from == OwiMode) {
                // Both dies need time to leave their OWI session before a new one starts.
                m_pause.sleep(500);
            } else if (from != AdcMode) {
                return true;
            }
            return enterOwi(m_session.device(), 3);
        }
        case PowerOff: {
            if (from == AdcMode || from == OwiMode) {
                call(m_session.device(), &QZ7734Device::PowerOffChip, 0);
                call(m_session.device(), &QZ7734Device::PowerOffChip, 1);
                call(m_session.device(), &QZ7734Device::EnterADCMode, 0);
                call(m_session.device(), &QZ7734Device::EnterADCMode, 1);
                call(m_session.device(), &QZ7734Device::SelectOutputChannel, 0);
            }
            return true;
        }
        default:
            unknownState(to);
            return true;
    }
}

void ChipStateMachine::SetConnectionState(std::int32_t value) {
    m_session.ProgrammerConnected = value;
    if (value == 1) {
        ChipChangeToState(0, m_session.ChipState[0], PowerOff);
        ChipChangeToState(1, m_session.ChipState[1], PowerOff);
    }
}

}  // namespace rk31
