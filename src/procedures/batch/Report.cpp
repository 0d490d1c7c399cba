#include "procedures/batch/Report.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <map>
#include <vector>

namespace rk31 {

namespace {

struct Yield {
    int chips = 0;
    int passed = 0;
};

QString percent(const Yield& y) {
    return QString::number(y.chips > 0 ? 100.0 * y.passed / y.chips : 0.0, 'f', 1);
}

QString yieldText(const QString& name, const Yield& y) {
    return QStringLiteral("  %1: %2 of %3 passed (%4 %)")
        .arg(name)
        .arg(y.passed)
        .arg(y.chips)
        .arg(percent(y));
}

QJsonObject yieldObject(const QString& key, const QString& name, const Yield& y) {
    return QJsonObject{{key, name}, {"chips", y.chips}, {"passed", y.passed}};
}

}  // namespace

RecordReport ReportOnRecords(const QString& path, bool json) {
    RecordReport report;
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        report.lines << QStringLiteral("cannot read the record file ") + path +
                            (file.exists() && !QFileInfo(path).isFile()
                                 ? QStringLiteral(": not a regular file")
                                 : QStringLiteral(": ") + file.errorString());
        return report;
    }
    report.read = true;
    Yield all;
    std::map<QString, Yield> byFile;
    std::map<QString, Yield> byDay;
    std::map<QString, int> causes;
    int unreadable = 0;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().trimmed();
        if (line.isEmpty()) {
            continue;
        }
        const QJsonObject record = QJsonDocument::fromJson(line).object();
        const QString verdict = record.value("verdict").toString();
        if (verdict != u"PASS" && verdict != u"FAIL") {
            ++unreadable;
            continue;
        }
        const bool passed = verdict == u"PASS";
        const QString settings = record.value("file").toString() + QStringLiteral(" (") +
                                 record.value("sha256").toString().left(12) + u')';
        const QString day = record.value("time").toString().left(10);
        for (Yield* y : {&all, &byFile[settings], &byDay[day]}) {
            ++y->chips;
            y->passed += passed ? 1 : 0;
        }
        if (!passed) {
            ++causes[record.value("stage").toString() + QStringLiteral(": ") +
                     record.value("cause").toString()];
        }
    }
    std::vector<std::pair<QString, int>> ranked(causes.begin(), causes.end());
    std::stable_sort(ranked.begin(), ranked.end(),
                     [](const auto& a, const auto& b) { return a.second > b.second; });
    if (json) {
        QJsonArray files, days, failures;
        for (const auto& [name, y] : byFile) {
            files.append(yieldObject("file", name, y));
        }
        for (const auto& [name, y] : byDay) {
            days.append(yieldObject("day", name, y));
        }
        for (const auto& [cause, count] : ranked) {
            failures.append(QJsonObject{{"cause", cause}, {"chips", count}});
        }
        report.lines << QString::fromUtf8(
            QJsonDocument(QJsonObject{{"chips", all.chips},
                                      {"passed", all.passed},
                                      {"files", files},
                                      {"days", days},
                                      {"failures", failures},
                                      {"unreadable_lines", unreadable}})
                .toJson(QJsonDocument::Compact));
        return report;
    }
    report.lines << QStringLiteral("%1 chips, %2 passed (%3 %)")
                        .arg(all.chips)
                        .arg(all.passed)
                        .arg(percent(all));
    report.lines << QStringLiteral("by settings file:");
    for (const auto& [name, y] : byFile) {
        report.lines << yieldText(name, y);
    }
    report.lines << QStringLiteral("by day:");
    for (const auto& [name, y] : byDay) {
        report.lines << yieldText(name, y);
    }
    report.lines << QStringLiteral("failure causes:");
    for (const auto& [cause, count] : ranked) {
        report.lines << QStringLiteral("  %1  %2").arg(count, 5).arg(cause);
    }
    if (unreadable > 0) {
        report.lines << QStringLiteral("%1 lines are no record and were left out").arg(unreadable);
    }
    return report;
}

}  // namespace rk31
