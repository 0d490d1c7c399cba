// The box protocol's framing and the box's side of it: the CRC, frames cut out of a stream that
// carries noise and garbled frames, and requests the box must refuse without touching the chip.
#include <gtest/gtest.h>

#include "serial/protocol/BoxServer.h"
#include "sim/SimulatedDevice.h"

namespace rk31::box {
namespace {

QByteArray hex(const char* text) {
    return QByteArray::fromHex(text);
}

TEST(BoxProtocol, CrcAndTheWorkedExampleOfTheDocument) {
    EXPECT_EQ(Crc16("123456789"), 0x29B1);  // the check value of CRC-16/CCITT-FALSE
    // ReadAngle of part 1 (docs/box-protocol.md) and the answer 123.5 degrees.
    EXPECT_EQ(EncodeFrame({7, 0x15, PayloadWriter().i16(1).bytes()}).toHex(' '),
              QByteArray("a5 02 07 15 01 00 9f 00"));
    EXPECT_EQ(EncodeFrame({7, 0x95, PayloadWriter().u8(0).single(123.5f).bytes()}).toHex(' '),
              QByteArray("a5 05 07 95 00 00 00 f7 42 0f b1"));
}

TEST(BoxProtocol, FramesAreFoundBehindNoiseAndGarbledFrames) {
    const QByteArray good = EncodeFrame({9, 0x18, hex("0100")});
    QByteArray badCrc = EncodeFrame({8, 0x18, hex("0000")});
    badCrc[badCrc.size() - 1] = static_cast<char>(badCrc[badCrc.size() - 1] ^ 0x40);
    const struct {
        const char* name;
        QByteArray stream;
        const char* skipped;
        bool garbled;
    } cases[] = {
        {"clean", good, "", false},
        {"noise before", hex("0001ff") + good, "3 bytes of noise", false},
        {"bad CRC before", badCrc + good, "bad CRC, 7 bytes of noise", true},
        {"impossible length", hex("a5ff") + good, "a length beyond 250, 1 byte of noise", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        FrameReader whole;
        whole.feed(c.stream);
        const FrameReader::Result result = whole.next();
        ASSERT_TRUE(result.frame);
        EXPECT_EQ(*result.frame, (Frame{9, 0x18, hex("0100")}));
        EXPECT_EQ(result.skipped, QString::fromLatin1(c.skipped));
        EXPECT_EQ(result.garbled.has_value(), c.garbled);
        // Byte by byte, as a slow line delivers it: the same frame.
        FrameReader reader;
        std::optional<Frame> found;
        for (const char byte : c.stream) {
            reader.feed(QByteArray(1, byte));
            if (auto frame = reader.next().frame) {
                found = frame;
            }
        }
        EXPECT_EQ(found, result.frame);
        EXPECT_EQ(reader.pending(), 0);
    }
}

TEST(BoxProtocol, TheBoxRefusesWhatItCannotReadWithoutTouchingTheChip) {
    auto dies = std::make_shared<sim::SimulatedBox>();
    BoxServer server([dies] { return sim::CreateSimulatedDevice(dies); });
    const auto status = [&server](std::uint8_t command, const QByteArray& payload) {
        const Frame answer = server.answer({5, command, payload});
        EXPECT_EQ(answer.sequence, 5);
        EXPECT_EQ(answer.command, command | kResponseBit);
        return static_cast<int>(static_cast<std::uint8_t>(answer.payload.at(0)));
    };
    EXPECT_EQ(status(0x7E, {}), static_cast<int>(Status::UnknownCommand));
    EXPECT_EQ(status(0x18, hex("01")), static_cast<int>(Status::BadRequest));          // short
    EXPECT_EQ(status(0x18, hex("010000")), static_cast<int>(Status::BadRequest));      // long
    EXPECT_EQ(status(0x22, hex("0000010009")), static_cast<int>(Status::BadRequest));  // kind 9
    EXPECT_EQ(dies->trace(), QStringList());
    // The chip's own refusal travels with its text.
    const Frame refused = server.answer({6, 0x18, hex("0000")});
    EXPECT_EQ(refused.payload, QByteArray("\x01Programmer is not connected!"));
    EXPECT_EQ(dies->trace(), QStringList{"PowerOnChip(0)"});
}

TEST(BoxProtocol, OnlyReadsAreRetried) {
    for (const Command read : {Command::Hello, Command::ReadAngle, Command::ReadMemory,
                               Command::MeasureOutput, Command::GetDACCalibration}) {
        EXPECT_TRUE(IsRetryable(read)) << qPrintable(CommandName(static_cast<std::uint8_t>(read)));
    }
    for (const Command write : {Command::OpenChannel, Command::WriteMemory,
                                Command::SetSolverParameter, Command::WriteBufferToDevice,
                                Command::ProgramEEPROM, Command::CommLock, Command::PowerOnChip}) {
        EXPECT_FALSE(IsRetryable(write))
            << qPrintable(CommandName(static_cast<std::uint8_t>(write)));
    }
}

}  // namespace
}  // namespace rk31::box
