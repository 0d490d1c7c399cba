#pragma once

#include <array>
#include <map>

namespace rk31::sim {

// The output characteristic of one die as its registers (or its EEPROM) hold it: the values of
// the solver buffer, ids 1 to 14.
struct Characteristic {
    double clampLow = 5;
    double clampHigh = 95;
    double dp = 0;
    std::array<double, 4> angle{};  // points A..D, degrees
    std::array<double, 4> level{};  // points A..D, percent of VDD
    double op = 0;
    double hys = 0;
    int polarity = 0;
    // Never programmed, or cleared: no points, the output holds clamp low.
    bool blank = true;

    // The registers a buffer gives: ids missing from the buffer keep the blank values, and a
    // buffer without point A's angle leaves the die blank.
    static Characteristic FromBuffer(const std::map<int, double>& buffer);

    // The output level in percent of VDD at a magnet angle, before the DAC.
    double Level(double magnetDegrees) const;
};

// An angle brought into [0, 360).
double Wrap360(double degrees);

// An angle register's value: an angle that is no finite number reads as 0.
double FiniteAngle(double degrees);

// A level in percent of VDD as a 12-bit DAC puts it out: saturated at 0 and 100 %, and 0 for a
// value that is no number.
int DacCode(double percent);
double Saturate(double percent);
double Quantise(double percent);

}  // namespace rk31::sim
