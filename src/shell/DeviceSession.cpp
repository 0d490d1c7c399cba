#include "shell/DeviceSession.h"

#include "core/Prompts.h"
#include "link/DeviceFactory.h"
#include "rk31/DeviceError.h"

namespace rk31 {

DeviceSession& DeviceSession::instance() {
    static DeviceSession session;
    return session;
}

QZ7734Device& DeviceSession::device() const {
    if (!m_device) {
        throw DeviceError(QStringLiteral("Programmer is not connected!"));
    }
    return *m_device;
}

void DeviceSession::ConnectProgrammer(std::int16_t port, Prompts& prompts) {
    m_device = DeviceFactory::Create(QString::fromLatin1(kDeviceProgId));
    if (!m_device) {
        prompts.message(QStringLiteral("Error: CANNOT Create Objects!"));
        return;
    }
    std::int32_t failed = 0;
    m_device->OpenChannel(QVariant(static_cast<std::int32_t>(port)), failed);
    if (failed != 0) {
        prompts.message(QStringLiteral("Failed in Connecting Channel"));
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

void DeviceSession::resetToFreshProcess() {
    m_device.reset();
    ResetForWindowLoad(true);
    rounded = RoundedImages{};
    CurveTable = CurveTables{};
}

}  // namespace rk31
