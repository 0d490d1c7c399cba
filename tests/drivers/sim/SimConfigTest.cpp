#include <gtest/gtest.h>

#include <QtGlobal>
#include <tuple>

#include "sim/SimulatedProgrammer.h"

namespace rk31::sim {
namespace {

TEST(SimConfig, ParsesAndWritesEveryKey) {
    // clang-format off
    const SimConfig every{.angle = 123.5, .rotate = -30, .latencyMs = 7, .vdd = 4.8f, .programmerPort = 5,
                          .locked = kPart1, .noSupply = kPart2, .idError = kBothDies, .eepromFail = kBothDies,
                          .clearFail = 0, .commlockFail = kPart2, .writeBufferCode = 5, .dacStatus = -12,
                          .versionFail = true, .channelFail = true, .fixture = false, .fixtureFail = true,
                          .outputOverride = 150.0f, .faultEvery = 5, .chips = 12};
    const SimConfig few{.angle = 40, .latencyMs = 30, .locked = kBothDies, .eepromFail = kPart2,
                        .versionFail = true, .outputOverride = 2.5f};
    // clang-format on
    QStringList errors;
    EXPECT_EQ(ParseSimConfig(
                  QStringLiteral(" angle = 123.5 ;rotate=-30;latency=7;vdd=4.8;port=5;locked=1;"
                                 "no_supply=2;id_error=both;eeprom_fail=BOTH;clear_fail=0;"
                                 "commlock_fail=2;wbd_code=5;dac_status=-12;version_fail=1;"
                                 "channel_fail=1;fixture=0;fixture_fail=1;output=150;"
                                 "fault_every=5;chips=12;;"),
                  &errors),
              every);
    // Written text reads back as the same settings, also over the program's latency of 30 ms;
    // 0.1 + 0.2 has no short decimal.
    const SimConfig programBase = ParseSimConfig(QStringLiteral("latency=30"), nullptr);
    for (const SimConfig& config :
         {SimConfig{}, every, SimConfig{.angle = 0.1 + 0.2, .outputOverride = 0.1f},
          SimConfig{.outputOverride = 0.0f}}) {
        const QString text = WriteSimConfig(config);
        EXPECT_EQ(ParseSimConfig(text, &errors), config) << text.toStdString();
        EXPECT_EQ(ParseSimConfig(text, nullptr, programBase), config) << text.toStdString();
    }
    EXPECT_TRUE(errors.isEmpty()) << errors.join(u'\n').toStdString();
    // Only what differs from the defaults, but the angle and the latency always.
    EXPECT_EQ(WriteSimConfig(few).toStdString(),
              "angle=40;latency=30;locked=both;eeprom_fail=2;version_fail=1;output=2.5");
}

TEST(SimConfig, MalformedEntriesAreReportedAndIgnored) {
    // clang-format off
    const std::pair<const char*, const char*> cases[] = {
        {"angle=abc", "not a number"}, {"angle=nan", "not a number"},
        {"colour=red", "unknown key"}, {"=1", "unknown key"},
        {"latency", "expected key=value"}, {"latency=", "no value"},
        {"latency=-5", "must not be negative"}, {"latency=2.5", "not a whole number"},
        {"port=0", "expected a port number from 1 to 16"},
        {"locked=3", "expected 0, 1, 2 or both"}, {"version_fail=yes", "expected 0 or 1"},
    };
    // clang-format on
    for (const auto& [text, reason] : cases) {
        QStringList errors;
        const SimConfig config = ParseSimConfig(QString::fromLatin1(text) + ";vdd=4.5", &errors);
        EXPECT_EQ(errors.join(u'\n').toStdString(),
                  std::string("RK31_SIM: ignored '") + text + "': " + reason);
        // The entry is ignored as if it were not there.
        EXPECT_EQ(config, ParseSimConfig(QStringLiteral("vdd=4.5"), nullptr)) << text;
    }
}

TEST(SimConfig, ProgrammerPortMovesWithTheSetting) {
    SimulatedProgrammer programmer(ParseSimConfig(QStringLiteral("port=7"), nullptr));
    PortProber& ports = *programmer.ports();
    EXPECT_EQ(ports.open(7), 0);
    EXPECT_EQ(ports.open(7), kPortAlreadyOpen) << "held open here";
    EXPECT_EQ(ports.open(9), SimulatedPorts::kOtherError);
    // The channel opens on the programmer's port only, and not at all with channel_fail.
    const auto device = programmer.create({});
    for (const auto& [port, channelFail, failed] :
         std::initializer_list<std::tuple<int, bool, int>>{
             {1, false, 1}, {3, false, 1}, {7, false, 0}, {7, true, 1}}) {
        programmer.box().config.channelFail = channelFail;
        std::int32_t out = -1;
        device->OpenChannel(QVariant(port), out);
        EXPECT_EQ(out, failed) << "COM" << port;
    }
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

}  // namespace
}  // namespace rk31::sim
