#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "domain/ControlNames.h"
#include "domain/SettingsFile.h"
#include "domain/ValueControlView.h"
#include "support/ScriptedPrompts.h"

using namespace rk31;

namespace {

QByteArray readBytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

constexpr auto kTwoPart = WindowFamily::TwoPartTwoSupplies;

// A two-part window's controls as it opens: its lists at their first item.
ValueControlView freshTwoPartWindow() {
    ValueControlView view(TwoPartControls(false));
    for (int part = 0; part < 2; ++part) {
        for (const QString& list : {ctl::OutMode, ctl::PWMFreq, ctl::PWMPolarity}) {
            view.setListIndex(list, part, 0);
        }
    }
    return view;
}

// Every field away from its default, with texts that a careless reader would mangle; boxes are
// saved as they stand, even when not yet validated.
ValueControlView typedTwoPartWindow() {
    ValueControlView view = freshTwoPartWindow();
    // clang-format off
    const struct { const QString& name; int index; const char* text; } texts[] = {
        {ctl::VDD, 0, "4.987"}, {ctl::DP, 0, "123.46"}, {ctl::clamphigh, 0, "90.00"}, {ctl::clamplow, 0, "10.00"},
        {ctl::Angle, 0, "10.00"}, {ctl::Level, 2, "35.00"}, {ctl::KforA, 0, "-0.2500"}, {ctl::op, 0, "45.00"},
        {ctl::hys, 0, "2.25"}, {ctl::VDD, 1, " 5 V"}, {ctl::DP, 1, "abc"}, {ctl::Angle, 7, "4"}, {ctl::Level, 4, "5"},
        {ctl::Angle, 4, "Angle: 12\u00b0 \U0001F600"},
    };
    // clang-format on
    for (const auto& t : texts) {
        view.setText(t.name, t.index, QString::fromUtf8(t.text));
    }
    view.setValue(ctl::clockwise, 0, 1);
    view.setValue(ctl::Kpolarity, 1, 1);
    view.setListIndex(ctl::OutMode, 0, 1);
    view.setListIndex(ctl::PWMFreq, 0, 3);
    view.setListIndex(ctl::PWMPolarity, 1, 1);
    view.setListIndex(ctl::OutMode, 1, -1);
    return view;
}

}  // namespace

TEST(TwoPartSettingsFile, FreshWindowWritesTheExampleLines) {
    // clang-format off
    const QStringList part = {"VDD is(V):5.000", "Direction is:CCW", "DP is(deg):260.00", "Clamp High is(%):95.00",
        "Clamp Low is(%):5.00", "Angle of Point A is(deg):", "Level of Point A is(%):", "Angle of Point B is(deg):",
        "Level of Point B is(%):", "Angle of Point C is(deg):", "Level of Point C is(%):", "Angle of Point D is(deg):",
        "Level of Point D is(%):", "Slope parameter is(%VDD/deg):", "OP parameter is(deg):",
        "HYS parameter is(deg):1.00", "Polarity parameter is:0", "OutMode is:0", "PWMFreq is:0", "PWMPolarity is0"};
    // clang-format on
    EXPECT_EQ(SettingsLinesOf(freshTwoPartWindow(), kTwoPart),
              QStringList{"Part #1:"} + part + QStringList{"Part #2:"} + part);
}

TEST(TwoPartSettingsFile, RoundTripReadsByPosition) {
    QTemporaryDir dir;
    const QString path = dir.filePath("profile.txt");
    const QStringList written = SettingsLinesOf(typedTwoPartWindow(), kTwoPart);
    EXPECT_EQ(written.mid(2, 1) + written.mid(38, 2),
              QStringList({"Direction is:CW", "Polarity parameter is:1", "OutMode is:-1"}));
    // Misspell every label but keep its length, so the values stay where they were.
    QStringList lines = written;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const auto length = TwoPartLayout()[static_cast<std::size_t>(i)].label.size();
        lines[i] = QString(length, u'#') + lines[i].mid(length);
    }
    ASSERT_TRUE(SaveLines(path, lines << "a line after the last one"));
    ValueControlView read = freshTwoPartWindow();
    EXPECT_EQ(ApplySettingsLines(LoadLines(path).lines, kTwoPart, read).error, 0);
    EXPECT_EQ(SettingsLinesOf(read, kTwoPart), written);
}

