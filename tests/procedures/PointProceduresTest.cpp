// The preparation and Program sequences the point-programming windows run, on the simulated
// programmer and a window of plain values.
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

class PointWindowLogic : public ::testing::Test {
  protected:
    void SetUp() override { start({}); }

    void start(const sim::SimConfig& config,
               const PointWindowTraits& traits = kTwoPointsWithPower) {
        ctx.reset();
        app.reset();
        programmer = std::make_unique<sim::SimulatedProgrammer>(config);
        app = std::make_unique<Application>(StartSettings{}, prompts, pause, programmer.get());
        view = std::make_unique<ValueControlView>(PointControls(traits));
        ctx = std::make_unique<WindowContext>(FamilyOf(traits), app->session(), *view, prompts,
                                              pause, ui);
        ctx->pointWindowHasPower = true;
        app->session().ConnectProgrammer(1, prompts);
        Machine(*ctx).SetConnectionState(1);
        clearTrace();
    }
    QStringList trace() const { return programmer->box().trace(); }
    void clearTrace() { programmer->box().clearTrace(); }

    // The one-part window's boxes as the user would leave them after validation.
    void enterTwoPoints(float a, float levelA, float b, float levelB, int part = 0) {
        auto& p = ctx->params[part];
        p.Angle[0] = a;
        p.Level[0] = levelA;
        p.Angle[1] = b;
        p.Level[1] = levelB;
        const int first = ctx->family == WindowFamily::DualPoint ? part * 2 : 0;
        view->setText("Level", first, QString::number(levelA));
        view->setText("Level", first + 1, QString::number(levelB));
    }
    DeviceSession& session() { return app->session(); }

    test::FakeUi ui;
    test::ScriptedPrompts prompts;
    test::RecordingPause pause;
    std::unique_ptr<sim::SimulatedProgrammer> programmer;
    std::unique_ptr<Application> app;
    std::unique_ptr<ValueControlView> view;
    std::unique_ptr<WindowContext> ctx;
};

const QStringList kPrepareWaitTexts = {"wait: Getting VDD of device...  Please Wait...",
                                       "show",
                                       "text: Verifying communication status... Please Wait...",
                                       "text: Clearing Solver...  Please Wait...",
                                       "text: Programming EEPROM...  Please Wait...",
                                       "text: System is self correcting... Please Wait...",
                                       "close"};

}  // namespace

TEST_F(PointWindowLogic, PrepareDeviceReadiesTheSelectedPartOnce) {
    view->setListIndex("PartSel", -1, 1);
    PrepareDevice(*ctx, static_cast<std::int16_t>(ctx->selectedPart()));
    EXPECT_EQ(trace(),
              QStringList({"PowerOnChip(1)", "EnterADCMode(1)", "MeasureVDD(1)", "EnterOWIMode(1)",
                           "GetMemoryAccess()", "ReadMemory(1, &H48)", "GetSolverAccess()",
                           "ClearSolverSettings(1)", "ProgramEEPROM(1)", "EnterOWIMode(1)",
                           "GetDACCalibration(1)"}));
    EXPECT_EQ(ui.events, kPrepareWaitTexts);
    EXPECT_TRUE(prompts.messages.isEmpty());
    EXPECT_TRUE(ctx->powered);
    EXPECT_TRUE(view->isEnabled("SetpointA"));
    EXPECT_FALSE(view->isEnabled("PowerOn"));
    EXPECT_FALSE(view->isEnabled("SetpointB"));

    clearTrace();
    PrepareDevice(*ctx, 1);  // once per power-up
    EXPECT_TRUE(trace().isEmpty());
}

TEST_F(PointWindowLogic, PrepareDeviceForBothParts) {
    start(sim::ParseSimConfig("clear_fail=both;eeprom_fail=2", nullptr), kTwoPointsDualWithPower);
    PrepareDevice(*ctx, kBothParts);
    EXPECT_EQ(
        trace(),
        QStringList({"PowerOnChip(0)", "EnterADCMode(0)", "PowerOnChip(1)", "EnterADCMode(1)",
                     "MeasureVDD(3)", "EnterOWIMode(3)", "GetMemoryAccess()", "ReadMemory(0, &H48)",
                     "GetMemoryAccess()", "ReadMemory(1, &H48)", "GetSolverAccess()",
                     "ClearSolverSettings(0)", "ClearSolverSettings(1)", "ProgramEEPROM(0)",
                     "ProgramEEPROM(1)", "EnterOWIMode(3)", "GetDACCalibration(3)"}));
    // Failures do not stop the preparation; one message per failed clear, one for the EEPROM.
    EXPECT_EQ(prompts.messages,
              QStringList({"Errors in ClearSolverSettings!", "Errors in ClearSolverSettings!",
                           "Failed in programming device"}));
    EXPECT_EQ(pause.pauses, std::vector<int>{500});
}

