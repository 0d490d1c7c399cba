#include "device/DeviceSession.h"

#include "domain/Messages.h"
#include "domain/Prompts.h"
#include "rk31/DeviceError.h"

namespace rk31 {

QZ7734Device& DeviceSession::device() const {
    if (!m_device) {
        throw DeviceError(kNotConnectedText);
    }
    return *m_device;
}

std::shared_ptr<MemoryAccess> DeviceSession::memoryAccess() const {
    std::shared_ptr<MemoryAccess> memory;
    device().GetMemoryAccess(memory);
    if (!memory) {
        throw DeviceError(kNoMemoryAccessText);
    }
    return memory;
}

std::shared_ptr<SolverAccess> DeviceSession::solverAccess() const {
    std::shared_ptr<SolverAccess> solver;
    device().GetSolverAccess(solver);
    if (!solver) {
        throw DeviceError(kNoSolverAccessText);
    }
    return solver;
}

void DeviceSession::ConnectProgrammer(std::int16_t port, Prompts& prompts) {
    m_device = m_make ? m_make() : nullptr;
    if (!m_device) {
        prompts.message(kCannotCreateObjectsText);
        return;
    }
    std::int32_t failed = 0;
    m_device->OpenChannel(QVariant(static_cast<std::int32_t>(port)), failed);
    if (failed != 0) {
        prompts.message(kChannelFailedText);
    }
}

void DeviceSession::DisconnectProgrammer() {
    if (!m_device) {
        return;
    }
    // Release the object even if closing the channel fails as a whole.
    const auto device = std::move(m_device);
    m_device.reset();
    device->CloseChannel(-1);
}

void DeviceSession::ResetForWindowLoad(bool clearCommLocked) {
    K = {kDefaultK, kDefaultK};
    sysoffset = 0;
    B = {0, 0};
    if (clearCommLocked) {
        CommLocked = {false, false};
    }
    ProgrammerConnected = 0;
    ChipState = {0, 0};
    RefusedOwiFrom = {};
}

}  // namespace rk31
