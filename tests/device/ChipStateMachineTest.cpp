#include <gtest/gtest.h>

#include "device/ChipStateMachine.h"
#include "device/DeviceSession.h"
#include "device/LoggingDevice.h"
#include "rk31/DeviceError.h"
#include "sim/SimulatedProgrammer.h"
#include "support/ScriptedPrompts.h"

using namespace rk31;

namespace {

// A connected session on the simulated programmer, trace emptied.
class StateMachineTest : public ::testing::Test {
  protected:
    void SetUp() override {
        session.ConnectProgrammer(1, prompts);
        simulation.box->clearTrace();
    }

    QStringList trace() const { return simulation.box->trace(); }

    sim::Simulation simulation{sim::SimConfig{}};
    DeviceSession session{[this] { return sim::CreateSimulatedDevice(simulation.box); }};
    test::ScriptedPrompts prompts;
    test::RecordingPause pause;
    ChipStateMachine machine{session, prompts, pause};
};

struct Cell {
    const char* name;
    std::int16_t index;
    bool locked0;
    bool locked1;
    std::int32_t from;
    std::int32_t to;
    bool result;
    QStringList calls;
};

// clang-format off
const Cell kCells[] = {
    // One part to ADC mode.
    {"adc-from-off", 0, false, false, 0, 1, true, {"PowerOnChip(0)", "EnterADCMode(0)"}},
    {"adc-from-adc", 0, false, false, 1, 1, true, {}},
    {"adc-from-owi", 1, false, false, 2, 1, true, {"ExitOWIMode(1)", "EnterADCMode(1)"}},
    {"adc-from-other", 0, false, false, 9, 1, true, {}},
    {"adc-locked-from-off", 0, true, false, 0, 1, true, {"EnterADCMode(0)"}},
    {"adc-locked-from-adc", 0, true, false, 1, 1, true, {"EnterADCMode(0)"}},
    {"adc-locked-from-owi", 1, false, true, 2, 1, true, {"EnterADCMode(1)"}},
    {"adc-locked-from-other", 0, true, false, 7, 1, true, {"EnterADCMode(0)"}},
    // One part to OWI mode.
    {"owi-from-off", 0, false, false, 0, 2, true, {"PowerOnChip(0)", "EnterOWIMode(0)"}},
    {"owi-from-adc", 1, false, false, 1, 2, true, {"EnterOWIMode(1)"}},
    {"owi-from-owi", 0, false, false, 2, 2, true, {"EnterOWIMode(0)"}},
    {"owi-from-other", 0, false, false, 4, 2, true, {}},
    {"owi-locked-from-off", 0, true, false, 0, 2, false, {}},
    {"owi-locked-from-adc", 1, false, true, 1, 2, false, {}},
    {"owi-locked-from-owi", 0, true, false, 2, 2, false, {}},
    // One part to Power Off, locked or not.
    {"off-from-off", 0, false, false, 0, 0, true, {}},
    {"off-from-adc", 0, true, false, 1, 0, true, {"PowerOffChip(0)", "EnterADCMode(0)", "SelectOutputChannel(0)"}},
    {"off-from-owi", 1, false, false, 2, 0, true, {"PowerOffChip(1)", "EnterADCMode(1)", "SelectOutputChannel(1)"}},
    {"off-from-other", 1, false, false, 3, 0, true, {}},
    // Both parts to ADC mode.
    {"both-adc-from-off", 2, false, false, 0, 1, true, {"PowerOnChip(0)", "PowerOnChip(1)", "EnterADCMode(0)", "EnterADCMode(1)"}},
    {"both-adc-from-owi", 2, true, false, 2, 1, true, {"ExitOWIMode(0)", "ExitOWIMode(1)", "EnterADCMode(0)", "EnterADCMode(1)"}},
    {"both-adc-from-adc", 2, false, false, 1, 1, true, {}},
    {"both-adc-both-locked", 2, true, true, 0, 1, true, {"EnterADCMode(0)", "EnterADCMode(1)"}},
    // Both parts to OWI mode.
    {"both-owi-from-off", 2, false, false, 0, 2, true, {"PowerOnChip(0)", "PowerOnChip(1)", "EnterOWIMode(3)"}},
    {"both-owi-from-adc", 2, false, false, 1, 2, true, {"EnterOWIMode(3)"}},
    {"both-owi-from-owi", 2, false, false, 2, 2, true, {"EnterOWIMode(3)"}},
    {"both-owi-from-other", 2, false, false, 6, 2, true, {}},
    {"both-owi-one-locked", 2, false, true, 1, 2, false, {}},
    // Both parts to Power Off: the output channel goes back to Part#1 only.
    {"both-off-from-adc", 2, false, false, 1, 0, true, {"PowerOffChip(0)", "PowerOffChip(1)", "EnterADCMode(0)", "EnterADCMode(1)", "SelectOutputChannel(0)"}},
    {"both-off-from-owi", 2, true, true, 2, 0, true, {"PowerOffChip(0)", "PowerOffChip(1)", "EnterADCMode(0)", "EnterADCMode(1)", "SelectOutputChannel(0)"}},
    {"both-off-from-off", 2, false, false, 0, 0, true, {}},
};
// clang-format on

}  // namespace

