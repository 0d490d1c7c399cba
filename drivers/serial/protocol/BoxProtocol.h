#pragma once

// The open box protocol: how a program and a programmer box talk over a serial line. One request
// frame and one response frame per device call; docs/box-protocol.md is the reference for
// whoever builds a box. Built on QtCore alone, so that a box's own software can take it.

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <optional>

namespace rk31::box {

inline constexpr std::uint8_t kStartByte = 0xA5;
inline constexpr std::uint8_t kProtocolVersion = 1;
inline constexpr int kMaxPayload = 250;
// Start, length, sequence and command before the payload; the CRC after it.
inline constexpr int kHeaderSize = 4;
inline constexpr int kCrcSize = 2;
inline constexpr int kFrameOverhead = kHeaderSize + kCrcSize;
// A response carries its request's command with this bit set.
inline constexpr std::uint8_t kResponseBit = 0x80;

enum class Command : std::uint8_t {
    Hello = 0x01,
    OpenChannel = 0x10,
    CloseChannel = 0x11,
    ProgramEEPROM = 0x12,
    MeasureOutput = 0x13,
    MeasureVDD = 0x14,
    ReadAngle = 0x15,
    EnterOWIMode = 0x16,
    ExitOWIMode = 0x17,
    PowerOnChip = 0x18,
    SelectOutputChannel = 0x19,
    PowerOffChip = 0x1A,
    EnterADCMode = 0x1B,
    GetDACCalibration = 0x1C,
    GetHardwareVersion = 0x1D,
    SetOutputMode = 0x1E,
    GetMemoryAccess = 0x1F,
    WriteMemory = 0x20,
    ReadMemory = 0x21,
    SetSolverParameter = 0x22,
    GetSolverAccess = 0x2F,
    CommLock = 0x30,
    WriteBufferToDevice = 0x31,
    ClearSolverSettings = 0x32,
};

// The first payload byte of every response.
enum class Status : std::uint8_t {
    Ok = 0,
    DeviceError = 1,     // the rest of the payload is the description, UTF-8
    UnknownCommand = 2,  // the box does not know the request's command
    BadRequest = 3,      // the request's payload does not fit its command
    GarbledRequest = 4,  // the request arrived with a bad CRC; nothing was done
};

// The kinds a SolverValue travels as.
enum class ValueKind : std::uint8_t { Single = 1, Long = 2, Integer = 3 };

// "ReadAngle", or "command 0x42" for one the protocol does not know.
QString CommandName(std::uint8_t command);
bool IsKnownCommand(std::uint8_t command);
// Whether the call only reads, so that asking again after a garbled answer changes nothing.
bool IsRetryable(Command command);

// CRC-16/CCITT-FALSE: polynomial 0x1021, initial value 0xFFFF, no reflection, no final XOR.
std::uint16_t Crc16(const QByteArray& bytes);

struct Frame {
    std::uint8_t sequence = 0;
    std::uint8_t command = 0;
    QByteArray payload;

    friend bool operator==(const Frame&, const Frame&) = default;
};

// The frame on the line: start byte, payload length, sequence, command, payload, then the CRC
// over length to the payload's end, high byte first. The payload must not exceed kMaxPayload.
QByteArray EncodeFrame(const Frame& frame);

// Cuts frames out of a byte stream as it arrives. Bytes before a start byte are noise; a frame
// whose length is impossible or whose CRC is wrong is skipped from its start byte on, so that a
// frame further on is still found.
class FrameReader {
  public:
    struct Result {
        std::optional<Frame> frame;
        // Why bytes were skipped since the last frame ("bad CRC", "a length beyond 250", "N
        // bytes of noise"), empty when none were.
        QString skipped;
        // The sequence and command of the last frame skipped for its CRC, when there was one.
        std::optional<Frame> garbled;
    };

    void feed(const QByteArray& bytes) { m_buffer += bytes; }
    // The next whole frame, when one has arrived.
    Result next();
    // Bytes waiting for the rest of their frame.
    qsizetype pending() const { return m_buffer.size(); }
    void clear() { m_buffer.clear(); }

  private:
    QByteArray m_buffer;
};

// Little-endian values into a payload.
class PayloadWriter {
  public:
    PayloadWriter& u8(std::uint8_t v);
    PayloadWriter& i16(std::int16_t v);
    PayloadWriter& i32(std::int32_t v);
    PayloadWriter& single(float v);
    // The rest of the payload; cut (at a character boundary) to what fits.
    PayloadWriter& text(const QString& v);
    const QByteArray& bytes() const { return m_bytes; }

  private:
    QByteArray m_bytes;
};

// Values out of a payload; a read past its end marks the reader failed and answers 0.
class PayloadReader {
  public:
    explicit PayloadReader(QByteArray bytes) : m_bytes(std::move(bytes)) {}
    std::uint8_t u8();
    std::int16_t i16();
    std::int32_t i32();
    float single();
    QString text();
    // Every byte read, none missing.
    bool complete() const { return !m_failed && m_at == m_bytes.size(); }
    bool failed() const { return m_failed; }

  private:
    bool take(qsizetype count);
    QByteArray m_bytes;
    qsizetype m_at = 0;
    bool m_failed = false;
};

}  // namespace rk31::box
