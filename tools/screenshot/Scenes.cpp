#include "Scenes.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFocusEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QTimer>

#include "device/ChipStateMachine.h"
#include "device/ConfigSolvers.h"
#include "device/DeviceSession.h"
#include "device/FieldValidation.h"
#include "device/SolverInputs.h"
#include "device/UpdateControl.h"
#include "procedures/twopart/SessionCommands.h"
#include "rk31/DeviceError.h"
#include "sim/SimulatedBox.h"
#include "sim/bench/ProgrammerBench.h"
#include "ui/dialogs/About.h"
#include "ui/dialogs/RealTimeDisplayBar.h"
#include "ui/dialogs/confirm.h"
#include "ui/dialogs/frmComport.h"
#include "ui/dialogs/frmadvanced.h"
#include "ui/dialogs/waitform.h"
#include "ui/plots/frmLinearGraph.h"
#include "ui/windows/MainForm2Parts.h"
#include "ui/windows/PointWindows.h"

namespace rk31::screenshot {

namespace {

// A session with the programmer on its port and the part in OWI mode, as the Advanced button
// leaves it.
void connectWithPartInOwiMode(SceneContext& context, std::int16_t part) {
    DeviceSession& session = context.app.session();
    session.ResetForWindowLoad(true);
    session.ConnectProgrammer(1, context.prompts);
    ChipStateMachine chips(session, context.prompts, context.pause);
    chips.SetConnectionState(1);
    chips.ChipChangeToState(part, session.ChipState[part], OwiMode);
    context.programmer.box().clearTrace();
}

std::unique_ptr<QWidget> waitWindow() {
    auto wait = std::make_unique<waitform>();
    wait->Init(QStringLiteral("Part#1: Programming EEPROM...  Please Wait..."));
    return wait;
}

std::unique_ptr<QWidget> aboutBox(SceneContext& context) {
    auto about = std::make_unique<About>(context.app.session(), context.prompts);
    about->Init(QStringLiteral("2.1.7"));
    return about;
}

std::unique_ptr<frmadvanced> advanced(SceneContext& context) {
    return std::make_unique<frmadvanced>(context.app.session(), context.prompts, context.pause);
}

std::unique_ptr<QWidget> advancedAfterRead(SceneContext& context) {
    connectWithPartInOwiMode(context, 0);
    auto dialog = advanced(context);
    dialog->Init(0, 2);
    dialog->findChild<QLineEdit*>(QStringLiteral("Din_24"))->setText(QStringLiteral("ABCD"));
    dialog->findChild<QLineEdit*>(QStringLiteral("add_24"))->setText(QStringLiteral("30"));
    dialog->show();
    dialog->findChild<QPushButton*>(QStringLiteral("memread"))->click();
    return dialog;
}

// Connects a main window as the Connect button does, enables both parts and powers Part#1 (both
// parts in the one-supply window), with a characteristic typed in.
void connectedMainWindow(TwoPartWindow* window) {
    WindowContext& ctx = window->context();
    ctx.session.ConnectProgrammer(1, ctx.prompts);
    Machine(ctx).SetConnectionState(1);
    ctx.view.setText(ctl::connect, -1, kDisconnectCaption);
    if (!ctx.oneSupply()) {
        ctx.view.setValue(ctl::PartEnable, 0, 1);
        ctx.view.setValue(ctl::PartEnable, 1, 1);
    }
    UpdateControl(ctx);
    PowerCommand(ctx, 0);
    const struct {
        const QString& name;
        int index;
        const char* text;
        Field field;
    } typed[] = {{ctl::Angle, 0, "100", Field::Angle},
                 {ctl::Level, 0, "20", Field::Level},
                 {ctl::Angle, 1, "200", Field::Angle},
                 {ctl::Level, 1, "80", Field::Level},
                 {ctl::clamplow, 0, "10", Field::ClampLow},
                 {ctl::clamphigh, 0, "90", Field::ClampHigh},
                 {ctl::DP, 0, "300", Field::DP}};
    for (const auto& t : typed) {
        ctx.view.setText(t.name, t.index, QString::fromLatin1(t.text));
        ValidateField(ctx, t.field, t.index);
    }
}

std::unique_ptr<QWidget> connectedMainWindow(std::unique_ptr<TwoPartWindow> window) {
    connectedMainWindow(window.get());
    return window;
}

// The rounded images of a four-point Part#1 and a clockwise two-point Part#2.
void fillRoundedImages(RoundedImages& r) {
    r.RoundedPoints[0] = {100, 150, 250, 300, 20, 40, 60, 80};
    r.RoundedDP[0] = 20;
    r.RoundedClampHigh[0] = 95;
    r.RoundedClampLow[0] = 5;
    r.PointsReversed[0] = false;
    r.RoundedPoints[1] = {200, 100, 500, 500, 20, 80, 0, 0};
    r.RoundedDP[1] = 300;
    r.RoundedClampHigh[1] = 90;
    r.RoundedClampLow[1] = 10;
    r.PointsReversed[1] = true;
}

// The Linear Graph as a window opens it, measuring through that window.
std::unique_ptr<frmLinearGraph> graphOver(SceneContext& context,
                                          std::unique_ptr<MainWindowBase> window) {
    auto graph = std::make_unique<frmLinearGraph>(window->measureSeams());
    context.behind.push_back(std::move(window));
    return graph;
}

std::unique_ptr<QWidget> linearGraph(SceneContext& context, std::int16_t part, std::int16_t count,
                                     std::int16_t part2, std::int16_t count2) {
    auto graph = graphOver(context, std::make_unique<MainForm2Parts2Src>(context.app));
    fillRoundedImages(context.app.session().rounded);
    graph->Init(part, count, part2, count2);
    return graph;
}

// How a measured Linear Graph scene goes: Part#1 programmed with the typed points and measured
// against them, or measured after its Level B box was changed (as if another settings file had
// been loaded), so that the chip no longer matches the curve drawn.
enum class Measured { OnCurve, OffCurve };

std::unique_ptr<QWidget> measuredLinearGraph(SceneContext& context, Measured measured) {
    auto window = std::make_unique<MainForm2Parts2Src>(context.app);
    connectedMainWindow(window.get());
    WindowContext& ctx = window->context();
    window->findChild<QAbstractButton*>(QStringLiteral("btnconfigsolver_0"))->click();
    if (measured == Measured::OffCurve) {
        ctx.view.setText(ctl::Level, 1, QStringLiteral("60"));
        ValidateField(ctx, Field::Level, 1);
    }
    // What the Linear Graph button does before it opens the window.
    const int count = LoadSolverInputs(ctx, 0) ? configsolver(ctx, 0) : 0;
    auto graph = graphOver(context, std::move(window));
    graph->Init(0, static_cast<std::int16_t>(count), 0, 0);
    graph->show();
    graph->findChild<QAbstractButton*>(QStringLiteral("measure"))->click();
    return graph;
}

std::unique_ptr<QWidget> realTimeDisplay(SceneContext& context) {
    connectWithPartInOwiMode(context, 0);
    auto display =
        std::make_unique<RealTimeDisplayBar>(context.app.session(), context.prompts, context.pause);
    display->Init(0, 2);
    display->show();
    display->timer().stop();
    display->ShowReadings(50.5f, 0);
    return display;
}

void clickButton(QWidget* window, const QString& name) {
    if (auto* button = window->findChild<QAbstractButton*>(name); button && button->isEnabled()) {
        button->click();
    }
}

void typeText(QWidget* window, const QString& name, const QString& text) {
    if (auto* box = window->findChild<QLineEdit*>(name)) {
        box->setText(text);
    }
}

// How far a point window's scene goes: just opened, connected on the programmer's port, a part
// taught at 40 and 170 degrees and programmed, and then measured with the fixture or, without
// one, at three magnet positions turned by hand; or the EEPROM refusing the program; or point A
// taken and the angle watched while the magnet turns.
enum class Stage {
    Offline,
    Connected,
    Programmed,
    Measured,
    MeasuredByHand,
    NotProgrammed,
    Watching
};

std::unique_ptr<QWidget> pointWindow(SceneContext& context,
                                     std::unique_ptr<PointProgrammingWindow> window, Stage stage) {
    QWidget* w = window.get();
    if (stage == Stage::Offline) {
        return window;
    }
    context.dialogScripts.push_back([](QDialog& dialog) {
        auto* list = dialog.findChild<QComboBox*>(QStringLiteral("Port"));
        list->setCurrentIndex(list->findText(QStringLiteral("COM1")));
        dialog.findChild<QAbstractButton*>(QStringLiteral("connect"))->click();
    });
    clickButton(w, QStringLiteral("connect"));
    if (stage == Stage::Connected) {
        return window;
    }
    const bool both = window->traits().bothParts;
    typeText(w, QStringLiteral("Level_0"), QStringLiteral("10.00"));
    typeText(w, QStringLiteral("Level_1"), QStringLiteral("90.00"));
    if (both) {
        typeText(w, QStringLiteral("Level_2"), QStringLiteral("20.00"));
        typeText(w, QStringLiteral("Level_3"), QStringLiteral("85.00"));
    }
    for (QLineEdit* box :
         w->findChildren<QLineEdit*>(QRegularExpression(QStringLiteral("^Level")))) {
        QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
        QApplication::sendEvent(box, &out);
    }
    if (window->traits().offsets) {
        typeText(w, QStringLiteral("OffsetAngleB"), QStringLiteral("130.00"));
        typeText(w, QStringLiteral("OffsetDP"), QStringLiteral("180.00"));
    }
    clickButton(w, QStringLiteral("PowerOn"));
    context.programmer.box().setMagnetAngle(40, 0);
    clickButton(w, QStringLiteral("SetpointA"));
    context.programmer.box().setMagnetAngle(170, 0);
    if (stage == Stage::Watching) {
        w->findChild<QAbstractButton*>(QStringLiteral("watchAngle"))->click();
        return window;
    }
    if (stage == Stage::NotProgrammed) {
        context.programmer.box().config.eepromFail = 1;
    }
    clickButton(w, QStringLiteral("SetpointB"));
    if (stage == Stage::Measured) {
        clickButton(w, QStringLiteral("measure"));
    }
    if (stage == Stage::MeasuredByHand) {
        for (const double angle : {60.0, 120.0, 250.0}) {
            context.programmer.box().setMagnetAngle(angle, 0);
            clickButton(w, QStringLiteral("addMeasurement"));
        }
    }
    return window;
}

template <typename Window>
Scene pointScene(const char* name, Stage stage) {
    return {QString::fromLatin1(name), [stage](SceneContext& context) {
                // A hand turns the magnet: the window offers Add measurement instead of Measure.
                context.programmer.box().config.fixture = stage != Stage::MeasuredByHand;
                return pointWindow(context, std::make_unique<Window>(context.app), stage);
            }};
}

// How far a bench scene goes: as it opens, both dies powered with a characteristic in their
// EEPROM, or faults switched on and the traffic of a session with them.
enum class BenchStage { Fresh, Programmed, Faults };

// Burns a two-point characteristic into a die over the device interface and leaves it in ADC
// mode: point A (angle, level), point B, DP.
void programDie(QZ7734Device& device, std::int16_t part, std::array<float, 5> values) {
    std::int32_t out = 0;
    device.PowerOnChip(part, out);
    device.EnterOWIMode(part, out);
    std::shared_ptr<MemoryAccess> memory;
    device.GetMemoryAccess(memory);
    const auto [angleA, levelA, angleB, levelB, dp] = values;
    const std::pair<std::int16_t, float> ids[] = {{1, 5.0f},   {2, 95.0f},   {3, dp},
                                                  {4, levelA}, {5, levelB},  {8, angleA},
                                                  {9, angleB}, {10, angleB}, {11, angleB}};
    for (const auto& [id, value] : ids) {
        memory->SetSolverParameter(part, id, value, 1, out);
    }
    std::shared_ptr<SolverAccess> solver;
    device.GetSolverAccess(solver);
    solver->WriteBufferToDevice(part, out);
    device.ProgramEEPROM(part, out);
    device.ExitOWIMode(part, out);
}

std::unique_ptr<QWidget> benchWindow(SceneContext& context, BenchStage stage) {
    auto bench = std::make_unique<sim::ProgrammerBench>(context.programmer.simulation());
    bench->show();
    if (stage == BenchStage::Fresh) {
        return bench;
    }
    sim::SimulatedBox& box = context.programmer.box();
    const auto device = context.app.createDevice();
    std::int32_t out = 0;
    device->OpenChannel(QVariant(1), out);
    programDie(*device, 0, {40, 10, 200, 90, 300});
    programDie(*device, 1, {100, 80, 250, 20, 20});
    box.setMagnetAngle(123.45);
    if (stage == BenchStage::Faults) {
        const auto& settings = sim::PartsSettings();
        box.setPartSetting(settings[3], 1, true);  // eeprom_fail, Part #2
        box.setPartSetting(settings[2], 0, true);  // id_error, Part #1
        box.config.versionFail = true;
        std::int32_t id = 0;
        std::shared_ptr<MemoryAccess> memory;
        device->GetMemoryAccess(memory);
        device->EnterOWIMode(3, out);
        memory->ReadMemory(0, 0x48, id);
        memory->ReadMemory(1, 0x48, id);
        device->ProgramEEPROM(1, out);
        std::int32_t major = 0;
        std::int32_t minor = 0;
        device->GetHardwareVersion(major, minor, id, out);
        float angle = 0;
        try {
            device->ReadAngle(7, angle);
        } catch (const DeviceError&) {
        }
        box.config.latencyMs = 30;
    }
    bench->refresh();
    return bench;
}

// A refusal as the windows show it.
std::unique_ptr<QWidget> refusalMessage() {
    auto box =
        std::make_unique<QMessageBox>(QMessageBox::NoIcon, QStringLiteral("RK31 GUI - QZ7734"),
                                      QStringLiteral("Error: Not in OWI mode"), QMessageBox::Ok);
    return box;
}

}  // namespace

const std::vector<Scene>& AllScenes() {
    static const std::vector<Scene> scenes = {
        {"port_dialog",
         [](SceneContext& c) { return std::make_unique<frmComport>(c.app.ports(), c.prompts); }},
        {"wait_window", [](SceneContext&) { return waitWindow(); }},
        {"confirm", [](SceneContext&) { return std::make_unique<confirm>(); }},
        {"about", aboutBox},
        {"advanced_fixed_part",
         [](SceneContext& c) {
             auto dialog = advanced(c);
             dialog->Init(1, 1);
             return dialog;
         }},
        {"advanced_after_read", advancedAfterRead},
        {"main_two_supplies_offline",
         [](SceneContext& c) { return std::make_unique<MainForm2Parts2Src>(c.app); }},
        {"main_two_supplies_connected",
         [](SceneContext& c) {
             return connectedMainWindow(std::make_unique<MainForm2Parts2Src>(c.app));
         }},
        {"main_one_supply_offline",
         [](SceneContext& c) { return std::make_unique<MainForm2Parts1Src>(c.app); }},
        {"main_one_supply_connected",
         [](SceneContext& c) {
             return connectedMainWindow(std::make_unique<MainForm2Parts1Src>(c.app));
         }},
        {"linear_graph_both_parts", [](SceneContext& c) { return linearGraph(c, 0, 4, 1, 2); }},
        {"linear_graph_part2_alone", [](SceneContext& c) { return linearGraph(c, 1, 2, 0, 0); }},
        {"linear_graph_measured",
         [](SceneContext& c) { return measuredLinearGraph(c, Measured::OnCurve); }},
        {"linear_graph_measured_off_curve",
         [](SceneContext& c) { return measuredLinearGraph(c, Measured::OffCurve); }},
        {"real_time_display", realTimeDisplay},
        pointScene<MainForm2PointsProgramming>("point2_offline", Stage::Offline),
        pointScene<MainForm2PointsProgramming>("point2_connected", Stage::Connected),
        pointScene<MainForm2PointsProgramming>("point2_programmed", Stage::Programmed),
        pointScene<MainForm2PointsProgramming>("point2_measured", Stage::Measured),
        pointScene<MainForm2PointsProgramming>("point2_measured_by_hand", Stage::MeasuredByHand),
        pointScene<MainForm2PointsProgrammingforDual>("point3_offline", Stage::Offline),
        pointScene<MainForm2PointsProgrammingforDual>("point3_connected", Stage::Connected),
        pointScene<MainForm2PointsProgrammingforDual>("point3_programmed", Stage::Programmed),
        pointScene<MainForm2PointsProgrammingforDual>("point3_measured", Stage::Measured),
        pointScene<MainForm2PointsProgrammingWithPwr>("point4_offline", Stage::Offline),
        pointScene<MainForm2PointsProgrammingWithPwr>("point4_connected", Stage::Connected),
        pointScene<MainForm2PointsProgrammingWithPwr>("point4_programmed", Stage::Programmed),
        pointScene<MainForm2PointsProgrammingWithPwr>("point4_not_programmed",
                                                      Stage::NotProgrammed),
        pointScene<MainForm2PointsProgrammingWithPwr>("point4_watching", Stage::Watching),
        pointScene<MainForm2PointsProgrammingforDual>("point3_watching", Stage::Watching),
        pointScene<MainForm2PointsProgrammingWithPwr>("point4_measured", Stage::Measured),
        pointScene<MainForm2PointsProgrammingforDualWithPwr>("point5_offline", Stage::Offline),
        pointScene<MainForm2PointsProgrammingforDualWithPwr>("point5_connected", Stage::Connected),
        pointScene<MainForm2PointsProgrammingforDualWithPwr>("point5_programmed",
                                                             Stage::Programmed),
        pointScene<MainForm1PointProgramming>("point6_offline", Stage::Offline),
        pointScene<MainForm1PointProgramming>("point6_connected", Stage::Connected),
        pointScene<MainForm1PointProgramming>("point6_programmed", Stage::Programmed),
        {"refusal_message", [](SceneContext&) { return refusalMessage(); }},
        {"bench_fresh", [](SceneContext& c) { return benchWindow(c, BenchStage::Fresh); }},
        {"bench_programmed",
         [](SceneContext& c) { return benchWindow(c, BenchStage::Programmed); }},
        {"bench_faults", [](SceneContext& c) { return benchWindow(c, BenchStage::Faults); }},
    };
    return scenes;
}

}  // namespace rk31::screenshot
