#pragma once

#include <QFile>
#include <QString>
#include <QStringList>

namespace rk31::test {

// The calls of a device log without their times; `skip` drops the calls of one operation.
inline QStringList LoggedCalls(const QString& path, const QString& skip = {}) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {QStringLiteral("no log ") + path};
    }
    QStringList calls;
    for (const QByteArray& line : file.readAll().split('\n')) {
        const QString call = QString::fromUtf8(line).section(u' ', 1).trimmed();
        if (!call.isEmpty() && (skip.isEmpty() || !call.startsWith(skip))) {
            calls << call;
        }
    }
    return calls;
}

}  // namespace rk31::test
