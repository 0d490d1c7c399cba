#include "serial/SerialSettings.h"

#include <QtGlobal>
#include <cstdio>

namespace rk31::serial {

namespace {

template <typename T>
void positive(const char* name, T& value) {
    const QString text = qEnvironmentVariable(name);
    if (text.isEmpty()) {
        return;
    }
    bool ok = false;
    const int v = text.toInt(&ok);
    if (!ok || v <= 0) {
        std::fprintf(stderr, "%s: ignored '%s': not a positive whole number\n", name,
                     qPrintable(text));
        return;
    }
    value = static_cast<T>(v);
}

}  // namespace

SerialSettings SerialSettingsFromEnvironment() {
    SerialSettings settings;
    settings.ports = qEnvironmentVariable("RK31_SERIAL_PORTS").split(u':', Qt::SkipEmptyParts);
    positive("RK31_SERIAL_BAUD", settings.baud);
    positive("RK31_SERIAL_TIMEOUT_MS", settings.timeoutMs);
    return settings;
}

}  // namespace rk31::serial
