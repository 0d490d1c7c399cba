#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "rk31/DeviceError.h"
#include "sim/SimulatedProgrammer.h"

namespace rk31::sim {
namespace {

constexpr double kDacStep = 100.0 / 4095.0;

// A device object on a box, with its channel open on the programmer's port. Out-values nobody
// looks at land in `out`.
struct Bench {
    explicit Bench(const SimConfig& config = {})
        : box(std::make_shared<SimulatedBox>(config)), device(CreateSimulatedDevice(box)) {
        device->OpenChannel(QVariant(config.programmerPort), out);
        device->GetMemoryAccess(memory);
        device->GetSolverAccess(solver);
    }
    std::int32_t enterOwi(std::int16_t part) {
        std::int32_t result = 0;
        device->EnterOWIMode(part, result);
        return result;
    }
    void powerCycle(std::int16_t part) {
        device->PowerOffChip(part, out);
        device->PowerOnChip(part, out);
    }
    std::int32_t read(std::int16_t part, std::int32_t address) {
        std::int32_t data = 0;
        memory->ReadMemory(part, address, data);
        return data;
    }
    std::int32_t solve(void (SolverAccess::*op)(std::int16_t, std::int32_t&), std::int16_t part) {
        std::int32_t result = 0;
        ((*solver).*op)(part, result);
        return result;
    }
    float measure(std::int16_t part) {
        float value = 0;
        device->MeasureOutput(part, 1, value);
        return value;
    }
    float vdd(std::int16_t part) {
        float value = 0;
        device->MeasureVDD(part, value);
        return value;
    }
    // A 100°/20 %, B 200°/80 %, clamps 10 % and 90 %, DP 300°, in the order the program sends a
    // SolverImage; C and D repeat B's angle with level 0.
    std::int32_t writeTwoPoints(std::int16_t part) {
        const std::vector<std::pair<std::int16_t, float>> image = {
            {1, 10.0f},  {2, 90.0f}, {3, 300.0f},  {4, 20.0f}, {8, 100.0f}, {5, 80.0f},
            {9, 200.0f}, {6, 0.0f},  {10, 200.0f}, {7, 0.0f},  {11, 200.0f}};
        for (const auto& [id, value] : image) {
            memory->SetSolverParameter(part, id, value, 1, out);
        }
        return solve(&SolverAccess::WriteBufferToDevice, part);
    }

