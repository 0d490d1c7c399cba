#pragma once

#include <cstdint>

namespace rk31 {

class DeviceSession;
class Prompts;
class Pause;

// The only place that moves a part between Power Off, ADC mode and OWI mode. It records the
// wanted state first, whatever the outcome, then drives the device calls in their fixed order.
// A call that fails as a whole (DeviceError) is passed on, with the recorded state taken back
// to what the calls before it really reached.
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

}  // namespace rk31
