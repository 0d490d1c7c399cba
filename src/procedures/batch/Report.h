#pragma once

#include <QString>
#include <QStringList>

namespace rk31 {

// rk31prog report: what a record file says about a line's production. The lines of the report
// (or one JSON document), and whether the file could be read at all.
struct RecordReport {
    bool read = false;
    QStringList lines;
};

// The yield per settings file (its path and the start of its SHA-256) and per day, and the
// failure causes ranked, most frequent first. Lines that are no record are counted and left
// out, so a report over a file still being written never fails on its last line.
RecordReport ReportOnRecords(const QString& path, bool json);

}  // namespace rk31
