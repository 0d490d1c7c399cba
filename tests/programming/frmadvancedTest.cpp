#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>

#include "chipsession/ChipStateMachine.h"
#include "core/Services.h"
#include "link/DeviceFactory.h"
#include "programming/widgets/frmadvanced.h"
#include "shell/DeviceSession.h"
#include "sim/SimulatedProgrammer.h"
#include "support/ScriptedPrompts.h"

using namespace rk31;

class FrmAdvancedTest : public QObject {
    Q_OBJECT

    test::ScriptedPrompts prompts;
    test::RecordingPause pause;
    sim::Simulation simulation;
    std::unique_ptr<ScopedServices> services;
    std::unique_ptr<frmadvanced> dialog;

    QLineEdit* box(const char* name, int row) {
        return dialog->findChild<QLineEdit*>(QStringLiteral("%1_%2").arg(name).arg(row));
    }
    QRadioButton* option(int k) {
        return dialog->findChild<QRadioButton*>(QStringLiteral("PartOption_%1").arg(k));
    }
    void click(const char* name) {
        dialog->findChild<QPushButton*>(QString::fromLatin1(name))->click();
    }
    // Connects, moves the part to the state and forgets the calls that took.
    void prepare(std::int16_t part, std::int32_t state) {
        DeviceSession& session = DeviceSession::instance();
        session.ConnectProgrammer(3, prompts);
        ChipStateMachine(session, prompts, pause).ChipChangeToState(part, 0, state);
        simulation.box->clearTrace();
    }
    static QStringList reads(int part, const QStringList& addresses) {
        QStringList calls;
        for (const QString& address : addresses) {
            calls << "GetMemoryAccess()"
                  << QStringLiteral("ReadMemory(%1, &H%2)").arg(part).arg(address);
        }
        return calls;
    }

  private slots:
    void init() {
        prompts.clear();
        simulation = sim::InstallSimulation({});
        DeviceSession::instance().resetToFreshProcess();
        services =
            std::make_unique<ScopedServices>(Services{&prompts, &pause, simulation.ports.get()});
        dialog = std::make_unique<frmadvanced>();
    }
    void cleanup() {
        dialog.reset();
        services.reset();
        DeviceSession::instance().resetToFreshProcess();
        DeviceFactory::Unregister(QString::fromLatin1(kDeviceProgId));
    }

    void readShowsEveryAddressedWordAndTheIdentification() {
        prepare(0, OwiMode);
        dialog->Init(0, 1);
        dialog->show();
        box("Din", 2)->setText(QStringLiteral("55"));
        click("memread");
        QVERIFY(prompts.messages.isEmpty());
        QCOMPARE(simulation.box->trace,
                 reads(0, {"1", "2", "3", "4", "5", "6",  "7",  "8",  "9",  "A",
                           "B", "C", "D", "E", "F", "10", "11", "12", "14", "48"}));
        QCOMPARE(box("out", 19)->text(),
                 QString::number(simulation.box->dies[0].chipId, 16).toUpper());
        QVERIFY(box("out", 20)->text().isEmpty());
    }

    void partInAdcModeIsTakenToOwiModeFirst() {
        prepare(1, AdcMode);
        for (int row = 1; row < 20; ++row) {
            box("add", row)->clear();
        }
        dialog->Init(1, 1);
        dialog->show();
        click("memread");
        QCOMPARE(simulation.box->trace, QStringList{"EnterOWIMode(1)"} + reads(1, {"1"}));
        QCOMPARE(DeviceSession::instance().ChipState[1], std::int32_t(OwiMode));
    }