TEST_F(PointWindowLogic, PrepareDeviceGivesUpOnAMissingSupplyOrChip) {
    for (const char* fault : {"no_supply=1", "id_error=1"}) {
        SCOPED_TRACE(fault);
        start(sim::ParseSimConfig(fault, nullptr));
        prompts.messages.clear();
        PrepareDevice(*ctx, 0);
        EXPECT_FALSE(ctx->powered);
        EXPECT_EQ(session().ChipState[0], 0);
        EXPECT_EQ(trace().mid(trace().size() - 3),
                  QStringList({"PowerOffChip(0)", "EnterADCMode(0)", "SelectOutputChannel(0)"}));
        EXPECT_FALSE(trace().contains("ClearSolverSettings(0)"));
        EXPECT_EQ(prompts.messages, std::string(fault) == "no_supply=1"
                                        ? QStringList()
                                        : QStringList({"Read Error! Please Check chip connections!",
                                                       "Please Reset hardware and try again!"}));
        EXPECT_EQ(ui.events.last(), "close");
    }
}

TEST_F(PointWindowLogic, ProgramsTwoTaughtPoints) {
    PrepareDevice(*ctx, 0);
    clearTrace();
    ui.events.clear();
    enterTwoPoints(200, 20, 100, 80);
    view->setValue("clockwise", -1, 1);
    PointProgramAction(*ctx, 0);
    EXPECT_TRUE(prompts.messages.isEmpty());
    // Reversed (clockwise): B first; C and D repeat B's angle with integer zero levels.
    EXPECT_EQ(
        trace(),
        QStringList(
            {"GetMemoryAccess()", "SetSolverParameter(0, 1, Single:5, 1)",
             "SetSolverParameter(0, 2, Single:95, 1)", "SetSolverParameter(0, 3, Single:260, 1)",
             "SetSolverParameter(0, 4, Single:80, 1)", "SetSolverParameter(0, 8, Single:100, 1)",
             "SetSolverParameter(0, 5, Single:20, 1)", "SetSolverParameter(0, 9, Single:200, 1)",
             "SetSolverParameter(0, 6, Integer:0, 1)", "SetSolverParameter(0, 10, Single:200, 1)",
             "SetSolverParameter(0, 7, Integer:0, 1)", "SetSolverParameter(0, 11, Single:200, 1)",
             "GetSolverAccess()", "WriteBufferToDevice(0)", "ProgramEEPROM(0)",
             "EnterOWIMode(0)"}));
    EXPECT_EQ(ui.events, QStringList({"wait: Configuring Solver...  Please Wait...", "show",
                                      "text: Programming EEPROM...  Please Wait...", "close"}));
    EXPECT_TRUE(session().rounded.PointsReversed[0]);
}

TEST_F(PointWindowLogic, TwoPointRefusals) {
    const struct {
        const char* name;
        float a, levelA, b, levelB;
        int emptyLevel;  // Level box emptied by the user, -1 for none
        QStringList messages;
    } cases[] = {
        {"angle out of range",
         500,
         20,
         100,
         80,
         -1,
         {"Error Angles of Point A and Point B input", "Error: Not 2 points Mode!"}},
        {"equal rounded angles",
         100.2f,
         20,
         99.8f,
         80,
         -1,
         {"Rules: Wrong in configure 2 points!", "Error: Not 2 points Mode!"}},
        {"level A empty",
         100,
         0,
         200,
         80,
         0,
         {"Please noted: Part#1-Level#0 is Empty!", "Error: Not 2 points Mode!"}},
        {"level B empty",
         100,
         20,
         200,
         0,
         1,
         {"Please noted: Part#1-Level#1 is Empty!", "Error: Not 2 points Mode!"}},
        {"equal rounded levels",
         100,
         50.4f,
         200,
         49.6f,
         -1,
         {"Please noted: Part#1-Level#0 is the same as Part#1-Level#1 !",
          "Error: Not 2 points Mode!"}},
    };
    PrepareDevice(*ctx, 0);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        enterTwoPoints(c.a, c.levelA, c.b, c.levelB);
        if (c.emptyLevel >= 0) {
            view->setText("Level", c.emptyLevel, QString());
        }
        clearTrace();
        prompts.messages.clear();
        PointProgramAction(*ctx, 0);
        EXPECT_EQ(prompts.messages, c.messages);
        EXPECT_FALSE(trace().contains("WriteBufferToDevice(0)"));
    }
    // The equal levels were refused by emptying Level B and validating it again.
    EXPECT_EQ(view->text("Level", 1), QString());
    EXPECT_EQ(ctx->params[0].Level[1], 0.0f);
}

TEST_F(PointWindowLogic, DualWindowProgramsBothPartsAndReportsTheEepromOnce) {
    start(sim::ParseSimConfig("eeprom_fail=both", nullptr), kTwoPointsDualWithPower);
    PrepareDevice(*ctx, kBothParts);
    enterTwoPoints(100, 20, 200, 80, 0);
    enterTwoPoints(10, 30, 50, 70, 1);
    clearTrace();
    prompts.messages.clear();
    PointProgramAction(*ctx, kBothParts);
    EXPECT_EQ(prompts.messages, QStringList{"Failed in programming device"});
    const QStringList tail = trace().mid(trace().indexOf("GetSolverAccess()"));
    EXPECT_EQ(tail, QStringList({"GetSolverAccess()", "WriteBufferToDevice(0)", "GetSolverAccess()",
                                 "WriteBufferToDevice(1)", "ProgramEEPROM(0)", "ProgramEEPROM(1)",
                                 "EnterOWIMode(3)"}));
}
