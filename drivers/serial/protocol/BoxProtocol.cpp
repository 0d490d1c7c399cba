#include "serial/protocol/BoxProtocol.h"

#include <QtEndian>
#include <array>
#include <cstring>

namespace rk31::box {

namespace {

struct CommandInfo {
    Command command;
    const char* name;
    bool retryable;
};

constexpr std::array kCommands{
    CommandInfo{Command::Hello, "Hello", true},
    CommandInfo{Command::OpenChannel, "OpenChannel", false},
    CommandInfo{Command::CloseChannel, "CloseChannel", false},
    CommandInfo{Command::ProgramEEPROM, "ProgramEEPROM", false},
    CommandInfo{Command::MeasureOutput, "MeasureOutput", true},
    CommandInfo{Command::MeasureVDD, "MeasureVDD", true},
    CommandInfo{Command::ReadAngle, "ReadAngle", true},
    CommandInfo{Command::EnterOWIMode, "EnterOWIMode", false},
    CommandInfo{Command::ExitOWIMode, "ExitOWIMode", false},
    CommandInfo{Command::PowerOnChip, "PowerOnChip", false},
    CommandInfo{Command::SelectOutputChannel, "SelectOutputChannel", false},
    CommandInfo{Command::PowerOffChip, "PowerOffChip", false},
    CommandInfo{Command::EnterADCMode, "EnterADCMode", false},
    CommandInfo{Command::GetDACCalibration, "GetDACCalibration", true},
    CommandInfo{Command::GetHardwareVersion, "GetHardwareVersion", true},
    CommandInfo{Command::SetOutputMode, "SetOutputMode", false},
    CommandInfo{Command::GetMemoryAccess, "GetMemoryAccess", true},
    CommandInfo{Command::WriteMemory, "WriteMemory", false},
    CommandInfo{Command::ReadMemory, "ReadMemory", true},
    CommandInfo{Command::SetSolverParameter, "SetSolverParameter", false},
    CommandInfo{Command::GetSolverAccess, "GetSolverAccess", true},
    CommandInfo{Command::CommLock, "CommLock", false},
    CommandInfo{Command::WriteBufferToDevice, "WriteBufferToDevice", false},
    CommandInfo{Command::ClearSolverSettings, "ClearSolverSettings", false},
};

const CommandInfo* info(std::uint8_t command) {
    for (const CommandInfo& c : kCommands) {
        if (static_cast<std::uint8_t>(c.command) == command) {
            return &c;
        }
    }
    return nullptr;
}

}  // namespace

QString CommandName(std::uint8_t command) {
    if (const CommandInfo* c = info(command)) {
        return QString::fromLatin1(c->name);
    }
    return QStringLiteral("command 0x%1").arg(command, 2, 16, QLatin1Char('0'));
}

bool IsKnownCommand(std::uint8_t command) {
    return info(command) != nullptr;
}

bool IsRetryable(Command command) {
    const CommandInfo* c = info(static_cast<std::uint8_t>(command));
    return c != nullptr && c->retryable;
}

std::uint16_t Crc16(const QByteArray& bytes) {
    std::uint16_t crc = 0xFFFF;
    for (const char byte : bytes) {
        crc ^= static_cast<std::uint16_t>(static_cast<std::uint8_t>(byte) << 8);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & 0x8000) != 0 ? static_cast<std::uint16_t>((crc << 1) ^ 0x1021)
                                      : static_cast<std::uint16_t>(crc << 1);
        }
    }
    return crc;
}

QByteArray EncodeFrame(const Frame& frame) {
    QByteArray body;
    body.reserve(frame.payload.size() + 3);
    body += static_cast<char>(frame.payload.size());
    body += static_cast<char>(frame.sequence);
    body += static_cast<char>(frame.command);
    body += frame.payload;
    const std::uint16_t crc = Crc16(body);
    QByteArray bytes;
    bytes.reserve(body.size() + 3);
    bytes += static_cast<char>(kStartByte);
    bytes += body;
    bytes += static_cast<char>(crc >> 8);
    bytes += static_cast<char>(crc & 0xFF);
    return bytes;
}