    void writeSendsRowsWithAddressAndDataOnly() {
        prepare(0, OwiMode);
        dialog->Init(0, 1);
        dialog->show();
        box("Din", 0)->setText(QStringLiteral("ab"));
        box("Din", 2)->setText(QStringLiteral("1234"));
        box("add", 25)->setText(QStringLiteral("30"));
        box("Din", 25)->setText(QStringLiteral("FFFFFFFF"));
        box("Din", 26)->setText(QStringLiteral("77"));  // no address
        click("memwritewithCRC");
        QVERIFY(prompts.messages.isEmpty());
        QCOMPARE(simulation.box->trace,
                 (QStringList{"GetMemoryAccess()", "WriteMemory(0, &H1, &HAB)", "GetMemoryAccess()",
                              "WriteMemory(0, &H3, &H1234)", "GetMemoryAccess()",
                              "WriteMemory(0, &H30, &HFFFFFFFF)"}));
        QVERIFY(box("out", 25)->text().isEmpty());

        click("memread");
        QCOMPARE(box("out", 25)->text(), QStringLiteral("FFFFFFFF"));
    }

    void badHexadecimalSendsNothing_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("field");
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("text");
        QTest::newRow("read, address") << "memread"
                                       << "add" << 5 << "XYZ";
        QTest::newRow("write, address") << "memwritewithCRC"
                                        << "add" << 28 << "0x10";
        QTest::newRow("write, data") << "memwritewithCRC"
                                     << "Din" << 7 << "G1";
    }
    void badHexadecimalSendsNothing() {
        QFETCH(QString, button);
        QFETCH(QString, field);
        QFETCH(int, row);
        QFETCH(QString, text);
        prepare(0, AdcMode);
        dialog->Init(0, 1);
        dialog->show();
        box("Din", 0)->setText(QStringLiteral("1"));
        box("Din", 28)->setText(QStringLiteral("1"));
        box(field.toLatin1().constData(), row)->setText(text);
        click(button.toLatin1().constData());
        QCOMPARE(
            prompts.messages,
            QStringList{
                QStringLiteral("Row %1: Address and Data must be hexadecimal numbers!").arg(row)});
        QCOMPARE(simulation.box->trace, QStringList{});
        QCOMPARE(DeviceSession::instance().ChipState[0], std::int32_t(AdcMode));
    }

    void partPoweredOffIsNotInOwiMode() {
        prepare(0, PowerOff);
        dialog->Init(0, 1);
        dialog->show();
        click("memread");
        click("memwritewithCRC");
        QCOMPARE(prompts.messages,
                 (QStringList{"Error: Not in OWI mode", "Error: Not in OWI mode"}));
        QCOMPARE(simulation.box->trace, QStringList{});
    }

    void withoutProgrammerTheHandlerReportsIt() {
        DeviceSession::instance().ChipState[0] = OwiMode;
        dialog->Init(0, 1);
        dialog->show();
        click("memread");
        QCOMPARE(prompts.messages, QStringList{"Programmer is not connected!"});
    }

    void partOptions() {
        dialog->Init(1, 1);
        dialog->show();
        QVERIFY(option(1)->isChecked());
        QVERIFY(!option(0)->isEnabled() && !option(1)->isEnabled());

        auto other = std::make_unique<frmadvanced>();
        dialog.swap(other);
        dialog->Init(0, 2);
        dialog->show();
        QVERIFY(option(0)->isChecked() && option(0)->isEnabled() && option(1)->isEnabled());
        box("Din", 3)->setText(QStringLiteral("12"));
        box("out", 30)->setText(QStringLiteral("34"));
        option(0)->click();
        QCOMPARE(box("Din", 3)->text(), QStringLiteral("12"));
        QCOMPARE(box("out", 30)->text(), QStringLiteral("34"));

        option(1)->click();
        QVERIFY(box("Din", 3)->text().isEmpty());
        QVERIFY(box("out", 30)->text().isEmpty());
        QCOMPARE(box("add", 19)->text(), QStringLiteral("48"));

        prepare(1, OwiMode);
        for (int row = 1; row < 20; ++row) {
            box("add", row)->clear();
        }
        click("memread");
        QCOMPARE(simulation.box->trace, reads(1, {"1"}));
    }
};

QTEST_MAIN(FrmAdvancedTest)
#include "frmadvancedTest.moc"
