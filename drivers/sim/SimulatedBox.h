#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QStringList>
#include <array>
#include <cstdint>
#include <deque>
#include <map>

#include "sim/Characteristic.h"
#include "sim/SimConfig.h"

namespace rk31::sim {

// The identification and lock word.
inline constexpr std::int32_t kIdAddress = 0x48;
// What a word reads when nothing could be read.
inline constexpr std::int32_t kReadError = 511;

// One die of the chip as far as the programmer can see it.
//
// Memory words 1 to 0x14 mirror the registers, so that the raw memory dialog shows what the
// solver wrote: word n (1..14) holds SolverImage id n in chip units (levels and clamps as 12-bit
// DAC codes, DP, angles, OP and HYS as 12-bit angle codes of 360/4096 degrees, the polarity as
// 0/1), 0x0F the mode value of the buffer, 0x10..0x12 the output mode, PWM frequency and PWM
// polarity, 0x14 the 16-bit sum of words 1..0x12 as a check word. They are rewritten whenever
// the registers or the output mode change; a write to them does not reach the registers. Word
// 0x48 cannot be written. All other words keep what was written, also across power cycles.
struct Die {
    enum class Mode { Off, Adc, Owi };

    bool powered = false;
    Mode mode = Mode::Off;
    bool locked = false;   // communication locked for good
    bool justCut = false;  // the last supply command for this die was PowerOffChip
    // The identification word while communication is open; a locked die reads 0xF0 plus its
    // low four bits.
    std::int32_t chipId = 0x35;
    std::map<std::int32_t, std::int32_t> memory;
    // The solver buffer: SolverImage ids 1..14 and the mode value sent with them.
    std::map<int, double> buffer;
    int bufferMode = 1;
    // The registers the chip works from: written by WriteBufferToDevice, lost without supply
    // and reloaded from EEPROM at power-on.
    Characteristic registers;
    Characteristic eeprom;
    std::array<std::int16_t, 3> outputMode{};  // output mode, PWM frequency, PWM polarity
    float k = 0.2777778f;                      // DAC calibration pair
    float b = 0;

    bool inOwi() const { return powered && mode == Mode::Owi; }
    bool inAdc() const { return powered && mode == Mode::Adc; }
};

// The programmer box with the chip behind it. It outlives the device objects: a reconnect
// creates a new object that talks to the same box and the same dies. Part arguments are 0 or 1
// unless said otherwise; 3 stands for both dies where the device interface allows it.
class SimulatedBox {
  public:
    explicit SimulatedBox(SimConfig config = {});

    SimConfig config;
    std::array<Die, 2> dies;
    std::array<std::int32_t, 3> hardwareVersion{2, 1, 7};
    int selectedChannel = 0;  // the die routed to the measuring input

    // The magnet both dies sense: its angle now, in [0, 360), turning at the set speed
    // (degrees per second, on a monotonic clock).
    double magnetAngle() const;
    double magnetSpeed() const { return m_speed; }
    void setMagnetAngle(double degrees, double degreesPerSecond = 0);

    // A per-part setting switched on a running box; "locked" locks or unlocks the die itself
    // and reads its lock, so that a die locked by CommLock shows as locked.
    bool partSetting(const PartsSetting& setting, int part) const;
    void setPartSetting(const PartsSetting& setting, int part, bool on);

    // The chip in the socket, counted from 1.
    int chipNumber() const { return m_chip; }
    // Takes the chip out and puts a fresh blank one in, as a handler does; false when the
    // configured chips are used up.
    bool newChip();

    // The configuration a new box would need to start as this one is now: the magnet where it
    // is (to a hundredth of a degree) and turning as it turns, the dies locked as they are.
    SimConfig settings() const;

    // Every call of every object of this box, in order: "Op(arg, arg)".
    // The newest kTraceCapacity calls, oldest first: a day-long session does not grow.
    static constexpr std::size_t kTraceCapacity = 10000;
    QStringList trace() const;
    void clearTrace() { m_trace.clear(); }
    void record(const QString& call);
    // The per-operation latency of a real box.
    void delay() const;

    static bool IsPart(int part) { return part == 0 || part == 1; }

    // The chip model behind the device operations.
    void powerOn(int part);
    void powerOff(int part);
    void enterAdc(int part);
    void exitOwi(int part);
    // 0 entered, 1 refused because communication is locked, 2 a die without supply.
    int enterOwi(int partOrBoth);
    float measureVdd(int partOrBoth) const;
    // The output in percent of VDD as the DAC puts it out.
    float output(int part) const;
    std::int32_t readMemory(int part, std::int32_t address) const;
    void writeMemory(int part, std::int32_t address, std::int32_t data);
    bool setSolverParameter(int part, int id, double value, int mode);
    // The WriteBufferToDevice code.
    int writeBuffer(int part);
    bool clearSolver(int part);
    bool programEeprom(int part);
    bool commLock(int part);
    bool setOutputMode(int part, std::int16_t mode, std::int16_t frequency, std::int16_t polarity);

  private:
    // A per-part fault hits this chip's die.
    bool fault(unsigned mask, int part) const {
        return (mask & (1u << part)) != 0 && m_chip % config.faultEvery == 0;
    }
    void insertChip();
    void mirrorRegisters(int part);

    std::deque<QString> m_trace;
    int m_chip = 1;
    double m_angle0 = 0;
    double m_speed = 0;
    QElapsedTimer m_clock;
};

}  // namespace rk31::sim
