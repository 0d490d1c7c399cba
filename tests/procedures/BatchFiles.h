#pragma once

#include <QFile>
#include <QString>
#include <QStringList>

#include "domain/SettingsFile.h"

namespace rk31::test {

// A settings file of `layout` with the values in order, a part's block after the other's.
inline QString SettingsFile(const SettingsLayout& layout, const QStringList& values) {
    QString text;
    qsizetype next = 0;
    for (const SettingsLine& line : layout) {
        text += line.label + (line.kind == ValueKind::Header ? QString() : values.value(next++)) +
                QStringLiteral("\r\n");
    }
    return text;
}

// Two points, A at 20 degrees and 10 %VDD, B at 200 degrees and 90 %VDD, DP 260.
inline const QStringList kGoodPart = {
    "5.000", "CCW", "260.00", "95.00", "5.00", "20.00", "10.00", "200.00", "90.00", "",
    "",      "",    "",       "",      "",     "1.00",  "0",     "0",      "0",     "0"};
inline const QStringList kGoodPointPart = {"0",     "260.00", "95.00",  "5.00",
                                           "20.00", "10.00",  "200.00", "90.00"};

inline QString TwoPartFile(const QStringList& part1, const QStringList& part2) {
    return SettingsFile(TwoPartLayout(), part1 + part2);
}
inline QString OnePartPointFile(int part) {
    return SettingsFile(OnePartPointLayout(), QStringList{QString::number(part)} + kGoodPointPart);
}
inline QString DualPointFile() {
    return SettingsFile(DualPointLayout(), kGoodPointPart + kGoodPointPart);
}

inline void WriteFile(const QString& path, const QString& text) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0) {
        qFatal("cannot write %s", qPrintable(path));
    }
}

}  // namespace rk31::test
