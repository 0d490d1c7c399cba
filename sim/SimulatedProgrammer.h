#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QStringList>
#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>

#include "link/PortProber.h"
#include "link/QZ7734Device.h"

namespace rk31::sim {

// Per-part faults are bit masks: bit 0 = Part#1, bit 1 = Part#2.
inline constexpr unsigned kPart1 = 1;
inline constexpr unsigned kPart2 = 2;

// The simulator's starting conditions (RK31_SIM='angle=123.4;rotate=30;locked=2;...').
struct SimConfig {
    double angle = 0;         // magnet angle in degrees
    double rotate = 0;        // magnet speed in degrees per second (0 = still)
    int latencyMs = 0;        // delay of every device operation
    float vdd = 5.0f;         // supply voltage of a powered die
    unsigned locked = 0;      // dies whose communication is locked for good from the start
    unsigned noSupply = 0;    // MeasureVDD reads below -100
    unsigned idError = 0;     // the identification word reads 511
    unsigned eepromFail = 0;  // ProgramEEPROM fails
    unsigned clearFail = 0;   // ClearSolverSettings fails
    unsigned commlockFail = 0;
    int writeBufferCode = 0;  // a forced non-zero WriteBufferToDevice code
    int dacStatus = 0;        // the GetDACCalibration status word
    bool versionFail = false;
    bool channelFail = false;             // OpenChannel fails
    std::optional<float> outputOverride;  // a fixed MeasureOutput reading
};

// Parses "key=value;key=value". Unknown keys and malformed values are described in `errors`
// and ignored.
SimConfig ParseSimConfig(const QString& text, QStringList* errors);

// One die of the chip as far as the programmer can see it.
struct Die {
    bool powered = false;
    enum class Mode { Off, Adc, Owi } mode = Mode::Off;
    bool locked = false;  // communication locked for good
    std::map<std::int32_t, std::int32_t> memory;
    // The solver buffer: SolverImage ids 1..14 and the mode value sent with them.
    std::map<int, double> buffer;
    int bufferMode = 1;
    // The characteristic written by WriteBufferToDevice and the one burnt into EEPROM.
    struct Characteristic {
        double clampLow = 5, clampHigh = 95, dp = 0;
        std::array<double, 4> angle{}, level{};
        bool blank = true;  // no points: the output holds clamp low
        double op = 500, hys = 500;
        int polarity = 0;
    };
    Characteristic registers;
    Characteristic eeprom;
    std::array<std::int16_t, 3> outputMode{};  // output mode, PWM frequency, PWM polarity
    float k = 0.2777778f, b = 0;               // DAC calibration pair
};

// The programmer box with the chip behind it. It outlives the device objects: a reconnect
// creates a new object that talks to the same box and the same dies.
class SimulatedBox {
public:
    explicit SimulatedBox(SimConfig config = {});

    SimConfig config;
    std::array<Die, 2> dies;
    QString hardwareVersion = QStringLiteral("2.1.7");

    // The magnet: its angle now, in [0, 360).
    double magnetAngle() const;
    void setMagnetAngle(double degrees, double degreesPerSecond = 0);

    // Output of a die in percent of VDD at the current magnet angle, as the DAC puts it out.
    float output(int part) const;

    // Every call of every object of this box, in order: "Op(arg, arg)".
    QStringList trace;
    void clearTrace() { trace.clear(); }

    void record(const QString& call);
    void delay() const;

private:
    double m_angle0 = 0;
    double m_speed = 0;
    QElapsedTimer m_clock;
};

// A device-access object bound to a box.
std::shared_ptr<QZ7734Device> CreateSimulatedDevice(std::shared_ptr<SimulatedBox> box);

// The simulated COM ports: COM1 opens but has no programmer, COM2 is held by another program,
// COM3 has the programmer; every other port fails to open.
class SimulatedPorts : public PortProber {
public:
    SimulatedPorts();
    bool isOpenHere(int port) const override;
    int open(int port) override;
    void close(int port) override;

    // port -> open result (0 opens, 8005 held elsewhere, other numbers fail)
    std::map<int, int> results;
    int programmerPort = 3;  // OpenChannel succeeds on this port only

private:
    std::map<int, bool> m_open;
};

// The box, the ports and the factory registration the program runs on.
struct Simulation {
    std::shared_ptr<SimulatedBox> box;
    std::shared_ptr<SimulatedPorts> ports;
};

// Registers the simulated programmer under the device ProgID, bound to a new box.
Simulation InstallSimulation(const SimConfig& config);
// The same from RK31_SIM (malformed entries reported on standard error); the app's default
// latency lets the wait windows be seen.
Simulation InstallSimulationFromEnvironment();

}  // namespace rk31::sim
