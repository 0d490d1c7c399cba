#pragma once

#include <memory>

#include "link/QZ7734Device.h"
#include "rk31/DeviceError.h"

namespace rk31 {

// Takes the solver values of `check` and `curve`, which never reach a device.
class SolverSink : public QZ7734Device,
                   public MemoryAccess,
                   public SolverAccess,
                   public std::enable_shared_from_this<SolverSink> {
  public:
    void OpenChannel(const QVariant&, std::int32_t&) override {}
    void CloseChannel(std::int32_t) override {}
    void ProgramEEPROM(std::int16_t, std::int32_t&) override { refuse(); }
    void MeasureOutput(std::int16_t, std::int16_t, float&) override { refuse(); }
    void MeasureVDD(std::int16_t, float&) override { refuse(); }
    void GetMemoryAccess(std::shared_ptr<MemoryAccess>& object) override {
        object = shared_from_this();
    }
    void ReadAngle(std::int16_t, float&) override { refuse(); }
    void GetSolverAccess(std::shared_ptr<SolverAccess>& object) override {
        object = shared_from_this();
    }
    void EnterOWIMode(std::int16_t, std::int32_t&) override { refuse(); }
    void ExitOWIMode(std::int16_t, std::int32_t&) override { refuse(); }
    void PowerOnChip(std::int16_t, std::int32_t&) override { refuse(); }
    void SelectOutputChannel(std::int16_t, std::int32_t&) override { refuse(); }
    void PowerOffChip(std::int16_t, std::int32_t&) override { refuse(); }
    void EnterADCMode(std::int16_t, std::int32_t&) override { refuse(); }
    void GetDACCalibration(std::int16_t, float&, float&, float&, float&, std::int32_t&) override {
        refuse();
    }
    void GetHardwareVersion(std::int32_t&, std::int32_t&, std::int32_t&, std::int32_t&) override {
        refuse();
    }
    void SetOutputMode(std::int16_t, std::int16_t, std::int16_t, std::int16_t,
                       std::int32_t&) override {
        refuse();
    }
    void WriteMemory(std::int16_t, std::int32_t, std::int32_t) override { refuse(); }
    void ReadMemory(std::int16_t, std::int32_t, std::int32_t&) override { refuse(); }
    void SetSolverParameter(std::int16_t, std::int16_t, const SolverValue&, std::int16_t,
                            std::int32_t&) override {}
    void CommLock(std::int16_t, std::int32_t&) override { refuse(); }
    void WriteBufferToDevice(std::int16_t, std::int32_t&) override { refuse(); }
    void ClearSolverSettings(std::int16_t, std::int32_t&) override { refuse(); }

  private:
    [[noreturn]] static void refuse() {
        throw DeviceError(QStringLiteral("No device is used by this command."));
    }
};

}  // namespace rk31
