#include "domain/AtomicSave.h"

#include <unistd.h>

#include <QDir>
#include <QSaveFile>
#include <cerrno>
#include <cstring>

namespace rk31 {

namespace {

bool fail(QSaveFile& file, QString* why, const QString& reason) {
    if (why) {
        *why = reason;
    }
    file.cancelWriting();
    return false;
}

}  // namespace

bool SaveFileAtomically(const QString& path, const QByteArray& bytes, QString* why) {
    QSaveFile file(path);
    // Unbuffered: a buffered write reports the full size at once, and the bytes that do not fit
    // on the disk are only found out while committing, when the old file is already replaced.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        return fail(file, why, file.errorString());
    }
    // A write may be cut short (a disk that fills up, a file size limit); the rest is tried
    // again, so a shortfall always ends in an error.
    qint64 written = 0;
    while (written < bytes.size()) {
        const qint64 n = file.write(bytes.constData() + written, bytes.size() - written);
        if (n <= 0) {
            return fail(file, why, file.errorString());
        }
        written += n;
    }
    if (!file.flush() || file.error() != QFileDevice::NoError || file.size() != bytes.size()) {
        return fail(file, why, file.errorString());
    }
    // A file system that allocates late reports a full disk only here; commit() would ignore it.
    if (::fsync(file.handle()) != 0 && errno != EINVAL && errno != EROFS) {
        return fail(file, why, QString::fromLocal8Bit(std::strerror(errno)));
    }
    if (!file.commit()) {
        if (why) {
            *why = file.errorString();
        }
        return false;
    }
    return true;
}

QString SaveFailedMessage(const QString& path, const QString& why) {
    return QStringLiteral("Could not save \"%1\": %2. The file keeps what it held before.")
        .arg(QDir::toNativeSeparators(path), why.isEmpty() ? QStringLiteral("unknown error") : why);
}

}  // namespace rk31
