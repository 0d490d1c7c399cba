#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <span>

namespace rk31::sim {

// Per-part faults are bit masks: bit 0 = Part#1, bit 1 = Part#2.
inline constexpr unsigned kPart1 = 1;
inline constexpr unsigned kPart2 = 2;
inline constexpr unsigned kBothDies = kPart1 | kPart2;

// The simulator's starting conditions and injected faults. The faults are read at the moment of
// each call, so a test may change them on a running box (box->config.eepromFail = kPart2).
struct SimConfig {
    double angle = 0;         // magnet angle in degrees
    double rotate = 0;        // magnet speed in degrees per second (0 = still)
    int latencyMs = 0;        // delay of every device operation
    float vdd = 5.0f;         // supply voltage of a powered die
    int programmerPort = 1;   // OpenChannel succeeds on this COM port only
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
    bool fixture = true;                  // the station turns the magnet (else a hand does)
    bool fixtureFail = false;             // the magnet fixture cannot reach an angle
    std::optional<float> outputOverride;  // a fixed MeasureOutput reading, in percent
    // Chips of a run: the per-part faults hit only the chips whose number (from 1) is a multiple
    // of faultEvery; the feeder has `chips` chips (0: it never runs out).
    int faultEvery = 1;
    int chips = 0;

    friend bool operator==(const SimConfig&, const SimConfig&) = default;
};

// The settings that are switched per part and those that are switched on or off, by their
// RK31_SIM keys: the one list the parser, the writer and the bench's switches share.
struct PartsSetting {
    const char* key;    // "eeprom_fail"
    const char* title;  // "EEPROM failure", for a person
    unsigned SimConfig::*mask;
};
struct FlagSetting {
    const char* key;
    const char* title;
    bool SimConfig::*flag;
};
std::span<const PartsSetting> PartsSettings();
std::span<const FlagSetting> FlagSettings();

// Reads RK31_SIM-style text, "key=value;key=value", over `base`. Blanks around keys and values
// are tolerated and empty entries skipped. Keys: angle, rotate, latency, vdd, port, locked,
// no_supply, id_error, eeprom_fail, clear_fail, commlock_fail (0, 1 = Part#1, 2 = Part#2 or
// both), wbd_code, dac_status, version_fail, channel_fail (0 or 1), output. An unknown key or
// malformed value leaves the setting as it was and adds
// "RK31_SIM: ignored 'key=value': <reason>" to `errors` (when given).
SimConfig ParseSimConfig(const QString& text, QStringList* errors, const SimConfig& base = {});

// The RK31_SIM text that ParseSimConfig reads back as `config`, over any base: the angle and the
// latency always, every other key only where it differs from a default SimConfig. Numbers are
// the shortest text that reads back as the same value.
QString WriteSimConfig(const SimConfig& config);

// The program's simulation: RK31_SIM over a latency of 30 ms, so that the wait windows are seen
// as with a real box. Ignored entries are reported on standard error.
SimConfig SimConfigFromEnvironment();

}  // namespace rk31::sim
