// The point windows' settings files through their Save and Load buttons: the 9-line file of the
// one-part windows, the 18-line file of the dual windows, and what a wrong file does.
#include <QTemporaryDir>
#include <QtTest>

#include "ui/PointHarness.h"

using namespace rk31;
using namespace rk31::test;

namespace {

const QString kDefaultOnePartFile = QStringLiteral(
    "Part #Index:0\r\nDirection is:0\r\nDP is(deg):260.00\r\nClamp High is(%):95.00\r\n"
    "Clamp Low is(%):5.00\r\nAngle of Point A is(deg):\r\nLevel of Point A is(%):\r\n"
    "Angle of Point B is(deg):\r\nLevel of Point B is(%):\r\n");

QString integrityMessage(int error) {
    return QStringLiteral(
               "Error with number:%1 occurs! Please check the integrity of profile file!")
        .arg(error);
}

QByteArray readAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString& path, const QString& text) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text.toUtf8());
}

// The texts of a window's parameter boxes and the direction values, for before/after checks.
QStringList boxesOf(QWidget* w, bool dual) {
    QStringList values;
    for (int part = 0; part < (dual ? 2 : 1); ++part) {
        const int index = dual ? part : -1;
        for (const char* box : {"DP", "clamphigh", "clamplow"}) {
            values << textOf(w, box, index);
        }
        values << QString::number(find<QCheckBox>(w, "clockwise", index)->checkState());
        for (int k = 0; k < 2; ++k) {
            const int point = dual ? part * 2 + k : k;
            values << textOf(w, "Angle", point) << textOf(w, "Level", point);
        }
    }
    return values;
}

}  // namespace

class PointSettingsTest : public QObject {
    Q_OBJECT
  private slots:
    void init() { bench = std::make_unique<Bench>(); }
    void cleanup() { bench.reset(); }

    void freshWindowWritesItsDefaults();
    void oneThatWasSavedLoadsTheSame_data();
    void oneThatWasSavedLoadsTheSame();
    void dualFileHoldsBothParts();
    void wrongFilesStopTheLoad_data();
    void wrongFilesStopTheLoad();
    void loadedValuesAreCheckedAgain_data();
    void loadedValuesAreCheckedAgain();
    void offsetsAreNotPartOfTheFile();

  private:
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
};

void PointSettingsTest::freshWindowWritesItsDefaults() {
    for (const int variant : {2, 4, 6}) {
        auto window = makePointWindow(*bench, variant);
        const QString path = save(window.get(), QStringLiteral("fresh%1").arg(variant));
        QCOMPARE(QString::fromUtf8(readAll(path)), kDefaultOnePartFile);
    }
    QCOMPARE(bench->prompts.fileDialogTitles.first(), QStringLiteral("Select file name..."));
    QVERIFY(bench->prompts.messages.isEmpty());
}

void PointSettingsTest::oneThatWasSavedLoadsTheSame_data() {
    QTest::addColumn<int>("variant");
    QTest::newRow("/2") << 2;
    QTest::newRow("/3") << 3;
    QTest::newRow("/4") << 4;
    QTest::newRow("/5") << 5;
    QTest::newRow("/6") << 6;
}

void PointSettingsTest::oneThatWasSavedLoadsTheSame() {
    QFETCH(int, variant);
    const bool dual = variant == 3 || variant == 5;
    auto window = makePointWindow(*bench, variant);
    QWidget* w = window.get();
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
    const QStringList saved = boxesOf(w, dual);
    const QString path = save(w, QStringLiteral("profile%1").arg(variant));
    QCOMPARE(readAll(path).count("\r\n"), dual ? 18 : 9);
    if (!dual) {
        QVERIFY(
            readAll(path).startsWith("Part #Index:1\r\nDirection is:1\r\nDP is(deg):123.46\r\n"));
    }

    auto other = makePointWindow(*bench, variant);
    load(other.get(), path);
    QVERIFY2(bench->prompts.messages.isEmpty(), qPrintable(bench->prompts.messages.join('|')));
    QCOMPARE(boxesOf(other.get(), dual), saved);
    if (!dual) {
        QCOMPARE(find<QComboBox>(other.get(), "PartSel")->currentIndex(), 1);
    }
    // The load checked the boxes again, so the values follow the texts.
    const auto& params = other->context().params[dual ? 1 : 0];
    QCOMPARE(params.DP, 123.46f);
    QCOMPARE(params.ClampLow, 12.5f);
    QCOMPARE(params.Angle[1], 33.3f);
}

void PointSettingsTest::dualFileHoldsBothParts() {
    auto window = makePointWindow(*bench, 5);
    QWidget* w = window.get();
    typeInto(w, "DP", 1, "10");
    typeInto(w, "Angle", 2, "45");
    typeInto(w, "Level", 3, "99.5");
    check(w, "clockwise", 0, true);
    const QString path = save(w, QStringLiteral("dual.txt"));
    QCOMPARE(
        QString::fromUtf8(readAll(path)),
        QStringLiteral(
            "Part #1:\r\nDirection is:1\r\nDP is(deg):260.00\r\nClamp High is(%):95.00\r\n"
            "Clamp Low is(%):5.00\r\nAngle of Point A is(deg):\r\nLevel of Point A is(%):\r\n"
            "Angle of Point B is(deg):\r\nLevel of Point B is(%):\r\n"
            "Part #2:\r\nDirection is:0\r\nDP is(deg):10.00\r\nClamp High is(%):95.00\r\n"
            "Clamp Low is(%):5.00\r\nAngle of Point A is(deg):45.00\r\nLevel of Point A is(%):\r\n"
            "Angle of Point B is(deg):\r\nLevel of Point B is(%):99.50\r\n"));
}

