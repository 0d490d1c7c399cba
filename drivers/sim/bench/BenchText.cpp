#include "sim/bench/BenchText.h"

#include <QLocale>
#include <cmath>

namespace rk31::sim {

namespace {

// Below this MeasureVDD means "no supply".
constexpr float kNoSupplyReading = -100.0f;

QString fixed(double value, int decimals) {
    return QLocale::c().toString(value, 'f', decimals);
}

}  // namespace

QString AngleText(double degrees) {
    return fixed(Wrap360(std::round(degrees * 100) / 100), 2);
}

std::optional<double> TypedAngle(const QString& text) {
    bool ok = false;
    const double value = QLocale::c().toDouble(text.trimmed(), &ok);
    if (!ok || !std::isfinite(value) || value < 0 || value > 360) {
        return std::nullopt;
    }
    return Wrap360(value);
}

QString RefusedAngleMessage(const QString& typed, double kept) {
    return QStringLiteral(
               "\u201c%1\u201d is not an angle from 0 to 360: the magnet stays at %2\u00b0")
        .arg(typed.trimmed(), AngleText(kept));
}

QString ModeText(Die::Mode mode) {
    switch (mode) {
        case Die::Mode::Adc:
            return QStringLiteral("ADC");
        case Die::Mode::Owi:
            return QStringLiteral("OWI");
        case Die::Mode::Off:
            break;
    }
    return QStringLiteral("off");
}

QString IdentificationText(const SimulatedBox& box, int part) {
    const Die& die = box.dies[static_cast<std::size_t>(part)];
    const std::int32_t word = die.locked ? 0xF0 | (die.chipId & 0x0F) : die.chipId;
    QString text = QStringLiteral("&H") + QString::number(word, 16).toUpper();
    if (box.config.idError & (1u << part)) {
        text += QStringLiteral(", reads 511");
    }
    return text;
}

QString VddText(const SimulatedBox& box, int part) {
    const float vdd = box.measureVdd(part);
    return vdd < kNoSupplyReading ? QStringLiteral("no reading")
                                  : fixed(vdd, 3) + QStringLiteral(" V");
}

QString OutputText(const SimulatedBox& box, int part) {
    const Die& die = box.dies[static_cast<std::size_t>(part)];
    if (!die.inAdc() && !box.config.outputOverride) {
        return die.powered ? QStringLiteral("none in OWI mode") : QStringLiteral("none");
    }
    return fixed(box.output(part), 2) + QStringLiteral(" %VDD");
}

QStringList FaultsOn(const SimulatedBox& box) {
    QStringList on;
    for (const PartsSetting& setting : PartsSettings()) {
        const bool first = box.partSetting(setting, 0);
        const bool second = box.partSetting(setting, 1);
        if (first || second) {
            on << QStringLiteral("%1 (%2)").arg(QString::fromLatin1(setting.title),
                                                first && second ? QStringLiteral("both parts")
                                                : first         ? QStringLiteral("Part #1")
                                                                : QStringLiteral("Part #2"));
        }
    }
    for (const FlagSetting& setting : FlagSettings()) {
        if (box.config.*setting.flag) {
            on << QString::fromLatin1(setting.title);
        }
    }
    if (box.config.writeBufferCode != 0) {
        on << QStringLiteral("WriteBufferToDevice code %1").arg(box.config.writeBufferCode);
    }
    if (box.config.dacStatus != 0) {
        on << QStringLiteral("DAC calibration status %1").arg(box.config.dacStatus);
    }
    if (box.config.outputOverride) {
        on << QStringLiteral("Fixed output reading %1 %").arg(fixed(*box.config.outputOverride, 2));
    }
    return on;
}

}  // namespace rk31::sim
