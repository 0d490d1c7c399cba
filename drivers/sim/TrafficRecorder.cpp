#include "sim/TrafficRecorder.h"

#include <iterator>

namespace rk31::sim {

void TrafficRecorder::write(const DeviceCall& call) {
    if (!m_recording) {
        return;
    }
    if (m_pending.size() == kCapacity) {
        m_pending.pop_front();
        ++m_dropped;
    }
    m_pending.push_back(call);
}

std::vector<DeviceCall> TrafficRecorder::take() {
    std::vector<DeviceCall> calls(std::make_move_iterator(m_pending.begin()),
                                  std::make_move_iterator(m_pending.end()));
    m_pending.clear();
    m_dropped = 0;
    return calls;
}

}  // namespace rk31::sim
