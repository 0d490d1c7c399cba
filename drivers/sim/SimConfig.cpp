#include "sim/SimConfig.h"

#include <QLocale>
#include <QtGlobal>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <functional>
#include <map>

namespace rk31::sim {

namespace {

// A setter answers an empty text when it took the value, else why it did not.
using Setter = std::function<QString(SimConfig&, const QString&)>;

std::optional<double> real(const QString& text) {
    bool ok = false;
    const double v = QLocale::c().toDouble(text, &ok);
    if (!ok || !std::isfinite(v)) {
        return std::nullopt;
    }
    return v;
}

std::optional<int> whole(const QString& text) {
    bool ok = false;
    const int v = QLocale::c().toInt(text, &ok);
    return ok ? std::optional<int>(v) : std::nullopt;
}

Setter realKey(std::function<void(SimConfig&, double)> apply) {
    return [apply](SimConfig& c, const QString& text) {
        const auto v = real(text);
        if (!v) {
            return QStringLiteral("not a number");
        }
        apply(c, *v);
        return QString();
    };
}

Setter wholeKey(std::function<QString(SimConfig&, int)> apply) {
    return [apply](SimConfig& c, const QString& text) {
        const auto v = whole(text);
        if (!v) {
            return QStringLiteral("not a whole number");
        }
        return apply(c, *v);
    };
}

Setter flagKey(bool SimConfig::*field) {
    return [field](SimConfig& c, const QString& text) {
        if (text == u"0" || text == u"1") {
            c.*field = text == u"1";
            return QString();
        }
        return QStringLiteral("expected 0 or 1");
    };
}

// The texts of a per-part mask, both ways.
const std::map<QString, unsigned>& partsMasks() {
    static const std::map<QString, unsigned> masks = {
        {QStringLiteral("0"), 0u},
        {QStringLiteral("1"), kPart1},
        {QStringLiteral("2"), kPart2},
        {QStringLiteral("both"), kBothDies},
    };
    return masks;
}

Setter partsKey(unsigned SimConfig::*field) {
    return [field](SimConfig& c, const QString& text) {
        const auto it = partsMasks().find(text.toLower());
        if (it == partsMasks().end()) {
            return QStringLiteral("expected 0, 1, 2 or both");
        }
        c.*field = it->second;
        return QString();
    };
}

const std::map<QString, Setter>& setters() {
    static const std::map<QString, Setter> map = [] {
        std::map<QString, Setter> m = {
            {QStringLiteral("angle"), realKey([](SimConfig& c, double v) { c.angle = v; })},
            {QStringLiteral("rotate"), realKey([](SimConfig& c, double v) { c.rotate = v; })},
            {QStringLiteral("vdd"),
             realKey([](SimConfig& c, double v) { c.vdd = static_cast<float>(v); })},
            {QStringLiteral("output"),
             realKey([](SimConfig& c, double v) { c.outputOverride = static_cast<float>(v); })},
            {QStringLiteral("latency"), wholeKey([](SimConfig& c, int v) {
                 if (v < 0) {
                     return QStringLiteral("must not be negative");
                 }
                 c.latencyMs = v;
                 return QString();
             })},
            {QStringLiteral("port"), wholeKey([](SimConfig& c, int v) {
                 // The port dialog probes COM1 to COM16 only.
                 if (v < 1 || v > 16) {
                     return QStringLiteral("expected a port number from 1 to 16");
                 }
                 c.programmerPort = v;
                 return QString();
             })},
            {QStringLiteral("wbd_code"), wholeKey([](SimConfig& c, int v) {
                 c.writeBufferCode = v;
                 return QString();
             })},
            {QStringLiteral("dac_status"), wholeKey([](SimConfig& c, int v) {
                 c.dacStatus = v;
                 return QString();
             })},
            {QStringLiteral("fault_every"), wholeKey([](SimConfig& c, int v) {
                 if (v < 1) {
                     return QStringLiteral("expected a chip count from 1");
                 }
                 c.faultEvery = v;
                 return QString();
             })},
            {QStringLiteral("fixture"), wholeKey([](SimConfig& c, int v) {
                 if (v != 0 && v != 1) {
                     return QStringLiteral("expected 0 (a hand turns the magnet) or 1");
                 }
                 c.fixture = v == 1;
                 return QString();
             })},
            {QStringLiteral("chips"), wholeKey([](SimConfig& c, int v) {
                 if (v < 0) {
                     return QStringLiteral("must not be negative");
                 }
                 c.chips = v;
                 return QString();
             })},
        };
        for (const PartsSetting& s : PartsSettings()) {
            m.emplace(QString::fromLatin1(s.key), partsKey(s.mask));
        }
        for (const FlagSetting& s : FlagSettings()) {
            m.emplace(QString::fromLatin1(s.key), flagKey(s.flag));
        }
        return m;
    }();
    return map;
}

template <typename T>
QString shortest(T value) {
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    return QString::fromLatin1(buffer, static_cast<int>(end - buffer));
}

QString partsText(unsigned mask) {
    for (const auto& [text, m] : partsMasks()) {
        if (m == mask) {
            return text;
        }
    }
    return QStringLiteral("0");
}

}  // namespace

std::span<const PartsSetting> PartsSettings() {
    static constexpr std::array<PartsSetting, 6> settings{{
        {"locked", "Communication locked for good", &SimConfig::locked},
        {"no_supply", "No supply reading", &SimConfig::noSupply},
        {"id_error", "Identification read error", &SimConfig::idError},
        {"eeprom_fail", "EEPROM failure", &SimConfig::eepromFail},
        {"clear_fail", "Clear solver failure", &SimConfig::clearFail},
        {"commlock_fail", "Comm lock failure", &SimConfig::commlockFail},
    }};
    return settings;
}

std::span<const FlagSetting> FlagSettings() {
    static constexpr std::array<FlagSetting, 3> settings{{
        {"channel_fail", "Channel failure", &SimConfig::channelFail},
        {"version_fail", "Hardware version failure", &SimConfig::versionFail},
        {"fixture_fail", "Magnet fixture failure", &SimConfig::fixtureFail},
    }};
    return settings;
}

SimConfig ParseSimConfig(const QString& text, QStringList* errors, const SimConfig& base) {
    SimConfig config = base;
    const auto report = [errors](const QString& entry, const QString& reason) {
        if (errors) {
            errors->append(QStringLiteral("RK31_SIM: ignored '%1': %2").arg(entry, reason));
        }
    };
    for (const QString& raw : text.split(u';')) {
        const QString entry = raw.trimmed();
        if (entry.isEmpty()) {
            continue;
        }
        const qsizetype eq = entry.indexOf(u'=');
        if (eq < 0) {
            report(entry, QStringLiteral("expected key=value"));
            continue;
        }
        const QString key = entry.left(eq).trimmed().toLower();
        const QString value = entry.mid(eq + 1).trimmed();
        const auto it = setters().find(key);
        if (it == setters().end()) {
            report(entry, QStringLiteral("unknown key"));
            continue;
        }
        if (value.isEmpty()) {
            report(entry, QStringLiteral("no value"));
            continue;
        }
        const QString reason = it->second(config, value);
        if (!reason.isEmpty()) {
            report(entry, reason);
        }
    }
    return config;
}

QString WriteSimConfig(const SimConfig& config) {
    const SimConfig defaults;
    QStringList entries;
    const auto add = [&entries](const char* key, const QString& value) {
        entries.append(QString::fromLatin1(key) + u'=' + value);
    };
    add("angle", shortest(config.angle));
    if (config.rotate != defaults.rotate) {
        add("rotate", shortest(config.rotate));
    }
    // Always written: the program's own default differs from a default SimConfig's.
    add("latency", QString::number(config.latencyMs));
    if (config.vdd != defaults.vdd) {
        add("vdd", shortest(config.vdd));
    }
    if (config.programmerPort != defaults.programmerPort) {
        add("port", QString::number(config.programmerPort));
    }
    for (const PartsSetting& s : PartsSettings()) {
        if (config.*s.mask != 0) {
            add(s.key, partsText(config.*s.mask));
        }
    }
    if (config.writeBufferCode != defaults.writeBufferCode) {
        add("wbd_code", QString::number(config.writeBufferCode));
    }
    if (config.dacStatus != defaults.dacStatus) {
        add("dac_status", QString::number(config.dacStatus));
    }
    for (const FlagSetting& s : FlagSettings()) {
        if (config.*s.flag) {
            add(s.key, QStringLiteral("1"));
        }
    }
    if (config.outputOverride) {
        add("output", shortest(*config.outputOverride));
    }
    if (config.faultEvery != defaults.faultEvery) {
        add("fault_every", QString::number(config.faultEvery));
    }
    if (config.fixture != defaults.fixture) {
        add("fixture", config.fixture ? QStringLiteral("1") : QStringLiteral("0"));
    }
    if (config.chips != defaults.chips) {
        add("chips", QString::number(config.chips));
    }
    return entries.join(u';');
}

SimConfig SimConfigFromEnvironment() {
    SimConfig base;
    base.latencyMs = 30;
    QStringList errors;
    const SimConfig config = ParseSimConfig(qEnvironmentVariable("RK31_SIM"), &errors, base);
    for (const QString& error : errors) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
    }
    return config;
}

}  // namespace rk31::sim
