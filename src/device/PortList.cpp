#include "device/PortList.h"

#include "domain/NumberText.h"
#include "domain/Rounding.h"
#include "rk31/PortProber.h"

namespace rk31 {

namespace {

QString portEntry(int port) {
    return QStringLiteral("COM") + QString::number(port);
}

}  // namespace

QStringList RefreshPortList(PortProber& prober) {
    QStringList entries;
    int keptError = 0;
    for (int port = kFirstProbedPort; port <= kLastProbedPort; ++port) {
        if (keptError == kPortAlreadyOpen) {
            entries << portEntry(port - 1);
        }
        keptError = 0;
        if (prober.isOpenHere(port)) {
            entries << portEntry(port);
            continue;
        }
        keptError = prober.open(port);
        if (keptError == 0) {
            entries << portEntry(port);
            prober.close(port);
        }
    }
    return entries;
}

std::optional<std::int16_t> PortNumberFromText(const QString& text) {
    const auto value = TextToSingle(text.mid(3));
    if (!value || *value >= 32767.5f) {
        return std::nullopt;
    }
    // Below the 16-bit range the conversion saturates, which the check of the port catches.
    const std::int16_t port = RoundToInt16(*value);
    if (port < 1) {
        return std::nullopt;
    }
    return port;
}

}  // namespace rk31
