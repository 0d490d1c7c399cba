#pragma once

#include <QAbstractButton>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>

namespace rk31::sim {

// A button that Enter in a box of the bench does not press.
inline QPushButton* BenchButton(const QString& text, const QString& name, QWidget* parent) {
    auto* button = new QPushButton(text, parent);
    button->setObjectName(name);
    button->setAutoDefault(false);
    return button;
}

// A label that names `buddy`, so that the control carries it as its accessible name.
inline QLabel* BuddyLabel(const QString& text, QWidget* buddy, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setBuddy(buddy);
    return label;
}

// The bench brings its controls in line with the box many times a second: without echoing the
// change back to the box, and without touching what already shows it.

inline void CheckQuietly(QAbstractButton* button, bool on) {
    if (button->isChecked() != on) {
        const QSignalBlocker quiet(button);
        button->setChecked(on);
    }
}

// A fault that is on stands out: bold, in the colour the bench gives failures.
inline void MarkOn(QWidget* widget, bool on) {
    const QString style = on ? QStringLiteral("font-weight: bold; color: #b00020;") : QString();
    if (widget->styleSheet() != style) {
        widget->setStyleSheet(style);
    }
}

inline void ShowText(QLabel* label, const QString& text) {
    if (label->text() != text) {
        label->setText(text);
    }
}

}  // namespace rk31::sim
