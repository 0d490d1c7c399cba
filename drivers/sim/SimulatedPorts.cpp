#include "sim/SimulatedProgrammer.h"

namespace rk31::sim {

SimulatedPorts::SimulatedPorts(int programmerPort)
    : results{{1, 0}, {2, kPortAlreadyOpen}, {3, 0}} {
    results[programmerPort] = 0;
}

bool SimulatedPorts::isOpenHere(int port) const {
    return m_open.contains(port);
}

int SimulatedPorts::open(int port) {
    // A serial port cannot be opened twice, not even by the control that holds it.
    if (isOpenHere(port)) {
        return kPortAlreadyOpen;
    }
    const auto it = results.find(port);
    const int result = it == results.end() ? kOtherError : it->second;
    if (result == 0) {
        m_open[port] = true;
    }
    return result;
}

void SimulatedPorts::close(int port) {
    m_open.erase(port);
}

}  // namespace rk31::sim
