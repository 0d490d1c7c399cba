// Every fault the simulated programmer can inject against every command of every main window
// that can meet it: the messages the user sees, no crash, and a window that agrees with the dies
// afterwards. A new fault or a new command is one more row below.
#include <QComboBox>
#include <QtTest>
#include <cstdio>
#include <functional>

#include "support/WindowHarness.h"
#include "ui/windows/Startup.h"

using namespace rk31;
using namespace rk31::test;

namespace {

// ---- The faults -------------------------------------------------------------------------------

// Per-part faults sit on Part#2, the part the commands below work on wherever a window lets
// them choose.
struct Fault {
    const char* name;
    const char* config;  // as RK31_SIM takes it
};

const Fault kFaults[] = {
    {"none", ""},
    {"locked", "locked=2"},
    {"locked both", "locked=both"},
    {"no supply", "no_supply=2"},
    {"id error", "id_error=2"},
    {"EEPROM", "eeprom_fail=2"},
    {"clear", "clear_fail=2"},
    {"comm lock", "commlock_fail=2"},
    {"write buffer 2", "wbd_code=2"},
    {"write buffer 4", "wbd_code=4"},
    {"DAC status", "dac_status=12"},
    {"version", "version_fail=1"},
    {"channel", "channel_fail=1"},
    // The programmer on another port than the one chosen: the port opens, nothing answers.
    {"no programmer on the port", "port=3"},
};

// ---- The commands -----------------------------------------------------------------------------

// Windows by switch: bit n stands for "/n".
constexpr unsigned kTwoPart = 0b0000011;
constexpr unsigned kPointNoPower = 0b1001100;  // /2, /3, /6
constexpr unsigned kPointPower = 0b0110000;    // /4, /5
constexpr unsigned kPoint = kPointNoPower | kPointPower;
constexpr unsigned kGetDP = 0b0111100;  // the point windows but /6
constexpr unsigned kAll = 0b1111111;

// Where a command starts from; each step needs the one before it, and a step the fault stops
// leaves the window where the fault left it.
enum class Start { Offline, Connected, Powered, PointATaken };

struct Window {
    QWidget* w;
    int variant;
    bool twoPart() const { return variant <= 1; }
    bool oneSupply() const { return variant == 0; }
    bool dual() const { return variant == 3 || variant == 5; }
    // The index of a session button, the part's own box or button.
    int session() const { return oneSupply() ? -1 : 1; }
    int part() const { return twoPart() || dual() ? 1 : -1; }
};

struct Command {
    const char* name;
    unsigned windows;
    Start start;
    std::function<void(Window, Bench&)> run;
};

void typePoints(Window win) {
    if (win.twoPart()) {
        for (int part = 0; part < 2; ++part) {
            typeInto(win.w, "Angle", part * 4, "100");
            typeInto(win.w, "Level", part * 4, "20");
            typeInto(win.w, "Angle", part * 4 + 1, "200");
            typeInto(win.w, "Level", part * 4 + 1, "80");
        }
        return;
    }
    for (int part = 0; part < (win.dual() ? 2 : 1); ++part) {
        typeInto(win.w, "Level", win.dual() ? part * 2 : 0, "10");
        typeInto(win.w, "Level", win.dual() ? part * 2 + 1 : 1, "90");
    }
    if (win.variant == 6) {
        typeInto(win.w, "OffsetAngleB", -1, "90");
        typeInto(win.w, "OffsetDP", -1, "270");
    }
}

// clang-format off
const Command kCommands[] = {
    {"Connect", kAll, Start::Offline, [](Window win, Bench& b) { scriptPortChoice(b.prompts, "COM1"); click(win.w, "connect"); }},
    {"Power On", kTwoPart | kPointPower, Start::Connected, [](Window win, Bench&) { click(win.w, "PowerOn", win.twoPart() ? win.session() : -1); }},
    {"Power Off", kTwoPart, Start::Powered, [](Window win, Bench&) { click(win.w, "PowerOn", win.session()); }},
    {"New Device", kTwoPart, Start::Powered, [](Window win, Bench&) { click(win.w, "newdevice", win.session()); }},
    // New Device is usable before Power On: it reaches OWI mode on its own.
    {"New Device unpowered", kTwoPart, Start::Connected, [](Window win, Bench&) { click(win.w, "newdevice", win.session()); }},
    {"Comm Lock", kTwoPart, Start::Powered, [](Window win, Bench& b) { scriptDialogClick(b.prompts, "yes"); click(win.w, "owilock", win.session()); }},
    {"Program", kTwoPart, Start::Powered, [](Window win, Bench&) { click(win.w, "btnconfigsolver", win.session()); }},
    {"Read Angle", kTwoPart, Start::Powered, [](Window win, Bench&) { click(win.w, "btnreadangle", 1); }},
    {"Get DP", kTwoPart | kGetDP, Start::Powered, [](Window win, Bench&) { click(win.w, "GetDP", win.twoPart() ? 1 : -1); }},
    {"Set point", kTwoPart, Start::Powered, [](Window win, Bench&) { click(win.w, "Setpoint", 4); }},
    {"Set Op", kTwoPart, Start::Powered, [](Window win, Bench&) { click(win.w, "swobtn", 1); }},
    {"Advanced", kTwoPart, Start::Powered, [](Window win, Bench&) { click(win.w, "Advanced", win.session()); }},
    {"View Output", kTwoPart, Start::Powered, [](Window win, Bench&) { click(win.w, "viewoutput", win.session()); }},
    {"Linear Graph", kTwoPart, Start::Connected, [](Window win, Bench&) { click(win.w, "lineargraph", win.session()); }},
    {"About", kAll, Start::Connected, [](Window win, Bench&) { click(win.w, "btnAbout"); }},
    {"Disconnect", kAll, Start::Connected, [](Window win, Bench&) { click(win.w, "connect"); }},
    {"Set point A", kPoint, Start::Powered, [](Window win, Bench&) { click(win.w, "SetpointA"); }},
    {"Set point B", kPoint, Start::PointATaken, [](Window win, Bench&) { click(win.w, "SetpointB"); }},
};
// clang-format on

// ---- What the user is told --------------------------------------------------------------------

const QString kNotConnected = QStringLiteral("Programmer is not connected!");
const QString kReset = QStringLiteral("Please Reset hardware and try again!");
const QString kRefused =
    QStringLiteral("Failed to set OWI mode due to CommLock!...Return to ADC mode!");

// The messages of a command under a fault, for the windows named; a fault and command that meet
// nowhere below show what the command shows without a fault ("none"), and a command that has no
// row there shows nothing.
struct Told {
    const char* fault;
    unsigned windows;
    const char* command;
    QStringList messages;
};

const Told kTold[] = {
    // clang-format off
    {"locked", 0b0111100, "Get DP", {kRefused, "Error: Not in OWI mode"}},
    {"locked", 0b0000011, "New Device", {kRefused, "Error: Not in OWI Mode!"}},
    {"locked", 0b0000011, "New Device unpowered", {kRefused, "Error: Not in OWI Mode!"}},
    {"locked", 0b0000001, "Power Off", {kRefused, "Read Error! Please Check chip connections!", "OWI communication is locked: F6", kReset}},
    {"locked", 0b0000010, "Power Off", {kRefused, "OWI communication is locked: F6", kReset}},
    {"locked", 0b0100001, "Power On", {kRefused, "Read Error! Please Check chip connections!", "OWI communication is locked: F6", kReset}},
    {"locked", 0b0010010, "Power On", {kRefused, "OWI communication is locked: F6", kReset}},
    {"locked", 0b1000100, "Set point A", {kRefused, "OWI communication is locked: F6", kReset}},
    {"locked", 0b0001000, "Set point A", {kRefused, "Read Error! Please Check chip connections!", "OWI communication is locked: F6", kReset}},
    {"locked", 0b1001100, "Set point B", {kRefused, "Error: Not in OWI mode"}},
    {"locked both", 0b0111100, "Get DP", {kRefused, "Error: Not in OWI mode"}},
    {"locked both", 0b0000011, "New Device", {kRefused, "Error: Not in OWI Mode!"}},
    {"locked both", 0b0000011, "New Device unpowered", {kRefused, "Error: Not in OWI Mode!"}},
    {"locked both", 0b0000001, "Power Off", {kRefused, "OWI communication is locked: F5", "OWI communication is locked: F6", kReset}},
    {"locked both", 0b0000010, "Power Off", {kRefused, "OWI communication is locked: F6", kReset}},
    {"locked both", 0b0100001, "Power On", {kRefused, "OWI communication is locked: F5", "OWI communication is locked: F6", kReset}},
    {"locked both", 0b0010010, "Power On", {kRefused, "OWI communication is locked: F6", kReset}},
    {"locked both", 0b1000100, "Set point A", {kRefused, "OWI communication is locked: F6", kReset}},
    {"locked both", 0b0001000, "Set point A", {kRefused, "OWI communication is locked: F5", "OWI communication is locked: F6", kReset}},
    {"locked both", 0b1001100, "Set point B", {kRefused, "Error: Not in OWI mode"}},
    {"no supply", 0b1001100, "Set point B", {"Error: Not in OWI mode"}},
    {"id error", 0b0000011, "Power Off", {"Read Error! Please Check chip connections!", kReset}},
    {"id error", 0b0110011, "Power On", {"Read Error! Please Check chip connections!", kReset}},
    {"id error", 0b1001100, "Set point A", {"Read Error! Please Check chip connections!", kReset}},
    {"id error", 0b1001100, "Set point B", {"Error: Not in OWI mode"}},
    {"EEPROM", 0b0000011, "New Device", {"Failed in programming device"}},
    {"EEPROM", 0b0000011, "New Device unpowered", {"Failed in programming device"}},
    {"EEPROM", 0b0110000, "Power On", {"Failed in programming device"}},
    {"EEPROM", 0b0000011, "Program", {"Failed in programming device"}},
    {"EEPROM", 0b1001100, "Set point A", {"Failed in programming device"}},
    {"EEPROM", 0b1111100, "Set point B", {"Failed in programming device"}},
    {"clear", 0b0000001, "New Device", {"Error in ClearSolverSettings"}},
    {"clear", 0b0000010, "New Device", {"Errors in ClearSolverSettings!"}},
    {"clear", 0b0000001, "New Device unpowered", {"Error in ClearSolverSettings"}},
    {"clear", 0b0000010, "New Device unpowered", {"Errors in ClearSolverSettings!"}},
    {"clear", 0b0110000, "Power On", {"Errors in ClearSolverSettings!"}},
    {"clear", 0b1001100, "Set point A", {"Errors in ClearSolverSettings!"}},
    {"comm lock", 0b0000001, "Comm Lock", {"Errors in Commlock"}},
    {"comm lock", 0b0000010, "Comm Lock", {"Errors in Commlock!"}},
    {"write buffer 2", 0b0000011, "Program", {"Error in WriteBufferToDevice!"}},
    {"write buffer 2", 0b1111100, "Set point B", {"Error in WriteBufferToDevice!"}},
    {"write buffer 4", 0b0000011, "Program", {"Die2: Clamp High <= Clamp Low!"}},
    {"write buffer 4", 0b1111100, "Set point B", {"Die2: Clamp High <= Clamp Low!"}},
    {"DAC status", 0b0000011, "New Device", {"Offset Parameters of Part#2 are invalid! K1: 0.277615 B1: -0.0087"}},
    {"DAC status", 0b0000011, "New Device unpowered", {"Offset Parameters of Part#2 are invalid! K1: 0.277615 B1: -0.0087"}},
    {"DAC status", 0b0110000, "Power On", {"Offset Parameters of Part#2 are invalid! K1: 0.277615 B1: -0.0087"}},
    {"DAC status", 0b1001100, "Set point A", {"Offset Parameters of Part#2 are invalid! K1: 0.277615 B1: -0.0087"}},
    {"version", 0b1111111, "About", {"Cannot Read Programmer Version!"}},
    {"channel", 0b1111111, "About", {kNotConnected}},
    {"channel", 0b1111111, "Connect", {"Failed in Connecting Channel"}},
    {"channel", 0b0111100, "Get DP", {kNotConnected}},
    {"channel", 0b0000011, "Linear Graph", {kNotConnected}},
    {"channel", 0b0000011, "New Device", {kNotConnected}},
    {"channel", 0b0000011, "New Device unpowered", {kNotConnected}},
    {"channel", 0b0000011, "Power Off", {kNotConnected}},
    {"channel", 0b0110011, "Power On", {kNotConnected}},
    {"channel", 0b1001100, "Set point A", {kNotConnected}},
    // clang-format on
};

QStringList expectedMessages(const char* fault, int variant, const char* command) {
    // A port with nothing behind it tells the user what a failed channel does.
    if (qstrcmp(fault, "no programmer on the port") == 0) {
        fault = "channel";
    }
    for (const char* f : {fault, "none"}) {
        for (const Told& t : kTold) {
            if (qstrcmp(t.fault, f) == 0 && qstrcmp(t.command, command) == 0 &&
                (t.windows & (1u << variant)) != 0) {
                return t.messages;
            }
        }
    }
    return {};
}

// ---- Does the window agree with the dies? ----------------------------------------------------

int dieState(const sim::Die& die) {
    if (!die.powered) {
        return PowerOff;
    }
    return die.mode == sim::Die::Mode::Owi ? OwiMode : AdcMode;
}

QString stateText(int part, int state) {
    static const char* const kTexts[] = {": Power Off", ": ADC Mode", ": OWI Mode"};
    return QStringLiteral(" -- Part#%1").arg(part + 1) + QLatin1String(kTexts[state]);
}

// Empty when the window agrees with the dies, else what disagrees.
QStringList disagreements(Window win, Bench& b) {
    QStringList found;
    const DeviceSession& s = b.session();
    const int die[2] = {dieState(b.box().dies[0]), dieState(b.box().dies[1])};
    for (int p = 0; p < 2; ++p) {
        if (s.ChipState[p] != die[p]) {
            found << QStringLiteral("Part#%1 recorded %2, die %3")
                         .arg(p + 1)
                         .arg(s.ChipState[p])
                         .arg(die[p]);
        }
    }
    const bool connected = s.ProgrammerConnected == 1;
    if ((textOf(win.w, "connect") == "Disconnect") != connected) {
        found << "connect caption " + textOf(win.w, "connect");
    }
    if (win.twoPart()) {
        const QString status = (connected ? QStringLiteral("Ready: Connected with Programmer")
                                          : QStringLiteral("Ready: Offline Mode")) +
                               stateText(0, die[0]) + stateText(1, die[1]);
        if (textOf(win.w, "status") != status) {
            found << "status " + textOf(win.w, "status");
        }
        const bool anyOn = die[0] != PowerOff || die[1] != PowerOff;
        if (usable(win.w, "connect") != (!connected || !anyOn)) {
            found << "connect usable";
        }
        for (int p = 0; p < 2; ++p) {
            const bool on = win.oneSupply() ? anyOn : die[p] != PowerOff;
            // "Power Off" on a part that is off makes the next click a silent no-op.
            if (textOf(win.w, "PowerOn", win.oneSupply() ? -1 : p) == "Power Off" && !on) {
                found << QStringLiteral("Part#%1 caption Power Off").arg(p + 1);
            }
            const bool partUsable =
                connected &&
                (win.oneSupply() || find<QCheckBox>(win.w, "PartEnable", p)->isChecked());
            const bool active = partUsable && die[p] != PowerOff;
            if (usable(win.w, "DP", p) != active) {
                found << QStringLiteral("Part#%1 DP usable").arg(p + 1);
            }
            // A lock counts once the window has read it from the chip's identification word.
            if (usable(win.w, "btnreadangle", p) != (active && !s.CommLocked[p])) {
                found << QStringLiteral("Part#%1 Read Angle usable").arg(p + 1);
            }
        }
        return found;
    }
    // The point windows' buttons are in one of the states they go through. (Get DP may power a
    // part without changing them, as specified: only "Powered" says anything about the dies.)
    const bool a = usable(win.w, "SetpointA");
    const bool bb = usable(win.w, "SetpointB");
    const bool power = ((1u << win.variant) & kPointPower) != 0;
    const bool on = power && usable(win.w, "PowerOn");
    const bool windowOn = win.dual()
                              ? die[0] != PowerOff || die[1] != PowerOff
                              : die[find<QComboBox>(win.w, "PartSel")->currentIndex()] != PowerOff;
    const bool ready = power ? (!a && !bb && on) : (a && !bb);
    const bool powered = power && a && !bb && !on;
    const bool pointATaken = !a && bb && !on;
    const bool offline = !a && !bb && !on;
    if (!(ready || powered || pointATaken || offline) || offline == connected) {
        found << QStringLiteral("buttons A %1 B %2 PowerOn %3").arg(a).arg(bb).arg(on);
    }
    if (powered && !windowOn) {
        found << "powered with no part powered";
    }
    return found;
}

// ---- Getting there ----------------------------------------------------------------------------

void reach(Start start, Window win, Bench& b) {
    if (start == Start::Offline) {
        return;
    }
    if (win.twoPart()) {
        scriptPortChoice(b.prompts, "COM1");
        click(win.w, "connect");
        if (!win.oneSupply()) {
            check(win.w, "PartEnable", 0, true);
            check(win.w, "PartEnable", 1, true);
        }
        typePoints(win);
        if (start == Start::Powered) {
            click(win.w, "PowerOn", win.session());
        }
        return;
    }
    scriptPortChoice(b.prompts, "COM1");
    click(win.w, "connect");
    if (!win.dual()) {
        find<QComboBox>(win.w, "PartSel")->setCurrentIndex(1);
    }
    typePoints(win);
    if (start == Start::Connected) {
        return;
    }
    if (((1u << win.variant) & kPointPower) != 0) {
        click(win.w, "PowerOn");
    }
    if (start == Start::PointATaken) {
        b.box().setMagnetAngle(40);
        click(win.w, "SetpointA");
        b.box().setMagnetAngle(130);
    }
}

}  // namespace