FrameReader::Result FrameReader::next() {
    Result result;
    const auto noise = [](qsizetype count) {
        return count == 1 ? QStringLiteral("1 byte of noise")
                          : QStringLiteral("%1 bytes of noise").arg(count);
    };
    const auto skip = [&result](const QString& why) {
        if (!result.skipped.isEmpty()) {
            result.skipped += QStringLiteral(", ");
        }
        result.skipped += why;
    };
    for (;;) {
        const qsizetype start = m_buffer.indexOf(static_cast<char>(kStartByte));
        if (start < 0) {
            if (!m_buffer.isEmpty()) {
                skip(noise(m_buffer.size()));
            }
            m_buffer.clear();
            return result;
        }
        if (start > 0) {
            skip(noise(start));
            m_buffer.remove(0, start);
        }
        if (m_buffer.size() < 2) {
            return result;
        }
        const int length = static_cast<std::uint8_t>(m_buffer[1]);
        if (length > kMaxPayload) {
            skip(QStringLiteral("a length beyond %1").arg(kMaxPayload));
            m_buffer.remove(0, 1);
            continue;
        }
        const qsizetype size = kFrameOverhead + length;
        if (m_buffer.size() < size) {
            return result;
        }
        const std::uint16_t crc =
            static_cast<std::uint16_t>((static_cast<std::uint8_t>(m_buffer[size - 2]) << 8) |
                                       static_cast<std::uint8_t>(m_buffer[size - 1]));
        Frame frame{static_cast<std::uint8_t>(m_buffer[2]), static_cast<std::uint8_t>(m_buffer[3]),
                    m_buffer.mid(kHeaderSize, length)};
        if (Crc16(m_buffer.mid(1, size - 3)) != crc) {
            skip(QStringLiteral("bad CRC"));
            result.garbled = Frame{frame.sequence, frame.command, {}};
            m_buffer.remove(0, 1);
            continue;
        }
        m_buffer.remove(0, size);
        result.frame = std::move(frame);
        return result;
    }
}

PayloadWriter& PayloadWriter::u8(std::uint8_t v) {
    m_bytes += static_cast<char>(v);
    return *this;
}

PayloadWriter& PayloadWriter::i16(std::int16_t v) {
    char bytes[2];
    qToLittleEndian(v, bytes);
    m_bytes.append(bytes, 2);
    return *this;
}

PayloadWriter& PayloadWriter::i32(std::int32_t v) {
    char bytes[4];
    qToLittleEndian(v, bytes);
    m_bytes.append(bytes, 4);
    return *this;
}

PayloadWriter& PayloadWriter::single(float v) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &v, sizeof bits);
    return i32(static_cast<std::int32_t>(bits));
}

PayloadWriter& PayloadWriter::text(const QString& v) {
    const qsizetype room = kMaxPayload - m_bytes.size();
    QString cut = v;
    QByteArray utf8 = cut.toUtf8();
    while (utf8.size() > room) {
        cut.chop(1);
        utf8 = cut.toUtf8();
    }
    m_bytes += utf8;
    return *this;
}

bool PayloadReader::take(qsizetype count) {
    if (m_failed || m_bytes.size() - m_at < count) {
        m_failed = true;
        return false;
    }
    return true;
}

std::uint8_t PayloadReader::u8() {
    if (!take(1)) {
        return 0;
    }
    return static_cast<std::uint8_t>(m_bytes[m_at++]);
}

std::int16_t PayloadReader::i16() {
    if (!take(2)) {
        return 0;
    }
    const auto v = qFromLittleEndian<std::int16_t>(m_bytes.constData() + m_at);
    m_at += 2;
    return v;
}

std::int32_t PayloadReader::i32() {
    if (!take(4)) {
        return 0;
    }
    const auto v = qFromLittleEndian<std::int32_t>(m_bytes.constData() + m_at);
    m_at += 4;
    return v;
}

float PayloadReader::single() {
    const auto bits = static_cast<std::uint32_t>(i32());
    float v = 0;
    std::memcpy(&v, &bits, sizeof v);
    return v;
}

QString PayloadReader::text() {
    const QString v = QString::fromUtf8(m_bytes.mid(m_at));
    m_at = m_bytes.size();
    return v;
}

}  // namespace rk31::box
