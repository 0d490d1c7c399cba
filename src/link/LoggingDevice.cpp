#include "link/LoggingDevice.h"

#include <QDateTime>
#include <QStringList>
#include <QTextStream>
#include <charconv>

#include "core/DeviceError.h"

namespace rk31 {

QString SolverValueText(const SolverValue& value) {
    return std::visit(
        [](auto v) -> QString {
            using T = decltype(v);
            if constexpr (std::is_same_v<T, float>) {
                // The shortest text that reads back as the same Single: 0.1f gives "0.1".
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

DeviceLog::DeviceLog(const QString& path) : m_file(path) {
    m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text);
}

void DeviceLog::write(const QString& line) {
    if (!m_file.isOpen()) {
        return;
    }
    const QString stamped =
        QDateTime::currentDateTime().toString(Qt::ISODateWithMs) + u' ' + line + u'\n';
    m_file.write(stamped.toUtf8());
    m_file.flush();
}

namespace {

QString num(double v) {
    return QString::number(v, 'g', 9);
}

// Runs one call of the wrapped object and logs it, also when it throws.
template <typename Call, typename Outs>
void logged(DeviceLog& log, const QString& head, Call&& call, Outs&& outs) {
    try {
        call();
    } catch (const DeviceError& e) {
        log.write(head + QStringLiteral(" !! ") + e.description());
        throw;
    }
    const QString o = outs();
    log.write(o.isEmpty() ? head : head + QStringLiteral(" -> ") + o);
}

QString call(const char* op, const QStringList& args) {
    return QString::fromLatin1(op) + u'(' + args.join(QStringLiteral(", ")) + u')';
}

class LoggingMemory : public MemoryAccess {
  public:
    LoggingMemory(std::shared_ptr<MemoryAccess> inner, std::shared_ptr<DeviceLog> log)
        : m_inner(std::move(inner)), m_log(std::move(log)) {}

    void WriteMemory(std::int16_t part, std::int32_t address, std::int32_t data) override {
        logged(
            *m_log,
            call("WriteMemory", {QString::number(part),
                                 QString::number(static_cast<std::uint32_t>(address), 16).toUpper(),
                                 QString::number(static_cast<std::uint32_t>(data), 16).toUpper()}),
            [&] { m_inner->WriteMemory(part, address, data); }, [] { return QString(); });
    }
    void ReadMemory(std::int16_t part, std::int32_t address, std::int32_t& data) override {
        logged(
            *m_log,
            call("ReadMemory",
                 {QString::number(part),
                  QString::number(static_cast<std::uint32_t>(address), 16).toUpper()}),
            [&] { m_inner->ReadMemory(part, address, data); },
            [&] {
                return QStringLiteral("data=") +
                       QString::number(static_cast<std::uint32_t>(data), 16).toUpper();
            });
    }
    void SetSolverParameter(std::int16_t part, std::int16_t id, const SolverValue& value,
                            std::int16_t mode, std::int32_t& failed) override {
        logged(
            *m_log,
            call("SetSolverParameter", {QString::number(part), QString::number(id),
                                        SolverValueText(value), QString::number(mode)}),
            [&] { m_inner->SetSolverParameter(part, id, value, mode, failed); },
            [&] { return QStringLiteral("failed=") + QString::number(failed); });
    }

  private:
    std::shared_ptr<MemoryAccess> m_inner;
    std::shared_ptr<DeviceLog> m_log;
};

class LoggingSolver : public SolverAccess {
  public:
    LoggingSolver(std::shared_ptr<SolverAccess> inner, std::shared_ptr<DeviceLog> log)
        : m_inner(std::move(inner)), m_log(std::move(log)) {}

    void CommLock(std::int16_t part, std::int32_t& failed) override {
        logged(
            *m_log, call("CommLock", {QString::number(part)}),
            [&] { m_inner->CommLock(part, failed); },
            [&] { return QStringLiteral("failed=") + QString::number(failed); });
    }
    void WriteBufferToDevice(std::int16_t part, std::int32_t& code) override {
        logged(
            *m_log, call("WriteBufferToDevice", {QString::number(part)}),
            [&] { m_inner->WriteBufferToDevice(part, code); },
            [&] { return QStringLiteral("code=") + QString::number(code); });
    }
    void ClearSolverSettings(std::int16_t part, std::int32_t& failed) override {
        logged(
            *m_log, call("ClearSolverSettings", {QString::number(part)}),
            [&] { m_inner->ClearSolverSettings(part, failed); },
            [&] { return QStringLiteral("failed=") + QString::number(failed); });
    }

  private:
    std::shared_ptr<SolverAccess> m_inner;
    std::shared_ptr<DeviceLog> m_log;
};

class LoggingDevice : public QZ7734Device {
  public:
    LoggingDevice(std::shared_ptr<QZ7734Device> inner, std::shared_ptr<DeviceLog> log)
        : m_inner(std::move(inner)), m_log(std::move(log)) {}

    void OpenChannel(const QVariant& port, std::int32_t& failed) override {
        logged(
            *m_log, call("OpenChannel", {port.toString()}),
            [&] { m_inner->OpenChannel(port, failed); }, [&] { return outFailed(failed); });
    }
    void CloseChannel(std::int32_t channel) override {
        logged(
            *m_log, call("CloseChannel", {QString::number(channel)}),
            [&] { m_inner->CloseChannel(channel); }, [] { return QString(); });
    }
    void ProgramEEPROM(std::int16_t part, std::int32_t& failed) override {
        logged(
            *m_log, call("ProgramEEPROM", {QString::number(part)}),
            [&] { m_inner->ProgramEEPROM(part, failed); }, [&] { return outFailed(failed); });
    }
    void MeasureOutput(std::int16_t part, std::int16_t one, float& value) override {
        logged(
            *m_log, call("MeasureOutput", {QString::number(part), QString::number(one)}),
            [&] { m_inner->MeasureOutput(part, one, value); },
            [&] { return QStringLiteral("value=") + num(value); });
    }
    void MeasureVDD(std::int16_t part, float& vdd) override {
        logged(
            *m_log, call("MeasureVDD", {QString::number(part)}),
            [&] { m_inner->MeasureVDD(part, vdd); },
            [&] { return QStringLiteral("vdd=") + num(vdd); });
    }
    void GetMemoryAccess(std::shared_ptr<MemoryAccess>& object) override {
        logged(
            *m_log, call("GetMemoryAccess", {}), [&] { m_inner->GetMemoryAccess(object); },
            [] { return QString(); });
        if (object) {
            object = std::make_shared<LoggingMemory>(object, m_log);
        }
    }
    void ReadAngle(std::int16_t part, float& angle) override {
        logged(
            *m_log, call("ReadAngle", {QString::number(part)}),
            [&] { m_inner->ReadAngle(part, angle); },
            [&] { return QStringLiteral("angle=") + num(angle); });
    }
    void GetSolverAccess(std::shared_ptr<SolverAccess>& object) override {
        logged(
            *m_log, call("GetSolverAccess", {}), [&] { m_inner->GetSolverAccess(object); },
            [] { return QString(); });
        if (object) {
            object = std::make_shared<LoggingSolver>(object, m_log);
        }
    }
    void EnterOWIMode(std::int16_t part, std::int32_t& result) override {
        logged(
            *m_log, call("EnterOWIMode", {QString::number(part)}),
            [&] { m_inner->EnterOWIMode(part, result); },
            [&] { return QStringLiteral("result=") + QString::number(result); });
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
            *m_log, call("GetDACCalibration", {QString::number(part)}),
            [&] { m_inner->GetDACCalibration(part, k0, b0, k1, b1, status); },
            [&] {
                return QStringLiteral("K0=%1 B0=%2 K1=%3 B1=%4 status=%5")
                    .arg(num(k0), num(b0), num(k1), num(b1), QString::number(status));
            });
    }
    void GetHardwareVersion(std::int32_t& major, std::int32_t& minor, std::int32_t& build,
                            std::int32_t& failed) override {
        logged(
            *m_log, call("GetHardwareVersion", {}),
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
            *m_log,
            call("SetOutputMode", {QString::number(part), QString::number(outputMode),
                                   QString::number(pwmFrequency), QString::number(pwmPolarity)}),
            [&] { m_inner->SetOutputMode(part, outputMode, pwmFrequency, pwmPolarity, failed); },
            [&] { return outFailed(failed); });
    }

  private:
    static QString outFailed(std::int32_t failed) {
        return QStringLiteral("failed=") + QString::number(failed);
    }
    void simple(const char* op, std::int16_t part, std::int32_t& status,
                void (QZ7734Device::*method)(std::int16_t, std::int32_t&)) {
        logged(
            *m_log, call(op, {QString::number(part)}), [&] { ((*m_inner).*method)(part, status); },
            [&] { return QStringLiteral("status=") + QString::number(status); });
    }

    std::shared_ptr<QZ7734Device> m_inner;
    std::shared_ptr<DeviceLog> m_log;
};

}  // namespace

std::shared_ptr<QZ7734Device> WrapWithLog(std::shared_ptr<QZ7734Device> device,
                                          std::shared_ptr<DeviceLog> log) {
    if (!device || !log) {
        return device;
    }
    return std::make_shared<LoggingDevice>(std::move(device), std::move(log));
}

}  // namespace rk31
