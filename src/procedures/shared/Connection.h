#pragma once

namespace rk31 {

struct WindowContext;

// What the connect button did.
enum class ConnectOutcome {
    Connected,     // the session is open (its channel may have failed to open, as reported)
    NotChosen,     // the port dialog chose not to connect
    Failed,        // creating the session failed as a whole; the window stays offline
    Disconnected,  // the session is closed
};

// The main windows' connect button: "Connect" opens the port dialog and connects to the chosen
// port; "Disconnect" (or any other caption) closes the session. The caller brings its own
// controls in line with the outcome.
ConnectOutcome ConnectCommand(WindowContext& ctx);

// The About button: the programmer's hardware version, then the About box.
void AboutCommand(WindowContext& ctx);

}  // namespace rk31
