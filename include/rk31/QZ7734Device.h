#pragma once

// The device-access interfaces a programmer driver implements. Public: drivers built outside
// this source tree include it through the installed package.

#include <QString>
#include <QVariant>
#include <cstdint>
#include <memory>
#include <variant>

namespace rk31 {

// One value of a part's SolverImage as the component takes it: a Single, a 32-bit integer
// (the switch-output polarity) or a 16-bit integer (levels C and D from the point windows).
using SolverValue = std::variant<float, std::int32_t, std::int16_t>;

// Raw chip memory words; address 0x48 is the identification and lock word.
class MemoryAccess {
  public:
    virtual ~MemoryAccess() = default;
    virtual void WriteMemory(std::int16_t part, std::int32_t address, std::int32_t data) = 0;
    virtual void ReadMemory(std::int16_t part, std::int32_t address, std::int32_t& data) = 0;
    // Buffers one SolverImage value of the part; mode is 1 for analog output, 0 otherwise.
    virtual void SetSolverParameter(std::int16_t part, std::int16_t id, const SolverValue& value,
                                    std::int16_t mode, std::int32_t& failed) = 0;
};

class SolverAccess {
  public:
    virtual ~SolverAccess() = default;
    // Locks the part's OWI communication for good.
    virtual void CommLock(std::int16_t part, std::int32_t& failed) = 0;
    // Writes the buffered SolverImage into the part: 0 ok, 1 bad index, 2 write failed,
    // 3/4 clamps of die 1/2 out of order.
    virtual void WriteBufferToDevice(std::int16_t part, std::int32_t& code) = 0;
    virtual void ClearSolverSettings(std::int16_t part, std::int32_t& failed) = 0;
};

// The programmer box and the chip behind it. Out-values are set to 0 by the caller before each
// call; 0 means success. Part is 0 or 1, and 3 (both parts) where noted. A call that fails as a
// whole throws DeviceError.
class QZ7734Device {
  public:
    virtual ~QZ7734Device() = default;

    virtual void OpenChannel(const QVariant& port, std::int32_t& failed) = 0;
    virtual void CloseChannel(std::int32_t channel) = 0;
    virtual void ProgramEEPROM(std::int16_t part, std::int32_t& failed) = 0;
    // Output in percent of VDD, valid when 0 <= value < 101. `one` is always 1.
    virtual void MeasureOutput(std::int16_t part, std::int16_t one, float& value) = 0;
    // Part or 3 (common supply); below -100 means no reading.
    virtual void MeasureVDD(std::int16_t part, float& vdd) = 0;
    virtual void GetMemoryAccess(std::shared_ptr<MemoryAccess>& object) = 0;
    // Needs the part in OWI mode.
    virtual void ReadAngle(std::int16_t part, float& angle) = 0;
    virtual void GetSolverAccess(std::shared_ptr<SolverAccess>& object) = 0;
    // Part or 3; result 1 = refused because communication is locked.
    virtual void EnterOWIMode(std::int16_t part, std::int32_t& result) = 0;
    virtual void ExitOWIMode(std::int16_t part, std::int32_t& status) = 0;
    virtual void PowerOnChip(std::int16_t part, std::int32_t& status) = 0;
    virtual void SelectOutputChannel(std::int16_t part, std::int32_t& status) = 0;
    virtual void PowerOffChip(std::int16_t part, std::int32_t& status) = 0;
    virtual void EnterADCMode(std::int16_t part, std::int32_t& status) = 0;
    // Part or 3; bits 0-1 of |status| mark Part#1's pair invalid, bits 2-3 Part#2's.
    virtual void GetDACCalibration(std::int16_t part, float& k0, float& b0, float& k1, float& b1,
                                   std::int32_t& status) = 0;
    virtual void GetHardwareVersion(std::int32_t& major, std::int32_t& minor, std::int32_t& build,
                                    std::int32_t& failed) = 0;
    virtual void SetOutputMode(std::int16_t part, std::int16_t outputMode,
                               std::int16_t pwmFrequency, std::int16_t pwmPolarity,
                               std::int32_t& failed) = 0;
};

}  // namespace rk31
