#include "commands/Connection.h"
#include "chipsession/ChipStateMachine.h"

#include "chipsession/UpdateControl.h"
#include "commands/SessionControls.h"
#include "context/ControlView.h"
#include "context/WindowContext.h"
#include "core/Prompts.h"
#include "rk31/DeviceError.h"
#include "shell/DeviceSession.h"

namespace rk31 {

namespace {

const QString kConnect = QStringLiteral("Connect");
const QString kDisconnect = QStringLiteral("Disconnect");

bool hasPowerCommand(const WindowContext& ctx) {
    return ctx.pointWindowHasPower;
}

void connect(WindowContext& ctx) {
    const std::int16_t port = ctx.ui.choosePort();
    if (port != 0) {
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
            if (ctx.isTwoPart()) {
                UpdateControl(ctx);
            }
            return;
        }
        try {
            Machine(ctx).SetConnectionState(1);
        } catch (const DeviceError& e) {
            // The session is open, as after a channel that failed to open; a part that could not
            // be powered off keeps its recorded state, and the power commands can try again.
            ctx.prompts.message(e.description());
        }
        if (ctx.isTwoPart()) {
            UpdateControl(ctx);
        } else {
            ctx.powered = false;
        }
        ctx.view.setText(ctl::connect, -1, kDisconnect);
    }
    if (!ctx.isTwoPart()) {
        ReadyPointButtons(ctx);
    }
}

void disconnect(WindowContext& ctx) {
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
    if (ctx.isTwoPart()) {
        UpdateControl(ctx);
    }
    ctx.view.setText(ctl::connect, -1, kConnect);
    if (!ctx.isTwoPart()) {
        ctx.view.setEnabled(ctl::SetpointA, -1, false);
        ctx.view.setEnabled(ctl::SetpointB, -1, false);
        if (hasPowerCommand(ctx)) {
            ctx.view.setEnabled(ctl::PowerOn, -1, false);
        }
    }
}

}  // namespace

void ConnectCommand(WindowContext& ctx) {
    if (ctx.view.text(ctl::connect) == kConnect) {
        connect(ctx);
    } else {
        disconnect(ctx);
    }
}

}  // namespace rk31
