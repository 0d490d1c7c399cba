#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace rk31::boxsim {

// What rk31-boxsim does to its line, from RK31_BOXSIM ("key=value;...") and then its options
// ("--key=value"), which win.
struct LineFaults {
    double drop = 0;          // the share of bytes lost, both ways
    double flip = 0;          // the share of bytes with one bit flipped, both ways
    int baud = 0;             // bytes take their time at this speed (0: no time)
    QString stall;            // the first answer to this call ("ReadAngle") comes...
    int stallMs = 0;          // ...this late
    int pullAfter = 0;        // the cable is pulled once this many calls are answered
    QString garble;           // every answer to this call comes with a bit flipped
    QString pullDuring;       // the cable is pulled when this call arrives, before the box acts...
    int pullDuringCount = 1;  // ...the n-th time it comes
    int replugMs = -1;        // a pulled cable is back after this long (never when negative)
    unsigned seed = 1;        // for the random faults, so that a run can be repeated
    QString link;             // a symbolic link kept pointing at the current terminal
    QString trace;            // a file that receives the box's trace, call by call
};

// The faults from the environment's text and the command line's options; nothing and the
// reasons for each entry not taken into `errors`.
std::optional<LineFaults> ParseLineFaults(const QString& environment, const QStringList& options,
                                          QStringList& errors);

}  // namespace rk31::boxsim
