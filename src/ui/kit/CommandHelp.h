#pragma once

#include <QChar>
#include <QString>

#include "domain/Validation.h"

class QAbstractButton;

namespace rk31 {

// What a command button or check box tells the user beyond its caption: the letter of its
// Alt+letter mnemonic and a tooltip that says what it does to the chip.
struct CommandHelp {
    QChar mnemonic;  // null: none
    QString toolTip;
};

// The help of control `name` (element `index`, -1 for a single control) in a window of
// `family`. Controls of the same caption share their letter, so Alt+letter moves between the
// parts' copies of one command.
CommandHelp HelpFor(const QString& name, int index, WindowFamily family);

// The caption with an underlined mnemonic before the first occurrence of `letter` (either
// case); unchanged when the caption does not contain it. "&" in a caption is doubled.
QString WithMnemonic(const QString& caption, QChar letter);
// The caption as the user reads it: the mnemonic marker removed, "&&" read as "&".
QString WithoutMnemonic(const QString& caption);

// Gives a button its mnemonic and tooltip and remembers the letter, so that a caption set
// later (Connect / Disconnect, Power On / Power Off) keeps its mnemonic.
void ApplyHelp(QAbstractButton& button, const CommandHelp& help);
// Sets a caption, underlining the letter ApplyHelp remembered.
void SetCaption(QAbstractButton& button, const QString& caption);

}  // namespace rk31
