#include "LineFaults.h"

#include <functional>
#include <map>

namespace rk31::boxsim {

namespace {

using Setter = std::function<bool(LineFaults&, const QString&)>;

Setter rate(double LineFaults::*field) {
    return [field](LineFaults& f, const QString& text) {
        bool ok = false;
        const double v = text.toDouble(&ok);
        if (ok && v >= 0 && v <= 1) {
            f.*field = v;
        }
        return ok && v >= 0 && v <= 1;
    };
}

Setter whole(int LineFaults::*field, int lowest) {
    return [field, lowest](LineFaults& f, const QString& text) {
        bool ok = false;
        const int v = text.toInt(&ok);
        if (ok && v >= lowest) {
            f.*field = v;
        }
        return ok && v >= lowest;
    };
}

Setter text(QString LineFaults::*field) {
    return [field](LineFaults& f, const QString& value) {
        f.*field = value;
        return !value.isEmpty();
    };
}

// "OP:MS" and "OP[:N]".
bool stall(LineFaults& f, const QString& value) {
    const QStringList parts = value.split(u':');
    bool msOk = false;
    const int ms = parts.value(1).toInt(&msOk);
    if (parts.size() != 2 || parts[0].isEmpty() || !msOk || ms < 0) {
        return false;
    }
    f.stall = parts[0];
    f.stallMs = ms;
    return true;
}

bool pullDuring(LineFaults& f, const QString& value) {
    const QStringList parts = value.split(u':');
    bool ok = parts.size() == 1;
    int count = 1;
    if (parts.size() == 2) {
        count = parts[1].toInt(&ok);
    }
    if (!ok || count < 1 || parts[0].isEmpty() || parts.size() > 2) {
        return false;
    }
    f.pullDuring = parts[0];
    f.pullDuringCount = count;
    return true;
}

const std::map<QString, Setter>& setters() {
    static const std::map<QString, Setter> all = {
        {QStringLiteral("drop"), rate(&LineFaults::drop)},
        {QStringLiteral("flip"), rate(&LineFaults::flip)},
        {QStringLiteral("baud"), whole(&LineFaults::baud, 0)},
        {QStringLiteral("stall"), stall},
        {QStringLiteral("garble"), text(&LineFaults::garble)},
        {QStringLiteral("pull_after"), whole(&LineFaults::pullAfter, 1)},
        {QStringLiteral("pull_during"), pullDuring},
        {QStringLiteral("replug"), whole(&LineFaults::replugMs, 0)},
        {QStringLiteral("seed"),
         [](LineFaults& f, const QString& v) {
             bool ok = false;
             f.seed = v.toUInt(&ok);
             return ok;
         }},
        {QStringLiteral("link"), text(&LineFaults::link)},
        {QStringLiteral("trace"), text(&LineFaults::trace)},
    };
    return all;
}

}  // namespace

std::optional<LineFaults> ParseLineFaults(const QString& environment, const QStringList& options,
                                          QStringList& errors) {
    QStringList entries = environment.split(u';', Qt::SkipEmptyParts);
    for (const QString& option : options) {
        if (!option.startsWith(QStringLiteral("--"))) {
            errors << QStringLiteral("not an option: ") + option;
            continue;
        }
        // Options spell their keys with '-', the environment with '_'.
        QString entry = option.mid(2);
        const qsizetype equals = entry.indexOf(u'=');
        entry.replace(0, equals < 0 ? entry.size() : equals,
                      entry.left(equals < 0 ? entry.size() : equals).replace(u'-', u'_'));
        entries << entry;
    }
    LineFaults faults;
    for (const QString& raw : entries) {
        const QString entry = raw.trimmed();
        const qsizetype equals = entry.indexOf(u'=');
        const QString key = entry.left(equals).trimmed();
        const auto it = setters().find(key);
        if (equals < 0 || it == setters().end()) {
            errors << QStringLiteral("unknown setting '") + entry + u'\'';
        } else if (!it->second(faults, entry.mid(equals + 1).trimmed())) {
            errors << QStringLiteral("bad value in '") + entry + u'\'';
        }
    }
    if (!errors.isEmpty()) {
        return std::nullopt;
    }
    return faults;
}

}  // namespace rk31::boxsim
