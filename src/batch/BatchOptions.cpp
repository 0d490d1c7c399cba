#include "batch/BatchOptions.h"

#include <QSet>

namespace rk31 {

namespace {

ParsedArguments refuse(const QString& why) {
    return {std::nullopt, why};
}

// The options each command takes.
QSet<QString> optionsOf(BatchCommand command) {
    switch (command) {
        case BatchCommand::Program:
            return {"--port", "--part", "--verify", "--lock", "--log", "-q", "--json"};
        case BatchCommand::Check:
            return {"--part", "-q", "--json"};
        case BatchCommand::Curve:
            return {"--part", "--csv", "-q"};
    }
    return {};
}

}  // namespace

QString BatchUsage() {
    return QStringLiteral(
        "usage: rk31prog program SETTINGS --port N [--part 1|2|both] [--verify] [--lock] "
        "[--log FILE] [-q] [--json]\n"
        "       rk31prog check SETTINGS [--part 1|2|both] [-q] [--json]\n"
        "       rk31prog curve SETTINGS --csv [--part 1|2|both]\n"
        "exit codes: 0 done, 1 bad arguments or settings file, 2 device or connection failure, "
        "3 verify failed");
}

ParsedArguments ParseBatchArguments(const QStringList& arguments) {
    if (arguments.isEmpty()) {
        return refuse(QStringLiteral("no command"));
    }
    BatchOptions options;
    const QString& command = arguments.front();
    if (command == u"program") {
        options.command = BatchCommand::Program;
    } else if (command == u"check") {
        options.command = BatchCommand::Check;
    } else if (command == u"curve") {
        options.command = BatchCommand::Curve;
    } else {
        return refuse(QStringLiteral("unknown command: ") + command);
    }
    const QSet<QString> allowed = optionsOf(options.command);
    bool havePort = false;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString& arg = arguments[i];
        if (!arg.startsWith(u'-') || arg == u"-") {
            if (!options.settings.isEmpty()) {
                return refuse(QStringLiteral("more than one settings file: ") + arg);
            }
            options.settings = arg;
            continue;
        }
        if (!allowed.contains(arg)) {
            return refuse(QStringLiteral("unknown option for ") + command + QStringLiteral(": ") +
                          arg);
        }
        const bool takesValue = arg == u"--port" || arg == u"--part" || arg == u"--log";
        if (takesValue && i + 1 >= arguments.size()) {
            return refuse(arg + QStringLiteral(" needs a value"));
        }
        const QString value = takesValue ? arguments[++i] : QString();
        if (arg == u"--port") {
            bool ok = false;
            options.port = value.toInt(&ok);
            if (!ok || options.port < 1 || options.port > 32767) {
                return refuse(QStringLiteral("--port needs a port number, not ") + value);
            }
            havePort = true;
        } else if (arg == u"--part") {
            if (value == u"1") {
                options.part = PartChoice::Part1;
            } else if (value == u"2") {
                options.part = PartChoice::Part2;
            } else if (value == u"both") {
                options.part = PartChoice::Both;
            } else {
                return refuse(QStringLiteral("--part takes 1, 2 or both, not ") + value);
            }
        } else if (arg == u"--log") {
            options.log = value;
        } else if (arg == u"--verify") {
            options.verify = true;
        } else if (arg == u"--lock") {
            options.lock = true;
        } else if (arg == u"-q") {
            options.quiet = true;
        } else if (arg == u"--json") {
            options.json = true;
        } else if (arg == u"--csv") {
            options.csv = true;
        }
    }
    if (options.settings.isEmpty()) {
        return refuse(QStringLiteral("no settings file"));
    }
    if (options.command == BatchCommand::Program && !havePort) {
        return refuse(QStringLiteral("program needs --port N"));
    }
    if (options.command == BatchCommand::Curve && !options.csv) {
        return refuse(QStringLiteral("curve needs --csv"));
    }
    return {options, {}};
}

}  // namespace rk31
