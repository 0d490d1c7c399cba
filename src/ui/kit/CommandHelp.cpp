#include "ui/kit/CommandHelp.h"

#include <QAbstractButton>
#include <QVariant>

#include "device/WindowContext.h"

namespace rk31 {

namespace {

const char* const kMnemonicProperty = "rk31Mnemonic";

// Whom a per-part command acts on, as its tooltip names it.
QString subject(int index, WindowFamily family) {
    switch (family) {
        case WindowFamily::TwoPartOneSupply:
        case WindowFamily::DualPoint:
            return index < 0 ? QStringLiteral("both parts")
                             : QStringLiteral("Part#%1").arg(index + 1);
        case WindowFamily::OnePartPoint:
            return QStringLiteral("the part chosen in the Part list");
        case WindowFamily::TwoPartTwoSupplies:
            break;
    }
    return QStringLiteral("Part#%1").arg(index < 0 ? 1 : index + 1);
}

// The part of a Set point element of the two-part windows (4 points per part).
int setPointPart(int element) {
    return element < 4 ? 0 : 1;
}

}  // namespace

CommandHelp HelpFor(const QString& name, int index, WindowFamily family) {
    const bool pointWindow = !IsTwoPartFamily(family);
    const QString who = subject(index, family);
    if (name == ctl::connect) {
        return {u'n', QStringLiteral("Connects to the programmer through the port you choose; "
                                     "Disconnect closes the channel")};
    }
    if (name == ctl::PowerOn) {
        if (pointWindow) {
            return {u'p', QStringLiteral("Powers %1, checks that the chip answers and clears "
                                         "its solver, ready for Set point A")
                              .arg(who)};
        }
        return {u'p', QStringLiteral("Powers %1, reads the supply and checks that the chip "
                                     "answers; Power Off removes the supply")
                          .arg(who)};
    }
    if (name == ctl::newdevice) {
        return {u'w', QStringLiteral("Clears the solver of %1, programs its EEPROM and reads its "
                                     "DAC calibration")
                          .arg(who)};
    }
    if (name == ctl::owilock) {
        return {u'k', QStringLiteral("Locks the one-wire communication of %1 for good "
                                     "(asks first)")
                          .arg(who)};
    }
    if (name == ctl::Advanced) {
        return {u'v', QStringLiteral("Reads and writes raw memory words of %1").arg(who)};
    }
    if (name == ctl::btnconfigsolver) {
        return {u'r', QStringLiteral("Writes the points into %1 and programs its EEPROM").arg(who)};
    }
    if (name == ctl::lineargraph) {
        // "g" belongs to Get DP Mid Point, whose other letters the part's commands hold.
        return {
            u'h',
            QStringLiteral("Shows the transfer curve that the settings of %1 describe").arg(who)};
    }
    if (name == ctl::viewoutput) {
        return {u'o',
                QStringLiteral("Shows the output of %1, measured ten times a second").arg(who)};
    }
    if (name == ctl::mOpen) {
        return {u'l', QStringLiteral("Loads the settings of this window from a file")};
    }
    if (name == ctl::mSaveAs) {
        return {u's', QStringLiteral("Saves the settings of this window to a file")};
    }
    if (name == ctl::btnAbout) {
        return {u'u', QStringLiteral("Shows the program's version and the programmer's")};
    }
    if (name == ctl::btnreadangle) {
        return {u'e', QStringLiteral("Reads the angle %1 senses now").arg(who)};
    }
    if (name == ctl::GetDP) {
        // "d" is Set point D where both stand in one part.
        return {IsTwoPartFamily(family) ? u'g' : u'd',
                QStringLiteral("Puts DP half a turn away from the angle %1 senses now").arg(who)};
    }
    if (name == ctl::Setpoint) {
        const QChar letter = QChar(u'A' + index % 4);
        return {letter.toLower(), QStringLiteral("Takes the angle Part#%1 senses now as point %2")
                                      .arg(setPointPart(index) + 1)
                                      .arg(letter)};
    }
    if (name == ctl::SetpointA) {
        return {u'a', QStringLiteral("Takes the angle %1 senses now as point A and puts DP half "
                                     "a turn away")
                          .arg(who)};
    }
    if (name == ctl::SetpointB) {
        return {u'b', QStringLiteral("Takes the angle %1 senses now as point B, programs the "
                                     "EEPROM and powers the part off")
                          .arg(who)};
    }
    if (name == ctl::swobtn) {
        return {u't',
                QStringLiteral("Takes the angle %1 senses now as the operate point OP").arg(who)};
    }
    if (name == ctl::hysup || name == ctl::hysdown) {
        const bool up = name == ctl::hysup;
        return {QChar(),
                QStringLiteral("%1 the HYS of %2 by 0.25 deg (%3); the chip gets it with the next "
                               "Program")
                    .arg(up ? QStringLiteral("Raises") : QStringLiteral("Lowers"), who,
                         up ? QStringLiteral("at most 15.75") : QStringLiteral("not below 0"))};
    }
    if (name == ctl::PartEnable) {
        return {QChar(u'1' + index), QStringLiteral("Lets you work on Part#%1").arg(index + 1)};
    }
    if (name == ctl::clockwise) {
        if (family == WindowFamily::DualPoint) {
            return {QChar(u'1' + index),
                    QStringLiteral("The angle of Part#%1 grows clockwise").arg(index + 1)};
        }
        return {u'i', QStringLiteral("The angle grows clockwise")};
    }
    if (name == QLatin1String("export")) {
        return {u'x',
                QStringLiteral("Saves the curve as a picture (PNG, SVG) or as its rows (CSV)")};
    }
    if (name == ctl::Kpolarity) {
        return {u'y', QStringLiteral("Inverts the switch output")};
    }
    return {};
}

QString WithMnemonic(const QString& caption, QChar letter) {
    QString text = caption;
    text.replace(u'&', QStringLiteral("&&"));
    if (letter.isNull()) {
        return text;
    }
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'&') {
            ++i;  // a doubled "&"
            continue;
        }
        if (text[i].toLower() == letter.toLower()) {
            text.insert(i, u'&');
            break;
        }
    }
    return text;
}

QString WithoutMnemonic(const QString& caption) {
    QString text;
    text.reserve(caption.size());
    for (qsizetype i = 0; i < caption.size(); ++i) {
        if (caption[i] == u'&' && i + 1 < caption.size()) {
            ++i;
        }
        text += caption[i];
    }
    return text;
}

void ApplyHelp(QAbstractButton& button, const CommandHelp& help) {
    button.setProperty(kMnemonicProperty,
                       help.mnemonic.isNull() ? QVariant() : QVariant(help.mnemonic));
    if (!help.toolTip.isEmpty()) {
        button.setToolTip(help.toolTip);
    }
    SetCaption(button, WithoutMnemonic(button.text()));
}

void SetCaption(QAbstractButton& button, const QString& caption) {
    const QVariant letter = button.property(kMnemonicProperty);
    button.setText(WithMnemonic(caption, letter.isValid() ? letter.toChar() : QChar()));
}

}  // namespace rk31
