#include <gtest/gtest.h>

#include <QtGlobal>
#include <array>
#include <tuple>

#include "sim/SimulatedProgrammer.h"

namespace rk31::sim {
namespace {

TEST(SimConfig, ParsesEveryKey) {
    QStringList errors;
    const SimConfig c = ParseSimConfig(
        QStringLiteral(" angle = 123.5 ;rotate=-30;latency=7;vdd=4.8;port=5;locked=1;"
                       "no_supply=2;id_error=both;eeprom_fail=BOTH;clear_fail=0;commlock_fail=2;"
                       "wbd_code=5;dac_status=-12;version_fail=1;channel_fail=1;output=150;;"),
        &errors);
    EXPECT_EQ(errors.join(u'\n').toStdString(), "");
    EXPECT_EQ(std::tuple(c.angle, c.rotate, c.latencyMs, c.vdd, c.programmerPort, c.writeBufferCode,
                         c.dacStatus, c.versionFail, c.channelFail),
              std::tuple(123.5, -30.0, 7, 4.8f, 5, 5, -12, true, true));
    EXPECT_EQ(
        (std::array{c.locked, c.noSupply, c.idError, c.eepromFail, c.clearFail, c.commlockFail}),
        (std::array{kPart1, kPart2, kBothDies, kBothDies, 0u, kPart2}));
    EXPECT_EQ(c.outputOverride, 150.0f);
}

TEST(SimConfig, MalformedEntriesAreReportedAndIgnored) {
    // clang-format off
    const struct { const char* text; const char* error; } cases[] = {
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
    // clang-format on
    for (const auto& c : cases) {
        QStringList errors;
        const SimConfig config =
            ParseSimConfig(QString::fromLatin1(c.text) + QStringLiteral(";vdd=4.5"), &errors);
        EXPECT_EQ(errors.join(u'\n').toStdString(), c.error) << c.text;
        // The entry is ignored: the defaults stand, and the entries around it still count.
        EXPECT_EQ(std::tuple(config.angle, config.latencyMs, config.programmerPort, config.locked,
                             config.versionFail, config.vdd),
                  std::tuple(0.0, 0, 1, 0u, false, 4.5f))
            << c.text;
    }
    EXPECT_NO_THROW(ParseSimConfig(QStringLiteral("=;==;;x"), nullptr));
}

TEST(SimConfig, ProgrammerPortMovesWithTheSetting) {
    SimulatedProgrammer programmer(ParseSimConfig(QStringLiteral("port=7"), nullptr));
    PortProber& ports = *programmer.ports();
    EXPECT_EQ(ports.open(7), 0);
    EXPECT_EQ(ports.open(7), kPortAlreadyOpen) << "held open here";
    EXPECT_EQ(ports.open(9), SimulatedPorts::kOtherError);

    // The channel opens on the programmer's port only, and not at all with channel_fail.
    const auto device = programmer.create({});
    ASSERT_TRUE(device);
    for (const auto& [port, failed] :
         std::initializer_list<std::pair<int, int>>{{1, 1}, {3, 1}, {7, 0}}) {
        std::int32_t out = -1;
        device->OpenChannel(QVariant(port), out);
        EXPECT_EQ(out, failed) << "COM" << port;
    }
    programmer.box().config.channelFail = true;
    std::int32_t out = 0;
    device->OpenChannel(QVariant(7), out);
    EXPECT_EQ(out, 1);
}

TEST(SimConfig, EnvironmentGoesOverTheProgramsLatency) {
    qputenv("RK31_SIM", "angle=200;port=5;bogus=1");
    testing::internal::CaptureStderr();
    SimulatedProgrammer programmer(SimConfigFromEnvironment());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "RK31_SIM: ignored 'bogus=1': unknown key\n");
    qunsetenv("RK31_SIM");
    EXPECT_EQ(programmer.box().config.latencyMs, 30);
    EXPECT_EQ(programmer.box().magnetAngle(), 200);
    EXPECT_EQ(programmer.ports()->open(5), 0);
}

TEST(SimConfig, WrittenTextReadsBackAsTheSameSettings) {
    SimConfig everything;
    everything.angle = 0.1 + 0.2;  // no short decimal
    everything.rotate = -12.5;
    everything.latencyMs = 0;
    everything.vdd = 4.8f;
    everything.programmerPort = 16;
    everything.writeBufferCode = -3;
    everything.dacStatus = 6;
    everything.versionFail = true;
    everything.channelFail = true;
    everything.outputOverride = 0.1f;
    unsigned mask = 0;
    for (const PartsSetting& s : PartsSettings()) {
        everything.*s.mask = mask++ % 4;  // 0, 1, 2 and both
    }
    SimConfig fixedZero;
    fixedZero.outputOverride = 0.0f;
    // The program starts the simulator over a latency of 30 ms: the text must not lean on it.
    SimConfig programBase;
    programBase.latencyMs = 30;
    for (const SimConfig& config : {SimConfig{}, everything, fixedZero}) {
        const QString text = WriteSimConfig(config);
        QStringList errors;
        EXPECT_EQ(ParseSimConfig(text, &errors), config) << text.toStdString();
        EXPECT_TRUE(errors.isEmpty()) << errors.join(u'\n').toStdString();
        EXPECT_EQ(ParseSimConfig(text, nullptr, programBase), config) << text.toStdString();
    }
}

TEST(SimConfig, WritesWhatDiffersFromTheDefaults) {
    SimConfig config;
    config.angle = 40;
    config.latencyMs = 30;
    config.locked = kBothDies;
    config.eepromFail = kPart2;
    config.versionFail = true;
    EXPECT_EQ(WriteSimConfig(config).toStdString(),
              "angle=40;latency=30;locked=both;eeprom_fail=2;version_fail=1");
}

}  // namespace
}  // namespace rk31::sim
