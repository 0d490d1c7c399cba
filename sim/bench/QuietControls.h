#pragma once

#include <QAbstractButton>
#include <QLabel>
#include <QSignalBlocker>

namespace rk31::sim {

// The bench brings its controls in line with the box many times a second: without echoing the
// change back to the box, and without touching what already shows it.

inline void CheckQuietly(QAbstractButton* button, bool on) {
    if (button->isChecked() != on) {
        const QSignalBlocker quiet(button);
        button->setChecked(on);
    }
}

inline void ShowText(QLabel* label, const QString& text) {
    if (label->text() != text) {
        label->setText(text);
    }
}

}  // namespace rk31::sim
