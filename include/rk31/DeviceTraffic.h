#pragma once

// The device traffic as the program describes it: one record per call of a device-access object,
// its text, and the line the device log writes. Public, so that a driver's own view of the
// traffic (the simulated programmer's bench) shows and saves exactly what the log holds.

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <charconv>
#include <type_traits>
#include <variant>

#include "rk31/QZ7734Device.h"

namespace rk31 {

// One call to a device object as the traffic shows it.
struct DeviceCall {
    QDateTime at;           // when it returned (or threw)
    QString operation;      // "ReadMemory"
    QStringList arguments;  // the inputs: "0", "48"
    QString outcome;        // the out-values ("data=1FF"), or the description of the failure
    bool threw = false;
};

// "Single:0.1", "Long:1", "Integer:0": the value's type and the shortest text that reads back
// as the same value.
inline QString SolverValueText(const SolverValue& value) {
    return std::visit(
        [](auto v) -> QString {
            using T = decltype(v);
            if constexpr (std::is_same_v<T, float>) {
                char buffer[32];
                const auto end = std::to_chars(buffer, buffer + sizeof buffer, v).ptr;
                return QStringLiteral("Single:") +
                       QString::fromLatin1(buffer, static_cast<int>(end - buffer));
            } else if constexpr (std::is_same_v<T, std::int32_t>) {
                return QStringLiteral("Long:") + QString::number(v);
            } else {
                return QStringLiteral("Integer:") + QString::number(v);
            }
        },
        value);
}

// "ReadMemory(0, 48) -> data=1FF", "GetMemoryAccess()", "ReadAngle(7) !! <description>".
inline QString DeviceCallText(const DeviceCall& call) {
    const QString head = call.operation + u'(' + call.arguments.join(QStringLiteral(", ")) + u')';
    if (call.threw) {
        return head + QStringLiteral(" !! ") + call.outcome;
    }
    return call.outcome.isEmpty() ? head : head + QStringLiteral(" -> ") + call.outcome;
}

// The call as the device log writes it: its time (ISO 8601 with milliseconds), a blank, its text.
inline QString DeviceLogLine(const DeviceCall& call) {
    return call.at.toString(Qt::ISODateWithMs) + u' ' + DeviceCallText(call);
}

// Whoever takes the calls of the program's device objects: the log file, a driver's live view.
class DeviceTrafficSink {
  public:
    virtual ~DeviceTrafficSink() = default;
    // While nobody listens, calls pass without being described.
    virtual bool listening() const { return true; }
    virtual void write(const DeviceCall& call) = 0;
};

}  // namespace rk31
