#pragma once

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <array>
#include <optional>

#include "rk31/DeviceTraffic.h"

namespace rk31 {

// What one chip's device traffic tells beyond what the procedures return: the identification
// word each part answered, the supply voltage read and the solver values sent. Read from the
// calls as they went to the device, so the record holds what the chip was really given.
class ChipTraffic : public DeviceTrafficSink {
  public:
    struct Part {
        QString idWord;  // hexadecimal, as read from &H48
        std::optional<double> vdd;
        QJsonArray solver;  // {"id": n, "value": "Single:95"} in the order sent
    };

    void write(const DeviceCall& call) override;
    // For the next chip.
    void clear() { m_parts = {}; }
    const Part& part(int part) const { return m_parts.at(static_cast<std::size_t>(part)); }

  private:
    std::array<Part, 2> m_parts{};
};

// The record file of a production run: one JSON line per chip, appended whole with one write
// and synced, so that a kill or a crash leaves only whole lines; the file is never rewritten.
class RecordFile {
  public:
    // Opens `path` for appending (created when missing); why it cannot be, or empty.
    QString open(const QString& path);
    bool isOpen() const { return m_file.isOpen(); }
    // Appends the object as one line; why it could not be, or empty.
    QString append(const QJsonObject& line);

  private:
    QFile m_file;
};

// The SHA-256 of a file's bytes in hexadecimal; empty when it cannot be read.
QString FileSha256(const QString& path);

}  // namespace rk31
