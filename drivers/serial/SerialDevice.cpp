#include <QVariant>
#include <cstdio>

#include "rk31/DeviceError.h"
#include "serial/SerialProgrammer.h"

namespace rk31::serial {

using box::Command;
using box::PayloadReader;
using box::PayloadWriter;

namespace {

// What a device object and the access objects it hands out share: the line and its port list.
struct Link {
    Link(const SerialSettings& settings, std::shared_ptr<SerialPorts> ports,
         std::shared_ptr<SerialLine::Counts> counts)
        : line(settings), ports(std::move(ports)), counts(std::move(counts)) {}
    ~Link() {
        if (counts) {
            *counts = line.counts();
        }
    }

    // The answer's values; a line failure as a DeviceError.
    PayloadReader call(Command command, const PayloadWriter& in, int valuesSize) {
        try {
            return exchange(command, in, valuesSize);
        } catch (const LineFailure& failure) {
            throw DeviceError(failure.cause);
        }
    }
    // The one out-value of a call that answers with it.
    std::int32_t number(Command command, const PayloadWriter& in) {
        return call(command, in, 4).i32();
    }
    float real(Command command, const PayloadWriter& in) { return call(command, in, 4).single(); }
    // A call whose failure the program learns from its out-value: a line that fails during it
    // sets it to 1, and says why on standard error.
    std::int32_t failedOrLine(Command command, const PayloadWriter& in) {
        try {
            return exchange(command, in, 4).i32();
        } catch (const LineFailure& failure) {
            std::fprintf(stderr, "rk31 serial: %s\n", qPrintable(failure.cause));
            return 1;
        }
    }

    PayloadReader exchange(Command command, const PayloadWriter& in, int valuesSize) {
        if (!line.isOpen() && !line.lost().isEmpty()) {
            // The port vanished under an open channel. When it is back, the channel is opened
            // again before the call, so that a window whose record says the chip is powered can
            // still power it off and disconnect.
            const QString lost = line.lost();
            if (connect(port) != 0) {
                line.close();
                line.markLost(lost);
            }
        }
        if (!line.isOpen()) {
            throw DeviceError(line.lost().isEmpty()
                                  ? QStringLiteral("Programmer is not connected!")
                                  : QStringLiteral("Programmer is not connected: ") + line.lost());
        }
        PayloadReader values(line.exchange(command, in.bytes(), valuesSize));
        if (counts) {
            *counts = line.counts();
        }
        return values;
    }

    // Opens the line to COM `port` and the channel behind it: the OpenChannel out-value.
    std::int32_t connect(const QVariant& portValue) {
        port = portValue;
        bool isNumber = false;
        const int number = port.toInt(&isNumber);
        const QString path = isNumber ? ports->path(number) : QString();
        if (path.isEmpty()) {
            std::fprintf(stderr, "rk31 serial: COM%s leads to no device\n",
                         qPrintable(port.toString()));
            return 1;
        }
        if (const QString why = line.open(number, path); !why.isEmpty()) {
            std::fprintf(stderr, "rk31 serial: %s\n", qPrintable(why));
            return 1;
        }
        PayloadWriter hello;
        hello.u8(box::kProtocolVersion);
        try {
            PayloadReader answer(line.exchange(Command::Hello, hello.bytes(), -1));
            const std::uint8_t version = answer.u8();
            if (answer.failed() || version != box::kProtocolVersion) {
                throw LineFailure{QStringLiteral("the box on ") + line.where() +
                                  QStringLiteral(" speaks protocol version %1, this driver %2")
                                      .arg(version)
                                      .arg(box::kProtocolVersion)};
            }
        } catch (const LineFailure& failure) {
            std::fprintf(stderr, "rk31 serial: %s\n", qPrintable(failure.cause));
            line.close();
            return 1;
        } catch (const DeviceError& error) {
            std::fprintf(stderr, "rk31 serial: %s\n", qPrintable(error.description()));
            line.close();
            return 1;
        }
        return failedOrLine(Command::OpenChannel, PayloadWriter().text(port.toString()));
    }

    SerialLine line;
    std::shared_ptr<SerialPorts> ports;
    QVariant port;  // the COM port of the last OpenChannel
    std::shared_ptr<SerialLine::Counts> counts;
};

PayloadWriter part(std::int16_t p) {
    PayloadWriter in;
    in.i16(p);
    return in;
}

class SerialMemory : public MemoryAccess {
  public:
    explicit SerialMemory(std::shared_ptr<Link> link) : m_link(std::move(link)) {}

    void WriteMemory(std::int16_t p, std::int32_t address, std::int32_t data) override {
        m_link->call(Command::WriteMemory, part(p).i32(address).i32(data), 0);
    }
    void ReadMemory(std::int16_t p, std::int32_t address, std::int32_t& data) override {
        data = m_link->number(Command::ReadMemory, part(p).i32(address));
    }
    void SetSolverParameter(std::int16_t p, std::int16_t id, const SolverValue& value,
                            std::int16_t mode, std::int32_t& failed) override {
        PayloadWriter in = part(p);
        in.i16(id);
        if (const auto* single = std::get_if<float>(&value)) {
            in.u8(static_cast<std::uint8_t>(box::ValueKind::Single)).single(*single);
        } else if (const auto* whole = std::get_if<std::int32_t>(&value)) {
            in.u8(static_cast<std::uint8_t>(box::ValueKind::Long)).i32(*whole);
        } else {
            in.u8(static_cast<std::uint8_t>(box::ValueKind::Integer))
                .i16(std::get<std::int16_t>(value));
        }
        failed = m_link->number(Command::SetSolverParameter, in.i16(mode));
    }