    std::shared_ptr<SimulatedBox> box;
    std::shared_ptr<QZ7734Device> device;
    std::shared_ptr<MemoryAccess> memory;
    std::shared_ptr<SolverAccess> solver;
    std::int32_t out = 0;
};

TEST(SimulatedDevice, OutputFollowsTheEepromInAdcModeOnly) {
    Bench bench;
    bench.device->PowerOnChip(0, bench.out);
    bench.enterOwi(0);
    ASSERT_EQ(bench.writeTwoPoints(0), 0);
    EXPECT_EQ(bench.read(0, 0x01), 410) << "clamp low 10 % as a DAC code";
    EXPECT_EQ(bench.read(0, 0x08), 1138) << "A at 100 degrees as an angle code";
    bench.memory->WriteMemory(0, 0x48, 0xF0);
    EXPECT_EQ(bench.read(0, 0x48), 0x35) << "the id word is read-only";
    bench.box->setMagnetAngle(150);
    EXPECT_EQ(bench.measure(0), 0.0f) << "a die in OWI mode drives no output";
    // Written but not burnt: after a power cycle the die is blank again, at clamp low.
    bench.powerCycle(0);
    EXPECT_NEAR(bench.measure(0), 5.0, kDacStep);

    bench.device->PowerOnChip(0, bench.out);
    bench.enterOwi(0);
    bench.writeTwoPoints(0);
    bench.device->ProgramEEPROM(0, bench.out);
    ASSERT_EQ(bench.out, 0);
    bench.powerCycle(0);
    const struct {
        double magnet, percent;
    } readings[] = {{150, 50}, {250, 90}, {50, 10}, {200, 80}, {299.9, 90}, {300, 10}};
    for (const auto& r : readings) {
        bench.box->setMagnetAngle(r.magnet);
        EXPECT_NEAR(bench.measure(0), r.percent, kDacStep) << "magnet at " << r.magnet;
    }
    EXPECT_EQ(bench.measure(1), 0.0f) << "an unpowered die";
}

// A real die saturates: whatever non-finite value reaches a register, the output stays within
// what the DAC can put out and every register word within its twelve bits.
TEST(SimulatedDevice, NonFiniteSolverValuesSaturate) {
    constexpr float inf = std::numeric_limits<float>::infinity();
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    const struct {
        const char* name;
        std::vector<std::pair<std::int16_t, float>> image;
    } cases[] = {
        {"one point and an infinite slope", {{4, 50.0f}, {8, 100.0f}, {5, inf}, {9, 200.0f}}},
        {"levels that are no number", {{4, nan}, {8, 100.0f}, {5, -inf}, {9, 200.0f}}},
        {"infinite clamps", {{1, -inf}, {2, inf}, {4, 20.0f}, {8, 10.0f}, {5, 80.0f}, {9, 20.0f}}},
        {"angles and DP that are no number",
         {{3, inf}, {4, 20.0f}, {8, nan}, {5, 80.0f}, {9, -inf}}},
        {"huge but finite",
         {{1, -3e38f}, {2, 3e38f}, {4, -3e38f}, {8, 1e-30f}, {5, 3e38f}, {9, 2e-30f}}},
    };
    for (const auto& c : cases) {
        Bench bench;
        std::int32_t failed = 0;
        bench.device->PowerOnChip(0, bench.out);
        bench.enterOwi(0);
        for (const auto& [id, value] : c.image) {
            bench.memory->SetSolverParameter(0, id, value, 1, failed);
        }
        bench.memory->SetSolverParameter(0, 12, nan, 1, failed);
        bench.memory->SetSolverParameter(0, 13, inf, 1, failed);
        ASSERT_EQ(bench.solve(&SolverAccess::WriteBufferToDevice, 0), 0) << c.name;
        for (std::int32_t address = 0x01; address <= 0x0E; ++address) {
            const std::int32_t word = bench.read(0, address);
            EXPECT_TRUE(word >= 0 && word <= 0xFFF)
                << c.name << " word " << address << ": " << word;
        }
        bench.device->ProgramEEPROM(0, bench.out);
        bench.powerCycle(0);
        for (double magnet = 0; magnet < 360; magnet += 7.5) {
            bench.box->setMagnetAngle(magnet);
            const float percent = bench.measure(0);
            EXPECT_TRUE(percent >= 0.0f && percent <= 100.0f)
                << c.name << " at " << magnet << ": " << percent;
        }
    }
}

TEST(SimulatedDevice, EnterOwiModeResults) {
    Bench open;
    open.device->PowerOnChip(0, open.out);
    EXPECT_EQ(open.enterOwi(3), 2) << "both parts, one unpowered";
    open.device->PowerOnChip(1, open.out);
    EXPECT_EQ(open.enterOwi(3), 0);
    Bench locked(ParseSimConfig(QStringLiteral("locked=2"), nullptr));
    EXPECT_EQ(locked.enterOwi(1), 1) << "locked and unpowered";
    locked.device->PowerOnChip(0, locked.out);
    locked.device->PowerOnChip(1, locked.out);
    EXPECT_EQ(locked.enterOwi(1), 1);
    EXPECT_EQ(locked.enterOwi(3), 1) << "both parts, one locked";
    EXPECT_EQ(locked.enterOwi(0), 0) << "beside a locked die";
}

TEST(SimulatedDevice, RefusalCodesAndSupplyReadings) {
    Bench bench(ParseSimConfig(QStringLiteral("no_supply=2"), nullptr));
    std::int32_t failed = 0;
    bench.device->ProgramEEPROM(0, failed);
    EXPECT_EQ(failed, 1) << "unpowered";
    EXPECT_LT(bench.vdd(0), -100) << "unpowered";

    bench.device->PowerOnChip(0, bench.out);  // ADC mode
    EXPECT_FLOAT_EQ(bench.vdd(0), 4.996f);
    float angle = -1;
    bench.device->ReadAngle(0, angle);
    EXPECT_FLOAT_EQ(angle, 0.0f) << "an angle comes back outside OWI mode too";
    EXPECT_EQ(bench.read(0, 0x48), 511) << "an open die reads its id in OWI mode only";
    EXPECT_EQ(bench.read(0, 0x10), 511);
    EXPECT_EQ(bench.solve(&SolverAccess::WriteBufferToDevice, 0), 2);
    EXPECT_EQ(bench.solve(&SolverAccess::ClearSolverSettings, 0), 1);
    EXPECT_EQ(bench.solve(&SolverAccess::CommLock, 0), 1);

    // Clamps out of order give each die its own code; a part the call does not take gives 1.
    for (std::int16_t part : {0, 1}) {
        bench.device->PowerOnChip(part, bench.out);
        bench.enterOwi(part);
        bench.memory->SetSolverParameter(part, 1, 50.0f, 1, failed);
        bench.memory->SetSolverParameter(part, 2, 50.0f, 1, failed);
    }
    EXPECT_LT(bench.vdd(1), -100) << "no_supply";
    EXPECT_LT(bench.vdd(3), -100) << "the common supply of both parts";
    for (const auto& [part, code] :
         std::initializer_list<std::pair<std::int16_t, int>>{{0, 3}, {1, 4}, {2, 1}, {-1, 1}}) {
        EXPECT_EQ(bench.solve(&SolverAccess::WriteBufferToDevice, part), code) << part;
    }
}

TEST(SimulatedDevice, ClosedChannelRefusesCallsButTracesThem) {
    const auto box = std::make_shared<SimulatedBox>();
    const auto device = CreateSimulatedDevice(box);
    std::int32_t out = 0;
    EXPECT_THROW(device->PowerOnChip(0, out), DeviceError);
    device->OpenChannel(QVariant(1), out);
    std::shared_ptr<MemoryAccess> memory;
    device->GetMemoryAccess(memory);
    device->CloseChannel(-1);
    float value = 0;
    EXPECT_THROW(device->MeasureOutput(0, 1, value), DeviceError);
    EXPECT_THROW(memory->ReadMemory(0, 0x48, out), DeviceError)
        << "an access object handed out before the close is closed with its channel";
    EXPECT_EQ(box->trace().join(u'\n').toStdString(),
              "PowerOnChip(0)\nOpenChannel(1)\nGetMemoryAccess()\nCloseChannel(-1)\n"
              "MeasureOutput(0, 1)\nReadMemory(0, &H48)");
}

TEST(SimulatedBox, MagnetAngleStaysInRange) {
    SimulatedBox box;
    box.setMagnetAngle(-30);
    EXPECT_EQ(box.magnetAngle(), 330);
    box.setMagnetAngle(359.0, -1e7);
    EXPECT_TRUE(box.magnetAngle() >= 0.0 && box.magnetAngle() < 360.0) << box.magnetAngle();
}

TEST(SimulatedBox, PartSettingsSwitchedLiveActOnThatDieAtTheNextCall) {
    using Probe = std::function<bool(Bench&, std::int16_t)>;
    const auto inOwi = [](Probe probe) {
        return [probe](Bench& b, std::int16_t part) {
            b.enterOwi(part);
            return probe(b, part);
        };
    };
    // Whether the call the setting is about fails for a part.
    const std::map<std::string, Probe> fails = {
        {"locked", [](Bench& b, std::int16_t part) { return b.enterOwi(part) == 1; }},
        {"no_supply", [](Bench& b, std::int16_t part) { return b.vdd(part) < -100; }},
        {"id_error", inOwi([](Bench& b, std::int16_t part) { return b.read(part, 0x48) == 511; })},
        {"eeprom_fail", inOwi([](Bench& b, std::int16_t part) {
             std::int32_t failed = 0;
             b.device->ProgramEEPROM(part, failed);
             return failed == 1;
         })},
        {"clear_fail", inOwi([](Bench& b, std::int16_t part) {
             return b.solve(&SolverAccess::ClearSolverSettings, part) == 1;
         })},
        {"commlock_fail", inOwi([](Bench& b, std::int16_t part) {
             return b.solve(&SolverAccess::CommLock, part) == 1;
         })},
    };
    ASSERT_EQ(fails.size(), PartsSettings().size());
    for (const PartsSetting& setting : PartsSettings()) {
        const Probe& probe = fails.at(setting.key);
        for (std::int16_t part = 0; part < 2; ++part) {
            Bench b;
            b.device->PowerOnChip(0, b.out);
            b.device->PowerOnChip(1, b.out);
            const auto other = static_cast<std::int16_t>(1 - part);
            b.box->setPartSetting(setting, part, true);
            EXPECT_TRUE(b.box->partSetting(setting, part)) << setting.key;
            EXPECT_TRUE(probe(b, part)) << setting.key << " on Part#" << part + 1;
            EXPECT_FALSE(probe(b, other)) << setting.key << " reaches Part#" << other + 1;
            b.box->setPartSetting(setting, part, false);
            EXPECT_FALSE(probe(b, part)) << setting.key << " off again, Part#" << part + 1;
        }
    }
}

TEST(SimulatedBox, SettingsStartABoxAsThisOneIsNow) {
    Bench b;
    b.box->setMagnetAngle(123.456, 0);
    b.device->PowerOnChip(1, b.out);
    b.enterOwi(1);
    ASSERT_EQ(b.solve(&SolverAccess::CommLock, 1), 0);
    const SimConfig now = b.box->settings();
    EXPECT_EQ(now.angle, 123.46);
    EXPECT_EQ(now.locked, kPart2) << "a die locked by CommLock stays locked";
    const SimulatedBox started(now);
    EXPECT_EQ(std::tuple(started.dies[0].locked, started.dies[1].locked), std::tuple(false, true));

    b.box->setMagnetAngle(359.999, -4);
    EXPECT_EQ(b.box->settings().angle, 0) << "rounded up to 360, which is 0";
    EXPECT_EQ(b.box->settings().rotate, -4);
}

}  // namespace
}  // namespace rk31::sim
