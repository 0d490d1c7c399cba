#pragma once

namespace rk31 {

// The device calls under way. A driver that waits on a line for its answer keeps the window
// painting and lets timers run meanwhile; anything a timer would ask of the device must then wait
// for its next turn, so that no call starts inside another and the order of calls stays as the
// procedures make it.
class CallsInProgress {
  public:
    bool any() const { return m_running > 0; }

    // Counts one call for as long as it lives.
    class Scope {
      public:
        explicit Scope(CallsInProgress* calls) : m_calls(calls) {
            if (m_calls) {
                ++m_calls->m_running;
            }
        }
        ~Scope() {
            if (m_calls) {
                --m_calls->m_running;
            }
        }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

      private:
        CallsInProgress* m_calls;
    };

  private:
    int m_running = 0;
};

}  // namespace rk31