class FaultTableTest : public QObject {
    Q_OBJECT
  private slots:
    void everyFaultAgainstEveryCommand_data();
    void everyFaultAgainstEveryCommand();
    void aPortWithNothingBehindItLeavesTheWindowHonest();
};

void FaultTableTest::everyFaultAgainstEveryCommand_data() {
    QTest::addColumn<int>("fault");
    QTest::addColumn<int>("variant");
    QTest::addColumn<int>("command");
    for (int f = 0; f < int(std::size(kFaults)); ++f) {
        for (int c = 0; c < int(std::size(kCommands)); ++c) {
            for (int variant = 0; variant < 7; ++variant) {
                if ((kCommands[c].windows & (1u << variant)) != 0) {
                    QTest::addRow("%s: /%d %s", kFaults[f].name, variant, kCommands[c].name)
                        << f << variant << c;
                }
            }
        }
    }
}

void FaultTableTest::everyFaultAgainstEveryCommand() {
    QFETCH(int, fault);
    QFETCH(int, variant);
    QFETCH(int, command);
    const Fault& f = kFaults[fault];
    const Command& c = kCommands[command];
    Bench b(sim::ParseSimConfig(QString::fromLatin1(f.config), nullptr));
    const std::unique_ptr<QWidget> window = b.window(variant);
    const Window win{window.get(), variant};
    reach(c.start, win, b);
    b.prompts.messages.clear();

    c.run(win, b);

    // To grow the table: run with RK31_FAULT_TABLE_PRINT set, check each printed row against
    // what the user must be told, and add it.
    if (qEnvironmentVariableIsSet("RK31_FAULT_TABLE_PRINT")) {
        if (!b.prompts.messages.isEmpty()) {
            std::printf("ROW {\"%s\", 1u << %d, \"%s\", {\"%s\"}},\n", f.name, variant, c.name,
                        qPrintable(b.prompts.messages.join("\", \"")));
        }
    } else {
        QCOMPARE(b.prompts.messages, expectedMessages(f.name, variant, c.name));
    }
    const QStringList found = disagreements(win, b);
    QVERIFY2(found.isEmpty(), qPrintable(found.join(QStringLiteral("; "))));
}

