#pragma once

#include <QByteArray>
#include <QSerialPort>
#include <QString>
#include <cstdint>

#include "serial/SerialSettings.h"
#include "serial/protocol/BoxProtocol.h"

namespace rk31::serial {

// The line gave no usable answer: none in time, a garbled one, or the port went away. `cause`
// says which, for a person.
struct LineFailure {
    QString cause;
};

// One serial line to a box, speaking the box protocol. A call waits for its answer in an event
// loop of its own that runs timers and repaints but no user input, so the window stays painted
// while no command of it can start; the wait is bounded by the settings' timeout plus the time
// the bytes take at the line's speed.
class SerialLine {
  public:
    explicit SerialLine(const SerialSettings& settings) : m_settings(settings) {}

    // Opens the device path for COM `port`; an empty text when it opened, else why not.
    QString open(int port, const QString& path);
    void close();
    bool isOpen() const { return m_port.isOpen(); }
    // Why the open line was lost (the port vanished), empty while it was not and once the
    // program has closed it.
    const QString& lost() const { return m_lost; }
    // The line stays lost for `why` after a failed attempt to open it again.
    void markLost(const QString& why) { m_lost = why; }
    // "COM1 (/dev/pts/5)"
    QString where() const;

    // Sends the request and returns its answer's values, which must be `valuesSize` bytes (any
    // number when negative). A call that only reads is asked up to three times while its answers
    // come garbled; any other gives up at the first. Throws LineFailure, or the box's own
    // DeviceError with its description unchanged.
    QByteArray exchange(box::Command command, const QByteArray& payload, int valuesSize);

    // Counts of what went over the line, for whoever measures the protocol's cost.
    struct Counts {
        qint64 requests = 0;
        qint64 bytesOut = 0;
        qint64 bytesIn = 0;
    };
    const Counts& counts() const { return m_counts; }

  private:
    QByteArray once(box::Command command, const QByteArray& payload, int valuesSize);
    int waitMs(qsizetype bytes) const;

    SerialSettings m_settings;
    QSerialPort m_port;
    box::FrameReader m_reader;
    int m_portNumber = 0;
    QString m_path;
    std::uint8_t m_sequence = 0;
    bool m_busy = false;
    QString m_lost;
    Counts m_counts;
};

}  // namespace rk31::serial
