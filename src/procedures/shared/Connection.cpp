#include "procedures/shared/Connection.h"

#include "device/ChipStateMachine.h"
#include "device/DeviceSession.h"
#include "device/WindowContext.h"
#include "domain/ControlView.h"
#include "domain/Prompts.h"
#include "rk31/DeviceError.h"

namespace rk31 {

namespace {

ConnectOutcome connect(WindowContext& ctx) {
    const std::int16_t port = ctx.ui.choosePort();
    if (port == 0) {
        return ConnectOutcome::NotChosen;
    }
    if (ctx.isTwoPart()) {
        ctx.view.setText(ctl::status, -1,
                         QStringLiteral("In transition to Connecting with Programmer..."));
    }
    ctx.ui.processEvents();
    try {
        ctx.session.ConnectProgrammer(port, ctx.prompts);
    } catch (const DeviceError& e) {
        // The window stays offline: the next connect replaces whatever object was made.
        ctx.session.ProgrammerConnected = 0;
        ctx.prompts.message(e.description());
        return ConnectOutcome::Failed;
    }
    try {
        Machine(ctx).SetConnectionState(1);
    } catch (const DeviceError& e) {
        // The session is open, as after a channel that failed to open; a part that could not
        // be powered off keeps its recorded state, and the power commands can try again.
        ctx.prompts.message(e.description());
    }
    ctx.powered = false;
    ctx.view.setText(ctl::connect, -1, kDisconnectCaption);
    return ConnectOutcome::Connected;
}

ConnectOutcome disconnect(WindowContext& ctx) {
    if (ctx.isTwoPart()) {
        ctx.view.setText(
            ctl::status, -1,
            QStringLiteral("Disconnect with Programmer...In transition to Offline Mode..."));
        ctx.ui.processEvents();
    }
    try {
        ctx.session.DisconnectProgrammer();
    } catch (const DeviceError& e) {
        // The object is released whatever closing the channel answered.
        ctx.prompts.message(e.description());
    }
    Machine(ctx).SetConnectionState(0);
    ctx.view.setText(ctl::connect, -1, kConnectCaption);
    return ConnectOutcome::Disconnected;
}

}  // namespace

ConnectOutcome ConnectCommand(WindowContext& ctx) {
    return ctx.view.text(ctl::connect) == kConnectCaption ? connect(ctx) : disconnect(ctx);
}

void AboutCommand(WindowContext& ctx) {
    QString version = QStringLiteral("0.0.0");
    if (!ctx.session.hasDevice()) {
        ctx.prompts.message(QStringLiteral(
            "Cannot read version, Programmer is not connected or Device is not powered on!"));
    } else {
        std::int32_t major = 0, minor = 0, build = 0, failed = 0;
        ctx.session.device().GetHardwareVersion(major, minor, build, failed);
        if (failed != 0) {
            ctx.prompts.message(QStringLiteral("Cannot Read Programmer Version!"));
        }
        version = QStringLiteral("%1.%2.%3").arg(major).arg(minor).arg(build);
    }
    ctx.ui.showAbout(version);
}

}  // namespace rk31
