#include "serial/SerialLine.h"

#include <QEventLoop>
#include <QTimer>
#include <optional>

#include "rk31/DeviceError.h"

namespace rk31::serial {

using box::Command;
using box::Frame;
using box::Status;

namespace {

constexpr int kReadAttempts = 3;
// An answer whose sequence number is at most this far behind the request's is a late answer to
// an earlier request (one that timed out), not a garbled one: it is passed over.
constexpr int kStaleWindow = 16;
// A byte on the line: start bit, eight data bits, stop bit.
constexpr int kBitsPerByte = 10;

// A failure worth asking again for, when the call only reads.
struct Garbled {
    QString cause;
};

}  // namespace

QString SerialLine::open(int port, const QString& path) {
    close();
    m_portNumber = port;
    m_path = path;
    m_lost.clear();
    m_port.setPortName(path);
    if (!m_port.open(QIODevice::ReadWrite)) {
        return QStringLiteral("cannot open ") + where() + QStringLiteral(": ") +
               m_port.errorString();
    }
    if (!m_port.setBaudRate(m_settings.baud) || !m_port.setDataBits(QSerialPort::Data8) ||
        !m_port.setParity(QSerialPort::NoParity) || !m_port.setStopBits(QSerialPort::OneStop) ||
        !m_port.setFlowControl(QSerialPort::NoFlowControl)) {
        const QString why = QStringLiteral("cannot set up ") + where() + QStringLiteral(" at ") +
                            QString::number(m_settings.baud) + QStringLiteral(" baud: ") +
                            m_port.errorString();
        close();
        return why;
    }
    QObject::connect(&m_port, &QSerialPort::errorOccurred, &m_port,
                     [this](QSerialPort::SerialPortError error) {
                         // A vanished device reports a resource error, a hung-up terminal other
                         // errors; either way the port is of no use any more.
                         if (error != QSerialPort::NoError && error != QSerialPort::TimeoutError &&
                             m_port.isOpen()) {
                             m_lost = QStringLiteral("the line ") + where() +
                                      QStringLiteral(" is lost (") + m_port.errorString() + u')';
                             m_port.close();
                         }
                     });
    return {};
}

void SerialLine::close() {
    QObject::disconnect(&m_port, nullptr, nullptr, nullptr);
    m_lost.clear();
    if (m_port.isOpen()) {
        m_port.close();
    }
    m_reader.clear();
}

QString SerialLine::where() const {
    return QStringLiteral("COM") + QString::number(m_portNumber) + QStringLiteral(" (") + m_path +
           u')';
}

int SerialLine::waitMs(qsizetype bytes) const {
    const qint64 lineMs =
        (static_cast<qint64>(bytes) * kBitsPerByte * 1000 + m_settings.baud - 1) / m_settings.baud;
    return m_settings.timeoutMs + static_cast<int>(lineMs);
}

QByteArray SerialLine::exchange(Command command, const QByteArray& payload, int valuesSize) {
    if (m_busy) {
        // Only a timer that ignored callInProgress can get here; its call must not mix with the
        // running one on the line.
        throw LineFailure{box::CommandName(static_cast<std::uint8_t>(command)) +
                          QStringLiteral(" on ") + where() +
                          QStringLiteral(": another call is still waiting for its answer")};
    }
    m_busy = true;
    struct Release {
        bool& busy;
        ~Release() { busy = false; }
    } release{m_busy};
    const int attempts = box::IsRetryable(command) ? kReadAttempts : 1;
    for (int attempt = 1;; ++attempt) {
        try {
            return once(command, payload, valuesSize);
        } catch (const Garbled& garbled) {
            if (attempt >= attempts) {
                throw LineFailure{garbled.cause};
            }
        }
    }
}

QByteArray SerialLine::once(Command command, const QByteArray& payload, int valuesSize) {
    const QString name = box::CommandName(static_cast<std::uint8_t>(command));
    if (!m_port.isOpen()) {
        throw LineFailure{m_lost.isEmpty() ? QStringLiteral("the line is closed") : m_lost};
    }
    // What an earlier call left unread belongs to nobody now.
    m_port.clear(QSerialPort::Input);
    if (m_port.isOpen()) {
        m_port.readAll();
    }
    m_reader.clear();

    const std::uint8_t sequence = ++m_sequence;
    const QByteArray request =
        box::EncodeFrame({sequence, static_cast<std::uint8_t>(command), payload});
    ++m_counts.requests;
    m_counts.bytesOut += request.size();
    // A port that vanished since the last call says so as soon as it is touched.
    if (!m_port.isOpen() || m_port.write(request) != request.size()) {
        throw LineFailure{
            name + QStringLiteral(" on ") + where() + QStringLiteral(": ") +
            (m_lost.isEmpty() ? QStringLiteral("cannot send: ") + m_port.errorString() : m_lost)};
    }

    QEventLoop loop;
    QTimer timer;
    timer.setSingleShot(true);
    std::optional<Frame> answer;
    QString garbled;
    QString failure;
    QString noise;
    const auto take = [&] {
        const QByteArray bytes = m_port.readAll();
        m_counts.bytesIn += bytes.size();
        m_reader.feed(bytes);
        for (;;) {
            const box::FrameReader::Result result = m_reader.next();
            if (!result.skipped.isEmpty()) {
                noise = result.skipped;
            }
            if (result.garbled) {
                garbled = QStringLiteral("an answer with a bad CRC");
            }
            if (!result.frame) {
                break;
            }
            const int behind = static_cast<std::uint8_t>(sequence - result.frame->sequence);
            if (behind < 1 || behind > kStaleWindow) {
                answer = result.frame;
                break;
            }
        }
        if (answer || !garbled.isEmpty()) {
            loop.quit();
        }
    };
    QObject::connect(&m_port, &QSerialPort::readyRead, &loop, take);
    QObject::connect(&m_port, &QSerialPort::errorOccurred, &loop,
                     [&](QSerialPort::SerialPortError error) {
                         if (error != QSerialPort::NoError && error != QSerialPort::TimeoutError) {
                             failure = m_lost.isEmpty() ? m_port.errorString() : m_lost;
                             loop.quit();
                         }
                     });
    const int limit = waitMs(request.size() + box::kFrameOverhead + box::kMaxPayload);
    QObject::connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
    timer.start(limit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);

    const QString prefix = name + QStringLiteral(" on ") + where() + QStringLiteral(": ");
    if (!failure.isEmpty()) {
        throw LineFailure{prefix + failure};
    }
    if (!answer && !garbled.isEmpty()) {
        throw Garbled{prefix + garbled};
    }
    if (!answer) {
        QString why =
            QStringLiteral("no answer within ") + QString::number(limit) + QStringLiteral(" ms");
        if (!noise.isEmpty() || m_reader.pending() > 0) {
            why = QStringLiteral("garbage on the line") +
                  (noise.isEmpty() ? QString() : QStringLiteral(" (") + noise + u')') +
                  QStringLiteral(", no whole answer within ") + QString::number(limit) +
                  QStringLiteral(" ms");
        }
        throw Garbled{prefix + why};
    }
    const std::uint8_t expected = static_cast<std::uint8_t>(command) | box::kResponseBit;
    if (answer->command != expected) {
        const std::uint8_t bare = answer->command & static_cast<std::uint8_t>(~box::kResponseBit);
        throw Garbled{prefix +
                      ((answer->command & box::kResponseBit) != 0 && box::IsKnownCommand(bare)
                           ? QStringLiteral("an answer to ") + box::CommandName(bare)
                           : QStringLiteral("an answer with the unknown command 0x") +
                                 QString::number(answer->command, 16))};
    }
    if (answer->sequence != sequence) {
        throw Garbled{prefix +
                      QStringLiteral("an answer with the wrong sequence number (%1, not %2)")
                          .arg(answer->sequence)
                          .arg(sequence)};
    }
    if (answer->payload.isEmpty()) {
        throw Garbled{prefix + QStringLiteral("an answer of the wrong length (no status)")};
    }
    const auto status = static_cast<Status>(static_cast<std::uint8_t>(answer->payload[0]));
    const QByteArray values = answer->payload.mid(1);
    switch (status) {
        case Status::Ok:
            if (valuesSize >= 0 && values.size() != valuesSize) {
                throw Garbled{prefix + QStringLiteral("an answer of the wrong length (%1 bytes of "
                                                      "values, not %2)")
                                           .arg(values.size())
                                           .arg(valuesSize)};
            }
            return values;
        case Status::DeviceError:
            throw DeviceError(box::PayloadReader(values).text());
        case Status::UnknownCommand:
            throw LineFailure{prefix + QStringLiteral("the box does not know this command")};
        case Status::BadRequest:
            throw LineFailure{prefix + QStringLiteral("the box could not read the request")};
        case Status::GarbledRequest:
            throw Garbled{prefix + QStringLiteral("the box received the request garbled")};
    }
    throw Garbled{
        prefix +
        QStringLiteral("an answer with the unknown status %1").arg(static_cast<int>(status))};
}

}  // namespace rk31::serial
