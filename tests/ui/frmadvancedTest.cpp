#include <QRadioButton>
#include <QtTest>

#include "device/ChipStateMachine.h"
#include "support/WindowHarness.h"
#include "ui/dialogs/frmadvanced.h"

using namespace rk31;
using namespace rk31::test;

// Opening the dialog from a window is covered by the windows' tests; these pin the calls it makes.
class FrmAdvancedTest : public QObject {
    Q_OBJECT

    std::unique_ptr<Bench> bench;
    std::unique_ptr<frmadvanced> dialog;

    QLineEdit* box(const char* name, int row) { return find<QLineEdit>(dialog.get(), name, row); }
    // Connects, moves each part to its state, opens the dialog and forgets the calls that took.
    void open(std::int16_t part, std::int16_t parts, std::array<std::int32_t, 2> states) {
        DeviceSession& session = bench->session();
        session.ConnectProgrammer(1, bench->prompts);
        for (std::int16_t k : {0, 1}) {
            ChipStateMachine(session, bench->prompts, bench->pause)
                .ChipChangeToState(k, 0, states[k]);
        }
        bench->clearTrace();
        dialog->Init(part, parts);
        dialog->show();
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
        bench = std::make_unique<Bench>();
        dialog = std::make_unique<frmadvanced>(bench->session(), bench->prompts, bench->pause);
    }
    void cleanup() {
        dialog.reset();
        bench.reset();
    }

    void writesThenReadsEveryAddressThenTheOtherPart() {
        open(0, 2, {OwiMode, AdcMode});
        box("Din", 0)->setText(QStringLiteral("ab"));
        box("Din", 2)->setText(QStringLiteral("1234"));
        box("add", 25)->setText(QStringLiteral("30"));
        box("Din", 25)->setText(QStringLiteral("FFFFFFFF"));
        box("Din", 26)->setText(QStringLiteral("77"));  // no address
        click(dialog.get(), "memwritewithCRC");
        QCOMPARE(bench->trace(),
                 (QStringList{"GetMemoryAccess()", "WriteMemory(0, &H1, &HAB)", "GetMemoryAccess()",
                              "WriteMemory(0, &H3, &H1234)", "GetMemoryAccess()",
                              "WriteMemory(0, &H30, &HFFFFFFFF)"}));

        const QStringList addresses{"1", "2", "3", "4", "5",  "6",  "7",  "8",  "9",  "A", "B",
                                    "C", "D", "E", "F", "10", "11", "12", "14", "48", "30"};
        bench->clearTrace();
        click(dialog.get(), "memread");
        QCOMPARE(bench->trace(), reads(0, addresses));
        QCOMPARE(box("out", 0)->text(), QStringLiteral("AB"));
        QCOMPARE(box("out", 19)->text(), QStringLiteral("35"));  // the identification word
        QCOMPARE(box("out", 25)->text(), QStringLiteral("FFFFFFFF"));

        // The other part starts with empty rows, and in ADC mode it is taken to OWI mode first.
        find<QRadioButton>(dialog.get(), "PartOption", 1)->click();
        QVERIFY(box("Din", 25)->text().isEmpty() && box("out", 25)->text().isEmpty());
        bench->clearTrace();
        click(dialog.get(), "memread");
        QCOMPARE(bench->trace(), QStringList{"EnterOWIMode(1)"} + reads(1, addresses));
        QCOMPARE(bench->session().ChipState[1], std::int32_t(OwiMode));
        QCOMPARE(box("out", 19)->text(), QStringLiteral("36"));
    }

    void refusalsReachNoDevice_data() {
        QTest::addColumn<int>("state");  // -1: OWI mode on record, but no programmer connected
        QTest::addColumn<bool>("badRows");
        QTest::addColumn<QStringList>("messages");  // of Read, then of Write
        const QString row = QStringLiteral("Row %1: Address and Data must be hexadecimal numbers!");
        const QString notOwi = QStringLiteral("Error: Not in OWI mode");
        QTest::newRow("bad rows, read ignores the data")
            << int(AdcMode) << true << QStringList{row.arg(5), row.arg(3)};
        QTest::newRow("powered off") << int(PowerOff) << false << QStringList{notOwi, notOwi};
        QTest::newRow("no programmer")
            << -1 << false
            << QStringList{"Programmer is not connected!", "Programmer is not connected!"};
    }
    void refusalsReachNoDevice() {
        QFETCH(int, state);
        QFETCH(bool, badRows);
        QFETCH(QStringList, messages);
        if (state < 0) {
            bench->session().ChipState[0] = OwiMode;
            dialog->Init(0, 1);
            dialog->show();
        } else {
            open(0, 1, {state, PowerOff});
        }
        box("Din", 0)->setText(QStringLiteral("1"));
        if (badRows) {
            box("Din", 3)->setText(QStringLiteral("G1"));
            box("add", 5)->setText(QStringLiteral("XYZ"));
        }
        click(dialog.get(), "memread");
        click(dialog.get(), "memwritewithCRC");
        QCOMPARE(bench->prompts.messages, messages);
        QCOMPARE(bench->trace(), QStringList());
        QCOMPARE(bench->session().ChipState[0], state < 0 ? OwiMode : state);
    }
};

QTEST_MAIN(FrmAdvancedTest)
#include "frmadvancedTest.moc"
