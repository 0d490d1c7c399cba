#include "device/LoggingDevice.h"

#include <QDateTime>
#include <QStringList>
#include <algorithm>

#include "rk31/DeviceError.h"

namespace rk31 {

DeviceLog::DeviceLog(const QString& path, std::function<void(const QString&)> failed)
    : m_file(path), m_failed(std::move(failed)) {
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text)) {
        fail();
    }
}

void DeviceLog::fail() {
    if (m_failed) {
        m_failed(m_file.fileName() + QStringLiteral(": ") + m_file.errorString());
        m_failed = nullptr;
    }
}

bool TrafficTee::listening() const {
    return std::any_of(m_sinks.begin(), m_sinks.end(),
                       [](const auto& sink) { return sink->listening(); });
}

void TrafficTee::write(const DeviceCall& call) {
    for (const auto& sink : m_sinks) {
        if (sink->listening()) {
            sink->write(call);
        }
    }
}

void DeviceLog::write(const DeviceCall& call) {
    if (!m_file.isOpen()) {
        return;
    }
    const QByteArray line = (DeviceLogLine(call) + u'\n').toUtf8();
    if (m_file.write(line) != line.size() || !m_file.flush()) {
        fail();
    }
}

namespace {

QString num(double v) {
    return QString::number(v, 'g', 9);
}

QString dec(std::int64_t v) {
    return QString::number(v);
}

QString hex(std::int32_t v) {
    return QString::number(static_cast<std::uint32_t>(v), 16).toUpper();
}

QString none() {
    return {};
}

// Who hears of the calls: the sink (may be empty) and the count of calls under way.
struct Observers {
    std::shared_ptr<DeviceTrafficSink> sink;
    std::shared_ptr<CallsInProgress> calls;
};

// Runs one call of the wrapped object, counted as under way while it runs, and hands it to the
// sink, also when it throws. The arguments and out-values are only described while the sink
// listens.
template <typename Args, typename Call, typename Outs>
void logged(const Observers& observers, const char* op, Args&& args, Call&& call, Outs&& outs) {
    const CallsInProgress::Scope underWay(observers.calls.get());
    DeviceTrafficSink* sink = observers.sink.get();
    if (sink == nullptr || !sink->listening()) {
        call();
        return;
    }
    DeviceCall record{{}, QString::fromLatin1(op), args(), {}, false};
    try {
        call();
    } catch (const DeviceError& e) {
        record.at = QDateTime::currentDateTime();
        record.outcome = e.description();
        record.threw = true;
        sink->write(record);
        throw;
    }
    record.at = QDateTime::currentDateTime();
    record.outcome = outs();
    sink->write(record);
}

using Sink = Observers;

QString outFailed(std::int32_t failed) {
    return QStringLiteral("failed=") + dec(failed);
}

class LoggingMemory : public MemoryAccess {
  public:
    LoggingMemory(std::shared_ptr<MemoryAccess> inner, Sink sink)
        : m_inner(std::move(inner)), m_sink(std::move(sink)) {}

    void WriteMemory(std::int16_t part, std::int32_t address, std::int32_t data) override {
        logged(
            m_sink, "WriteMemory",
            [&] {
                return QStringList{dec(part), hex(address), hex(data)};
            },
            [&] { m_inner->WriteMemory(part, address, data); }, none);
    }
    void ReadMemory(std::int16_t part, std::int32_t address, std::int32_t& data) override {
        logged(
            m_sink, "ReadMemory",
            [&] {
                return QStringList{dec(part), hex(address)};
            },
            [&] { m_inner->ReadMemory(part, address, data); },
            [&] { return QStringLiteral("data=") + hex(data); });
    }
    void SetSolverParameter(std::int16_t part, std::int16_t id, const SolverValue& value,
                            std::int16_t mode, std::int32_t& failed) override {
        logged(
            m_sink, "SetSolverParameter",
            [&] {
                return QStringList{dec(part), dec(id), SolverValueText(value), dec(mode)};
            },
            [&] { m_inner->SetSolverParameter(part, id, value, mode, failed); },
            [&] { return outFailed(failed); });
    }

