// The wait windows of the point windows' preparation and Program, on the simulated programmer
// and a window of plain values: a stand-in for the window is the one place their texts show.
// The device calls and messages of the same procedures are asserted through the real windows.
#include <gtest/gtest.h>

#include "device/Application.h"
#include "device/ChipStateMachine.h"
#include "device/DeviceSession.h"
#include "procedures/points/PointPreparation.h"
#include "sim/SimulatedProgrammer.h"
#include "support/FakeWindow.h"
#include "support/ScriptedPrompts.h"

using namespace rk31;

namespace {

// A connected "/4" window over a simulator with `faults`.
struct ValueWindow {
    explicit ValueWindow(const char* faults = "")
        : programmer(sim::ParseSimConfig(faults, nullptr)),
          app(StartSettings{}, prompts, pause, &programmer),
          ctx(FamilyOf(kTwoPointsWithPower), app.session(), view, prompts, pause, ui) {
        ctx.pointWindowHasPower = true;
        app.session().ConnectProgrammer(1, prompts);
        Machine(ctx).SetConnectionState(1);
    }

    test::FakeUi ui;
    test::ScriptedPrompts prompts;
    test::RecordingPause pause;
    ValueControlView view{PointControls(kTwoPointsWithPower)};
    sim::SimulatedProgrammer programmer;
    Application app;
    WindowContext ctx;
};

}  // namespace

TEST(PointWindowLogic, PreparationShowsItsStepsAndClosesWhereItGivesUp) {
    const QStringList steps = {"wait: Getting VDD of device...  Please Wait...",
                               "show",
                               "text: Verifying communication status... Please Wait...",
                               "text: Clearing Solver...  Please Wait...",
                               "text: Programming EEPROM...  Please Wait...",
                               "text: System is self correcting... Please Wait..."};
    for (const auto& [faults, shown] : {std::pair{"no_supply=1", 2}, {"id_error=1", 3}, {"", 6}}) {
        SCOPED_TRACE(faults);
        ValueWindow w(faults);
        PrepareDevice(w.ctx, 0);
        EXPECT_EQ(w.ui.events, steps.mid(0, shown) << "close");
        // Once per power-up; a preparation that gave up is free to start again.
        w.programmer.box().clearTrace();
        PrepareDevice(w.ctx, 0);
        EXPECT_EQ(w.programmer.box().trace().isEmpty(), w.ctx.powered);
    }
}

TEST(PointWindowLogic, ProgramShowsItsSteps) {
    ValueWindow w;
    PrepareDevice(w.ctx, 0);
    w.ui.events.clear();
    w.ctx.params[0].Angle[0] = 100;
    w.ctx.params[0].Angle[1] = 200;
    w.ctx.params[0].Level = {20, 80};
    w.view.setText("Level", 0, "20");
    w.view.setText("Level", 1, "80");
    EXPECT_TRUE(PointProgramAction(w.ctx, 0));
    EXPECT_EQ(w.ui.events, QStringList({"wait: Configuring Solver...  Please Wait...", "show",
                                        "text: Programming EEPROM...  Please Wait...", "close"}));
}
