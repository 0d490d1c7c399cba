#include <QComboBox>
#include <QPushButton>
#include <QtTest>

#include "sim/SimulatedProgrammer.h"
#include "support/ScriptedPrompts.h"
#include "ui/dialogs/frmComport.h"

using namespace rk31;

// Connecting through the port dialog is driven from the windows' own tests; these pin what they
// leave out: refusals, re-probing, and the port number forgotten on leaving.
class FrmComportTest : public QObject {
    Q_OBJECT

    test::ScriptedPrompts prompts;
    sim::SimulatedPorts ports;

    static QComboBox* portList(frmComport& dialog) {
        return dialog.findChild<QComboBox*>(QStringLiteral("Port"));
    }

  private slots:
    void listIsProbedAgainWhenDroppedDown() {
        frmComport dialog(ports, prompts);
        dialog.show();
        auto* baud = dialog.findChild<QComboBox*>(QStringLiteral("Baudrate"));
        QVERIFY(!baud->isVisible() && !dialog.findChild<QWidget*>("Label2")->isVisible());
        ports.results = {{5, kPortAlreadyOpen}, {6, 0}};
        portList(dialog)->showPopup();
        QCOMPARE(portList(dialog)->itemText(1), QStringLiteral("COM6"));
        portList(dialog)->hidePopup();
        ports.results.clear();
        portList(dialog)->showPopup();
        QCOMPARE(portList(dialog)->count(), 0);
        QVERIFY(!portList(dialog)->isEnabled());
    }

    void connectChecksThePortAndCloseForgetsIt() {
        ports = sim::SimulatedPorts();
        ports.results[12] = 0;
        // Typed text; whether the port opens; the number taken from the text.
        const std::tuple<QString, bool, int> cases[] = {
            {"", false, 0}, {"COMx", false, 0}, {"COM2", false, 2}, {"COM12", true, 12}};
        for (const auto& [text, accepted, port] : cases) {
            prompts.clear();
            frmComport dialog(ports, prompts);
            dialog.show();
            portList(dialog)->setEditText(text);
            dialog.findChild<QPushButton*>(QStringLiteral("connect"))->click();
            QCOMPARE(prompts.messages,
                     accepted ? QStringList()
                              : QStringList{"This port is invalid, Please select another port!"});
            QCOMPARE(dialog.isVisible(), !accepted);
            QCOMPARE(dialog.SelectedCOM(), std::int16_t(port));
            dialog.close();  // the close box: a refused port is not kept
            QCOMPARE(dialog.SelectedCOM(), std::int16_t(accepted ? port : 0));
        }
        QVERIFY(!ports.isOpenHere(2) && !ports.isOpenHere(12));
    }
};

QTEST_MAIN(FrmComportTest)
#include "frmComportTest.moc"
