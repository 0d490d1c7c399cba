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
constexpr float kInf = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
using Image = std::vector<std::pair<std::int16_t, float>>;  // SolverImage ids and values
using SolverOp = void (SolverAccess::*)(std::int16_t, std::int32_t&);
// A 100°/20 %, B 200°/80 %, clamps 10 % and 90 %, DP 300°, in the order the program sends a
// SolverImage; C and D repeat B's angle with level 0.
const Image kTwoPoints = {{1, 10.0f},   {2, 90.0f}, {3, 300.0f}, {4, 20.0f},
                          {8, 100.0f},  {5, 80.0f}, {9, 200.0f}, {6, 0.0f},
                          {10, 200.0f}, {7, 0.0f},  {11, 200.0f}};

// The value a device call leaves in its out-parameter.
template <typename T = std::int32_t, typename Call>
T outOf(Call call) {
    T value{};
    call(value);
    return value;
}

// A device object on a box, with its channel open on the programmer's port. Out-values nobody
// looks at land in `out`.
struct Bench {
    explicit Bench(const char* config = "")
        : box(std::make_shared<SimulatedBox>(ParseSimConfig(config, nullptr))),
          device(CreateSimulatedDevice(box)) {
        device->OpenChannel(QVariant(box->config.programmerPort), out);
        device->GetMemoryAccess(memory);
        device->GetSolverAccess(solver);
    }
    void powerOn(std::int16_t p) { device->PowerOnChip(p, out); }
    void powerCycle(std::int16_t p) {
        device->PowerOffChip(p, out);
        powerOn(p);
    }
    int enterOwi(std::int16_t p) {
        return outOf([&](auto& r) { device->EnterOWIMode(p, r); });
    }
    void owi(std::int16_t p) {
        powerOn(p);
        enterOwi(p);
    }
    int read(std::int16_t p, int address) {
        return outOf([&](auto& d) { memory->ReadMemory(p, address, d); });
    }
    int solve(SolverOp op, std::int16_t p) {
        return outOf([&](auto& r) { ((*solver).*op)(p, r); });
    }
    int program(std::int16_t p) {
        return outOf([&](auto& f) { device->ProgramEEPROM(p, f); });
    }
    float measure(std::int16_t p) {
        return outOf<float>([&](auto& v) { device->MeasureOutput(p, 1, v); });
    }
    float vdd(std::int16_t p) {
        return outOf<float>([&](auto& v) { device->MeasureVDD(p, v); });
    }
    // Sends the image and writes the buffer to the die: the WriteBufferToDevice code.
    int write(std::int16_t p, const Image& image) {
        for (const auto& [id, value] : image) {
            memory->SetSolverParameter(p, id, value, 1, out);
        }
        return solve(&SolverAccess::WriteBufferToDevice, p);
    }

    std::shared_ptr<SimulatedBox> box;
    std::shared_ptr<QZ7734Device> device;
    std::shared_ptr<MemoryAccess> memory;
    std::shared_ptr<SolverAccess> solver;
    std::int32_t out = 0;
};

TEST(SimulatedDevice, OutputFollowsTheEepromInAdcModeOnly) {
    Bench b;
    b.owi(0);
    ASSERT_EQ(b.write(0, kTwoPoints), 0);
    EXPECT_EQ(b.read(0, 0x01), 410) << "clamp low 10 % as a DAC code";
    EXPECT_EQ(b.read(0, 0x08), 1138) << "A at 100 degrees as an angle code";
    EXPECT_EQ(b.read(0, 0x30), 0) << "a word never written reads 0";
    b.memory->WriteMemory(0, 0x48, 0xF0);
    EXPECT_EQ(b.read(0, 0x48), 0x35) << "the id word is read-only";
    b.box->setMagnetAngle(150);
    EXPECT_EQ(b.measure(0), 0.0f) << "a die in OWI mode drives no output";
    b.powerCycle(0);
    EXPECT_NEAR(b.measure(0), 5.0, kDacStep) << "written but not burnt: blank, at clamp low";

    b.enterOwi(0);
    b.write(0, kTwoPoints);
    ASSERT_EQ(b.program(0), 0);
    b.powerCycle(0);
    const std::pair<double, double> readings[] = {{150, 50}, {250, 90},   {50, 10},
                                                  {200, 80}, {299.9, 90}, {300, 10}};
    for (const auto& [magnet, percent] : readings) {
        b.box->setMagnetAngle(magnet);
        EXPECT_NEAR(b.measure(0), percent, kDacStep) << "magnet at " << magnet;
    }
    EXPECT_EQ(b.measure(1), 0.0f) << "an unpowered die";
}

// A real die saturates: whatever non-finite value reaches a register, the output stays within
// what the DAC can put out and every register word within its twelve bits.
TEST(SimulatedDevice, NonFiniteSolverValuesSaturate) {
    // clang-format off
    const std::pair<const char*, Image> cases[] = {
        {"one point and an infinite slope", {{4, 50.0f}, {8, 100.0f}, {5, kInf}, {9, 200.0f}}},
        {"levels that are no number", {{4, kNan}, {8, 100.0f}, {5, -kInf}, {9, 200.0f}}},
        {"infinite clamps", {{1, -kInf}, {2, kInf}, {4, 20.0f}, {8, 10.0f}, {5, 80.0f}, {9, 20.0f}}},
        {"angles and DP that are no number", {{3, kInf}, {4, 20.0f}, {8, kNan}, {5, 80.0f}, {9, -kInf}}},
        {"huge but finite", {{1, -3e38f}, {2, 3e38f}, {4, -3e38f}, {8, 1e-30f}, {5, 3e38f}, {9, 2e-30f}}},
    };
    // clang-format on
    for (auto [name, image] : cases) {
        Bench b;
        b.owi(0);
        image.insert(image.end(), {{12, kNan}, {13, kInf}});
        ASSERT_EQ(b.write(0, image), 0) << name;
        for (std::int32_t address = 0x01; address <= 0x0E; ++address) {
            const std::int32_t word = b.read(0, address);
            EXPECT_TRUE(word >= 0 && word <= 0xFFF) << name << " word " << address << ": " << word;
        }
        b.program(0);
        b.powerCycle(0);
        for (double magnet = 0; magnet < 360; magnet += 7.5) {
            b.box->setMagnetAngle(magnet);
            const float percent = b.measure(0);
            EXPECT_TRUE(percent >= 0.0f && percent <= 100.0f) << name << " at " << magnet;
        }
    }
}

