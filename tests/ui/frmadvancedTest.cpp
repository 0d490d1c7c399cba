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
    // Connects unless `state` is -1, moves Part#1 to `state` and Part#2 to `state2`, opens the
    // dialog on `part` and forgets the calls that took.
    void open(std::int16_t part, std::int16_t parts, int state, int state2 = PowerOff) {
        DeviceSession& session = bench->session();
        if (state < 0) {
            session.ChipState[0] = OwiMode;  // on record, but no programmer connected
        } else {
            session.ConnectProgrammer(1, bench->prompts);
            ChipStateMachine chips(session, bench->prompts, bench->pause);
            chips.ChipChangeToState(0, 0, state);
            chips.ChipChangeToState(1, 0, state2);
        }
        bench->clearTrace();
        dialog->Init(part, parts);
        dialog->show();
    }
    static QStringList reads(int part) {
        QStringList calls;
        for (const char* address : {"1", "2", "3", "4", "5",  "6",  "7",  "8",  "9",  "A", "B",
                                    "C", "D", "E", "F", "10", "11", "12", "14", "48", "30"}) {
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
        open(0, 2, OwiMode, AdcMode);
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
        bench->clearTrace();
        click(dialog.get(), "memread");
        QCOMPARE(bench->trace(), reads(0));
        QCOMPARE(box("out", 0)->text(), QStringLiteral("AB"));
        QCOMPARE(box("out", 19)->text(), QStringLiteral("35"));  // the identification word
        QCOMPARE(box("out", 25)->text(), QStringLiteral("FFFFFFFF"));

        // The other part starts with empty rows, and in ADC mode it is taken to OWI mode first.
        find<QRadioButton>(dialog.get(), "PartOption", 1)->click();
        QVERIFY(box("Din", 25)->text().isEmpty() && box("out", 25)->text().isEmpty());
        bench->clearTrace();
        click(dialog.get(), "memread");
        QCOMPARE(bench->trace(), QStringList{"EnterOWIMode(1)"} + reads(1));
        QCOMPARE(bench->session().ChipState[1], std::int32_t(OwiMode));
        QCOMPARE(box("out", 19)->text(), QStringLiteral("36"));
    }

    void refusalsReachNoDevice() {
        const QString row = QStringLiteral("Row %1: Address and Data must be hexadecimal numbers!");
        const QString notOwi = QStringLiteral("Error: Not in OWI mode");
        const QString offline = QStringLiteral("Programmer is not connected!");
        // Part#1's state (-1: OWI mode on record, but no programmer connected), whether rows are
        // bad, and the messages of Read, then of Write. Read ignores the data.
        const std::tuple<int, bool, QStringList> cases[] = {
            {AdcMode, true, {row.arg(5), row.arg(3)}},
            {PowerOff, false, {notOwi, notOwi}},
            {-1, false, {offline, offline}}};
        for (const auto& [state, badRows, messages] : cases) {
            cleanup();
            init();
            open(0, 1, state);
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
    }
};

QTEST_MAIN(FrmAdvancedTest)
#include "frmadvancedTest.moc"