// One line of a fresh window's file replaced: list indexes are checked and stop the reading;
// check boxes read 1 only from their exact word; a short line reads as an empty text.
TEST(TwoPartSettingsFile, OneLineChanged) {
    // clang-format off
    const struct { int line; const char* text; int error, clockwise = 0, polarity = 0; const char* dp = "260.00"; } cases[] = {
        {19, "OutMode is:A", 13}, {19, "OutMode is:", 13}, {19, "OutMode is:5", 380}, {19, "OutMode is:-2", 380},
        {19, "OutMode is:1.5", 380}, {19, "OutMode is:0.5", 0}, {19, "OutMode is:-1", 0}, {19, "OutMode is: 1 ", 0},
        {19, "OutMode is:1E0", 0}, {20, "PWMFreq is:4", 380}, {20, "PWMFreq is:3", 0}, {41, "PWMFreq is:4", 380},
        {42, "PWMPolarity isx", 13}, {42, "PWMPolarity is1", 0},
        {3, "Direction is:CW", 0, 1}, {3, "Direction is:cw", 0}, {3, "Direction is:CW ", 0}, {3, "Direction is:1", 0},
        {18, "Polarity parameter is:1", 0, 0, 1}, {18, "Polarity parameter is:CW", 0},
        {4, "DP is(deg):", 0, 0, 0, ""}, {4, "DP", 0, 0, 0, ""}, {4, "DP is(deg): 400", 0, 0, 0, " 400"},
    };
    // clang-format on
    for (const auto& c : cases) {
        QStringList lines = SettingsLinesOf(freshTwoPartWindow(), kTwoPart);
        lines[c.line - 1] = c.text;
        // The window shows other values than the file's where the reading stops before them.
        ValueControlView view = freshTwoPartWindow();
        view.setValue(ctl::clockwise, 0, 1);
        view.setValue(ctl::Kpolarity, 0, 1);
        const SettingsReadResult read = ApplySettingsLines(lines, kTwoPart, view);
        EXPECT_EQ(std::tuple(read.error, read.line, view.value(ctl::clockwise, 0),
                             view.value(ctl::Kpolarity, 0), view.text(ctl::DP, 0)),
                  std::tuple(c.error, c.error ? c.line : 0, c.clockwise, c.polarity, QString(c.dp)))
            << c.text;
    }
}

// A value's fixed position inside a character beyond 16 bits: the value takes the whole
// character, so that saving and loading give back the same text.
TEST(TwoPartSettingsFile, CutInsideACharacterTakesAllOfIt) {
    QStringList lines = SettingsLinesOf(freshTwoPartWindow(), kTwoPart);
    lines[3] = QStringLiteral("DP is(deg)\U0001F600260");
    ValueControlView view = freshTwoPartWindow();
    ASSERT_EQ(ApplySettingsLines(lines, kTwoPart, view).error, 0);
    EXPECT_EQ(view.text(ctl::DP, 0), QStringLiteral("\U0001F600260"));
    ValueControlView again = freshTwoPartWindow();
    ApplySettingsLines(LinesOfBytes(BytesOfLines(SettingsLinesOf(view, kTwoPart))), kTwoPart,
                       again);
    EXPECT_EQ(again.text(ctl::DP, 0), view.text(ctl::DP, 0));
}

TEST(SettingsFileIO, NamingRule) {
    // clang-format off
    const struct { const char* chosen; const char* path; } cases[] = {
        {"profile", "profile.txt"}, {"profile.TXT", "profile.TXT.txt"}, {"a.txt", "a.txt"},
        {".txt", ".txt.txt"},       {"/tmp/x.txt", "/tmp/x.txt"},       {"b.txt ", "b.txt .txt"},
    };
    // clang-format on
    for (const auto& c : cases) {
        EXPECT_EQ(SettingsFilePath(c.chosen), c.path) << c.chosen;
    }
}