TEST(SimulatedDevice, EnterOwiModeResults) {
    Bench open;
    open.powerOn(0);
    EXPECT_EQ(open.enterOwi(3), 2) << "both parts, one unpowered";
    open.powerOn(1);
    EXPECT_EQ(open.enterOwi(3), 0);
    Bench locked("locked=2");
    EXPECT_EQ(locked.enterOwi(1), 1) << "locked and unpowered";
    locked.powerOn(0);
    locked.powerOn(1);
    EXPECT_EQ(locked.enterOwi(1), 1);
    EXPECT_EQ(locked.enterOwi(3), 1) << "both parts, one locked";
    EXPECT_EQ(locked.enterOwi(0), 0) << "beside a locked die";
}

TEST(SimulatedDevice, RefusalCodesAndSupplyReadings) {
    Bench b("no_supply=2");
    EXPECT_EQ(b.program(0), 1) << "unpowered";
    EXPECT_LT(b.vdd(0), -100) << "unpowered";
    b.powerOn(0);  // ADC mode
    EXPECT_FLOAT_EQ(b.vdd(0), 4.996f);
    float angle = -1;
    b.device->ReadAngle(0, angle);
    EXPECT_FLOAT_EQ(angle, 0.0f) << "an angle comes back outside OWI mode too";
    EXPECT_EQ(b.read(0, 0x48), 511) << "an open die reads its id in OWI mode only";
    EXPECT_EQ(b.read(0, 0x10), 511);
    EXPECT_EQ(b.solve(&SolverAccess::WriteBufferToDevice, 0), 2);
    EXPECT_EQ(b.solve(&SolverAccess::ClearSolverSettings, 0), 1);
    EXPECT_EQ(b.solve(&SolverAccess::CommLock, 0), 1);

    // Clamps out of order give each die its own code; a part the call does not take gives 1.
    b.owi(0);
    b.owi(1);
    EXPECT_LT(b.vdd(1), -100) << "no_supply";
    EXPECT_LT(b.vdd(3), -100) << "the common supply of both parts";
    for (const auto& [part, code] :
         std::initializer_list<std::pair<std::int16_t, int>>{{0, 3}, {1, 4}, {2, 1}, {-1, 1}}) {
        EXPECT_EQ(b.write(part, {{1, 50.0f}, {2, 50.0f}}), code) << part;
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

TEST(SimulatedBox, PartSettingsSwitchedLiveActOnThatDieAtTheNextCall) {
    // Whether the call the setting is about fails for a part asked into OWI mode just before.
    using Probe = std::function<bool(Bench&, std::int16_t)>;
    const std::map<std::string, Probe> fails = {
        {"locked", [](Bench& b, std::int16_t p) { return b.enterOwi(p) == 1; }},
        {"no_supply", [](Bench& b, std::int16_t p) { return b.vdd(p) < -100; }},
        {"id_error", [](Bench& b, std::int16_t p) { return b.read(p, 0x48) == 511; }},
        {"eeprom_fail", [](Bench& b, std::int16_t p) { return b.program(p) == 1; }},
        {"clear_fail",
         [](Bench& b, std::int16_t p) {
             return b.solve(&SolverAccess::ClearSolverSettings, p) == 1;
         }},
        {"commlock_fail",
         [](Bench& b, std::int16_t p) { return b.solve(&SolverAccess::CommLock, p) == 1; }},
    };
    ASSERT_EQ(fails.size(), PartsSettings().size());
    for (const PartsSetting& setting : PartsSettings()) {
        for (const std::int16_t part : {0, 1}) {
            Bench b;
            const auto probe = [&b, &fail = fails.at(setting.key)](std::int16_t p) {
                b.enterOwi(p);
                return fail(b, p);
            };
            b.powerOn(0);
            b.powerOn(1);
            const auto other = static_cast<std::int16_t>(1 - part);
            b.box->setPartSetting(setting, part, true);
            EXPECT_TRUE(b.box->partSetting(setting, part)) << setting.key;
            EXPECT_TRUE(probe(part)) << setting.key << " on Part#" << part + 1;
            EXPECT_FALSE(probe(other)) << setting.key << " reaches Part#" << other + 1;
            b.box->setPartSetting(setting, part, false);
            EXPECT_FALSE(probe(part)) << setting.key << " off again, Part#" << part + 1;
        }
    }
}

TEST(SimulatedBox, MagnetWrapsAndSettingsStartABoxAsThisOneIsNow) {
    Bench b;
    b.box->setMagnetAngle(-30);
    EXPECT_EQ(b.box->magnetAngle(), 330);
    b.box->setMagnetAngle(359.0, -1e7);
    EXPECT_TRUE(b.box->magnetAngle() >= 0.0 && b.box->magnetAngle() < 360.0);

    b.box->setMagnetAngle(123.456, 0);
    b.owi(1);
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
