#include "params/SettingsFile.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>
#include <type_traits>

#include "core/AtomicSave.h"
#include "core/Prompts.h"
#include "core/Rounding.h"
#include "params/Validation.h"

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

// Where a line's value lives in the two-part settings; the same mapping serves both directions.
template <typename Settings, typename Visitor>
void visitField(Settings& settings, const SettingsLine& line, Visitor&& visit) {
    auto& part = settings.parts.at(static_cast<std::size_t>(line.part));
    const auto point = static_cast<std::size_t>(line.point);
    switch (line.control) {
        case SettingsControl::VDD:
            return visit(part.VDD);
        case SettingsControl::clockwise:
            return visit(part.clockwise);
        case SettingsControl::DP:
            return visit(part.DP);
        case SettingsControl::clamphigh:
            return visit(part.clamphigh);
        case SettingsControl::clamplow:
            return visit(part.clamplow);
        case SettingsControl::Angle:
            return visit(part.Angle.at(point));
        case SettingsControl::Level:
            return visit(part.Level.at(point));
        case SettingsControl::KforA:
            return visit(part.KforA);
        case SettingsControl::op:
            return visit(part.op);
        case SettingsControl::hys:
            return visit(part.hys);
        case SettingsControl::Kpolarity:
            return visit(part.Kpolarity);
        case SettingsControl::OutMode:
            return visit(part.OutMode);
        case SettingsControl::PWMFreq:
            return visit(part.PWMFreq);
        case SettingsControl::PWMPolarity:
            return visit(part.PWMPolarity);
        case SettingsControl::PartSel:
            break;
    }
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
        const QString taken = lines[static_cast<qsizetype>(i)].mid(line.valueStart - 1);
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

QStringList WriteTwoPartSettings(const TwoPartSettings& settings) {
    return WriteSettings(TwoPartLayout(), [&settings](const SettingsLine& line) {
        SettingsValue value;
        visitField(settings, line, [&value](const auto& field) {
            if constexpr (std::is_same_v<std::decay_t<decltype(field)>, QString>) {
                value.text = field;
            } else {
                value.number = field;
            }
        });
        return value;
    });
}

TwoPartSettingsRead ReadTwoPartSettings(const QStringList& lines, const TwoPartSettings& current) {
    TwoPartSettingsRead read{current, {}};
    read.result = ReadSettings(
        lines, TwoPartLayout(), [&read](const SettingsLine& line, const SettingsValue& value) {
            visitField(read.values, line, [&value](auto& field) {
                if constexpr (std::is_same_v<std::decay_t<decltype(field)>, QString>) {
                    field = value.text;
                } else {
                    field = value.number;
                }
            });
        });
    return read;
}

QString LoadErrorMessage(int error) {
    if (error == FileNotFoundError) {
        return FileNotFoundMessage;
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
    if (!QFileInfo::exists(path)) {
        return {{}, FileNotFoundError};
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {{}, FileAccessError};
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        return {{}, FileAccessError};
    }
    return {LinesOfBytes(bytes), 0};
}

bool SaveSettingsFile(const QStringList& lines, QString& lastName, Prompts& prompts) {
    const QString chosen = prompts.saveFileName(SelectFileTitle, lastName);
    if (chosen.isEmpty()) {
        return false;
    }
    lastName = chosen;
    const QString path = SettingsFilePath(chosen);
    if (QFile probe(path); probe.open(QIODevice::ReadOnly)) {
        probe.close();
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

std::optional<QStringList> OpenSettingsFile(QString& lastName, Prompts& prompts) {
    const QString chosen = prompts.openFileName(SelectFileTitle, lastName);
    if (chosen.isEmpty()) {
        return std::nullopt;
    }
    lastName = chosen;
    LoadedLines loaded = LoadLines(chosen);
    if (loaded.error != 0) {
        prompts.message(LoadErrorMessage(loaded.error));
        return std::nullopt;
    }
    return std::move(loaded.lines);
}

}  // namespace rk31
