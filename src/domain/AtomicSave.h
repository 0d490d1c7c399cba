#pragma once

#include <QByteArray>
#include <QString>

namespace rk31 {

// Writes `bytes` to `path` so that afterwards the file holds either all of them or, byte for
// byte, what it held before: the bytes go to a temporary file beside it, which replaces the old
// one only once every byte is known to be on the disk. Every file the program saves goes
// through here. False on any failure; `why` (when given) then says what failed, for a message.
bool SaveFileAtomically(const QString& path, const QByteArray& bytes, QString* why = nullptr);

// The message for a failed save of anything other than a settings file.
QString SaveFailedMessage(const QString& path, const QString& why);

}  // namespace rk31
