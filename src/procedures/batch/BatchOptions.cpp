#include "procedures/batch/BatchOptions.h"

#include <QCommandLineParser>
#include <QSet>

namespace rk31 {

namespace {

ParsedArguments refuse(const QString& why) {
    return {std::nullopt, why};
}

// The options each command takes, by their names.
QSet<QString> optionsOf(BatchCommand command) {
    switch (command) {
        case BatchCommand::Program:
            return {"port", "part", "verify", "lock", "log", "q", "json"};
        case BatchCommand::Check:
            return {"part", "q", "json"};
        case BatchCommand::Curve:
            return {"part", "csv", "q"};
        case BatchCommand::Help:
        case BatchCommand::Version:
            break;
    }
    return {};
}

std::optional<BatchCommand> commandNamed(const QString& name) {
    if (name == u"program") {
        return BatchCommand::Program;
    }
    if (name == u"check") {
        return BatchCommand::Check;
    }
    if (name == u"curve") {
        return BatchCommand::Curve;
    }
    return std::nullopt;
}

// How an option is written on the command line, for a message.
QString written(const QString& name) {
    return (name.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + name;
}

}  // namespace

QString BatchUsage() {
    return QStringLiteral(
        "usage: rk31prog program SETTINGS --port N [--part 1|2|both] [--verify] [--lock] "
        "[--log FILE] [-q] [--json]\n"
        "       rk31prog check SETTINGS [--part 1|2|both] [-q] [--json]\n"
        "       rk31prog curve SETTINGS [--csv] [--part 1|2|both]\n"
        "       rk31prog --help | --version\n"
        "exit codes: 0 done, 1 bad arguments or settings file, 2 device or connection failure, "
        "3 verify failed");
}

ParsedArguments ParseBatchArguments(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addOptions({
        {{"h", "help"}, "Shows the usage."},
        {"version", "Shows the version."},
        {"port", "The programmer's COM port.", "N"},
        {"part", "The parts: 1, 2 or both.", "PART"},
        {"verify", "Verifies each programmed part."},
        {"lock", "Locks each programmed (and verified) part."},
        {"log", "Writes the device log to FILE.", "FILE"},
        {"q", "Prints only what goes wrong."},
        {"json", "Prints one JSON object per part."},
        {"csv", "Writes the curve as CSV (the only format)."},
    });
    // The parser takes the program name first.
    if (!parser.parse(QStringList{QStringLiteral("rk31prog")} + arguments)) {
        return refuse(parser.errorText());
    }
    BatchOptions options;
    if (parser.isSet(QStringLiteral("help"))) {
        options.command = BatchCommand::Help;
        return {options, {}};
    }
    if (parser.isSet(QStringLiteral("version"))) {
        options.command = BatchCommand::Version;
        return {options, {}};
    }
    const QStringList positional = parser.positionalArguments();
    if (positional.isEmpty()) {
        return refuse(QStringLiteral("no command"));
    }
    const auto command = commandNamed(positional.front());
    if (!command) {
        return refuse(QStringLiteral("unknown command: ") + positional.front());
    }
    options.command = *command;
    const QSet<QString> allowed = optionsOf(options.command);
    for (const QString& name : parser.optionNames()) {
        if (!allowed.contains(name)) {
            return refuse(QStringLiteral("unknown option for ") + positional.front() +
                          QStringLiteral(": ") + written(name));
        }
    }
    if (positional.size() > 2) {
        return refuse(QStringLiteral("more than one settings file: ") + positional[2]);
    }
    if (positional.size() < 2) {
        return refuse(QStringLiteral("no settings file"));
    }
    options.settings = positional[1];
    if (parser.isSet(QStringLiteral("port"))) {
        const QString value = parser.value(QStringLiteral("port"));
        bool ok = false;
        options.port = value.toInt(&ok);
        if (!ok || options.port < 1 || options.port > 32767) {
            return refuse(QStringLiteral("--port needs a port number, not ") + value);
        }
    } else if (options.command == BatchCommand::Program) {
        return refuse(QStringLiteral("program needs --port N"));
    }
    if (parser.isSet(QStringLiteral("part"))) {
        const QString value = parser.value(QStringLiteral("part"));
        if (value == u"1") {
            options.part = PartChoice::Part1;
        } else if (value == u"2") {
            options.part = PartChoice::Part2;
        } else if (value == u"both") {
            options.part = PartChoice::Both;
        } else {
            return refuse(QStringLiteral("--part takes 1, 2 or both, not ") + value);
        }
    }
    options.log = parser.value(QStringLiteral("log"));
    options.verify = parser.isSet(QStringLiteral("verify"));
    options.lock = parser.isSet(QStringLiteral("lock"));
    options.quiet = parser.isSet(QStringLiteral("q"));
    options.json = parser.isSet(QStringLiteral("json"));
    return {options, {}};
}

}  // namespace rk31
