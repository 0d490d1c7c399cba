#pragma once

#include "rk31/PortProber.h"

namespace rk31 {

// The ports of a program whose driver brings none (or that has no driver): nothing opens, so the
// port dialog lists no port.
class NoPorts : public PortProber {
  public:
    static constexpr int kNoPort = 8002;
    bool isOpenHere(int /*port*/) const override { return false; }
    int open(int /*port*/) override { return kNoPort; }
    void close(int /*port*/) override {}
};

}  // namespace rk31