  private:
    std::shared_ptr<Link> m_link;
};

class SerialSolver : public SolverAccess {
  public:
    explicit SerialSolver(std::shared_ptr<Link> link) : m_link(std::move(link)) {}

    void CommLock(std::int16_t p, std::int32_t& failed) override {
        failed = m_link->number(Command::CommLock, part(p));
    }
    void WriteBufferToDevice(std::int16_t p, std::int32_t& code) override {
        code = m_link->number(Command::WriteBufferToDevice, part(p));
    }
    void ClearSolverSettings(std::int16_t p, std::int32_t& failed) override {
        failed = m_link->number(Command::ClearSolverSettings, part(p));
    }

  private:
    std::shared_ptr<Link> m_link;
};

class SerialDevice : public QZ7734Device {
  public:
    explicit SerialDevice(std::shared_ptr<Link> link) : m_link(std::move(link)) {}

    void OpenChannel(const QVariant& port, std::int32_t& failed) override {
        failed = m_link->connect(port);
    }
    void CloseChannel(std::int32_t channel) override {
        SerialLine& line = m_link->line;
        if (line.isOpen()) {
            try {
                m_link->call(Command::CloseChannel, PayloadWriter().i32(channel), 0);
            } catch (const DeviceError& error) {
                // The port is let go whatever the box says: Disconnect must always work.
                std::fprintf(stderr, "rk31 serial: %s\n", qPrintable(error.description()));
            }
        }
        line.close();
    }
    void ProgramEEPROM(std::int16_t p, std::int32_t& failed) override {
        failed = m_link->failedOrLine(Command::ProgramEEPROM, part(p));
    }
    void MeasureOutput(std::int16_t p, std::int16_t one, float& value) override {
        value = m_link->real(Command::MeasureOutput, part(p).i16(one));
    }
    void MeasureVDD(std::int16_t p, float& vdd) override {
        vdd = m_link->real(Command::MeasureVDD, part(p));
    }
    void GetMemoryAccess(std::shared_ptr<MemoryAccess>& object) override {
        m_link->call(Command::GetMemoryAccess, {}, 0);
        if (!m_memory) {
            m_memory = std::make_shared<SerialMemory>(m_link);
        }
        object = m_memory;
    }
    void ReadAngle(std::int16_t p, float& angle) override {
        angle = m_link->real(Command::ReadAngle, part(p));
    }
    void GetSolverAccess(std::shared_ptr<SolverAccess>& object) override {
        m_link->call(Command::GetSolverAccess, {}, 0);
        if (!m_solver) {
            m_solver = std::make_shared<SerialSolver>(m_link);
        }
        object = m_solver;
    }
    void EnterOWIMode(std::int16_t p, std::int32_t& result) override {
        result = m_link->number(Command::EnterOWIMode, part(p));
    }
    void ExitOWIMode(std::int16_t p, std::int32_t& status) override {
        status = m_link->number(Command::ExitOWIMode, part(p));
    }
    void PowerOnChip(std::int16_t p, std::int32_t& status) override {
        status = m_link->number(Command::PowerOnChip, part(p));
    }
    void SelectOutputChannel(std::int16_t p, std::int32_t& status) override {
        status = m_link->number(Command::SelectOutputChannel, part(p));
    }
    void PowerOffChip(std::int16_t p, std::int32_t& status) override {
        status = m_link->number(Command::PowerOffChip, part(p));
    }
    void EnterADCMode(std::int16_t p, std::int32_t& status) override {
        status = m_link->number(Command::EnterADCMode, part(p));
    }
    void GetDACCalibration(std::int16_t p, float& k0, float& b0, float& k1, float& b1,
                           std::int32_t& status) override {
        PayloadReader out = m_link->call(Command::GetDACCalibration, part(p), 20);
        k0 = out.single();
        b0 = out.single();
        k1 = out.single();
        b1 = out.single();
        status = out.i32();
    }
    void GetHardwareVersion(std::int32_t& major, std::int32_t& minor, std::int32_t& build,
                            std::int32_t& failed) override {
        PayloadReader out = m_link->call(Command::GetHardwareVersion, {}, 16);
        major = out.i32();
        minor = out.i32();
        build = out.i32();
        failed = out.i32();
    }
    void SetOutputMode(std::int16_t p, std::int16_t outputMode, std::int16_t pwmFrequency,
                       std::int16_t pwmPolarity, std::int32_t& failed) override {
        failed = m_link->number(Command::SetOutputMode,
                                part(p).i16(outputMode).i16(pwmFrequency).i16(pwmPolarity));
    }

  private:
    std::shared_ptr<Link> m_link;
    std::shared_ptr<MemoryAccess> m_memory;
    std::shared_ptr<SolverAccess> m_solver;
};

}  // namespace

std::shared_ptr<QZ7734Device> CreateSerialDevice(const SerialSettings& settings,
                                                 std::shared_ptr<SerialPorts> ports,
                                                 std::shared_ptr<SerialLine::Counts> counts) {
    return std::make_shared<SerialDevice>(
        std::make_shared<Link>(settings, std::move(ports), std::move(counts)));
}

SerialProgrammer::SerialProgrammer(SerialSettings settings)
    : m_settings(std::move(settings)), m_ports(std::make_shared<SerialPorts>(m_settings)) {}

std::shared_ptr<QZ7734Device> SerialProgrammer::create(const QString& /*progId*/) {
    return CreateSerialDevice(m_settings, m_ports);
}

}  // namespace rk31::serial
