#pragma once

#include <cstdint>
#include <functional>

#include "domain/MemoryRows.h"

namespace rk31 {

class ChipStateMachine;
class DeviceSession;
class Prompts;

// MemRead and MemWrite over the session's device. Both first bring a part in ADC mode to OWI
// mode; a DeviceError (no programmer, a failed call) propagates to the handler.
class AdvancedMemory {
  public:
    AdvancedMemory(DeviceSession& session, ChipStateMachine& chips, Prompts& prompts)
        : m_session(session), m_chips(chips), m_prompts(prompts) {}

    // Called after each word read, so the dialog can show it while the next is read.
    using RowRead = std::function<void(int row, std::int32_t word)>;

    // False when the command stopped with a message before touching the memory.
    bool MemRead(std::int16_t part, const MemoryRowTexts& rows, const RowRead& onRead);
    bool MemWrite(std::int16_t part, const MemoryRowTexts& rows);

  private:
    bool prepare(std::int16_t part, const MemoryRowTexts& rows, MemoryCommand command);

    DeviceSession& m_session;
    ChipStateMachine& m_chips;
    Prompts& m_prompts;
};

}  // namespace rk31
