#include "Scenes.h"

#include <QLineEdit>
#include <QPushButton>

#include <QCheckBox>
#include <QTimer>

#include "chipsession/ChipStateMachine.h"
#include "chipsession/SessionControls.h"
#include "core/Services.h"
#include "display/RealTimeDisplayBar.h"
#include "display/frmLinearGraph.h"
#include "link/widgets/frmComport.h"
#include "mainwindows/MainForm2Parts.h"
#include "params/FieldValidation.h"
#include "params/UpdateControl.h"
#include "programming/widgets/frmadvanced.h"
#include "shell/DeviceSession.h"
#include "shell/widgets/About.h"
#include "shell/widgets/confirm.h"
#include "shell/widgets/waitform.h"

namespace rk31::screenshot {

namespace {

// A session with the programmer on its port and the part in OWI mode, as the Advanced button
// leaves it.
void connectWithPartInOwiMode(SceneContext& context, std::int16_t part) {
    DeviceSession& session = DeviceSession::instance();
    session.ResetForWindowLoad(true);
    session.ConnectProgrammer(3, AppPrompts());
    ChipStateMachine chips(session, AppPrompts(), AppPause());
    chips.SetConnectionState(1);
    chips.ChipChangeToState(part, session.ChipState[part], OwiMode);
    context.simulation.box->clearTrace();
}

std::unique_ptr<QWidget> waitWindow() {
    auto wait = std::make_unique<waitform>();
    wait->Init(QStringLiteral("Part#1: Programming EEPROM...  Please Wait..."));
    return wait;
}

std::unique_ptr<QWidget> aboutBox() {
    auto about = std::make_unique<About>();
    about->Init(QStringLiteral("2.1.7"));
    return about;
}

std::unique_ptr<QWidget> advancedAfterRead(SceneContext& context) {
    connectWithPartInOwiMode(context, 0);
    auto dialog = std::make_unique<frmadvanced>();
    dialog->Init(0, 2);
    dialog->findChild<QLineEdit*>(QStringLiteral("Din_24"))->setText(QStringLiteral("ABCD"));
    dialog->findChild<QLineEdit*>(QStringLiteral("add_24"))->setText(QStringLiteral("30"));
    dialog->show();
    dialog->findChild<QPushButton*>(QStringLiteral("memread"))->click();
    return dialog;
}

// Connects a main window as the Connect button does, enables both parts and powers Part#1 (both
// parts in the one-supply window), with a characteristic typed in.
std::unique_ptr<QWidget> connectedMainWindow(std::unique_ptr<TwoPartWindow> window) {
    WindowContext& ctx = window->context();
    ctx.session.ConnectProgrammer(3, ctx.prompts);
    ctx.machine.SetConnectionState(1);
    ctx.view.setText(ctl::connect, -1, QStringLiteral("Disconnect"));
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
    return window;
}

// The rounded images of a four-point Part#1 and a clockwise two-point Part#2.
void fillRoundedImages() {
    RoundedImages& r = DeviceSession::instance().rounded;
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

std::unique_ptr<QWidget> linearGraph(std::int16_t part, std::int16_t count, std::int16_t part2,
                                     std::int16_t count2) {
    fillRoundedImages();
    auto graph = std::make_unique<frmLinearGraph>();
    graph->Init(part, count, part2, count2);
    return graph;
}

std::unique_ptr<QWidget> realTimeDisplay(SceneContext& context) {
    connectWithPartInOwiMode(context, 0);
    auto display = std::make_unique<RealTimeDisplayBar>();
    display->Init(0, 2);
    display->show();
    display->timer().stop();
    display->ShowReadings(50.5f, 0);
    return display;
}

}  // namespace

const std::vector<Scene>& AllScenes() {
    static const std::vector<Scene> scenes = {
        {"port_dialog", [](SceneContext&) { return std::make_unique<frmComport>(); }},
        {"wait_window", [](SceneContext&) { return waitWindow(); }},
        {"confirm", [](SceneContext&) { return std::make_unique<confirm>(); }},
        {"about", [](SceneContext&) { return aboutBox(); }},
        {"advanced_fixed_part",
         [](SceneContext&) {
             auto dialog = std::make_unique<frmadvanced>();
             dialog->Init(1, 1);
             return dialog;
         }},
        {"advanced_after_read", advancedAfterRead},
        {"main_two_supplies_offline",
         [](SceneContext&) { return std::make_unique<MainForm2Parts2Src>(); }},
        {"main_two_supplies_connected",
         [](SceneContext&) { return connectedMainWindow(std::make_unique<MainForm2Parts2Src>()); }},
        {"main_one_supply_offline",
         [](SceneContext&) { return std::make_unique<MainForm2Parts1Src>(); }},
        {"main_one_supply_connected",
         [](SceneContext&) { return connectedMainWindow(std::make_unique<MainForm2Parts1Src>()); }},
        {"linear_graph_both_parts", [](SceneContext&) { return linearGraph(0, 4, 1, 2); }},
        {"linear_graph_part2_alone", [](SceneContext&) { return linearGraph(1, 2, 0, 0); }},
        {"real_time_display", realTimeDisplay},
    };
    return scenes;
}

}  // namespace rk31::screenshot
