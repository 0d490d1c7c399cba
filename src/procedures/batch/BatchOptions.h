#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace rk31 {

// rk31prog's exit codes.
enum BatchExit : int {
    kExitOk = 0,           // every part programmed (and verified); the file is good; the curve
    kExitBadInput = 1,     // bad arguments, a settings file that is missing, short or wrong
    kExitDevice = 2,       // no programmer, a device call or chip step that failed
    kExitVerifyFailed = 3  // the measured output is not the programmed characteristic
};

enum class BatchCommand { Program, Check, Curve, Help, Version };
// The parts to program; FromFile: what the settings file holds (a one-part point file's part,
// both parts otherwise).
enum class PartChoice { FromFile, Part1, Part2, Both };

struct BatchOptions {
    BatchCommand command = BatchCommand::Check;
    QString settings;
    int port = 0;
    PartChoice part = PartChoice::FromFile;
    bool verify = false;
    bool lock = false;
    bool quiet = false;
    bool json = false;
    QString log;  // the device log of this run
};

struct ParsedArguments {
    std::optional<BatchOptions> options;
    QString error;  // why the arguments were refused
};

// The arguments after the program name. "--help", "-h" and "--version" stand alone.
ParsedArguments ParseBatchArguments(const QStringList& arguments);
QString BatchUsage();

}  // namespace rk31