  private:
    std::shared_ptr<MemoryAccess> m_inner;
    Sink m_sink;
};

class LoggingSolver : public SolverAccess {
  public:
    LoggingSolver(std::shared_ptr<SolverAccess> inner, Sink sink)
        : m_inner(std::move(inner)), m_sink(std::move(sink)) {}

    void CommLock(std::int16_t part, std::int32_t& failed) override {
        logged(
            m_sink, "CommLock", [&] { return QStringList{dec(part)}; },
            [&] { m_inner->CommLock(part, failed); }, [&] { return outFailed(failed); });
    }
    void WriteBufferToDevice(std::int16_t part, std::int32_t& code) override {
        logged(
            m_sink, "WriteBufferToDevice", [&] { return QStringList{dec(part)}; },
            [&] { m_inner->WriteBufferToDevice(part, code); },
            [&] { return QStringLiteral("code=") + dec(code); });
    }
    void ClearSolverSettings(std::int16_t part, std::int32_t& failed) override {
        logged(
            m_sink, "ClearSolverSettings", [&] { return QStringList{dec(part)}; },
            [&] { m_inner->ClearSolverSettings(part, failed); }, [&] { return outFailed(failed); });
    }

  private:
    std::shared_ptr<SolverAccess> m_inner;
    Sink m_sink;
};

class LoggingDevice : public QZ7734Device {
  public:
    LoggingDevice(std::shared_ptr<QZ7734Device> inner, Sink sink)
        : m_inner(std::move(inner)), m_sink(std::move(sink)) {}

