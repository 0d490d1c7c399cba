#pragma once

#include <QString>
#include <QStringList>
#include <ostream>

// Readable failure output for QString comparisons in GoogleTest: the text, not its bytes. Found
// by argument-dependent lookup on QString's own namespace (the global one).
inline void PrintTo(const QString& text, std::ostream* os) {
    *os << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QStringList& lines, std::ostream* os) {
    *os << '[';
    for (const QString& line : lines) {
        *os << "\n  \"" << line.toStdString() << '"';
    }
    *os << " ]";
}