TEST_F(StateMachineTest, EveryCellMakesItsDeviceCallsAndStoresTheState) {
    for (const Cell& cell : kCells) {
        SCOPED_TRACE(cell.name);
        session.CommLocked = {cell.locked0, cell.locked1};
        session.ChipState = {cell.from, cell.from};
        simulation.box->clearTrace();
        pause.pauses.clear();
        EXPECT_EQ(machine.ChipChangeToState(cell.index, cell.from, cell.to), cell.result);
        EXPECT_EQ(trace(), cell.calls);
        if (cell.index == 2) {
            EXPECT_EQ(session.ChipState[0], cell.to);
            EXPECT_EQ(session.ChipState[1], cell.to);
        } else {
            EXPECT_EQ(session.ChipState[cell.index], cell.to);
        }
        EXPECT_TRUE(prompts.messages.isEmpty());
    }
}

TEST_F(StateMachineTest, BothPartsFromOwiToOwiPauseBeforeTheSingleEntry) {
    EXPECT_TRUE(machine.ChipChangeToState(2, 2, 2));
    EXPECT_EQ(pause.pauses, std::vector<int>{500});
    EXPECT_TRUE(machine.ChipChangeToState(0, 2, 2));  // one part: no pause
    EXPECT_EQ(pause.pauses, std::vector<int>{500});
}

TEST_F(StateMachineTest, AChipThatRefusesOwiModeGivesFalse) {
    // The chip is locked but the session has not learned it yet.
    simulation.box->dies[1].locked = true;
    EXPECT_FALSE(machine.ChipChangeToState(1, 1, 2));
    EXPECT_EQ(session.ChipState[1], 2);
    EXPECT_FALSE(machine.ChipChangeToState(2, 1, 2));
}

// Both parts off, Part#2 known to be locked: the change to OWI mode is refused without a call,
// and the return to ADC mode that follows starts only the locked part, which the record shows.
TEST_F(StateMachineTest, ReturnFromARefusedChangeRecordsWhatItPowered) {
    session.CommLocked = {false, true};
    simulation.box->dies[1].locked = true;
    EXPECT_FALSE(machine.ChipChangeToState(2, 0, 2));
    EXPECT_EQ(session.ChipState, (ChipStates{2, 2}));
    EXPECT_TRUE(machine.ChipChangeToState(2, 2, 1));
    EXPECT_EQ(trace(), QStringList({"ExitOWIMode(0)", "ExitOWIMode(1)", "EnterADCMode(0)",
                                    "EnterADCMode(1)"}));
    EXPECT_EQ(session.ChipState, (ChipStates{0, 1}));
    EXPECT_FALSE(simulation.box->dies[0].powered);
    EXPECT_TRUE(simulation.box->dies[1].inAdc());
}

TEST_F(StateMachineTest, WrongArgumentsAndUnknownStates) {
    EXPECT_FALSE(machine.ChipChangeToState(3, 0, 1));
    EXPECT_TRUE(machine.ChipChangeToState(0, 0, 5));
    EXPECT_EQ(session.ChipState[0], 5);
    EXPECT_TRUE(machine.ChipChangeToState(2, 0, -1));
    EXPECT_EQ(prompts.messages, QStringList({"Error arguments in ChipChangeToState!",
                                             "Error: There is no such state: 5",
                                             "Error: There is no such state: -1"}));
    EXPECT_TRUE(trace().isEmpty());
}

