#pragma once

#include <functional>
#include <memory>

#include "rk31/QZ7734Device.h"
#include "serial/protocol/BoxProtocol.h"

namespace rk31::box {

// The box's side of the protocol over any device-access object: it answers each request by
// making the one call the request names on the device and its access objects, in the order the
// requests arrive. A Hello starts a new connection with a fresh device object, as a program's
// reconnect makes one.
class BoxServer {
  public:
    using DeviceMaker = std::function<std::shared_ptr<QZ7734Device>()>;

    explicit BoxServer(DeviceMaker make) : m_make(std::move(make)) {}

    // The response to a request frame.
    Frame answer(const Frame& request);
    // The response to a request that arrived with a bad CRC: nothing was done.
    static Frame garbled(const Frame& request);

  private:
    QByteArray call(Command command, PayloadReader& in, Status& status);
    QZ7734Device& device();
    MemoryAccess& memory();
    SolverAccess& solver();

    DeviceMaker m_make;
    std::shared_ptr<QZ7734Device> m_device;
    std::shared_ptr<MemoryAccess> m_memory;
    std::shared_ptr<SolverAccess> m_solver;
};

}  // namespace rk31::box
