#pragma once

// What the fuzzers that reach the device share. Apart from FuzzSupport.h because the number and
// settings fuzzers link the domain module alone, whose include root holds no device headers.

#include <QStringList>
#include <memory>

#include "FuzzSupport.h"
#include "device/Application.h"
#include "device/ChipStateMachine.h"
#include "device/DeviceSession.h"
#include "device/WindowContext.h"
#include "sim/SimulatedProgrammer.h"

namespace rk31::fuzz {

// A window whose dialogs are all cancelled at once: the procedures under fuzzing open none, and
// one they open by mistake must not wait for a user.
class NoWindowUi : public WindowUi {
  public:
    std::unique_ptr<WaitWindow> createWaitWindow(const QString&) override {
        return std::make_unique<NoWait>();
    }
    void processEvents() override {}
    std::int16_t choosePort() override { return 0; }
    bool confirmCommLock() override { return false; }
    void showAbout(const QString&) override {}
    void showLinearGraph(std::int16_t, std::int16_t, std::int16_t, std::int16_t) override {}
    void showRealTimeDisplay(std::int16_t, std::int16_t) override {}
    void showAdvanced(std::int16_t, std::int16_t) override {}

  private:
    class NoWait : public WaitWindow {
      public:
        void show() override {}
        void TextChange(const QString&) override {}
    };
};

// The application on a simulated programmer of its own, connected on COM1 as the Connect command
// leaves it. Each input gets a fresh one, so that a finding replays from its input alone.
struct ConnectedBench {
    explicit ConnectedBench(const sim::SimConfig& config = {})
        : programmer(config), app(StartSettings{}, prompts, pause, &programmer) {
        app.session().ConnectProgrammer(1, prompts);
        ChipStateMachine(app.session(), prompts, pause).SetConnectionState(1);
        // Anything else is a broken bench, not a finding in the code under test.
        RK31_FUZZ_CHECK(app.session().hasDevice() && prompts.messages == 0);
    }

    DeviceSession& session() { return app.session(); }
    sim::SimulatedBox& box() { return programmer.box(); }
    QStringList trace() const { return programmer.simulation().box->trace(); }

    QuietPrompts prompts;
    NoPause pause;
    sim::SimulatedProgrammer programmer;
    Application app;
};

}  // namespace rk31::fuzz
