// The point windows' settings files through their Save and Load buttons: the 9-line file of the
// one-part windows, the 18-line file of the dual windows, and what a wrong file does.
#include <QTemporaryDir>
#include <QtTest>

#include "ui/PointHarness.h"

using namespace rk31;
using namespace rk31::test;

namespace {

// A part's lines after its header: direction, DP, clamp high and low, then angle and level of
// points A and B.
QString block(const QStringList& v) {
    return QStringLiteral(
               "Direction is:%1\r\nDP is(deg):%2\r\nClamp High is(%):%3\r\nClamp Low is(%):%4\r\n"
               "Angle of Point A is(deg):%5\r\nLevel of Point A is(%):%6\r\n"
               "Angle of Point B is(deg):%7\r\nLevel of Point B is(%):%8\r\n")
        .arg(v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7]);
}

const QStringList kFresh = {"0", "260.00", "95.00", "5.00", "", "", "", ""};

QString readAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// The boxes of each part in the order of its block; the direction as Qt's check state (2
// checked, 1 the greyed third state).
QStringList boxesOf(QWidget* w, bool dual) {
    QStringList values;
    for (int part = 0; part < (dual ? 2 : 1); ++part) {
        const int i = dual ? part : -1, a = dual ? 2 * part : 0;
        values << QString::number(find<QCheckBox>(w, "clockwise", i)->checkState())
               << textOf(w, "DP", i) << textOf(w, "clamphigh", i) << textOf(w, "clamplow", i)
               << textOf(w, "Angle", a) << textOf(w, "Level", a) << textOf(w, "Angle", a + 1)
               << textOf(w, "Level", a + 1);
    }
    return values;
}

}  // namespace

class PointSettingsTest : public QObject {
    Q_OBJECT
    // Saves through the file dialog; the path the file should land at.
    QString save(QWidget* w, const QString& name) {
        bench->prompts.fileNames.push_back(dir.filePath(name));
        click(w, "mSaveAs");
        return dir.filePath(name.endsWith(".txt") ? name : name + ".txt");
    }
    void load(QWidget* w, const QString& path) {
        bench->prompts.fileNames.push_back(path);
        click(w, "mOpen");
    }
    std::unique_ptr<Bench> bench;
    QTemporaryDir dir;

  private slots:
    void init() { bench = std::make_unique<Bench>(); }
    void cleanup() { bench.reset(); }

    void savedFileLoadsTheSame_data() {
        QTest::addColumn<int>("variant");
        QTest::addColumn<QString>("file");  // after the edits
        const QStringList edited = {"1", "123.46", "90.00", "12.50", "", "20.00", "33.30", ""};
        // clang-format off
        QTest::newRow("/2") << 2 << "Part #Index:1\r\n" + block(edited);
        // The offsets are not part of the file.
        QTest::newRow("/6") << 6 << "Part #Index:1\r\n" + block(edited);
        // Level A of part 1 edited, the rest of part 2.
        QTest::newRow("/3") << 3 << "Part #1:\r\n" + block({"0", "260.00", "95.00", "5.00", "", "20.00", "", ""}) +
                                    "Part #2:\r\n" + block({"1", "123.46", "90.00", "12.50", "", "", "33.30", ""});
        // clang-format on
    }

    void savedFileLoadsTheSame() {
        QFETCH(int, variant);
        QFETCH(QString, file);
        const bool dual = variant == 3;
        auto window = makePointWindow(*bench, variant);
        QWidget* w = window.get();
        QCOMPARE(readAll(save(w, "fresh" + QString::number(variant))),
                 dual ? "Part #1:\r\n" + block(kFresh) + "Part #2:\r\n" + block(kFresh)
                      : "Part #Index:0\r\n" + block(kFresh));
        QCOMPARE(bench->prompts.fileDialogTitles.first(), QStringLiteral("Select file name..."));
        if (!dual) {
            find<QComboBox>(w, "PartSel")->setCurrentIndex(1);
        }
        const int last = dual ? 1 : -1;
        typeInto(w, "DP", last, "123.456");
        typeInto(w, "clamphigh", last, "90");
        typeInto(w, "clamplow", last, "12.5");
        typeInto(w, "Angle", dual ? 3 : 1, "33.3");
        typeInto(w, "Level", 0, "20");
        check(w, "clockwise", last, true);
        if (variant == 6) {
            typeInto(w, "OffsetDP", -1, "45");
            typeInto(w, "OffsetAngleB", -1, "90");
        }
        const QString path = save(w, QStringLiteral("edited%1.txt").arg(variant));
        QCOMPARE(readAll(path), file);

        // Loaded into another window, which saves the same file again.
        auto other = makePointWindow(*bench, variant);
        load(other.get(), path);
        QCOMPARE(bench->prompts.messages, QStringList());
        QCOMPARE(readAll(save(other.get(), QStringLiteral("again%1").arg(variant))), file);
        if (variant == 6) {
            QCOMPARE(textOf(other.get(), "OffsetDP") + textOf(other.get(), "OffsetAngleB"),
                     QStringLiteral("0.000.00"));
        }
        // The load checked the boxes again, so the values follow the texts.
        const auto& params = other->context().params[dual ? 1 : 0];
        QCOMPARE(QList<float>({params.DP, params.ClampLow, params.Angle[1]}),
                 QList<float>({123.46f, 12.5f, 33.3f}));
    }

