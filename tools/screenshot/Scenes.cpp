#include "Scenes.h"

#include <QLineEdit>
#include <QPushButton>

#include "chipsession/ChipStateMachine.h"
#include "core/Services.h"
#include "link/widgets/frmComport.h"
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
    };
    return scenes;
}

}  // namespace rk31::screenshot
