#include "sim/SimConfig.h"

#include <QLocale>
#include <cmath>
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

Setter partsKey(unsigned SimConfig::*field) {
    return [field](SimConfig& c, const QString& text) {
        static const std::map<QString, unsigned> masks = {
            {QStringLiteral("0"), 0u},
            {QStringLiteral("1"), kPart1},
            {QStringLiteral("2"), kPart2},
            {QStringLiteral("both"), kBothParts},
        };
        const auto it = masks.find(text.toLower());
        if (it == masks.end()) {
            return QStringLiteral("expected 0, 1, 2 or both");
        }
        c.*field = it->second;
        return QString();
    };
}

const std::map<QString, Setter>& setters() {
    static const std::map<QString, Setter> map = {
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
        {QStringLiteral("locked"), partsKey(&SimConfig::locked)},
        {QStringLiteral("no_supply"), partsKey(&SimConfig::noSupply)},
        {QStringLiteral("id_error"), partsKey(&SimConfig::idError)},
        {QStringLiteral("eeprom_fail"), partsKey(&SimConfig::eepromFail)},
        {QStringLiteral("clear_fail"), partsKey(&SimConfig::clearFail)},
        {QStringLiteral("commlock_fail"), partsKey(&SimConfig::commlockFail)},
        {QStringLiteral("version_fail"), flagKey(&SimConfig::versionFail)},
        {QStringLiteral("channel_fail"), flagKey(&SimConfig::channelFail)},
    };
    return map;
}

}  // namespace

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

}  // namespace rk31::sim
