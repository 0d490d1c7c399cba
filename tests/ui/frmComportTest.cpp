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
    test::RecordingPause pause;
    sim::SimulatedPorts ports;

    static QComboBox* portList(frmComport& dialog) {
        return dialog.findChild<QComboBox*>(QStringLiteral("Port"));
    }
    static void click(frmComport& dialog, const char* name) {
        dialog.findChild<QPushButton*>(QString::fromLatin1(name))->click();
    }

  private slots:
    void init() {
        prompts.clear();
        ports = sim::SimulatedPorts();
    }

    void listIsProbedAgainWhenDroppedDown() {
        frmComport dialog(ports, prompts);
        dialog.show();
        auto* baud = dialog.findChild<QComboBox*>(QStringLiteral("Baudrate"));
        QCOMPARE(baud->currentText(), QStringLiteral("9600"));
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

    void connectChecksThePort_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<int>("port");  // the number taken from the text
        QTest::newRow("empty") << QString() << false << 0;
        QTest::newRow("not a number") << QStringLiteral("COMx") << false << 0;
        QTest::newRow("held by another program") << QStringLiteral("COM2") << false << 2;
        QTest::newRow("typed, above 9") << QStringLiteral("COM12") << true << 12;
    }
    void connectChecksThePort() {
        QFETCH(QString, text);
        QFETCH(bool, accepted);
        QFETCH(int, port);
        ports.results[12] = 0;
        frmComport dialog(ports, prompts);
        dialog.show();
        portList(dialog)->setEditText(text);
        click(dialog, "connect");
        QCOMPARE(prompts.messages,
                 accepted ? QStringList()
                          : QStringList{"This port is invalid, Please select another port!"});
        QCOMPARE(dialog.isVisible(), !accepted);
        QCOMPARE(dialog.SelectedCOM(), std::int16_t(port));
        QVERIFY(!ports.isOpenHere(2) && !ports.isOpenHere(12));
    }

    void closeBoxForgetsARefusedPort() {
        frmComport dialog(ports, prompts);
        prompts.dialogScripts.push_back([&](QDialog&) {
            portList(dialog)->setCurrentIndex(1);
            click(dialog, "connect");
            QCOMPARE(dialog.SelectedCOM(), std::int16_t(2));
        });
        prompts.runModal(dialog);
        QCOMPARE(dialog.SelectedCOM(), std::int16_t(0));
    }
};

QTEST_MAIN(FrmComportTest)
#include "frmComportTest.moc"
