#include <gtest/gtest.h>

#include <QtGlobal>
#include <functional>

#include "SimTestSupport.h"
#include "core/DeviceError.h"
#include "link/DeviceFactory.h"

namespace rk31::sim::test {
namespace {

TEST(SimConfig, ParsesEveryKey) {
    QStringList errors;
    const SimConfig c = ParseSimConfig(
        QStringLiteral(" angle = 123.5 ;rotate=-30;latency=7;vdd=4.8;port=5;locked=1;"
                       "no_supply=2;id_error=both;eeprom_fail=BOTH;clear_fail=0;commlock_fail=2;"
                       "wbd_code=5;dac_status=-12;version_fail=1;channel_fail=1;output=150;;"),
        &errors);
    EXPECT_EQ(Text(errors), "");
    EXPECT_EQ(c.angle, 123.5);
    EXPECT_EQ(c.rotate, -30);
    EXPECT_EQ(c.latencyMs, 7);
    EXPECT_EQ(c.vdd, 4.8f);
    EXPECT_EQ(c.programmerPort, 5);
    EXPECT_EQ(c.locked, kPart1);
    EXPECT_EQ(c.noSupply, kPart2);
    EXPECT_EQ(c.idError, kBothParts);
    EXPECT_EQ(c.eepromFail, kBothParts);
    EXPECT_EQ(c.clearFail, 0u);
    EXPECT_EQ(c.commlockFail, kPart2);
    EXPECT_EQ(c.writeBufferCode, 5);
    EXPECT_EQ(c.dacStatus, -12);
    EXPECT_TRUE(c.versionFail);
    EXPECT_TRUE(c.channelFail);
    EXPECT_EQ(c.outputOverride, 150.0f);
}

TEST(SimConfig, MalformedEntriesAreReportedAndIgnored) {
    const struct {
        const char* text;
        const char* error;
    } cases[] = {
        {"angle=abc", "RK31_SIM: ignored 'angle=abc': not a number"},
        {"angle=nan", "RK31_SIM: ignored 'angle=nan': not a number"},
        {"colour=red", "RK31_SIM: ignored 'colour=red': unknown key"},
        {"latency", "RK31_SIM: ignored 'latency': expected key=value"},
        {"latency=", "RK31_SIM: ignored 'latency=': no value"},
        {"latency=-5", "RK31_SIM: ignored 'latency=-5': must not be negative"},
        {"latency=2.5", "RK31_SIM: ignored 'latency=2.5': not a whole number"},
        {"port=0", "RK31_SIM: ignored 'port=0': expected a port number from 1 to 16"},
        {"locked=3", "RK31_SIM: ignored 'locked=3': expected 0, 1, 2 or both"},
        {"version_fail=yes", "RK31_SIM: ignored 'version_fail=yes': expected 0 or 1"},
        {"=1", "RK31_SIM: ignored '=1': unknown key"},
    };
    for (const auto& c : cases) {
        QStringList errors;
        const SimConfig config =
            ParseSimConfig(QString::fromLatin1(c.text) + QStringLiteral(";vdd=4.5"), &errors);
        EXPECT_EQ(Text(errors), c.error) << c.text;
        // The entry is ignored: the defaults stand, and the entries around it still count.
        EXPECT_EQ(config.angle, 0) << c.text;
        EXPECT_EQ(config.latencyMs, 0) << c.text;
        EXPECT_EQ(config.programmerPort, 3) << c.text;
        EXPECT_EQ(config.locked, 0u) << c.text;
        EXPECT_FALSE(config.versionFail) << c.text;
        EXPECT_EQ(config.vdd, 4.5f) << c.text;
    }
    EXPECT_NO_THROW(ParseSimConfig(QStringLiteral("=;==;;x"), nullptr));
}

TEST(SimConfig, LockedBoxStartsLocked) {
    Bench bench(ParseSimConfig(QStringLiteral("locked=2"), nullptr));
    EXPECT_EQ(bench.powerOnAndEnterOwi(0), 0);
    EXPECT_EQ(bench.powerOnAndEnterOwi(1), 1);
    EXPECT_EQ(bench.read(1, 0x48), 0xF6);
}

TEST(SimConfig, ProgrammerPortMovesWithTheSetting) {
    const Simulation sim = InstallSimulation(ParseSimConfig(QStringLiteral("port=7"), nullptr));
    EXPECT_EQ(sim.ports->open(7), 0);
    EXPECT_EQ(sim.ports->open(7), kPortAlreadyOpen) << "held open here";
    sim.ports->close(7);
    EXPECT_EQ(sim.ports->open(1), 0);
    EXPECT_EQ(sim.ports->open(2), kPortAlreadyOpen);
    EXPECT_EQ(sim.ports->open(9), SimulatedPorts::kOtherError);

    const auto device = DeviceFactory::Create(QString::fromLatin1(kDeviceProgId));
    ASSERT_TRUE(device);
    std::int32_t failed = 0;
    device->OpenChannel(QVariant(3), failed);
    EXPECT_EQ(failed, 1);
    device->OpenChannel(QVariant(7), failed);
    EXPECT_EQ(failed, 0);
}

TEST(SimConfig, EnvironmentSetsTheStartingAngle) {
    qputenv("RK31_SIM", "angle=200");
    const Simulation sim = InstallSimulationFromEnvironment();
    qunsetenv("RK31_SIM");
    EXPECT_EQ(sim.box->config.latencyMs, 30) << "the program's default latency";
    sim.box->config.latencyMs = 0;

    const auto device = DeviceFactory::Create(QString::fromLatin1(kDeviceProgId));
    ASSERT_TRUE(device);
    std::int32_t out = 0;
    device->OpenChannel(QVariant(3), out);
    device->PowerOnChip(0, out);
    device->EnterOWIMode(0, out);
    float angle = 0;
    device->ReadAngle(0, angle);
    EXPECT_EQ(angle, 200.0f);
    EXPECT_EQ(Text(sim.box->trace),
              "OpenChannel(3)\nPowerOnChip(0)\nEnterOWIMode(0)\nReadAngle(0)");
}

}  // namespace
}  // namespace rk31::sim::test
