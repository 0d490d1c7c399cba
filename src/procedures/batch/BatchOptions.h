#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace rk31 {

// rk31prog's exit codes, one meaning each.
enum BatchExit : int {
    kExitOk = 0,            // every part of every chip passed; the file is good; the curve
    kExitBadInput = 1,      // arguments, a settings file, a log or record file, or a solver
                            // refusal: all known before the first device call
    kExitDevice = 2,        // the connection or a step on a chip failed
    kExitVerifyFailed = 3,  // programmed, and the output is not the programmed curve
    kExitInterrupted = 130  // stopped by Ctrl-C; the chip in the socket was powered off
};

enum class BatchCommand { Program, Verify, Check, Curve, Report, Help, Version };
// The parts to program; FromFile: what the settings file holds (a one-part point file's part,
// both parts otherwise).
enum class PartChoice { FromFile, Part1, Part2, Both };

struct BatchOptions {
    BatchCommand command = BatchCommand::Check;
    QString settings;  // the settings file; for report, the record file
    int port = 0;
    PartChoice part = PartChoice::FromFile;
    bool verify = false;
    bool lock = false;
    bool strict = false;  // a verify that cannot tell a blank chip from the programmed one fails
    bool quiet = false;
    bool json = false;
    int count = 1;   // chips in a row; 0: until Ctrl-C, the end of input or the last chip
    QString log;     // the device log of this run
    QString record;  // the record file one line per chip is appended to
};

struct ParsedArguments {
    std::optional<BatchOptions> options;
    QString error;      // why the arguments were refused
    bool json = false;  // --json was asked for, so the refusal is a JSON document too
};

// The arguments after the program name. "--help", "-h" and "--version" stand alone.
ParsedArguments ParseBatchArguments(const QStringList& arguments);
QString BatchUsage();

}  // namespace rk31
