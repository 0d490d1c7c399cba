#pragma once

// What a programming station may offer beside the programmer box: a fixture that turns the
// magnet the chip senses, and a feeder that puts the next chip into the socket. Both optional:
// a bench with neither has a person turning the magnet and changing chips.

#include <optional>

namespace rk31 {

// A turntable under the chip.
class MagnetFixture {
  public:
    virtual ~MagnetFixture() = default;
    // Turns the magnet to `degrees` (0 <= degrees < 360) and returns once it is there: the angle
    // it reached, or nothing when it cannot get there.
    virtual std::optional<double> turnTo(double degrees) = 0;
};

// A handler that changes chips.
class ChipFeeder {
  public:
    virtual ~ChipFeeder() = default;
    // Takes the chip out of the socket and puts the next one in; false when there is none left.
    virtual bool nextChip() = 0;
};

}  // namespace rk31
