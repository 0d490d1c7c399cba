#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "params/SettingsFile.h"
#include "support/ScriptedPrompts.h"

using namespace rk31;

// Readable failure output for QString comparisons.
inline void PrintTo(const QString& text, std::ostream* os) {
    *os << '"' << text.toStdString() << '"';
}

namespace {

QStringList defaultPartBlock(const QString& header) {
    return {header,
            "VDD is(V):5.000",
            "Direction is:CCW",
            "DP is(deg):260.00",
            "Clamp High is(%):95.00",
            "Clamp Low is(%):5.00",
            "Angle of Point A is(deg):",
            "Level of Point A is(%):",
            "Angle of Point B is(deg):",
            "Level of Point B is(%):",
            "Angle of Point C is(deg):",
            "Level of Point C is(%):",
            "Angle of Point D is(deg):",
            "Level of Point D is(%):",
            "Slope parameter is(%VDD/deg):",
            "OP parameter is(deg):",
            "HYS parameter is(deg):1.00",
            "Polarity parameter is:0",
            "OutMode is:0",
            "PWMFreq is:0",
            "PWMPolarity is0"};
}

// Every field away from its default, with texts that a careless reader would mangle.
TwoPartSettings typedSettings() {
    TwoPartSettings s;
    auto& a = s.parts[0];
    a.VDD = "4.987";
    a.clockwise = 1;
    a.DP = "123.46";
    a.clamphigh = "90.00";
    a.clamplow = "10.00";
    a.Angle = {"10.00", "20.00", "30.00", ""};
    a.Level = {"15.00", "25.00", "35.00", ""};
    a.KforA = "-0.2500";
    a.op = "45.00";
    a.hys = "2.25";
    a.OutMode = 1;
    a.PWMFreq = 3;
    a.PWMPolarity = 1;
    auto& b = s.parts[1];
    b.VDD = " 5 V";  // boxes are saved as they stand, even when not yet validated
    b.DP = "abc";
    b.Angle = {"1", "2", "3", "4"};
    b.Level = {"5", "6", "7", "8"};
    b.Kpolarity = 1;
    b.OutMode = -1;
    b.PWMFreq = 2;
    b.PWMPolarity = 1;
    return s;
}

QStringList recordedApplies(const QStringList& lines, const SettingsLayout& layout,
                            SettingsReadResult& result) {
    QStringList applied;
    result = ReadSettings(lines, layout, [&](const SettingsLine& line, const SettingsValue& v) {
        applied << line.label + (line.kind == ValueKind::Text ? v.text : QString::number(v.number));
    });
    return applied;
}

QByteArray readBytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeBytes(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

// Directory permissions do not stop root, so as root the save runs in a child that has given
// its privileges up.
bool saveWithoutPrivileges(const QString& path, const QStringList& lines) {
    if (geteuid() != 0) {
        return SaveLines(path, lines);
    }
    const pid_t child = fork();
    if (child == 0) {
        if (setgid(65534) != 0 || setuid(65534) != 0) {
            _exit(2);
        }
        _exit(SaveLines(path, lines) ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

TEST(TwoPartSettingsFile, DefaultWindowWritesTheExampleLines) {
    const QStringList expected = defaultPartBlock("Part #1:") + defaultPartBlock("Part #2:");
    EXPECT_EQ(WriteTwoPartSettings(TwoPartSettings{}), expected);
}

TEST(TwoPartSettingsFile, RoundTripThroughAFile) {
    QTemporaryDir dir;
    const QString path = dir.filePath("profile.txt");
    const TwoPartSettings saved = typedSettings();
    const QStringList lines = WriteTwoPartSettings(saved);
    EXPECT_EQ(lines[2], "Direction is:CW");
    EXPECT_EQ(lines[38], "Polarity parameter is:1");
    EXPECT_EQ(lines[39], "OutMode is:-1");
    ASSERT_TRUE(SaveLines(path, lines));

    const LoadedLines loaded = LoadLines(path);
    ASSERT_EQ(loaded.error, 0);
    const TwoPartSettingsRead read = ReadTwoPartSettings(loaded.lines, TwoPartSettings{});
    EXPECT_EQ(read.result.error, 0);
    EXPECT_TRUE(read.values == saved);
}

TEST(TwoPartSettingsFile, FortyOneLinesStopPastTheEnd) {
    const TwoPartSettings saved = typedSettings();
    TwoPartSettings current;
    current.parts[1].PWMPolarity = 0;
    QStringList lines = WriteTwoPartSettings(saved);
    lines.removeLast();

    const TwoPartSettingsRead read = ReadTwoPartSettings(lines, current);
    EXPECT_EQ(read.result.error, 62);
    EXPECT_EQ(read.result.line, 42);
    EXPECT_TRUE(read.values.parts[0] == saved.parts[0]);
    TwoPartPartSettings expectedPart2 = saved.parts[1];
    expectedPart2.PWMPolarity = 0;  // the 20th value was never read
    EXPECT_TRUE(read.values.parts[1] == expectedPart2);
    EXPECT_EQ(LoadErrorMessage(read.result.error),
              "Error with number:62 occurs! Please check the integrity of profile file!");
}

TEST(TwoPartSettingsFile, ListIndexesAreCheckedAndStopTheReading) {
    const struct {
        int line;  // 1-based
        const char* value;
        int error;
    } cases[] = {
        {19, "A", 13},  {19, "", 13},   {19, "5", 380}, {19, "-2", 380}, {19, "1.5", 380},
        {19, "0.5", 0}, {19, "-1", 0},  {19, " 1 ", 0}, {19, "1E0", 0},  {20, "4", 380},
        {20, "3", 0},   {41, "4", 380}, {42, "x", 13},  {42, "1", 0},
    };
    const QStringList good = WriteTwoPartSettings(TwoPartSettings{});
    for (const auto& c : cases) {
        QStringList lines = good;
        const QString label = TwoPartLayout()[static_cast<std::size_t>(c.line - 1)].label;
        lines[c.line - 1] = label + c.value;
        const TwoPartSettingsRead read = ReadTwoPartSettings(lines, TwoPartSettings{});
        EXPECT_EQ(read.result.error, c.error) << c.line << " " << c.value;
        EXPECT_EQ(read.result.line, c.error == 0 ? 0 : c.line) << c.line << " " << c.value;
    }
}

TEST(TwoPartSettingsFile, ALetterInLineNineteenKeepsWhatWasReadBefore) {
    TwoPartSettings saved = typedSettings();
    QStringList lines = WriteTwoPartSettings(saved);
    lines[18] = "OutMode is:x";
    const TwoPartSettings current;
    const TwoPartSettingsRead read = ReadTwoPartSettings(lines, current);
    EXPECT_EQ(read.result.error, 13);
    EXPECT_EQ(read.values.parts[0].hys, "2.25");  // line 17
    EXPECT_EQ(read.values.parts[0].OutMode, 0);   // line 19 failed
    EXPECT_EQ(read.values.parts[0].PWMFreq, 0);   // never reached
    EXPECT_TRUE(read.values.parts[1] == current.parts[1]);
}

TEST(TwoPartSettingsFile, ReadsByPositionNotByLabel) {
    const TwoPartSettings saved = typedSettings();
    QStringList lines = WriteTwoPartSettings(saved);
    // Misspell every label but keep its length, so the values stay where they were.
    for (std::size_t i = 0; i < TwoPartLayout().size(); ++i) {
        const auto labelLength = TwoPartLayout()[i].label.size();
        auto& line = lines[static_cast<qsizetype>(i)];
        line = QString(labelLength, u'#') + line.mid(labelLength);
    }
    lines << "a line after the last one";
    const TwoPartSettingsRead read = ReadTwoPartSettings(lines, TwoPartSettings{});
    EXPECT_EQ(read.result.error, 0);
    EXPECT_TRUE(read.values == saved);
}

TEST(TwoPartSettingsFile, CheckBoxesAndShortLines) {
    const struct {
        int line;
        const char* text;
        int clockwise;
        int polarity;
        const char* dp;
    } cases[] = {
        {3, "Direction is:CW", 1, 0, "260.00"},
        {3, "Direction is:cw", 0, 0, "260.00"},
        {3, "Direction is:CW ", 0, 0, "260.00"},
        {3, "Direction is:1", 0, 0, "260.00"},
        {18, "Polarity parameter is:1", 0, 1, "260.00"},
        {18, "Polarity parameter is:CW", 0, 0, "260.00"},
        {4, "DP is(deg):", 0, 0, ""},
        {4, "DP", 0, 0, ""},
        {4, "DP is(deg): 400", 0, 0, " 400"},
    };
    TwoPartSettings current;
    current.parts[0].clockwise = 1;
    current.parts[0].Kpolarity = 1;
    for (const auto& c : cases) {
        QStringList lines = WriteTwoPartSettings(TwoPartSettings{});
        lines[c.line - 1] = c.text;
        const TwoPartSettingsRead read = ReadTwoPartSettings(lines, current);
        EXPECT_EQ(read.result.error, 0) << c.text;
        EXPECT_EQ(read.values.parts[0].clockwise, c.clockwise) << c.text;
        EXPECT_EQ(read.values.parts[0].Kpolarity, c.polarity) << c.text;
        EXPECT_EQ(read.values.parts[0].DP, c.dp) << c.text;
    }
}

TEST(PointSettingsFile, FormatsAndWhatEachWindowMakesOfTheOthersFiles) {
    const QStringList onePart = WriteSettings(OnePartPointLayout(), [](const SettingsLine& line) {
        SettingsValue v;
        if (line.control == SettingsControl::PartSel) {
            v.number = 1;
        } else if (line.control == SettingsControl::DP) {
            v.text = "260.00";
        }
        return v;
    });
    EXPECT_EQ(onePart, QStringList({"Part #Index:1", "Direction is:0", "DP is(deg):260.00",
                                    "Clamp High is(%):", "Clamp Low is(%):",
                                    "Angle of Point A is(deg):", "Level of Point A is(%):",
                                    "Angle of Point B is(deg):", "Level of Point B is(%):"}));
    EXPECT_EQ(DualPointLayout().size(), 18u);
    EXPECT_EQ(DualPointLayout()[9].label, "Part #2:");

    SettingsReadResult result;
    // A two-part window's file in a one-part window: no integer at character 13 of line 1.
    EXPECT_TRUE(recordedApplies(WriteTwoPartSettings({}), OnePartPointLayout(), result).isEmpty());
    EXPECT_EQ(result.error, 13);
    EXPECT_EQ(result.line, 1);
    // A one-part file in a dual window: part 1 from lines 2 to 9, then past the end.
    const QStringList applied = recordedApplies(onePart, DualPointLayout(), result);
    EXPECT_EQ(result.error, 62);
    EXPECT_EQ(result.line, 10);
    EXPECT_EQ(applied.size(), 8);
    EXPECT_EQ(applied.first(), "Direction is:0");

    const struct {
        const char* direction;
        int error;
    } directions[] = {{"1", 0}, {"2", 0}, {"3", 380}, {"CW", 13}};
    for (const auto& c : directions) {
        QStringList lines = onePart;
        lines[1] = QStringLiteral("Direction is:") + c.direction;
        recordedApplies(lines, OnePartPointLayout(), result);
        EXPECT_EQ(result.error, c.error) << c.direction;
    }
}

TEST(SettingsFileIO, NamingRule) {
    const struct {
        const char* chosen;
        const char* path;
    } cases[] = {
        {"profile", "profile.txt"}, {"profile.TXT", "profile.TXT.txt"}, {"a.txt", "a.txt"},
        {".txt", ".txt.txt"},       {"/tmp/x.txt", "/tmp/x.txt"},       {"b.txt ", "b.txt .txt"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(SettingsFilePath(c.chosen), c.path) << c.chosen;
    }
}

TEST(SettingsFileIO, LinesAreWrittenWithCrLfAndReadWithEither) {
    QTemporaryDir dir;
    const QString crlf = dir.filePath("crlf.txt");
    ASSERT_TRUE(SaveLines(crlf, {"Part #1:", "DP is(deg):", "Angle: 12°"}));
    EXPECT_EQ(readBytes(crlf), QByteArray("Part #1:\r\nDP is(deg):\r\nAngle: 12\xC2\xB0\r\n"));

    const QString lf = dir.filePath("lf.txt");
    writeBytes(lf, "Part #1:\nDP is(deg):\n\nlast without end");
    const LoadedLines loaded = LoadLines(lf);
    EXPECT_EQ(loaded.error, 0);
    EXPECT_EQ(loaded.lines, QStringList({"Part #1:", "DP is(deg):", "", "last without end"}));

    EXPECT_EQ(LoadLines(crlf).lines, QStringList({"Part #1:", "DP is(deg):", "Angle: 12°"}));
    writeBytes(lf, "");
    EXPECT_TRUE(LoadLines(lf).lines.isEmpty());
}

TEST(SettingsFileIO, MissingFileAndUnreadablePath) {
    QTemporaryDir dir;
    EXPECT_EQ(LoadLines(dir.filePath("nothing.txt")).error, 53);
    EXPECT_EQ(LoadLines(dir.path()).error, 75);  // a folder is there but is no file
    EXPECT_EQ(LoadErrorMessage(53), "The selected file cannot be found!");
}

TEST(SettingsFileIO, FailedSaveLeavesThePreviousFileWhole) {
    QTemporaryDir dir;
    QFile::setPermissions(dir.path(), QFile::permissions(dir.path()) | QFile::ExeOther |
                                          QFile::ReadOther | QFile::ExeGroup | QFile::ReadGroup);
    const QString open = dir.filePath("open");
    const QString locked = dir.filePath("locked");
    ASSERT_TRUE(QDir(dir.path()).mkdir("open"));
    ASSERT_TRUE(QDir(dir.path()).mkdir("locked"));
    QFile::setPermissions(open, QFileDevice::Permissions(0x7777));
    const QString target = locked + "/profile.txt";
    ASSERT_TRUE(SaveLines(target, {"old", "lines"}));
    QFile::setPermissions(locked, QFileDevice::ReadOwner | QFileDevice::ExeOwner |
                                      QFileDevice::ReadOther | QFileDevice::ExeOther);

    // The same save does go through where the directory allows it.
    EXPECT_TRUE(saveWithoutPrivileges(open + "/profile.txt", {"new"}));
    EXPECT_FALSE(saveWithoutPrivileges(target, {"new"}));
    EXPECT_EQ(readBytes(target), QByteArray("old\r\nlines\r\n"));
    QFile::setPermissions(locked, QFileDevice::Permissions(0x7700));
}

TEST(SettingsFileIO, SaveCommand) {
    QTemporaryDir dir;
    const QString base = dir.filePath("profile");
    test::ScriptedPrompts prompts;
    QString lastName;

    // Cancelled: nothing written.
    EXPECT_FALSE(SaveSettingsFile({"x"}, lastName, prompts));
    EXPECT_FALSE(QFile::exists(base + ".txt"));

    prompts.fileNames = {base};
    EXPECT_TRUE(SaveSettingsFile({"first"}, lastName, prompts));
    EXPECT_EQ(readBytes(base + ".txt"), QByteArray("first\r\n"));
    EXPECT_EQ(lastName, base);
    EXPECT_TRUE(prompts.questions.isEmpty());

    // Over an existing file: No keeps it, Yes replaces it.
    prompts.fileNames = {base, base};
    prompts.answers = {false, true};
    EXPECT_FALSE(SaveSettingsFile({"second"}, lastName, prompts));
    EXPECT_EQ(readBytes(base + ".txt"), QByteArray("first\r\n"));
    EXPECT_TRUE(SaveSettingsFile({"third"}, lastName, prompts));
    EXPECT_EQ(readBytes(base + ".txt"), QByteArray("third\r\n"));
    EXPECT_EQ(prompts.questions,
              QStringList(2, "The file with the same name already exists, would you override?"));

    prompts.fileNames = {dir.filePath("no/such/folder/p.txt")};
    EXPECT_FALSE(SaveSettingsFile({"x"}, lastName, prompts));
    EXPECT_EQ(prompts.messages, QStringList{"Error happens when saving to file!"});

    EXPECT_EQ(prompts.fileDialogTitles, QStringList(5, "Select file name..."));
    EXPECT_EQ(prompts.suggestedNames, QStringList({"", "", base, base, base}));
}

TEST(SettingsFileIO, OpenCommand) {
    QTemporaryDir dir;
    test::ScriptedPrompts prompts;
    QString lastName;

    EXPECT_FALSE(OpenSettingsFile(lastName, prompts).has_value());
    EXPECT_TRUE(prompts.messages.isEmpty());

    prompts.fileNames = {dir.filePath("missing")};
    EXPECT_FALSE(OpenSettingsFile(lastName, prompts).has_value());
    EXPECT_EQ(prompts.messages, QStringList{"The selected file cannot be found!"});

    // The name is taken as chosen: no ".txt" is added when loading.
    const QString path = dir.filePath("profile");
    ASSERT_TRUE(SaveLines(path, {"a", "b"}));
    prompts.fileNames = {path};
    const auto lines = OpenSettingsFile(lastName, prompts);
    ASSERT_TRUE(lines.has_value());
    EXPECT_EQ(*lines, QStringList({"a", "b"}));
    EXPECT_EQ(prompts.suggestedNames.last(), dir.filePath("missing"));
    EXPECT_EQ(prompts.fileDialogTitles, QStringList(3, "Select file name..."));
}
