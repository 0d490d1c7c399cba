#pragma once

#include <QFile>
#include <QString>
#include <QStringList>

namespace rk31::test {

// Settings files as the windows save them.
inline QString TwoPartFile(const QStringList& part1, const QStringList& part2) {
    static const QStringList labels = {"VDD is(V):",
                                       "Direction is:",
                                       "DP is(deg):",
                                       "Clamp High is(%):",
                                       "Clamp Low is(%):",
                                       "Angle of Point A is(deg):",
                                       "Level of Point A is(%):",
                                       "Angle of Point B is(deg):",
                                       "Level of Point B is(%):",
                                       "Angle of Point C is(deg):",
                                       "Level of Point C is(%):",
                                       "Angle of Point D is(deg):",
                                       "Level of Point D is(%):",
                                       "Slope parameter is(%VDD/deg):",
                                       "OP parameter is(deg):",
                                       "HYS parameter is(deg):",
                                       "Polarity parameter is:",
                                       "OutMode is:",
                                       "PWMFreq is:",
                                       "PWMPolarity is"};
    QString text;
    for (int part = 0; part < 2; ++part) {
        text += QStringLiteral("Part #%1:\r\n").arg(part + 1);
        const QStringList& values = part == 0 ? part1 : part2;
        for (qsizetype i = 0; i < labels.size(); ++i) {
            text += labels[i] + values.value(i) + QStringLiteral("\r\n");
        }
    }
    return text;
}

// Two points, A at 20 degrees and 10 %VDD, B at 200 degrees and 90 %VDD, DP 260.
inline const QStringList kGoodPart = {
    "5.000", "CCW", "260.00", "95.00", "5.00", "20.00", "10.00", "200.00", "90.00", "",
    "",      "",    "",       "",      "",     "1.00",  "0",     "0",      "0",     "0"};

inline QString OnePartPointFile(int part) {
    return QStringLiteral(
               "Part #Index:%1\r\nDirection is:0\r\nDP is(deg):260.00\r\nClamp High "
               "is(%):95.00\r\nClamp Low is(%):5.00\r\nAngle of Point A is(deg):20.00\r\nLevel "
               "of Point A is(%):10.00\r\nAngle of Point B is(deg):200.00\r\nLevel of Point B "
               "is(%):90.00\r\n")
        .arg(part);
}

inline QString DualPointFile() {
    QString text;
    for (int part = 0; part < 2; ++part) {
        text += QStringLiteral(
                    "Part #%1:\r\nDirection is:0\r\nDP is(deg):260.00\r\nClamp High "
                    "is(%):95.00\r\nClamp Low is(%):5.00\r\nAngle of Point A is(deg):20.00\r\n"
                    "Level of Point A is(%):10.00\r\nAngle of Point B is(deg):200.00\r\nLevel "
                    "of Point B is(%):90.00\r\n")
                    .arg(part + 1);
    }
    return text;
}

inline void WriteFile(const QString& path, const QString& text) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0) {
        qFatal("cannot write %s", qPrintable(path));
    }
}

}  // namespace rk31::test
