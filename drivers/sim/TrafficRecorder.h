#pragma once

#include <cstddef>
#include <deque>
#include <vector>

#include "rk31/DeviceTraffic.h"

namespace rk31::sim {

// The device calls of a simulation, gathered for a live view while one records them. Every
// device object of the simulation hands its calls here; idle, that costs one check per call.
// Recording, it keeps what nobody has taken yet in a bounded ring, so that a view opened later
// shows every call since, or how many it missed.
class TrafficRecorder : public DeviceTrafficSink {
  public:
    // Calls not yet taken beyond this are dropped, oldest first.
    static constexpr std::size_t kCapacity = 10000;

    void setRecording(bool on) { m_recording = on; }
    bool listening() const override { return m_recording; }
    void write(const DeviceCall& call) override;

    // How many calls the ring dropped since the last take.
    std::size_t dropped() const { return m_dropped; }
    // The calls recorded since the last take, oldest first; the dropped count starts again.
    std::vector<DeviceCall> take();

  private:
    bool m_recording = false;
    std::deque<DeviceCall> m_pending;
    std::size_t m_dropped = 0;
};

}  // namespace rk31::sim
