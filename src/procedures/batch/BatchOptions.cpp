#include "procedures/batch/BatchOptions.h"

#include <QCommandLineParser>
#include <QSet>

namespace rk31 {

namespace {

ParsedArguments refuse(const QString& why, bool json) {
    return {std::nullopt, why, json};
}

// The options each command takes, by their names.
QSet<QString> optionsOf(BatchCommand command) {
    switch (command) {
        case BatchCommand::Program:
            return {"port",  "part", "verify", "lock", "strict",
                    "count", "log",  "record", "q",    "json"};
        case BatchCommand::Verify:
            return {"port", "part", "strict", "count", "log", "record", "q", "json"};
        case BatchCommand::Check:
            return {"part", "q", "json"};
        case BatchCommand::Curve:
            return {"part", "csv", "q"};
        case BatchCommand::Report:
            return {"json"};
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
    if (name == u"verify") {
        return BatchCommand::Verify;
    }
    if (name == u"check") {
        return BatchCommand::Check;
    }
    if (name == u"report") {
        return BatchCommand::Report;
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
        "usage: rk31prog program SETTINGS --port N [--part 1|2|both] [--verify [--strict]] "
        "[--lock]\n"
        "                        [--count N] [--record FILE] [--log FILE] [-q] [--json]\n"
        "       rk31prog verify SETTINGS --port N [--part 1|2|both] [--strict] [--count N]\n"
        "                       [--record FILE] [--log FILE] [-q] [--json]\n"
        "       rk31prog check SETTINGS [--part 1|2|both] [-q] [--json]\n"
        "       rk31prog curve SETTINGS [--csv] [--part 1|2|both]\n"
        "       rk31prog report RECORD [--json]\n"
        "       rk31prog --help | --version\n"
        "--count N programs N chips in a row (0: until Ctrl-C, the end of input or the last "
        "chip);\n"
        "the next chip is the station's, or the one put in before Enter is pressed.\n"
        "exit codes: 0 every part passed, 1 arguments, settings, log or record file, or a "
        "solver refusal\n"
        "(no device touched), 2 connection or a step failed, 3 programmed but verify failed, "
        "130 Ctrl-C");
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
        {"strict", "Fails a verify that cannot tell a blank chip from the programmed one."},
        {"lock", "Locks each programmed (and verified) part."},
        {"count", "Chips in a row (0: until stopped).", "N"},
        {"log", "Writes the device log to FILE.", "FILE"},
        {"record", "Appends one JSON line per chip to FILE.", "FILE"},
        {"q", "Prints only what goes wrong."},
        {"json", "Prints the result as one JSON document."},
        {"csv", "Writes the curve as CSV (the only format)."},
    });
    // The parser takes the program name first.
    const bool json = arguments.contains(QStringLiteral("--json"));
    if (!parser.parse(QStringList{QStringLiteral("rk31prog")} + arguments)) {
        return refuse(parser.errorText(), json);
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
        return refuse(QStringLiteral("no command"), json);
    }
    const auto command = commandNamed(positional.front());
    if (!command) {
        return refuse(QStringLiteral("unknown command: ") + positional.front(), json);
    }
    options.command = *command;
    const QSet<QString> allowed = optionsOf(options.command);
    for (const QString& name : parser.optionNames()) {
        if (!allowed.contains(name)) {
            return refuse(QStringLiteral("unknown option for ") + positional.front() +
                              QStringLiteral(": ") + written(name),
                          json);
        }
    }
    if (positional.size() > 2) {
        return refuse(QStringLiteral("more than one file: ") + positional[2], json);
    }
    if (positional.size() < 2) {
        return refuse(options.command == BatchCommand::Report ? QStringLiteral("no record file")
                                                              : QStringLiteral("no settings file"),
                      json);
    }
    options.settings = positional[1];
    if (parser.isSet(QStringLiteral("port"))) {
        const QString value = parser.value(QStringLiteral("port"));
        bool ok = false;
        options.port = value.toInt(&ok);
        if (!ok || options.port < 1 || options.port > 32767) {
            return refuse(QStringLiteral("--port needs a port number, not ") + value, json);
        }
    } else if (options.command == BatchCommand::Program ||
               options.command == BatchCommand::Verify) {
        return refuse(positional.front() + QStringLiteral(" needs --port N"), json);
    }
    if (parser.isSet(QStringLiteral("count"))) {
        const QString value = parser.value(QStringLiteral("count"));
        bool ok = false;
        options.count = value.toInt(&ok);
        if (!ok || options.count < 0) {
            return refuse(QStringLiteral("--count needs a number of chips, not ") + value, json);
        }
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
            return refuse(QStringLiteral("--part takes 1, 2 or both, not ") + value, json);
        }
    }
    options.log = parser.value(QStringLiteral("log"));
    options.record = parser.value(QStringLiteral("record"));
    options.verify =
        parser.isSet(QStringLiteral("verify")) || options.command == BatchCommand::Verify;
    options.strict = parser.isSet(QStringLiteral("strict"));
    if (options.strict && !options.verify) {
        return refuse(QStringLiteral("--strict needs --verify"), json);
    }
    options.lock = parser.isSet(QStringLiteral("lock"));
    options.quiet = parser.isSet(QStringLiteral("q"));
    options.json = parser.isSet(QStringLiteral("json"));
    return {options, {}};
}

}  // namespace rk31
