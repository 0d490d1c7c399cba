#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "domain/SettingsFile.h"
#include "support/ScriptedPrompts.h"

using namespace rk31;

// Readable failure output for QString comparisons.
inline void PrintTo(const QString& text, std::ostream* os) {
    *os << '"' << text.toStdString() << '"';
}

namespace {

// Every field away from its default, with texts that a careless reader would mangle; boxes are
// saved as they stand, even when not yet validated.
// clang-format off
const TwoPartSettings kTyped{{{
    {.VDD = "4.987", .clockwise = 1, .DP = "123.46", .clamphigh = "90.00", .clamplow = "10.00",
     .Angle = {"10.00", "20.00", "30.00", ""}, .Level = {"15.00", "25.00", "35.00", ""},
     .KforA = "-0.2500", .op = "45.00", .hys = "2.25", .OutMode = 1, .PWMFreq = 3, .PWMPolarity = 1},
    {.VDD = " 5 V", .DP = "abc", .Angle = {"1", "2", "3", "4"}, .Level = {"5", "6", "7", "8"},
     .KforA = {}, .op = {}, .Kpolarity = 1, .OutMode = -1, .PWMFreq = 2, .PWMPolarity = 1},
}}};
// clang-format on

QByteArray readBytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Directory permissions do not stop root, so the save runs in a child without privileges.
bool saveAsNobody(const QString& path, const QStringList& lines) {
    const pid_t child = fork();
    if (child == 0) {
        const bool dropped = geteuid() != 0 || (setgid(65534) == 0 && setuid(65534) == 0);
        _exit(dropped && SaveLines(path, lines) ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

TEST(TwoPartSettingsFile, DefaultWindowWritesTheExampleLines) {
    // clang-format off
    const QStringList part = {"VDD is(V):5.000", "Direction is:CCW", "DP is(deg):260.00", "Clamp High is(%):95.00",
        "Clamp Low is(%):5.00", "Angle of Point A is(deg):", "Level of Point A is(%):", "Angle of Point B is(deg):",
        "Level of Point B is(%):", "Angle of Point C is(deg):", "Level of Point C is(%):", "Angle of Point D is(deg):",
        "Level of Point D is(%):", "Slope parameter is(%VDD/deg):", "OP parameter is(deg):",
        "HYS parameter is(deg):1.00", "Polarity parameter is:0", "OutMode is:0", "PWMFreq is:0", "PWMPolarity is0"};
    // clang-format on
    EXPECT_EQ(WriteTwoPartSettings({}),
              QStringList{"Part #1:"} + part + QStringList{"Part #2:"} + part);
}

TEST(TwoPartSettingsFile, RoundTripReadsByPosition) {
    QTemporaryDir dir;
    const QString path = dir.filePath("profile.txt");
    QStringList lines = WriteTwoPartSettings(kTyped);
    EXPECT_EQ(lines.mid(2, 1) + lines.mid(38, 2),
              QStringList({"Direction is:CW", "Polarity parameter is:1", "OutMode is:-1"}));
    // Misspell every label but keep its length, so the values stay where they were.
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const auto length = TwoPartLayout()[static_cast<std::size_t>(i)].label.size();
        lines[i] = QString(length, u'#') + lines[i].mid(length);
    }
    ASSERT_TRUE(SaveLines(path, lines << "a line after the last one"));
    const TwoPartSettingsRead read = ReadTwoPartSettings(LoadLines(path).lines, {});
    EXPECT_EQ(read.result.error, 0);
    EXPECT_TRUE(read.values == kTyped);
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
    TwoPartSettings current;
    current.parts[0].clockwise = current.parts[0].Kpolarity = 1;
    for (const auto& c : cases) {
        QStringList lines = WriteTwoPartSettings({});
        lines[c.line - 1] = c.text;
        const TwoPartSettingsRead read = ReadTwoPartSettings(lines, current);
        const TwoPartPartSettings& p = read.values.parts[0];
        EXPECT_EQ(std::tuple(read.result.error, read.result.line, p.clockwise, p.Kpolarity, p.DP),
                  std::tuple(c.error, c.error ? c.line : 0, c.clockwise, c.polarity, QString(c.dp)))
            << c.text;
    }
}

TEST(PointSettingsFile, FormatsAndWhatEachWindowMakesOfTheOthersFiles) {
    const QStringList onePart = WriteSettings(OnePartPointLayout(), [](const SettingsLine& line) {
        return line.control == SettingsControl::PartSel ? SettingsValue{"", 1}
               : line.control == SettingsControl::DP    ? SettingsValue{"260.00", 0}
                                                        : SettingsValue{};
    });
    EXPECT_EQ(onePart, QStringList({"Part #Index:1", "Direction is:0", "DP is(deg):260.00",
                                    "Clamp High is(%):", "Clamp Low is(%):",
                                    "Angle of Point A is(deg):", "Level of Point A is(%):",
                                    "Angle of Point B is(deg):", "Level of Point B is(%):"}));
    EXPECT_EQ(DualPointLayout().size(), 18u);
    EXPECT_EQ(DualPointLayout()[9].label, "Part #2:");

    QStringList applied;
    const auto read = [&applied](const QStringList& lines, const SettingsLayout& layout) {
        applied.clear();
        return ReadSettings(lines, layout,
                            [&applied](const SettingsLine& line, auto&) { applied << line.label; });
    };
    // A two-part window's file in a one-part window: no integer at character 13 of line 1.
    SettingsReadResult result = read(WriteTwoPartSettings({}), OnePartPointLayout());
    EXPECT_EQ(std::pair(result.error, result.line), std::pair(13, 1));
    EXPECT_TRUE(applied.isEmpty());
    // A one-part file in a dual window: part 1 from lines 2 to 9, then past the end.
    result = read(onePart, DualPointLayout());
    EXPECT_EQ(std::pair(result.error, result.line), std::pair(62, 10));
    EXPECT_EQ(applied.size(), 8);
    for (const auto& [direction, error] : {std::pair{"1", 0}, {"2", 0}, {"3", 380}, {"CW", 13}}) {
        QStringList lines = onePart;
        lines[1] = QStringLiteral("Direction is:") + direction;
        EXPECT_EQ(read(lines, OnePartPointLayout()).error, error) << direction;
    }
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

TEST(SettingsFileIO, FailedSaveLeavesThePreviousFileWhole) {
    QTemporaryDir dir;
    QFile::setPermissions(dir.path(), QFileDevice::Permissions(0x7755));
    const QString open = dir.filePath("open");
    const QString locked = dir.filePath("locked");
    ASSERT_TRUE(QDir(dir.path()).mkdir("open") && QDir(dir.path()).mkdir("locked"));
    QFile::setPermissions(open, QFileDevice::Permissions(0x7777));
    const QString target = locked + "/profile.txt";
    ASSERT_TRUE(SaveLines(target, {"old", "lines"}));
    QFile::setPermissions(locked, QFileDevice::Permissions(0x5555));

    // The same save does go through where the directory allows it.
    EXPECT_TRUE(saveAsNobody(open + "/profile.txt", {"new"}));
    EXPECT_FALSE(saveAsNobody(target, {"new"}));
    EXPECT_EQ(readBytes(target), QByteArray("old\r\nlines\r\n"));
    QFile::setPermissions(locked, QFileDevice::Permissions(0x7700));
}

TEST(SettingsFileIO, SaveAndOpenCommands) {
    QTemporaryDir dir;
    test::ScriptedPrompts prompts;
    QString lastName;
    // Cancelled dialogs: nothing written, nothing read, nothing said.
    EXPECT_FALSE(SaveSettingsFile({"x"}, lastName, prompts));
    EXPECT_FALSE(OpenSettingsFile(lastName, prompts).has_value());
    EXPECT_TRUE(QDir(dir.path()).isEmpty() && prompts.messages.isEmpty());

    const QString base = dir.filePath("profile");
    prompts.fileNames = {base, dir.filePath("no/such/folder/p.txt"), base, dir.path()};
    EXPECT_TRUE(SaveSettingsFile({"first"}, lastName, prompts));
    EXPECT_FALSE(SaveSettingsFile({"x"}, lastName, prompts));
    // Loading takes the name as chosen: no ".txt" is added. A folder cannot be read: error 75.
    EXPECT_FALSE(OpenSettingsFile(lastName, prompts).has_value());
    EXPECT_FALSE(OpenSettingsFile(lastName, prompts).has_value());
    EXPECT_EQ(
        prompts.messages,
        QStringList({"Error happens when saving to file!", "The selected file cannot be found!",
                     "Error with number:75 occurs! Please check the integrity of profile file!"}));
    prompts.fileNames = {base + ".txt"};
    EXPECT_EQ(OpenSettingsFile(lastName, prompts), QStringList{"first"});
}
