#pragma once

namespace rk31 {

struct WindowContext;

// The main windows' connect button: "Connect" opens the port dialog and connects to the chosen
// port; "Disconnect" (or any other caption) closes the session.
void ConnectCommand(WindowContext& ctx);

}  // namespace rk31
