#include "domain/SettingsFile.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include "domain/AtomicSave.h"
#include "domain/ControlNames.h"
#include "domain/ControlView.h"
#include "domain/Prompts.h"
#include "domain/Rounding.h"
#include "domain/Validation.h"

namespace rk31 {

namespace {

SettingsLine header(const QString& label) {
    return {label, ValueKind::Header};
}

// Every value starts right behind its label; the position is kept explicit all the same,
// because reading goes by position and not by label.
SettingsLine field(const QString& label, ValueKind kind, SettingsControl control, int part,
                   int point = 0) {
    return {label, kind, static_cast<int>(label.size()) + 1, control, part, point};
}

SettingsLine integerField(const QString& label, SettingsControl control, int part, int minimum,
                          int maximum) {
    SettingsLine line = field(label, ValueKind::Integer, control, part);
    line.minimum = minimum;
    line.maximum = maximum;
    return line;
}

QString angleLabel(int point) {
    return QStringLiteral("Angle of Point ") + QChar(u'A' + point) + QStringLiteral(" is(deg):");
}

QString levelLabel(int point) {
    return QStringLiteral("Level of Point ") + QChar(u'A' + point) + QStringLiteral(" is(%):");
}

// Direction, DP, clamps and the first `points` points: the part of a block that every format
// shares.
void appendCurveLines(SettingsLayout& layout, int part, int points) {
    layout.push_back(
        field(QStringLiteral("DP is(deg):"), ValueKind::Text, SettingsControl::DP, part));
    layout.push_back(field(QStringLiteral("Clamp High is(%):"), ValueKind::Text,
                           SettingsControl::clamphigh, part));
    layout.push_back(field(QStringLiteral("Clamp Low is(%):"), ValueKind::Text,
                           SettingsControl::clamplow, part));
    for (int point = 0; point < points; ++point) {
        layout.push_back(
            field(angleLabel(point), ValueKind::Text, SettingsControl::Angle, part, point));
        layout.push_back(
            field(levelLabel(point), ValueKind::Text, SettingsControl::Level, part, point));
    }
}

void appendTwoPartBlock(SettingsLayout& layout, int part) {
    layout.push_back(header(part == 0 ? QStringLiteral("Part #1:") : QStringLiteral("Part #2:")));
    layout.push_back(
        field(QStringLiteral("VDD is(V):"), ValueKind::Text, SettingsControl::VDD, part));
    layout.push_back(field(QStringLiteral("Direction is:"), ValueKind::DirectionWord,
                           SettingsControl::clockwise, part));
    appendCurveLines(layout, part, 4);
    layout.push_back(field(QStringLiteral("Slope parameter is(%VDD/deg):"), ValueKind::Text,
                           SettingsControl::KforA, part));
    layout.push_back(
        field(QStringLiteral("OP parameter is(deg):"), ValueKind::Text, SettingsControl::op, part));
    layout.push_back(field(QStringLiteral("HYS parameter is(deg):"), ValueKind::Text,
                           SettingsControl::hys, part));
    layout.push_back(field(QStringLiteral("Polarity parameter is:"), ValueKind::CheckDigit,
                           SettingsControl::Kpolarity, part));
    // The lists accept -1 for no selection and their own indexes.
    layout.push_back(
        integerField(QStringLiteral("OutMode is:"), SettingsControl::OutMode, part, -1, 1));
    layout.push_back(
        integerField(QStringLiteral("PWMFreq is:"), SettingsControl::PWMFreq, part, -1, 3));
    layout.push_back(
        integerField(QStringLiteral("PWMPolarity is"), SettingsControl::PWMPolarity, part, -1, 1));
}

// The point windows write the direction check box as its value, which may be the third
// (greyed) state.
void appendPointBlock(SettingsLayout& layout, int part) {
    layout.push_back(
        integerField(QStringLiteral("Direction is:"), SettingsControl::clockwise, part, 0, 2));
    appendCurveLines(layout, part, 2);
}

QString valueText(const SettingsLine& line, const SettingsValue& value) {
    switch (line.kind) {
        case ValueKind::Header:
            return {};
        case ValueKind::Text:
            return value.text;
        case ValueKind::DirectionWord:
            return value.number == 1 ? QStringLiteral("CW") : QStringLiteral("CCW");
        case ValueKind::CheckDigit:
            return value.number == 1 ? QStringLiteral("1") : QStringLiteral("0");
        case ValueKind::Integer:
            return QString::number(value.number);
    }
    return {};
}

}  // namespace

const SettingsLayout& TwoPartLayout() {
    static const SettingsLayout layout = [] {
        SettingsLayout l;
        appendTwoPartBlock(l, 0);
        appendTwoPartBlock(l, 1);
        return l;
    }();
    return layout;
}

const SettingsLayout& OnePartPointLayout() {
    static const SettingsLayout layout = [] {
        SettingsLayout l;
        l.push_back(
            integerField(QStringLiteral("Part #Index:"), SettingsControl::PartSel, 0, -1, 1));
        appendPointBlock(l, 0);
        return l;
    }();
    return layout;
}

const SettingsLayout& DualPointLayout() {
    static const SettingsLayout layout = [] {
        SettingsLayout l;
        l.push_back(header(QStringLiteral("Part #1:")));
        appendPointBlock(l, 0);
        l.push_back(header(QStringLiteral("Part #2:")));
        appendPointBlock(l, 1);
        return l;
    }();
    return layout;
}

QStringList WriteSettings(const SettingsLayout& layout,
                          const std::function<SettingsValue(const SettingsLine&)>& valueOf) {
    QStringList lines;
    for (const SettingsLine& line : layout) {
        lines << (line.kind == ValueKind::Header ? line.label
                                                 : line.label + valueText(line, valueOf(line)));
    }
    return lines;
}

std::optional<std::int16_t> TextToInt16(const QString& text) {
    const auto value = NumberTextToDouble(text);
    if (!value) {
        return std::nullopt;
    }
    return RoundToInt16(*value);
}

SettingsReadResult ReadSettings(
    const QStringList& lines, const SettingsLayout& layout,
    const std::function<void(const SettingsLine&, const SettingsValue&)>& apply) {
    for (std::size_t i = 0; i < layout.size(); ++i) {
        const SettingsLine& line = layout[i];
        const int lineNumber = static_cast<int>(i) + 1;
        if (i >= static_cast<std::size_t>(lines.size())) {
            return {PastEndOfFileError, lineNumber};
        }
        if (line.kind == ValueKind::Header) {
            continue;
        }
        const QString& text = lines[static_cast<qsizetype>(i)];
        qsizetype start = line.valueStart - 1;
        // A position inside a character beyond 16 bits takes the whole character, so that a
        // value never holds half of one (which no file could hold).
        if (start > 0 && start < text.size() && text[start].isLowSurrogate() &&
            text[start - 1].isHighSurrogate()) {
            --start;
        }
        const QString taken = text.mid(start);
        SettingsValue value;
        switch (line.kind) {
            case ValueKind::Header:
                break;
            case ValueKind::Text:
                value.text = taken;
                break;
            case ValueKind::DirectionWord:
                value.number = taken == u"CW" ? 1 : 0;
                break;
            case ValueKind::CheckDigit:
                value.number = taken == u"1" ? 1 : 0;
                break;
            case ValueKind::Integer: {
                const auto number = TextToInt16(taken);
                if (!number) {
                    return {ConversionError, lineNumber};
                }
                if (*number < line.minimum || *number > line.maximum) {
                    return {InvalidIndexError, lineNumber};
                }
                value.number = *number;
                break;
            }
        }
        apply(line, value);
    }
    return {};
}

namespace {

const QString& controlName(SettingsControl control) {
    switch (control) {
        case SettingsControl::PartSel:
            return ctl::PartSel;
        case SettingsControl::VDD:
            return ctl::VDD;
        case SettingsControl::clockwise:
            return ctl::clockwise;
        case SettingsControl::DP:
            return ctl::DP;
        case SettingsControl::clamphigh:
            return ctl::clamphigh;
        case SettingsControl::clamplow:
            return ctl::clamplow;
        case SettingsControl::Angle:
            return ctl::Angle;
        case SettingsControl::Level:
            return ctl::Level;
        case SettingsControl::KforA:
            return ctl::KforA;
        case SettingsControl::op:
            return ctl::op;
        case SettingsControl::hys:
            return ctl::hys;
        case SettingsControl::Kpolarity:
            return ctl::Kpolarity;
        case SettingsControl::OutMode:
            return ctl::OutMode;
        case SettingsControl::PWMFreq:
            return ctl::PWMFreq;
        case SettingsControl::PWMPolarity:
            return ctl::PWMPolarity;
    }
    return ctl::VDD;
}

// The element a line's value goes to: the point boxes as the family numbers them, the per-part
// boxes by part, and the single boxes of the one-part point windows.
int controlIndex(WindowFamily family, const SettingsLine& line) {
    if (line.control == SettingsControl::Angle || line.control == SettingsControl::Level) {
        return PointBoxIndex(family, line.part, line.point);
    }
    return family == WindowFamily::OnePartPoint ? -1 : line.part;
}

// A number line sets a list's selection, except the direction, which the point windows write
// as the check box's value.
bool isCheckBoxNumber(const SettingsLine& line) {
    return line.control == SettingsControl::clockwise;
}

}  // namespace

const SettingsLayout& LayoutOf(WindowFamily family) {
    switch (family) {
        case WindowFamily::OnePartPoint:
            return OnePartPointLayout();
        case WindowFamily::DualPoint:
            return DualPointLayout();
        case WindowFamily::TwoPartTwoSupplies:
        case WindowFamily::TwoPartOneSupply:
            break;
    }
    return TwoPartLayout();
}

QStringList SettingsLinesOf(const ControlView& view, WindowFamily family) {
    return WriteSettings(LayoutOf(family), [&view, family](const SettingsLine& line) {
        const QString& name = controlName(line.control);
        const int index = controlIndex(family, line);
        SettingsValue value;
        switch (line.kind) {
            case ValueKind::Header:
                break;
            case ValueKind::Text:
                value.text = view.text(name, index);
                break;
            case ValueKind::DirectionWord:
            case ValueKind::CheckDigit:
                value.number = view.value(name, index);
                break;
            case ValueKind::Integer:
                value.number =
                    isCheckBoxNumber(line) ? view.value(name, index) : view.listIndex(name, index);
                break;
        }
        return value;
    });
}

SettingsReadResult ApplySettingsLines(const QStringList& lines, WindowFamily family,
                                      ControlView& view,
                                      const std::function<void(const SettingsLine&)>& applied) {
    return ReadSettings(
        lines, LayoutOf(family),
        [&view, family, &applied](const SettingsLine& line, const SettingsValue& value) {
            const QString& name = controlName(line.control);
            const int index = controlIndex(family, line);
            switch (line.kind) {
                case ValueKind::Header:
                    break;
                case ValueKind::Text:
                    view.setText(name, index, value.text);
                    break;
                case ValueKind::DirectionWord:
                case ValueKind::CheckDigit:
                    view.setValue(name, index, value.number);
                    break;
                case ValueKind::Integer:
                    if (isCheckBoxNumber(line)) {
                        view.setValue(name, index, value.number);
                    } else {
                        view.setListIndex(name, index, value.number);
                    }
                    break;
            }
            if (applied) {
                applied(line);
            }
        });
}

QString LoadErrorMessage(int error) {
    if (error == FileNotFoundError) {
        return FileNotFoundMessage;
    }
    if (error == NotAFileError) {
        return NotAFileMessage;
    }
    if (error == TooLargeError) {
        return TooLargeMessage;
    }
    return QStringLiteral("Error with number:") + QString::number(error) +
           QStringLiteral(" occurs! Please check the integrity of profile file!");
}

QString SettingsFilePath(const QString& chosenName) {
    if (chosenName.size() >= 5 && chosenName.endsWith(QStringLiteral(".txt"), Qt::CaseSensitive)) {
        return chosenName;
    }
    return chosenName + QStringLiteral(".txt");
}

QByteArray BytesOfLines(const QStringList& lines) {
    QByteArray bytes;
    for (const QString& line : lines) {
        bytes += line.toUtf8();
        bytes += "\r\n";
    }
    return bytes;
}

QStringList LinesOfBytes(const QByteArray& bytes) {
    QStringDecoder decode(QStringDecoder::Utf8);
    const QString text = decode(bytes);
    QStringList lines = text.split(u'\n');
    // The terminator of the last line leaves an empty piece behind it, not a line.
    if (lines.back().isEmpty()) {
        lines.removeLast();
    }
    for (QString& line : lines) {
        if (line.endsWith(u'\r')) {
            line.chop(1);
        }
    }
    return lines;
}

bool SaveLines(const QString& path, const QStringList& lines) {
    return SaveFileAtomically(path, BytesOfLines(lines));
}

LoadedLines LoadLines(const QString& path) {
    const QFileInfo info(path);
    if (!info.exists()) {
        return {{}, FileNotFoundError};
    }
    // A folder is a file that cannot be read, as it always was.
    if (info.isDir()) {
        return {{}, FileAccessError};
    }
    // A FIFO would wait for a writer for ever and a device may never end.
    if (!info.isFile()) {
        return {{}, NotAFileError};
    }
    if (info.size() > kLargestSettingsFile) {
        return {{}, TooLargeError};
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {{}, FileAccessError};
    }
    // The file may have grown since it was looked at.
    const QByteArray bytes = file.read(kLargestSettingsFile + 1);
    if (file.error() != QFileDevice::NoError) {
        return {{}, FileAccessError};
    }
    if (bytes.size() > kLargestSettingsFile) {
        return {{}, TooLargeError};
    }
    return {LinesOfBytes(bytes), 0};
}

bool SaveSettingsFile(const QStringList& lines, QString& lastName, Prompts& prompts) {
    // ".txt" is added below, as the windows always did, whatever the dialog offers.
    const QString chosen = prompts.saveFileName(SelectFileTitle, lastName, {}, nullptr);
    if (chosen.isEmpty()) {
        return false;
    }
    lastName = chosen;
    const QString path = SettingsFilePath(chosen);
    // Whatever is there — a file that cannot be read, a link to nowhere — is asked about.
    if (const QFileInfo there(path); there.exists() || there.isSymLink()) {
        if (!prompts.question(OverwriteQuestion)) {
            return false;
        }
    }
    if (!SaveLines(path, lines)) {
        prompts.message(SaveErrorMessage);
        return false;
    }
    return true;
}

std::optional<QStringList> ReadSettingsFile(const QString& path, Prompts& prompts) {
    LoadedLines loaded = LoadLines(path);
    if (loaded.error != 0) {
        prompts.message(LoadErrorMessage(loaded.error));
        return std::nullopt;
    }
    return std::move(loaded.lines);
}

}  // namespace rk31
