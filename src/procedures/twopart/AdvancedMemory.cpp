#include "procedures/twopart/AdvancedMemory.h"

#include "device/ChipStateMachine.h"
#include "device/DeviceSession.h"
#include "domain/Messages.h"
#include "domain/Prompts.h"

namespace rk31 {

bool AdvancedMemory::prepare(std::int16_t part, const MemoryRowTexts& rows, MemoryCommand command) {
    if (const auto bad = FindBadMemoryRow(rows, command)) {
        m_prompts.message(*bad);
        return false;
    }
    auto& state = m_session.ChipState[static_cast<std::size_t>(part)];
    if (state == AdcMode) {
        m_chips.ChipChangeToState(part, AdcMode, OwiMode);
    }
    if (state != OwiMode) {
        m_prompts.message(kNotInOwiModeText);
        return false;
    }
    return true;
}

bool AdvancedMemory::MemRead(std::int16_t part, const MemoryRowTexts& rows, const RowRead& onRead) {
    if (!prepare(part, rows, MemoryCommand::Read)) {
        return false;
    }
    for (int row = 0; row < kMemoryRows; ++row) {
        const QString& address = rows[static_cast<std::size_t>(row)].address;
        if (IsEmptyCell(address)) {
            continue;
        }
        std::int32_t word = 0;
        m_session.memoryAccess()->ReadMemory(part, *ParseHexWord(address), word);
        if (onRead) {
            onRead(row, word);
        }
    }
    return true;
}

bool AdvancedMemory::MemWrite(std::int16_t part, const MemoryRowTexts& rows) {
    if (!prepare(part, rows, MemoryCommand::Write)) {
        return false;
    }
    for (const MemoryRowText& texts : rows) {
        if (IsEmptyCell(texts.address) || IsEmptyCell(texts.dataIn)) {
            continue;
        }
        m_session.memoryAccess()->WriteMemory(part, *ParseHexWord(texts.address),
                                              *ParseHexWord(texts.dataIn));
    }
    return true;
}

}  // namespace rk31
