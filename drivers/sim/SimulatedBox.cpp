#include "sim/SimulatedBox.h"

#include <QThread>
#include <cmath>
#include <span>

namespace rk31::sim {

namespace {

// A powered die reads its supply a few millivolts low, as a real measuring path does.
constexpr float kSupplyDrop = 0.004f;
constexpr float kNoReading = -200.0f;

std::int32_t angleCode(double degrees) {
    return static_cast<std::int32_t>(
               std::nearbyint(Wrap360(FiniteAngle(degrees)) / 360.0 * 4096.0)) &
           0xFFF;
}

}  // namespace

SimulatedBox::SimulatedBox(SimConfig cfg) : config(std::move(cfg)) {
    insertChip();
    setMagnetAngle(config.angle, config.rotate);
}

void SimulatedBox::insertChip() {
    dies = {};
    // Two dies of one wafer: close, but not identical, calibration and identification.
    dies[0].chipId = 0x35;
    dies[0].k = 0.2779412f;
    dies[0].b = 0.0125f;
    dies[1].chipId = 0x36;
    dies[1].k = 0.2776150f;
    dies[1].b = -0.0087f;
    for (int part = 0; part < 2; ++part) {
        dies[part].locked = fault(config.locked, part);
        mirrorRegisters(part);
    }
}

bool SimulatedBox::newChip() {
    if (config.chips > 0 && m_chip >= config.chips) {
        return false;
    }
    ++m_chip;
    insertChip();
    return true;
}

double SimulatedBox::magnetAngle() const {
    const double seconds = m_speed == 0 ? 0.0 : m_clock.nsecsElapsed() / 1e9;
    return Wrap360(m_angle0 + m_speed * seconds);
}

void SimulatedBox::setMagnetAngle(double degrees, double degreesPerSecond) {
    m_angle0 = Wrap360(degrees);
    m_speed = degreesPerSecond;
    m_clock.start();
}

bool SimulatedBox::partSetting(const PartsSetting& setting, int part) const {
    if (setting.mask == &SimConfig::locked) {
        return dies[part].locked;
    }
    return fault(config.*setting.mask, part);
}

void SimulatedBox::setPartSetting(const PartsSetting& setting, int part, bool on) {
    const unsigned bit = 1u << part;
    unsigned& mask = config.*setting.mask;
    mask = on ? mask | bit : mask & ~bit;
    if (setting.mask == &SimConfig::locked) {
        dies[part].locked = on;
    }
}

SimConfig SimulatedBox::settings() const {
    SimConfig now = config;
    now.angle = Wrap360(std::round(magnetAngle() * 100) / 100);
    now.rotate = m_speed;
    now.locked = 0;
    for (int part = 0; part < 2; ++part) {
        now.locked |= dies[part].locked ? 1u << part : 0u;
    }
    return now;
}

void SimulatedBox::record(const QString& call) {
    if (m_trace.size() == kTraceCapacity) {
        m_trace.pop_front();
    }
    m_trace.push_back(call);
}

QStringList SimulatedBox::trace() const {
    return QStringList(m_trace.begin(), m_trace.end());
}

void SimulatedBox::delay() const {
    if (config.latencyMs > 0) {
        QThread::msleep(static_cast<unsigned long>(config.latencyMs));
    }
}

void SimulatedBox::powerOn(int part) {
    Die& die = dies[part];
    if (!die.powered) {
        die.registers = die.eeprom;
        mirrorRegisters(part);
    }
    die.powered = true;
    die.mode = Die::Mode::Adc;
    die.justCut = false;
}

void SimulatedBox::powerOff(int part) {
    Die& die = dies[part];
    die.powered = false;
    die.mode = Die::Mode::Off;
    die.justCut = true;
}

void SimulatedBox::enterAdc(int part) {
    Die& die = dies[part];
    if (die.powered) {
        die.mode = Die::Mode::Adc;
    } else if (die.locked && !die.justCut) {
        // A locked die cannot go through the OWI power-up, so the programmer starts it straight
        // into analog mode. Right after PowerOffChip the same call only settles the output
        // path of a die that stays off.
        powerOn(part);
    }
    die.justCut = false;
}

void SimulatedBox::exitOwi(int part) {
    if (dies[part].inOwi()) {
        dies[part].mode = Die::Mode::Adc;
    }
}

int SimulatedBox::enterOwi(int partOrBoth) {
    const std::array<int, 2> both{0, 1};
    const std::array<int, 1> one{partOrBoth};
    const auto parts = partOrBoth == 3 ? std::span<const int>(both) : std::span<const int>(one);
    for (int part : parts) {
        if (dies[part].locked) {
            return 1;
        }
    }
    for (int part : parts) {
        if (!dies[part].powered) {
            return 2;
        }
    }
    for (int part : parts) {
        dies[part].mode = Die::Mode::Owi;
    }
    return 0;
}

float SimulatedBox::measureVdd(int partOrBoth) const {
    const auto supplied = [this](int part) {
        return dies[part].powered && !fault(config.noSupply, part);
    };
    const bool ok = partOrBoth == 3 ? supplied(0) && supplied(1) : supplied(partOrBoth);
    return ok ? config.vdd - kSupplyDrop : kNoReading;
}

float SimulatedBox::output(int part) const {
    if (config.outputOverride) {
        return *config.outputOverride;
    }
    const Die& die = dies[part];
    if (!die.inAdc()) {
        return 0.0f;
    }
    return static_cast<float>(Quantise(die.eeprom.Level(magnetAngle())));
}

std::int32_t SimulatedBox::readMemory(int part, std::int32_t address) const {
    const Die& die = dies[part];
    if (!die.powered) {
        return kReadError;
    }
    if (address == kIdAddress) {
        if (fault(config.idError, part)) {
            return kReadError;
        }
        // The lock shows in ADC mode too: that is how a locked die still identifies itself.
        if (die.locked) {
            return 0xF0 | (die.chipId & 0x0F);
        }
        return die.inOwi() ? die.chipId : kReadError;
    }
    if (!die.inOwi()) {
        return kReadError;
    }
    const auto it = die.memory.find(address);
    return it == die.memory.end() ? 0 : it->second;
}

void SimulatedBox::writeMemory(int part, std::int32_t address, std::int32_t data) {
    if (dies[part].inOwi() && address != kIdAddress) {
        dies[part].memory[address] = data;
    }
}

bool SimulatedBox::setSolverParameter(int part, int id, double value, int mode) {
    if (id < 1 || id > 14) {
        return false;
    }
    dies[part].buffer[id] = value;
    dies[part].bufferMode = mode;
    return true;
}

int SimulatedBox::writeBuffer(int part) {
    if (!IsPart(part)) {
        return 1;
    }
    if (config.writeBufferCode != 0) {
        return config.writeBufferCode;
    }
    Die& die = dies[part];
    if (!die.inOwi()) {
        return 2;
    }
    Characteristic c = Characteristic::FromBuffer(die.buffer);
    if (c.clampHigh <= c.clampLow) {
        return part == 0 ? 3 : 4;
    }
    die.registers = c;
    mirrorRegisters(part);
    return 0;
}

bool SimulatedBox::clearSolver(int part) {
    Die& die = dies[part];
    if (fault(config.clearFail, part) || !die.inOwi()) {
        return false;
    }
    die.buffer.clear();
    die.registers = Characteristic{};
    mirrorRegisters(part);
    return true;
}

bool SimulatedBox::programEeprom(int part) {
    Die& die = dies[part];
    if (fault(config.eepromFail, part) || !die.inOwi()) {
        return false;
    }
    die.eeprom = die.registers;
    return true;
}

bool SimulatedBox::commLock(int part) {
    Die& die = dies[part];
    if (fault(config.commlockFail, part) || !die.inOwi()) {
        return false;
    }
    die.locked = true;
    return true;
}

bool SimulatedBox::setOutputMode(int part, std::int16_t mode, std::int16_t frequency,
                                 std::int16_t polarity) {
    if (!dies[part].inOwi()) {
        return false;
    }
    dies[part].outputMode = {mode, frequency, polarity};
    mirrorRegisters(part);
    return true;
}

void SimulatedBox::mirrorRegisters(int part) {
    Die& die = dies[part];
    const Characteristic& r = die.registers;
    auto& m = die.memory;
    m[0x01] = DacCode(r.clampLow);
    m[0x02] = DacCode(r.clampHigh);
    m[0x03] = angleCode(r.dp);
    for (int k = 0; k < 4; ++k) {
        m[0x04 + k] = DacCode(r.level[k]);
        m[0x08 + k] = angleCode(r.angle[k]);
    }
    m[0x0C] = angleCode(r.op);
    m[0x0D] = angleCode(r.hys);
    m[0x0E] = r.polarity;
    m[0x0F] = die.bufferMode;
    for (int i = 0; i < 3; ++i) {
        m[0x10 + i] = die.outputMode[i];
    }
    std::int32_t sum = 0;
    for (std::int32_t address = 0x01; address <= 0x12; ++address) {
        sum += m[address];
    }
    m[0x14] = sum & 0xFFFF;
}

}  // namespace rk31::sim
