#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "SimTestSupport.h"
#include "core/DeviceError.h"

namespace rk31::sim::test {
namespace {

// The two-point characteristic A 100°/20 %, B 200°/80 %, clamps 10 % and 90 %, DP 300°, sent in
// the order the program sends a SolverImage; C and D repeat B's angle with level 0.
void SendTwoPoints(QZ7734Device& device, std::int16_t part) {
    std::shared_ptr<MemoryAccess> memory;
    device.GetMemoryAccess(memory);
    const std::vector<std::pair<std::int16_t, float>> image = {
        {1, 10.0f},  {2, 90.0f}, {3, 300.0f},  {4, 20.0f}, {8, 100.0f},  {5, 80.0f},
        {9, 200.0f}, {6, 0.0f},  {10, 200.0f}, {7, 0.0f},  {11, 200.0f},
    };
    for (const auto& [id, value] : image) {
        std::int32_t failed = 0;
        memory->SetSolverParameter(part, id, value, 1, failed);
        EXPECT_EQ(failed, 0) << "id " << id;
    }
}

TEST(SimulatedDevice, ProgrammedCharacteristicIsMeasuredInAdcMode) {
    Bench bench;
    ASSERT_EQ(bench.powerOnAndEnterOwi(0), 0);
    const std::int32_t id = bench.read(0, 0x48);
    EXPECT_FALSE(id >= 240 && id <= 255) << id;
    EXPECT_NE(id, 511);

    SendTwoPoints(*bench.device, 0);
    std::shared_ptr<SolverAccess> solver;
    bench.device->GetSolverAccess(solver);
    std::int32_t code = -1;
    solver->WriteBufferToDevice(0, code);
    EXPECT_EQ(code, 0);
    std::int32_t failed = -1;
    bench.device->ProgramEEPROM(0, failed);
    EXPECT_EQ(failed, 0);

    std::int32_t status = 0;
    bench.device->ExitOWIMode(0, status);
    bench.device->EnterADCMode(0, status);
    const struct {
        double magnet, percent;
    } readings[] = {{150, 50}, {250, 90}, {50, 10}, {100, 20}, {200, 80}, {299.9, 90}, {300, 10}};
    for (const auto& r : readings) {
        bench.box->setMagnetAngle(r.magnet);
        EXPECT_NEAR(bench.measure(0), r.percent, kDacStep) << "magnet at " << r.magnet;
    }
    // Part#2 was never programmed: it is unpowered, then blank at clamp low.
    EXPECT_EQ(bench.measure(1), 0.0f);
    bench.device->PowerOnChip(1, status);
    EXPECT_NEAR(bench.measure(1), 5.0, kDacStep);
}

TEST(SimulatedDevice, OutputNeedsAdcModeAndSurvivesOnlyInEeprom) {
    Bench bench;
    bench.powerOnAndEnterOwi(0);
    SendTwoPoints(*bench.device, 0);
    std::shared_ptr<SolverAccess> solver;
    bench.device->GetSolverAccess(solver);
    std::int32_t code = 0;
    solver->WriteBufferToDevice(0, code);
    bench.box->setMagnetAngle(150);
    EXPECT_EQ(bench.measure(0), 0.0f) << "a die in OWI mode drives no output";

    // Written but not burnt: after a power cycle the die is blank again.
    std::int32_t status = 0;
    bench.device->PowerOffChip(0, status);
    bench.device->PowerOnChip(0, status);
    EXPECT_NEAR(bench.measure(0), 5.0, kDacStep);
}

TEST(SimulatedDevice, CommLockHoldsForGood) {
    Bench bench;
    bench.powerOnAndEnterOwi(1);
    std::shared_ptr<SolverAccess> solver;
    bench.device->GetSolverAccess(solver);
    std::int32_t failed = -1;
    solver->CommLock(1, failed);
    ASSERT_EQ(failed, 0);

    const auto expectLocked = [&bench](const char* when) {
        std::int32_t result = 0;
        bench.device->EnterOWIMode(1, result);
        EXPECT_EQ(result, 1) << when;
        bench.device->EnterOWIMode(3, result);
        EXPECT_EQ(result, 1) << when << " (both parts)";
        const std::int32_t id = bench.read(1, 0x48);
        EXPECT_TRUE(id >= 0xF0 && id <= 0xFF) << when << ": " << id;
    };
    expectLocked("after CommLock");
    std::int32_t status = 0;
    bench.device->PowerOffChip(1, status);
    bench.device->PowerOnChip(1, status);
    expectLocked("after a power cycle");
    bench.reconnect();
    bench.device->PowerOnChip(1, status);
    expectLocked("after a reconnect");

    // The other die is not affected.
    EXPECT_EQ(bench.powerOnAndEnterOwi(0), 0);
}

TEST(SimulatedDevice, EnterOwiModeOfBothPartsNeedsBothPowered) {
    Bench bench;
    std::int32_t status = 0;
    std::int32_t result = 0;
    bench.device->PowerOnChip(0, status);
    bench.device->EnterOWIMode(3, result);
    EXPECT_EQ(result, 2);
    bench.device->PowerOnChip(1, status);
    bench.device->EnterOWIMode(3, result);
    EXPECT_EQ(result, 0);
    float angle = -1;
    bench.device->ReadAngle(1, angle);
    EXPECT_EQ(angle, 0.0f);
}

// One injected fault, the call that reports it, and the out-value the caller gets.
struct FaultCase {
    const char* name;
    std::function<void(SimConfig&)> inject;
    std::function<double(Bench&)> call;
    double expected;
};

std::int32_t solverCall(Bench& bench, void (SolverAccess::*op)(std::int16_t, std::int32_t&)) {
    bench.powerOnAndEnterOwi(1);
    std::shared_ptr<SolverAccess> solver;
    bench.device->GetSolverAccess(solver);
    std::int32_t out = 0;
    ((*solver).*op)(1, out);
    return out;
}

TEST(SimulatedDevice, InjectedFaultsReachTheCaller) {
    const std::vector<FaultCase> cases = {
        {"no_supply", [](SimConfig& c) { c.noSupply = kPart2; },
         [](Bench& b) {
             b.powerOnAndEnterOwi(1);
             float vdd = 0;
             b.device->MeasureVDD(1, vdd);
             return vdd < -100 ? 1.0 : 0.0;
         },
         1},
        {"no_supply on one part, common supply", [](SimConfig& c) { c.noSupply = kPart2; },
         [](Bench& b) {
             b.powerOnAndEnterOwi(0);
             b.powerOnAndEnterOwi(1);
             float vdd = 0;
             b.device->MeasureVDD(3, vdd);
             return vdd < -100 ? 1.0 : 0.0;
         },
         1},
        {"id_error", [](SimConfig& c) { c.idError = kPart2; },
         [](Bench& b) {
             b.powerOnAndEnterOwi(1);
             return double(b.read(1, 0x48));
         },
         511},
        {"locked", [](SimConfig& c) { c.locked = kPart2; },
         [](Bench& b) { return double(b.powerOnAndEnterOwi(1)); }, 1},
        {"eeprom_fail", [](SimConfig& c) { c.eepromFail = kPart2; },
         [](Bench& b) {
             b.powerOnAndEnterOwi(1);
             std::int32_t failed = 0;
             b.device->ProgramEEPROM(1, failed);
             return double(failed);
         },
         1},
        {"clear_fail", [](SimConfig& c) { c.clearFail = kBothParts; },
         [](Bench& b) { return double(solverCall(b, &SolverAccess::ClearSolverSettings)); }, 1},
        {"commlock_fail", [](SimConfig& c) { c.commlockFail = kPart2; },
         [](Bench& b) { return double(solverCall(b, &SolverAccess::CommLock)); }, 1},
        {"wbd_code", [](SimConfig& c) { c.writeBufferCode = 5; },
         [](Bench& b) { return double(solverCall(b, &SolverAccess::WriteBufferToDevice)); }, 5},
        {"dac_status", [](SimConfig& c) { c.dacStatus = -12; },
         [](Bench& b) {
             float k0, b0, k1, b1;
             std::int32_t status = 0;
             b.device->GetDACCalibration(3, k0, b0, k1, b1, status);
             return double(status);
         },
         -12},
        {"version_fail", [](SimConfig& c) { c.versionFail = true; },
         [](Bench& b) {
             std::int32_t major = 0, minor = 0, build = 0, failed = 0;
             b.device->GetHardwareVersion(major, minor, build, failed);
             EXPECT_GT(major + minor + build, 0) << "the numbers come with the failure";
             return double(failed);
         },
         1},
        {"output", [](SimConfig& c) { c.outputOverride = 150.0f; },
         [](Bench& b) { return double(b.measure(0)); }, 150},
    };
    for (const auto& c : cases) {
        SimConfig config;
        c.inject(config);
        Bench faulty(config);
        EXPECT_EQ(c.call(faulty), c.expected) << c.name;
        // Without the fault the same call succeeds, so the row tests the fault and not the call.
        Bench healthy;
        EXPECT_NE(c.call(healthy), c.expected) << c.name << " without the fault";
    }
}

TEST(SimulatedDevice, ChannelOpensOnlyOnTheProgrammersPort) {
    auto box = std::make_shared<SimulatedBox>();
    auto device = CreateSimulatedDevice(box);
    for (const auto& [port, expected] : std::vector<std::pair<int, int>>{{1, 1}, {2, 1}, {3, 0}}) {
        std::int32_t failed = -1;
        device->OpenChannel(QVariant(port), failed);
        EXPECT_EQ(failed, expected) << "COM" << port;
    }
    box->config.channelFail = true;
    std::int32_t failed = 0;
    device->OpenChannel(QVariant(3), failed);
    EXPECT_EQ(failed, 1);
}

TEST(SimulatedDevice, OperationsNeedAnOpenChannel) {
    auto box = std::make_shared<SimulatedBox>();
    auto device = CreateSimulatedDevice(box);
    std::int32_t out = 0;
    float value = 0;
    const std::vector<std::pair<const char*, std::function<void()>>> calls = {
        {"PowerOnChip", [&] { device->PowerOnChip(0, out); }},
        {"MeasureOutput", [&] { device->MeasureOutput(0, 1, value); }},
        {"GetHardwareVersion", [&] { device->GetHardwareVersion(out, out, out, out); }},
        {"GetMemoryAccess",
         [&] {
             std::shared_ptr<MemoryAccess> memory;
             device->GetMemoryAccess(memory);
         }},
    };
    const auto expectRefused = [&calls](const char* when) {
        for (const auto& [name, run] : calls) {
            try {
                run();
                ADD_FAILURE() << name << " ran " << when;
            } catch (const DeviceError& e) {
                EXPECT_EQ(e.description().toStdString(), "Programmer is not connected!") << name;
            }
        }
    };
    expectRefused("before OpenChannel");

    device->OpenChannel(QVariant(3), out);
    std::shared_ptr<MemoryAccess> memory;
    device->GetMemoryAccess(memory);
    device->CloseChannel(-1);
    expectRefused("after CloseChannel");
    std::int32_t data = 0;
    EXPECT_THROW(memory->ReadMemory(0, 0x48, data), DeviceError)
        << "an access object handed out before the close is closed with its channel";
}

TEST(SimulatedDevice, RefusesWorkOutsideTheRightMode) {
    Bench bench;
    std::int32_t failed = 0;
    bench.device->ProgramEEPROM(0, failed);
    EXPECT_EQ(failed, 1) << "unpowered";

    std::int32_t status = 0;
    bench.device->PowerOnChip(0, status);
    float angle = 0;
    try {
        bench.device->ReadAngle(0, angle);
        ADD_FAILURE() << "ReadAngle in ADC mode";
    } catch (const DeviceError& e) {
        EXPECT_EQ(e.description().toStdString(),
                  "Part#1 cannot report its angle: it is not in OWI mode!");
    }
    EXPECT_EQ(bench.read(0, 0x48), 511) << "an open die reads its id in OWI mode only";
    EXPECT_EQ(bench.read(0, 0x10), 511);

    std::shared_ptr<SolverAccess> solver;
    bench.device->GetSolverAccess(solver);
    std::int32_t code = 0;
    solver->WriteBufferToDevice(0, code);
    EXPECT_EQ(code, 2);
    solver->ClearSolverSettings(0, failed);
    EXPECT_EQ(failed, 1);
    solver->CommLock(0, failed);
    EXPECT_EQ(failed, 1);
}

TEST(SimulatedDevice, WriteBufferCodes) {
    Bench bench;
    bench.powerOnAndEnterOwi(0);
    bench.powerOnAndEnterOwi(1);
    std::shared_ptr<MemoryAccess> memory;
    bench.device->GetMemoryAccess(memory);
    std::shared_ptr<SolverAccess> solver;
    bench.device->GetSolverAccess(solver);
    std::int32_t failed = 0;
    for (std::int16_t part : {0, 1}) {
        memory->SetSolverParameter(part, 1, 50.0f, 1, failed);
        memory->SetSolverParameter(part, 2, 50.0f, 1, failed);
    }
    const struct {
        std::int16_t part;
        std::int32_t code;
    } cases[] = {{0, 3}, {1, 4}, {2, 1}, {-1, 1}};
    for (const auto& c : cases) {
        std::int32_t code = 0;
        solver->WriteBufferToDevice(c.part, code);
        EXPECT_EQ(code, c.code) << "part " << c.part;
    }
}

TEST(SimulatedDevice, RawMemoryMirrorsTheRegisters) {
    Bench bench;
    bench.powerOnAndEnterOwi(0);
    SendTwoPoints(*bench.device, 0);
    std::shared_ptr<SolverAccess> solver;
    bench.device->GetSolverAccess(solver);
    std::int32_t code = 0;
    solver->WriteBufferToDevice(0, code);
    EXPECT_EQ(bench.read(0, 0x01), 410) << "clamp low 10 % as a DAC code";
    EXPECT_EQ(bench.read(0, 0x08), 1138) << "A at 100 degrees as an angle code";

    std::shared_ptr<MemoryAccess> memory;
    bench.device->GetMemoryAccess(memory);
    memory->WriteMemory(0, 0x30, 0x1234);
    memory->WriteMemory(0, 0x48, 0xF0);
    EXPECT_EQ(bench.read(0, 0x30), 0x1234);
    EXPECT_EQ(bench.read(0, 0x48), 0x35) << "the id word is read-only";
}

TEST(SimulatedDevice, TraceRecordsEveryCallInOrder) {
    Bench bench;
    bench.box->clearTrace();
    std::int32_t out = 0;
    float value = 0;
    bench.device->PowerOnChip(0, out);
    bench.device->EnterOWIMode(3, out);
    std::shared_ptr<MemoryAccess> memory;
    bench.device->GetMemoryAccess(memory);
    memory->ReadMemory(0, 0x48, out);
    memory->WriteMemory(1, 0x10, 0xFF);
    memory->WriteMemory(1, 0x11, -1);
    memory->SetSolverParameter(0, 1, 10.0f, 1, out);
    memory->SetSolverParameter(0, 14, std::int32_t{1}, 0, out);
    memory->SetSolverParameter(0, 6, std::int16_t{0}, 1, out);
    std::shared_ptr<SolverAccess> solver;
    bench.device->GetSolverAccess(solver);
    solver->WriteBufferToDevice(0, out);
    bench.device->SetOutputMode(0, 1, 0, 0, out);
    bench.device->MeasureVDD(3, value);
    EXPECT_THROW(bench.device->ReadAngle(1, value), DeviceError);
    bench.device->GetDACCalibration(3, value, value, value, value, out);
    bench.device->CloseChannel(-1);
    EXPECT_THROW(bench.device->MeasureOutput(0, 1, value), DeviceError);

    EXPECT_EQ(Text(bench.box->trace),
              "PowerOnChip(0)\n"
              "EnterOWIMode(3)\n"
              "GetMemoryAccess()\n"
              "ReadMemory(0, &H48)\n"
              "WriteMemory(1, &H10, &HFF)\n"
              "WriteMemory(1, &H11, &HFFFFFFFF)\n"
              "SetSolverParameter(0, 1, Single:10, 1)\n"
              "SetSolverParameter(0, 14, Long:1, 0)\n"
              "SetSolverParameter(0, 6, Integer:0, 1)\n"
              "GetSolverAccess()\n"
              "WriteBufferToDevice(0)\n"
              "SetOutputMode(0, 1, 0, 0)\n"
              "MeasureVDD(3)\n"
              "ReadAngle(1)\n"
              "GetDACCalibration(3)\n"
              "CloseChannel(-1)\n"
              "MeasureOutput(0, 1)");
}

TEST(SimulatedDevice, MagnetAngleStaysInRange) {
    SimulatedBox box;
    for (double set : {-30.0, 0.0, 359.99, 360.0, 725.0}) {
        box.setMagnetAngle(set);
        EXPECT_GE(box.magnetAngle(), 0.0) << set;
        EXPECT_LT(box.magnetAngle(), 360.0) << set;
    }
    box.setMagnetAngle(359.0, -1e7);
    const double angle = box.magnetAngle();
    EXPECT_TRUE(angle >= 0.0 && angle < 360.0) << angle;
}

}  // namespace
}  // namespace rk31::sim::test
