#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "device/WindowContext.h"

namespace rk31 {

class DeviceSession;
class Prompts;
class Pause;

using ChipStates = std::array<std::int32_t, 2>;

// The only place that moves a part between Power Off, ADC mode and OWI mode. It records the
// wanted state first, whatever the outcome, then drives the device calls in their fixed order.
// The record ends where the calls really left the parts: a call that fails as a whole
// (DeviceError) is passed on with the record taken back to what the calls before it reached,
// and a change to ADC mode that powered nothing leaves the part recorded as off. A refused
// change to OWI mode stays recorded as OWI mode until the caller's return to ADC mode.
class ChipStateMachine {
  public:
    ChipStateMachine(DeviceSession& session, Prompts& prompts, Pause& pause)
        : m_session(session), m_prompts(prompts), m_pause(pause) {}

    // index 0 = Part#1, 1 = Part#2, 2 = both parts. False when a change to OWI mode was
    // refused (communication locked) or the index is not 0, 1 or 2.
    bool ChipChangeToState(std::int16_t index, std::int32_t from, std::int32_t to);

    // Records the connection; on 1 both parts go to Power Off.
    void SetConnectionState(std::int32_t value);

  private:
    DeviceSession& m_session;
    Prompts& m_prompts;
    Pause& m_pause;
};

// ChipChangeToState's index for a procedure's part: 0, 1, or kBothParts for both parts.
inline std::int16_t StateIndex(std::int16_t part) {
    return part == kBothParts ? std::int16_t{2} : part;
}

// The state machine over a window's session and seams.
inline ChipStateMachine Machine(WindowContext& ctx) {
    return {ctx.session, ctx.prompts, ctx.pause};
}

}  // namespace rk31