// Connect to COM3, where nothing answers, then use the window: every step is refused, and the
// window never claims more than the device did; a later good connect starts from scratch.
void FaultTableTest::aPortWithNothingBehindItLeavesTheWindowHonest() {
    Bench b;
    const std::unique_ptr<QWidget> window = b.window(1);
    const Window win{window.get(), 1};
    const QString connected = QStringLiteral(
        "Ready: Connected with Programmer -- Part#1: Power "
        "Off -- Part#2: Power Off");
    const struct {
        const char* step;
        std::function<void()> act;
        QStringList messages;
        QString status;
        const char* connectCaption;
    } steps[] = {
        {"connect COM3",
         [&] {
             scriptPortChoice(b.prompts, "COM3");
             click(win.w, "connect");
             check(win.w, "PartEnable", 0, true);
         },
         {"Failed in Connecting Channel"},
         connected,
         "Disconnect"},
        {"Power On", [&] { click(win.w, "PowerOn", 0); }, {kNotConnected}, connected, "Disconnect"},
        {"New Device",
         [&] { click(win.w, "newdevice", 0); },
         {kNotConnected},
         connected,
         "Disconnect"},
        {"Power On again",
         [&] { click(win.w, "PowerOn", 0); },
         {kNotConnected},
         connected,
         "Disconnect"},
        {"disconnect",
         [&] { click(win.w, "connect"); },
         {},
         "Ready: Offline Mode -- Part#1: Power Off -- Part#2: Power Off",
         "Connect"},
        {"connect COM1",
         [&] {
             scriptPortChoice(b.prompts, "COM1");
             click(win.w, "connect");
         },
         {},
         connected,
         "Disconnect"},
    };
    for (const auto& s : steps) {
        b.prompts.messages.clear();
        s.act();
        QVERIFY2(b.prompts.messages == s.messages, s.step);
        QVERIFY2(textOf(win.w, "status") == s.status, s.step);
        QVERIFY2(textOf(win.w, "connect") == s.connectCaption, s.step);
        QVERIFY2(usable(win.w, "connect"), s.step);
        QVERIFY2(textOf(win.w, "PowerOn", 0) == "Power On", s.step);
        const QStringList found = disagreements(win, b);
        QVERIFY2(found.isEmpty(), qPrintable(s.step + (": " + found.join("; "))));
    }
    // The next Power On powers the part on.
    b.clearTrace();
    click(win.w, "PowerOn", 0);
    QCOMPARE(b.trace().mid(0, 2), QStringList({"PowerOnChip(0)", "EnterADCMode(0)"}));
    QCOMPARE(textOf(win.w, "PowerOn", 0), QStringLiteral("Power Off"));
}

QTEST_MAIN(FaultTableTest)
#include "FaultTableTest.moc"