TEST(SettingsFileIO, LinesAreWrittenWithCrLfAndReadWithEither) {
    QTemporaryDir dir;
    const QString path = dir.filePath("lines.txt");
    ASSERT_TRUE(SaveLines(path, {"Part #1:", "", "Angle: 12°"}));
    EXPECT_EQ(readBytes(path), QByteArray("Part #1:\r\n\r\nAngle: 12\xC2\xB0\r\n"));
    EXPECT_EQ(LoadLines(path).lines, QStringList({"Part #1:", "", "Angle: 12°"}));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("Part #1:\nDP is(deg):\n\nlast without end");
    file.close();
    EXPECT_EQ(LoadLines(path).lines,
              QStringList({"Part #1:", "DP is(deg):", "", "last without end"}));
}

TEST(SettingsFileIO, SaveAndOpenCommands) {
    QTemporaryDir dir;
    test::ScriptedPrompts prompts;
    QString lastName;
    // A cancelled dialog: nothing written, nothing said.
    EXPECT_FALSE(SaveSettingsFile({"x"}, lastName, prompts));
    EXPECT_TRUE(QDir(dir.path()).isEmpty() && prompts.messages.isEmpty());

    const QString base = dir.filePath("profile");
    prompts.fileNames = {base, dir.filePath("no/such/folder/p.txt")};
    EXPECT_TRUE(SaveSettingsFile({"first"}, lastName, prompts));
    EXPECT_FALSE(SaveSettingsFile({"x"}, lastName, prompts));
    // Loading takes the name as it is: no ".txt" is added. A folder cannot be read: error 75.
    EXPECT_FALSE(ReadSettingsFile(base, prompts).has_value());
    EXPECT_FALSE(ReadSettingsFile(dir.path(), prompts).has_value());
    EXPECT_EQ(
        prompts.messages,
        QStringList({"Error happens when saving to file!", "The selected file cannot be found!",
                     "Error with number:75 occurs! Please check the integrity of profile file!"}));
    EXPECT_EQ(ReadSettingsFile(base + ".txt", prompts), QStringList{"first"});
}

// Whatever stands at the chosen name is asked about before it is replaced; answered No, it stays.
TEST(SettingsFileIO, SaveAsksWhateverStandsThere) {
    QTemporaryDir dir;
    const QString unreadable = dir.filePath("locked.txt");
    QFile locked(unreadable);
    ASSERT_TRUE(locked.open(QIODevice::WriteOnly) && locked.write("old") == 3);
    locked.close();
    locked.setPermissions(QFileDevice::WriteOwner);
    const QString dangling = dir.filePath("link.txt");
    ASSERT_TRUE(QFile::link(dir.filePath("elsewhere/gone.txt"), dangling));
    for (const QString& path : {unreadable, dangling}) {
        test::ScriptedPrompts prompts;
        prompts.fileNames = {path};
        QString lastName;
        EXPECT_FALSE(SaveSettingsFile({"new"}, lastName, prompts)) << qPrintable(path);
        EXPECT_EQ(prompts.questions, QStringList{OverwriteQuestion}) << qPrintable(path);
    }
    EXPECT_FALSE(QFileInfo::exists(dir.filePath("elsewhere/gone.txt")));
    EXPECT_TRUE(QFileInfo(dangling).isSymLink());
    locked.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    ASSERT_TRUE(locked.open(QIODevice::ReadOnly));
    EXPECT_EQ(locked.readAll(), "old");
}

TEST(SaveDialog, ANameWithoutEndingTakesTheFilters) {
    const struct {
        const char* name;
        const char* filter;
        const char* result;
    } cases[] = {
        {"/d/curve", "PNG picture (*.png)", "/d/curve.png"},
        {"/d/curve.svg", "PNG picture (*.png)", "/d/curve.svg"},
        {"/d/curve.txt", "CSV table (*.csv)", "/d/curve.txt"},
        {"/d.x/curve", "CSV table (*.csv)", "/d.x/curve.csv"},
        {"/d/curve", "", "/d/curve"},
        {"", "PNG picture (*.png)", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(NameWithFilterEnding(c.name, c.filter), QString::fromLatin1(c.result)) << c.name;
    }
}
