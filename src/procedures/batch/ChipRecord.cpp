#include "procedures/batch/ChipRecord.h"

#include <unistd.h>

#include <cerrno>

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QStringList>

namespace rk31 {

namespace {

constexpr auto kIdentificationAddress = "48";

// The parts a call's part argument stands for: both for the parts-together index.
std::vector<int> partsOf(const QString& argument) {
    bool ok = false;
    const int part = argument.toInt(&ok);
    if (ok && (part == 0 || part == 1)) {
        return {part};
    }
    if (ok && part == 3) {
        return {0, 1};
    }
    return {};
}

// "data=35" -> "35"
QString valueAfter(const QString& outcome, const QString& key) {
    for (const QString& field : outcome.split(u' ')) {
        if (field.startsWith(key + u'=')) {
            return field.mid(key.size() + 1);
        }
    }
    return {};
}

}  // namespace

void ChipTraffic::write(const DeviceCall& call) {
    if (call.threw || call.arguments.isEmpty()) {
        return;
    }
    for (const int p : partsOf(call.arguments.front())) {
        Part& part = m_parts[static_cast<std::size_t>(p)];
        if (call.operation == u"ReadMemory" && call.arguments.value(1) == kIdentificationAddress) {
            part.idWord = valueAfter(call.outcome, QStringLiteral("data"));
        } else if (call.operation == u"MeasureVDD") {
            bool ok = false;
            const double vdd = valueAfter(call.outcome, QStringLiteral("vdd")).toDouble(&ok);
            if (ok) {
                part.vdd = vdd;
            }
        } else if (call.operation == u"SetSolverParameter" && call.arguments.size() >= 3) {
            part.solver.append(
                QJsonObject{{"id", call.arguments[1].toInt()}, {"value", call.arguments[2]}});
        }
    }
}

QString RecordFile::open(const QString& path) {
    m_file.setFileName(path);
    // Unbuffered: each line goes to the file in the one write that appends it.
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered)) {
        return m_file.errorString();
    }
    return {};
}

QString RecordFile::append(const QJsonObject& line) {
    const QByteArray bytes = QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
    if (m_file.write(bytes) != bytes.size()) {
        return m_file.errorString();
    }
    // A pipe or a device has nothing to sync.
    if (::fsync(m_file.handle()) != 0 && errno != EINVAL) {
        return QStringLiteral("the line could not be synced to the disk");
    }
    return {};
}

QString FileSha256(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!hash.addData(&file)) {
        return {};
    }
    return QString::fromLatin1(hash.result().toHex());
}

}  // namespace rk31
