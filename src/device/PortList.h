#pragma once

#include <QStringList>
#include <cstdint>
#include <optional>

namespace rk31 {

class PortProber;

// Ports the port dialog probes.
inline constexpr int kFirstProbedPort = 1;
inline constexpr int kLastProbedPort = 16;

// The entries of the port list, "COM" followed by the port number, in probing order: a port is
// listed when it opens, when the probing control holds it already, or when another program
// holds it (error 8005). The 8005 of a port is only looked at when the next port's round starts,
// so its entry lands just before that port's own and an 8005 on the last port is never listed.
QStringList RefreshPortList(PortProber& prober);

// The port number in a port entry: the text from its fourth character on as a 16-bit integer
// ("COM3" -> 3, "COM12" -> 12). Nothing when that part is not a number or names no port
// (below 1 or beyond the 16-bit range).
std::optional<std::int16_t> PortNumberFromText(const QString& text);

}  // namespace rk31
