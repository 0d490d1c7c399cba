#pragma once

#include <QString>
#include <QStringList>
#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "domain/PartParameters.h"
#include "domain/WindowFamily.h"

namespace rk31 {

class ControlView;
class Prompts;

// Error numbers shown in the load message.
inline constexpr int ConversionError = 13;
inline constexpr int FileNotFoundError = 53;
inline constexpr int PastEndOfFileError = 62;
inline constexpr int FileAccessError = 75;  // exists, but cannot be opened or read
inline constexpr int InvalidIndexError = 380;
// Not numbered in any message: a FIFO, a device or a folder, and a file far beyond any settings
// file, are refused before a byte is read.
inline constexpr int NotAFileError = -1;
inline constexpr int TooLargeError = -2;
// Settings files are a few hundred bytes.
inline constexpr qint64 kLargestSettingsFile = 64 * 1024;

// ---- Layouts --------------------------------------------------------------------------------

// The controls whose values settings files carry, named as the windows name them.
enum class SettingsControl {
    PartSel,
    VDD,
    clockwise,
    DP,
    clamphigh,
    clamplow,
    Angle,
    Level,
    KforA,
    op,
    hys,
    Kpolarity,
    OutMode,
    PWMFreq,
    PWMPolarity,
};

enum class ValueKind {
    Header,         // label only; read and ignored
    Text,           // a box's text, unchanged both ways
    DirectionWord,  // "CW" for 1, "CCW" otherwise; only exactly "CW" reads back as 1
    CheckDigit,     // "1" for 1, "0" otherwise; only exactly "1" reads back as 1
    Integer,        // a decimal integer; read as a 16-bit integer within [minimum, maximum]
};

// One line of a settings file. Readers take the value from `valueStart` (1-based) to the end
// of the line and never compare the label, so files with misspelt labels still load.
struct SettingsLine {
    QString label;
    ValueKind kind = ValueKind::Header;
    int valueStart = 0;
    SettingsControl control = SettingsControl::VDD;
    int part = 0;   // 0 = Part#1
    int point = 0;  // Angle and Level: 0 = A ... 3 = D
    int minimum = 0;
    int maximum = 0;
};

using SettingsLayout = std::vector<SettingsLine>;

// The 42 lines of the two-part windows.
const SettingsLayout& TwoPartLayout();
// The 9 lines of the one-part point windows and the 18 lines of the dual point windows.
const SettingsLayout& OnePartPointLayout();
const SettingsLayout& DualPointLayout();

// The value one line carries: the text of a Text line, the number of any other.
struct SettingsValue {
    QString text;
    int number = 0;
};

// The lines of a file, each label followed directly by its value.
QStringList WriteSettings(const SettingsLayout& layout,
                          const std::function<SettingsValue(const SettingsLine&)>& valueOf);

struct SettingsReadResult {
    int error = 0;  // 0 when every line of the layout was read
    int line = 0;   // 1-based line that failed
};

// Reads the lines in layout order and hands each value to `apply` as soon as it is read, so a
// window fills its controls line by line; the first error stops the reading and what was
// applied stays. Lines beyond the layout are ignored. A value whose fixed position falls inside
// a character beyond 16 bits starts with the whole character.
SettingsReadResult ReadSettings(
    const QStringList& lines, const SettingsLayout& layout,
    const std::function<void(const SettingsLine&, const SettingsValue&)>& apply);

// Text to a 16-bit integer as list indexes and check values are read: a number rounded half to
// even (saturating), or nothing when the text is no number.
std::optional<std::int16_t> TextToInt16(const QString& text);

// ---- The one mapping between a file and a window's controls -----------------------------------

// The layout of a window family's file: 42 lines for the two-part windows, 9 for the one-part
// point windows, 18 for the dual point windows.
const SettingsLayout& LayoutOf(WindowFamily family);

// The file's lines from the controls as they stand: box texts, check box values, list indexes
// (-1 = no selection).
QStringList SettingsLinesOf(const ControlView& view, WindowFamily family);

// Reads the lines into the controls in layout order, each value as soon as it is read, so that
// after an error the controls not reached keep what they showed. `applied` (when given) runs
// after each line's value is in place.
SettingsReadResult ApplySettingsLines(const QStringList& lines, WindowFamily family,
                                      ControlView& view,
                                      const std::function<void(const SettingsLine&)>& applied = {});

// ---- Files --------------------------------------------------------------------------------------

inline const QString SelectFileTitle = QStringLiteral("Select file name...");
inline const QString OverwriteQuestion =
    QStringLiteral("The file with the same name already exists, would you override?");
inline const QString SaveErrorMessage = QStringLiteral("Error happens when saving to file!");
inline const QString FileNotFoundMessage = QStringLiteral("The selected file cannot be found!");
inline const QString NotAFileMessage =
    QStringLiteral("The selected file is not a regular file and cannot be a settings file!");
inline const QString TooLargeMessage =
    QStringLiteral("The selected file is too large to be a settings file!");

// "The selected file cannot be found!" for 53, the integrity message with the number otherwise.
QString LoadErrorMessage(int error);

// The chosen name when it has at least five characters and ends exactly in ".txt", otherwise
// the name with ".txt" appended.
QString SettingsFilePath(const QString& chosenName);

// The bytes of a file of UTF-8 lines, each ended by CR LF, and the lines of a file's bytes,
// ended by CR LF or LF alone.
QByteArray BytesOfLines(const QStringList& lines);
QStringList LinesOfBytes(const QByteArray& bytes);

// Writes the lines' bytes through SaveFileAtomically: a failed save leaves the previous file
// whole. False when anything failed.
bool SaveLines(const QString& path, const QStringList& lines);

struct LoadedLines {
    QStringList lines;
    int error = 0;  // FileNotFoundError, FileAccessError, NotAFileError, TooLargeError, or 0
};

// Reads UTF-8 lines ended by CR LF or LF alone.
LoadedLines LoadLines(const QString& path);

// The save command once the window has written its lines: file dialog (starting from and
// updating `lastName`), naming, overwrite question, writing and its error message. True when
// the file was written.
bool SaveSettingsFile(const QStringList& lines, QString& lastName, Prompts& prompts);

// The load command once a file is chosen: the lines of `path`, or nothing after the message of
// a file that cannot be read.
std::optional<QStringList> ReadSettingsFile(const QString& path, Prompts& prompts);

}  // namespace rk31