    void loadChecksTheFile_data() {
        QTest::addColumn<int>("variant");
        QTest::addColumn<QString>("content");  // "" = no file at all
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<QStringList>("boxes");  // boxesOf after the load
        QTest::addColumn<float>("angleB");       // Part#1's, as the load leaves it
        const QString integrity =
            "Error with number:%1 occurs! Please check the integrity of profile file!";
        const QStringList read = {"100.00", "90.00", "10.00", "10.00", "20.00", "200.00", "80.00"};
        // Every value out of its range, or no number: corrected when the load checks the boxes.
        const QString wild = block({"2", "400", "150", "-3", "abc", "-5", "1E2", "1e2"});
        const QStringList corrected = {"1", "359.99", "100.00", "0", "", "0.00", "100.00", ""};
        const QString invalid =
            "Part#1: %1 Input is Invalid! Restoring to default\u2026 Please try again!";
        // clang-format off
        QTest::newRow("no such file") << 2 << QString() << QStringList{"The selected file cannot be found!"}
                                      << kFresh << EmptyValue;
        QTest::newRow("two-part file into a one-part window") << 2 << "Part #1:\r\nVDD is(V):5.000\r\nDirection is:CW\r\n"
            << QStringList{integrity.arg(13)} << kFresh << EmptyValue;
        QTest::newRow("part index beyond the list") << 4 << "Part #Index:2\r\nDirection is:0\r\n"
            << QStringList{integrity.arg(380)} << kFresh << EmptyValue;
        QTest::newRow("direction written as a word") << 2 << "Part #Index:0\r\nDirection is:CW\r\nDP is(deg):1\r\n"
            << QStringList{integrity.arg(13)} << kFresh << EmptyValue;
        QTest::newRow("direction beyond the check box") << 2 << "Part #Index:0\r\nDirection is:3\r\n"
            << QStringList{integrity.arg(380)} << kFresh << EmptyValue;
        // A stopped load keeps what it read, unchecked.
        QTest::newRow("short file") << 2 << "Part #Index:0\r\nDirection is:1\r\nDP is(deg):77x\r\n"
            << QStringList{integrity.arg(62)} << QStringList{"2", "77x", "95.00", "5.00", "", "", "", ""} << EmptyValue;
        QTest::newRow("one-part file into a dual window: part 2 untouched")
            << 3 << "Part #Index:1\r\n" + block(QStringList{"1"} + read) << QStringList{integrity.arg(62)}
            << QStringList{"2"} + read + kFresh << EmptyValue;
        // Direction 2 is the greyed third state; the dual windows correct without a word.
        QTest::newRow("one-part window corrects, naming the box")
            << 2 << "Part #Index:0\r\n" + wild << QStringList{invalid.arg("Angle 0"), invalid.arg("Level 1")}
            << corrected << 100.0f;
        // A list left without a selection: the messages count from its index, -1.
        QTest::newRow("no part selected") << 2 << "Part #Index:-1\r\n" + wild
            << QStringList{QString(invalid).replace("Part#1", "Part#0").arg("Angle 0"),
                           QString(invalid).replace("Part#1", "Part#0").arg("Level 1")}
            << corrected << 100.0f;
        QTest::newRow("dual window corrects silently")
            << 3 << "Part #1:\r\n" + wild + "Part #2:\r\n" + wild << QStringList() << corrected + corrected << 100.0f;
        // clang-format on
    }

    void loadChecksTheFile() {
        QFETCH(int, variant);
        QFETCH(QString, content);
        QFETCH(QStringList, messages);
        QFETCH(QStringList, boxes);
        QFETCH(float, angleB);
        auto window = makePointWindow(*bench, variant);
        const QString path = dir.filePath(QString(QTest::currentDataTag()) + ".txt");
        if (QFile file(path); !content.isEmpty() && file.open(QIODevice::WriteOnly)) {
            file.write(content.toUtf8());
        }
        load(window.get(), path);
        QCOMPARE(bench->prompts.messages, messages);
        QCOMPARE(boxesOf(window.get(), variant == 3), boxes);
        QCOMPARE(window->context().params[0].Angle[0], EmptyValue);
        QCOMPARE(window->context().params[0].Angle[1], angleB);
    }
};

QTEST_MAIN(PointSettingsTest)
#include "PointSettingsTest.moc"