TEST_F(StateMachineTest, ConnectionStateMovesBothPartsToPowerOff) {
    machine.SetConnectionState(1);
    EXPECT_EQ(session.ProgrammerConnected, 1);
    EXPECT_TRUE(trace().isEmpty());  // both already in Power Off

    session.ChipState = {2, 1};
    machine.SetConnectionState(1);
    EXPECT_EQ(trace(),
              QStringList({"PowerOffChip(0)", "EnterADCMode(0)", "SelectOutputChannel(0)",
                           "PowerOffChip(1)", "EnterADCMode(1)", "SelectOutputChannel(1)"}));
    EXPECT_EQ(session.ChipState, (std::array<std::int32_t, 2>{0, 0}));

    machine.SetConnectionState(0);
    EXPECT_EQ(session.ProgrammerConnected, 0);
}

TEST(StateMachineWithoutDevice, ReportsNotConnectedInsteadOfCrashing) {
    DeviceSession session(nullptr);
    test::ScriptedPrompts prompts;
    test::RecordingPause pause;
    ChipStateMachine machine(session, prompts, pause);
    try {
        machine.ChipChangeToState(0, 0, 1);
        FAIL() << "expected DeviceError";
    } catch (const DeviceError& e) {
        EXPECT_EQ(e.description(), "Programmer is not connected!");
    }
    EXPECT_EQ(session.ChipState[0], 0) << "nothing was powered";
}

namespace {

// Lets calls through until call number `failAt` (from 0), which then fails as a whole: the
// program's own logging wrapper hands it every call of the device.
class FailAt : public DeviceTrafficSink {
  public:
    explicit FailAt(int failAt) : m_left(failAt) {}
    void write(const DeviceCall&) override {
        if (m_left-- == 0) {
            throw DeviceError(QStringLiteral("Lost the programmer"));
        }
    }

  private:
    int m_left;
};

}  // namespace

// A call that fails as a whole in the middle of a change: the recorded states end where the
// calls that went through left the parts, and the failure reaches the caller.
TEST(StateMachineFailingMidway, RecordsWhatTheCallsBeforeTheFailureReached) {
    const struct {
        const char* name;
        std::int16_t index;
        std::array<std::int32_t, 2> before;
        std::int32_t from, to;
        int failAt;
        std::array<std::int32_t, 2> after;
    } cases[] = {
        {"on: PowerOnChip fails", 0, {0, 0}, 0, 1, 0, {0, 0}},
        {"on: EnterADCMode fails", 0, {0, 0}, 0, 1, 1, {1, 0}},
        {"to OWI from off: EnterOWIMode fails", 1, {0, 0}, 0, 2, 1, {0, 1}},
        {"to OWI from ADC: EnterOWIMode fails", 0, {1, 0}, 1, 2, 0, {1, 0}},
        {"to ADC from OWI: ExitOWIMode fails", 0, {2, 2}, 2, 1, 0, {2, 2}},
        {"to ADC from OWI: EnterADCMode fails", 0, {2, 2}, 2, 1, 1, {1, 2}},
        {"off: PowerOffChip fails", 1, {1, 2}, 2, 0, 0, {1, 2}},
        {"off: the output channel fails", 1, {1, 2}, 2, 0, 2, {1, 0}},
        {"both on: Part#2's PowerOnChip fails", 2, {0, 0}, 0, 1, 1, {1, 0}},
        {"both to OWI again: EnterOWIMode fails", 2, {2, 2}, 2, 2, 0, {2, 2}},
        {"both off from a caller's guess: first PowerOffChip fails", 2, {2, 2}, 1, 0, 0, {2, 2}},
        {"both off: Part#2's PowerOffChip fails", 2, {2, 1}, 1, 0, 1, {0, 1}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const sim::Simulation simulation{sim::SimConfig{}};
        // The connect's OpenChannel goes through first.
        const auto failAt = std::make_shared<FailAt>(c.failAt + 1);
        DeviceSession session(
            [&] { return WrapWithLog(sim::CreateSimulatedDevice(simulation.box), failAt); });
        test::ScriptedPrompts prompts;
        test::RecordingPause pause;
        ChipStateMachine machine(session, prompts, pause);
        session.ConnectProgrammer(1, prompts);
        session.ChipState = c.before;
        EXPECT_THROW(machine.ChipChangeToState(c.index, c.from, c.to), DeviceError);
        EXPECT_EQ(session.ChipState, c.after);
        EXPECT_EQ(simulation.box->trace().size(), c.failAt + 2) << "the failing call was made";
    }
}
