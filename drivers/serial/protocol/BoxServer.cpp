#include "serial/protocol/BoxServer.h"

#include "rk31/DeviceError.h"

namespace rk31::box {

namespace {

Frame response(const Frame& request, Status status, const QByteArray& values = {}) {
    PayloadWriter out;
    out.u8(static_cast<std::uint8_t>(status));
    return {request.sequence, static_cast<std::uint8_t>(request.command | kResponseBit),
            out.bytes() + values};
}

// The device object's access objects stand for the box's memory and solver commands; the box
// asks for them itself when a program sends such a command without having asked.
template <typename Access, typename Getter>
Access& access(std::shared_ptr<Access>& held, QZ7734Device& device, Getter get) {
    if (!held) {
        (device.*get)(held);
    }
    if (!held) {
        throw DeviceError(QStringLiteral("The box has no such access object!"));
    }
    return *held;
}

}  // namespace

Frame BoxServer::garbled(const Frame& request) {
    return response(request, Status::GarbledRequest);
}

QZ7734Device& BoxServer::device() {
    if (!m_device) {
        m_device = m_make();
        m_memory.reset();
        m_solver.reset();
    }
    return *m_device;
}

MemoryAccess& BoxServer::memory() {
    return access(m_memory, device(), &QZ7734Device::GetMemoryAccess);
}

SolverAccess& BoxServer::solver() {
    return access(m_solver, device(), &QZ7734Device::GetSolverAccess);
}

Frame BoxServer::answer(const Frame& request) {
    if (!IsKnownCommand(request.command)) {
        return response(request, Status::UnknownCommand);
    }
    PayloadReader in(request.payload);
    Status status = Status::Ok;
    try {
        const QByteArray values = call(static_cast<Command>(request.command), in, status);
        return response(request, status, values);
    } catch (const DeviceError& error) {
        return response(request, Status::DeviceError,
                        PayloadWriter().text(error.description()).bytes());
    }
}

QByteArray BoxServer::call(Command command, PayloadReader& in, Status& status) {
    PayloadWriter out;
    // Every request's inputs are read before the device is touched: a request that does not fit
    // its command does nothing.
    const auto inputsFit = [&in, &status] {
        if (!in.complete()) {
            status = Status::BadRequest;
            return false;
        }
        return true;
    };
    using PartCall = void (QZ7734Device::*)(std::int16_t, std::int32_t&);
    const auto partCall = [&](PartCall method) {
        const std::int16_t part = in.i16();
        if (inputsFit()) {
            std::int32_t value = 0;
            (device().*method)(part, value);
            out.i32(value);
        }
    };
    switch (command) {
        case Command::Hello: {
            in.u8();
            if (inputsFit()) {
                m_device.reset();
                device();
                out.u8(kProtocolVersion).text(QStringLiteral("rk31-boxsim"));
            }
            break;
        }
        case Command::OpenChannel: {
            const QString port = in.text();
            if (inputsFit()) {
                std::int32_t failed = 0;
                device().OpenChannel(QVariant(port), failed);
                out.i32(failed);
            }
            break;
        }
        case Command::CloseChannel: {
            const std::int32_t channel = in.i32();
            if (inputsFit()) {
                device().CloseChannel(channel);
            }
            break;
        }
        case Command::ProgramEEPROM:
            partCall(&QZ7734Device::ProgramEEPROM);
            break;
        case Command::MeasureOutput: {
            const std::int16_t part = in.i16();
            const std::int16_t one = in.i16();
            if (inputsFit()) {
                float value = 0;
                device().MeasureOutput(part, one, value);
                out.single(value);
            }
            break;
        }
        case Command::MeasureVDD:
        case Command::ReadAngle: {
            const std::int16_t part = in.i16();
            if (inputsFit()) {
                float value = 0;
                if (command == Command::MeasureVDD) {
                    device().MeasureVDD(part, value);
                } else {
                    device().ReadAngle(part, value);
                }
                out.single(value);
            }
            break;
        }
        case Command::EnterOWIMode:
            partCall(&QZ7734Device::EnterOWIMode);
            break;
        case Command::ExitOWIMode:
            partCall(&QZ7734Device::ExitOWIMode);
            break;
        case Command::PowerOnChip:
            partCall(&QZ7734Device::PowerOnChip);
            break;
        case Command::SelectOutputChannel:
            partCall(&QZ7734Device::SelectOutputChannel);
            break;
        case Command::PowerOffChip:
            partCall(&QZ7734Device::PowerOffChip);
            break;
        case Command::EnterADCMode:
            partCall(&QZ7734Device::EnterADCMode);
            break;
        case Command::GetDACCalibration: {
            const std::int16_t part = in.i16();
            if (inputsFit()) {
                float k0 = 0, b0 = 0, k1 = 0, b1 = 0;
                std::int32_t dacStatus = 0;
                device().GetDACCalibration(part, k0, b0, k1, b1, dacStatus);
                out.single(k0).single(b0).single(k1).single(b1).i32(dacStatus);
            }
            break;
        }
        case Command::GetHardwareVersion: {
            if (inputsFit()) {
                std::int32_t major = 0, minor = 0, build = 0, failed = 0;
                device().GetHardwareVersion(major, minor, build, failed);
                out.i32(major).i32(minor).i32(build).i32(failed);
            }
            break;
        }
        case Command::SetOutputMode: {
            const std::int16_t part = in.i16();
            const std::int16_t mode = in.i16();
            const std::int16_t frequency = in.i16();
            const std::int16_t polarity = in.i16();
            if (inputsFit()) {
                std::int32_t failed = 0;
                device().SetOutputMode(part, mode, frequency, polarity, failed);
                out.i32(failed);
            }
            break;
        }
        case Command::GetMemoryAccess:
        case Command::GetSolverAccess: {
            if (inputsFit()) {
                if (command == Command::GetMemoryAccess) {
                    device().GetMemoryAccess(m_memory);
                } else {
                    device().GetSolverAccess(m_solver);
                }
            }
            break;
        }
        case Command::WriteMemory: {
            const std::int16_t part = in.i16();
            const std::int32_t address = in.i32();
            const std::int32_t data = in.i32();
            if (inputsFit()) {
                memory().WriteMemory(part, address, data);
            }
            break;
        }
        case Command::ReadMemory: {
            const std::int16_t part = in.i16();
            const std::int32_t address = in.i32();
            if (inputsFit()) {
                std::int32_t data = 0;
                memory().ReadMemory(part, address, data);
                out.i32(data);
            }
            break;
        }
        case Command::SetSolverParameter: {
            const std::int16_t part = in.i16();
            const std::int16_t id = in.i16();
            SolverValue value;
            switch (static_cast<ValueKind>(in.u8())) {
                case ValueKind::Single:
                    value = in.single();
                    break;
                case ValueKind::Long:
                    value = in.i32();
                    break;
                case ValueKind::Integer:
                    value = in.i16();
                    break;
                default:
                    status = Status::BadRequest;
                    return {};
            }
            const std::int16_t mode = in.i16();
            if (inputsFit()) {
                std::int32_t failed = 0;
                memory().SetSolverParameter(part, id, value, mode, failed);
                out.i32(failed);
            }
            break;
        }
        case Command::CommLock: {
            const std::int16_t part = in.i16();
            if (inputsFit()) {
                std::int32_t failed = 0;
                solver().CommLock(part, failed);
                out.i32(failed);
            }
            break;
        }
        case Command::WriteBufferToDevice: {
            const std::int16_t part = in.i16();
            if (inputsFit()) {
                std::int32_t code = 0;
                solver().WriteBufferToDevice(part, code);
                out.i32(code);
            }
            break;
        }
        case Command::ClearSolverSettings: {
            const std::int16_t part = in.i16();
            if (inputsFit()) {
                std::int32_t failed = 0;
                solver().ClearSolverSettings(part, failed);
                out.i32(failed);
            }
            break;
        }
    }
    return out.bytes();
}

}  // namespace rk31::box