    void OpenChannel(const QVariant& port, std::int32_t& failed) override {
        logged(
            m_sink, "OpenChannel", [&] { return QStringList{port.toString()}; },
            [&] { m_inner->OpenChannel(port, failed); }, [&] { return outFailed(failed); });
    }
    void CloseChannel(std::int32_t channel) override {
        logged(
            m_sink, "CloseChannel", [&] { return QStringList{dec(channel)}; },
            [&] { m_inner->CloseChannel(channel); }, none);
    }
    void ProgramEEPROM(std::int16_t part, std::int32_t& failed) override {
        logged(
            m_sink, "ProgramEEPROM", [&] { return QStringList{dec(part)}; },
            [&] { m_inner->ProgramEEPROM(part, failed); }, [&] { return outFailed(failed); });
    }
    void MeasureOutput(std::int16_t part, std::int16_t one, float& value) override {
        logged(
            m_sink, "MeasureOutput",
            [&] {
                return QStringList{dec(part), dec(one)};
            },
            [&] { m_inner->MeasureOutput(part, one, value); },
            [&] { return QStringLiteral("value=") + num(value); });
    }
    void MeasureVDD(std::int16_t part, float& vdd) override {
        logged(
            m_sink, "MeasureVDD", [&] { return QStringList{dec(part)}; },
            [&] { m_inner->MeasureVDD(part, vdd); },
            [&] { return QStringLiteral("vdd=") + num(vdd); });
    }
    void GetMemoryAccess(std::shared_ptr<MemoryAccess>& object) override {
        logged(
            m_sink, "GetMemoryAccess", [] { return QStringList(); },
            [&] { m_inner->GetMemoryAccess(object); }, none);
        if (object) {
            object = std::make_shared<LoggingMemory>(object, m_sink);
        }
    }
    void ReadAngle(std::int16_t part, float& angle) override {
        logged(
            m_sink, "ReadAngle", [&] { return QStringList{dec(part)}; },
            [&] { m_inner->ReadAngle(part, angle); },
            [&] { return QStringLiteral("angle=") + num(angle); });
    }
    void GetSolverAccess(std::shared_ptr<SolverAccess>& object) override {
        logged(
            m_sink, "GetSolverAccess", [] { return QStringList(); },
            [&] { m_inner->GetSolverAccess(object); }, none);
        if (object) {
            object = std::make_shared<LoggingSolver>(object, m_sink);
        }
    }
    void EnterOWIMode(std::int16_t part, std::int32_t& result) override {
        logged(
            m_sink, "EnterOWIMode", [&] { return QStringList{dec(part)}; },
            [&] { m_inner->EnterOWIMode(part, result); },
            [&] { return QStringLiteral("result=") + dec(result); });
    }
    void ExitOWIMode(std::int16_t part, std::int32_t& status) override {
        simple("ExitOWIMode", part, status, &QZ7734Device::ExitOWIMode);
    }
    void PowerOnChip(std::int16_t part, std::int32_t& status) override {
        simple("PowerOnChip", part, status, &QZ7734Device::PowerOnChip);
    }
    void SelectOutputChannel(std::int16_t part, std::int32_t& status) override {
        simple("SelectOutputChannel", part, status, &QZ7734Device::SelectOutputChannel);
    }
    void PowerOffChip(std::int16_t part, std::int32_t& status) override {
        simple("PowerOffChip", part, status, &QZ7734Device::PowerOffChip);
    }
    void EnterADCMode(std::int16_t part, std::int32_t& status) override {
        simple("EnterADCMode", part, status, &QZ7734Device::EnterADCMode);
    }
    void GetDACCalibration(std::int16_t part, float& k0, float& b0, float& k1, float& b1,
                           std::int32_t& status) override {
        logged(
            m_sink, "GetDACCalibration", [&] { return QStringList{dec(part)}; },
            [&] { m_inner->GetDACCalibration(part, k0, b0, k1, b1, status); },
            [&] {
                return QStringLiteral("K0=%1 B0=%2 K1=%3 B1=%4 status=%5")
                    .arg(num(k0), num(b0), num(k1), num(b1), dec(status));
            });
    }
    void GetHardwareVersion(std::int32_t& major, std::int32_t& minor, std::int32_t& build,
                            std::int32_t& failed) override {
        logged(
            m_sink, "GetHardwareVersion", [] { return QStringList(); },
            [&] { m_inner->GetHardwareVersion(major, minor, build, failed); },
            [&] {
                return QStringLiteral("version=%1.%2.%3 failed=%4")
                    .arg(major)
                    .arg(minor)
                    .arg(build)
                    .arg(failed);
            });
    }
    void SetOutputMode(std::int16_t part, std::int16_t outputMode, std::int16_t pwmFrequency,
                       std::int16_t pwmPolarity, std::int32_t& failed) override {
        logged(
            m_sink, "SetOutputMode",
            [&] {
                return QStringList{dec(part), dec(outputMode), dec(pwmFrequency), dec(pwmPolarity)};
            },
            [&] { m_inner->SetOutputMode(part, outputMode, pwmFrequency, pwmPolarity, failed); },
            [&] { return outFailed(failed); });
    }

  private:
    void simple(const char* op, std::int16_t part, std::int32_t& status,
                void (QZ7734Device::*method)(std::int16_t, std::int32_t&)) {
        logged(
            m_sink, op, [&] { return QStringList{dec(part)}; },
            [&] { ((*m_inner).*method)(part, status); },
            [&] { return QStringLiteral("status=") + dec(status); });
    }

    std::shared_ptr<QZ7734Device> m_inner;
    Sink m_sink;
};

}  // namespace

std::shared_ptr<QZ7734Device> WrapWithLog(std::shared_ptr<QZ7734Device> device,
                                          std::shared_ptr<DeviceTrafficSink> sink,
                                          std::shared_ptr<CallsInProgress> calls) {
    if (!device || (!sink && !calls)) {
        return device;
    }
    return std::make_shared<LoggingDevice>(std::move(device),
                                           Observers{std::move(sink), std::move(calls)});
}

}  // namespace rk31
