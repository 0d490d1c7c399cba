#include <QComboBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

#include "core/Services.h"
#include "link/widgets/frmComport.h"
#include "sim/SimulatedProgrammer.h"
#include "support/ScriptedPrompts.h"

using namespace rk31;

namespace {

const QString kInvalidPort = QStringLiteral("This port is invalid, Please select another port!");

QStringList items(const QComboBox& box) {
    QStringList list;
    for (int i = 0; i < box.count(); ++i) {
        list << box.itemText(i);
    }
    return list;
}

}  // namespace

class FrmComportTest : public QObject {
    Q_OBJECT

    test::ScriptedPrompts prompts;
    test::RecordingPause pause;
    sim::SimulatedPorts ports;
    std::unique_ptr<ScopedServices> services;

    QComboBox* portList(frmComport& dialog) {
        return dialog.findChild<QComboBox*>(QStringLiteral("Port"));
    }
    void click(frmComport& dialog, const char* name) {
        dialog.findChild<QPushButton*>(QString::fromLatin1(name))->click();
    }

  private slots:
    void init() {
        prompts.clear();
        ports = sim::SimulatedPorts();
        services = std::make_unique<ScopedServices>(Services{&prompts, &pause, &ports});
    }
    void cleanup() { services.reset(); }

    void loadListsTheSimulatedPortsWithBaudRateHidden() {
        frmComport dialog;
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Select Com port"));
        QCOMPARE(items(*portList(dialog)), (QStringList{"COM1", "COM2", "COM3"}));
        QCOMPARE(portList(dialog)->currentText(), QStringLiteral("COM1"));
        QVERIFY(portList(dialog)->isEnabled());
        auto* baud = dialog.findChild<QComboBox*>(QStringLiteral("Baudrate"));
        QCOMPARE(items(*baud), QStringList{"9600"});
        QCOMPARE(baud->currentIndex(), 0);
        dialog.show();
        QVERIFY(!baud->isVisible());
        QVERIFY(!dialog.findChild<QWidget*>(QStringLiteral("Label2"))->isVisible());
    }

    void noPortDisablesTheList() {
        ports.results.clear();
        frmComport dialog;
        QCOMPARE(portList(dialog)->count(), 0);
        QVERIFY(!portList(dialog)->isEnabled());
        dialog.show();
        click(dialog, "connect");
        QCOMPARE(prompts.messages, QStringList{kInvalidPort});
        QVERIFY(dialog.isVisible());
    }

    void connectRefusesAndStays_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("not a number") << QStringLiteral("COMx");
        QTest::newRow("held by another program") << QStringLiteral("COM2");
        QTest::newRow("fails to open") << QStringLiteral("COM9");
    }
    void connectRefusesAndStays() {
        QFETCH(QString, text);
        frmComport dialog;
        dialog.show();
        portList(dialog)->setEditText(text);
        click(dialog, "connect");
        QCOMPARE(prompts.messages, QStringList{kInvalidPort});
        QVERIFY(dialog.isVisible());
        QVERIFY(!ports.isOpenHere(2) && !ports.isOpenHere(9));
    }

    void connectChecksThePortAndLeavesItClosed() {
        frmComport dialog;
        dialog.show();
        portList(dialog)->setCurrentIndex(2);
        click(dialog, "connect");
        QVERIFY(prompts.messages.isEmpty());
        QVERIFY(!dialog.isVisible());
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(dialog.SelectedCOM(), std::int16_t(3));
        QVERIFY(!ports.isOpenHere(3));
    }

    void typedPortAboveNineIsReadFromTheFourthCharacter() {
        ports.results[12] = 0;
        frmComport dialog;
        dialog.show();
        portList(dialog)->setEditText(QStringLiteral("COM12"));
        click(dialog, "connect");
        QCOMPARE(dialog.SelectedCOM(), std::int16_t(12));
    }

    void leavingWithoutConnectingSelectsNothing_data() {
        QTest::addColumn<bool>("closeBox");
        QTest::newRow("Do not connect") << false;
        QTest::newRow("close box") << true;
    }
    void leavingWithoutConnectingSelectsNothing() {
        QFETCH(bool, closeBox);
        frmComport dialog;
        prompts.dialogScripts.push_back([&](QDialog& shown) {
            // A refused port first, so that a number was already taken from the text.
            portList(dialog)->setCurrentIndex(1);
            click(dialog, "connect");
            QCOMPARE(dialog.SelectedCOM(), std::int16_t(2));
            if (!closeBox) {
                click(dialog, "Donotconnect");
                QVERIFY(!shown.isVisible());
            }
        });
        prompts.runModal(dialog);
        QCOMPARE(dialog.SelectedCOM(), std::int16_t(0));
        QCOMPARE(prompts.modalTitles, QStringList{"Select Com port"});
    }

    void droppingTheListDownProbesAgain() {
        frmComport dialog;
        dialog.show();
        ports.results[2] = 0;
        ports.results[5] = kPortAlreadyOpen;
        ports.results[6] = 0;
        portList(dialog)->showPopup();
        QCOMPARE(items(*portList(dialog)), (QStringList{"COM1", "COM2", "COM3", "COM5", "COM6"}));
        portList(dialog)->hidePopup();
    }
};

QTEST_MAIN(FrmComportTest)
#include "frmComportTest.moc"