void PointSettingsTest::wrongFilesStopTheLoad_data() {
    QTest::addColumn<int>("variant");
    QTest::addColumn<QString>("content");  // "" = no file at all
    QTest::addColumn<QString>("message");
    // The boxes after the load as boxesOf lists them; the direction as Qt's check state
    // (2 checked, 1 the greyed third state).
    QTest::addColumn<QStringList>("changed");

    const QStringList fresh = {"260.00", "95.00", "5.00", "0", "", "", "", ""};
    const QString onePart =
        "Part #Index:1\r\nDirection is:1\r\nDP is(deg):100.00\r\nClamp High is(%):90.00\r\n"
        "Clamp Low is(%):10.00\r\nAngle of Point A is(deg):10.00\r\nLevel of Point A "
        "is(%):20.00\r\n"
        "Angle of Point B is(deg):200.00\r\nLevel of Point B is(%):80.00\r\n";
    QTest::newRow("no such file") << 2 << ""
                                  << "The selected file cannot be found!" << fresh;
    QTest::newRow("two-part file into a one-part window")
        << 2 << "Part #1:\r\nVDD is(V):5.000\r\nDirection is:CW\r\n"
        << integrityMessage(13) << fresh;
    QTest::newRow("dual file into a one-part window") << 6 << "Part #1:\r\nDirection is:0\r\n"
                                                      << integrityMessage(13) << fresh;
    QTest::newRow("part index beyond the list") << 4 << "Part #Index:2\r\nDirection is:0\r\n"
                                                << integrityMessage(380) << fresh;
    QTest::newRow("direction written as a word")
        << 2 << "Part #Index:0\r\nDirection is:CW\r\nDP is(deg):1\r\n"
        << integrityMessage(13) << fresh;
    QTest::newRow("short file keeps what was read")
        << 2 << "Part #Index:0\r\nDirection is:1\r\nDP is(deg):77x\r\n"
        << integrityMessage(62) << QStringList{"77x", "95.00", "5.00", "2", "", "", "", ""};
    QTest::newRow("one-part file into a dual window: part 2 untouched")
        << 3 << onePart << integrityMessage(62)
        << QStringList{"100.00", "90.00", "10.00", "2", "10.00", "20.00", "200.00", "80.00"} +
               fresh;
}

void PointSettingsTest::wrongFilesStopTheLoad() {
    QFETCH(int, variant);
    QFETCH(QString, content);
    QFETCH(QString, message);
    QFETCH(QStringList, changed);
    const bool dual = variant == 3 || variant == 5;
    auto window = makePointWindow(*bench, variant);
    const QString path = dir.filePath(QStringLiteral("wrong.txt"));
    QFile::remove(path);
    if (!content.isEmpty()) {
        writeFile(path, content);
    }
    load(window.get(), path);
    QCOMPARE(bench->prompts.messages, QStringList{message});
    QCOMPARE(boxesOf(window.get(), dual), changed);
}

void PointSettingsTest::loadedValuesAreCheckedAgain_data() {
    QTest::addColumn<int>("variant");
    QTest::addColumn<QStringList>("messages");
    QTest::newRow("one-part window names the box")
        << 2
        << QStringList{
               "Part#1: Angle 0 Input is Invalid! Restoring to default\u2026 Please try again!",
               "Part#1: Level 1 Input is Invalid! Restoring to default\u2026 Please try again!"};
    QTest::newRow("dual window corrects silently") << 3 << QStringList{};
}

void PointSettingsTest::loadedValuesAreCheckedAgain() {
    QFETCH(int, variant);
    QFETCH(QStringList, messages);
    const bool dual = variant == 3;
    const QString block =
        "Direction is:2\r\nDP is(deg):400\r\nClamp High is(%):150\r\nClamp Low is(%):-3\r\n"
        "Angle of Point A is(deg):abc\r\nLevel of Point A is(%):-5\r\n"
        "Angle of Point B is(deg):1E2\r\nLevel of Point B is(%):1e2\r\n";
    const QString path = dir.filePath(QStringLiteral("corrected.txt"));
    writeFile(path,
              dual ? "Part #1:\r\n" + block + "Part #2:\r\n" + block : "Part #Index:0\r\n" + block);
    auto window = makePointWindow(*bench, variant);
    load(window.get(), path);
    QCOMPARE(bench->prompts.messages, messages);
    // Direction 2 is the greyed third state; DP, clamps and levels corrected without a word.
    const QStringList part = {"359.99", "100.00", "0", "1", "", "0.00", "100.00", ""};
    QCOMPARE(boxesOf(window.get(), dual), dual ? part + part : part);
    QCOMPARE(window->context().params[0].Angle[1], 100.0f);
    QCOMPARE(window->context().params[0].Angle[0], EmptyValue);
}

void PointSettingsTest::offsetsAreNotPartOfTheFile() {
    auto window = makePointWindow(*bench, 6);
    QWidget* w = window.get();
    typeInto(w, "OffsetDP", -1, "45");
    typeInto(w, "OffsetAngleB", -1, "90");
    const QString path = save(w, QStringLiteral("offsets"));
    QVERIFY(!readAll(path).contains("45"));
    typeInto(w, "OffsetDP", -1, "12");
    load(w, path);
    QCOMPARE(textOf(w, "OffsetDP") + " " + textOf(w, "OffsetAngleB"),
             QStringLiteral("12.00 90.00"));
}

QTEST_MAIN(PointSettingsTest)
#include "PointSettingsTest.moc"
