#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFocusEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QWidget>
#include <memory>

#include "device/Application.h"
#include "device/DeviceSession.h"
#include "sim/SimulatedProgrammer.h"
#include "support/ScriptedPrompts.h"
#include "ui/kit/WidgetControlView.h"
#include "ui/windows/Startup.h"

namespace rk31::test {

// Everything a window test runs on, as the program runs: the application object over the
// simulated programmer with a fresh box, and scripted prompts and pause.
struct Bench {
    explicit Bench(const sim::SimConfig& config = {}, const StartSettings& settings = {})
        : programmer(config), app(settings, prompts, pause, &programmer) {}

    sim::SimulatedBox& box() { return programmer.box(); }
    QStringList trace() const { return programmer.simulation().box->trace(); }
    void clearTrace() { programmer.box().clearTrace(); }
    DeviceSession& session() { return app.session(); }
    // The main window of switch "/variant", made as start-up makes it.
    std::unique_ptr<QWidget> window(int variant) { return CreateMainWindow(variant, app); }

    ScriptedPrompts prompts;
    RecordingPause pause;
    sim::SimulatedProgrammer programmer;
    Application app;
};

inline QString nameOf(const QString& name, int index) {
    return index < 0 ? name : name + u'_' + QString::number(index);
}

template <typename W = QWidget>
W* find(QWidget* root, const QString& name, int index = -1) {
    W* w = root->findChild<W*>(nameOf(name, index));
    if (!w) {
        qFatal("no widget %s", qPrintable(nameOf(name, index)));
    }
    return w;
}

// The text of the label that names a control (its buddy), empty when none does.
inline QString labelOf(QWidget* root, QWidget* control) {
    for (auto* label : root->findChildren<QLabel*>()) {
        if (label->buddy() == control) {
            return label->text();
        }
    }
    return {};
}

// Types into a box and leaves it, as a user tabbing to the next control.
inline void typeInto(QWidget* root, const QString& name, int index, const QString& text) {
    auto* edit = find<QLineEdit>(root, name, index);
    edit->setText(text);
    QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
    QApplication::sendEvent(edit, &out);
}

inline QString textOf(QWidget* root, const QString& name, int index = -1) {
    return WidgetControlView(root).text(name, index);
}

// Whether the user can operate the control (its own state and every frame around it).
inline bool usable(QWidget* root, const QString& name, int index = -1) {
    return find(root, name, index)->isEnabled();
}

// A click as a user makes it: nothing happens on a disabled control.
inline void click(QWidget* root, const QString& name, int index = -1) {
    auto* button = find<QAbstractButton>(root, name, index);
    if (button->isEnabled()) {
        button->click();
    }
}

inline void check(QWidget* root, const QString& name, int index, bool on) {
    auto* box = find<QCheckBox>(root, name, index);
    if (box->isChecked() != on && box->isEnabled()) {
        box->click();
    }
}

// Scripts the port dialog to choose `port` ("COM1") and press its Connect button.
inline void scriptPortChoice(ScriptedPrompts& prompts, const QString& port) {
    prompts.dialogScripts.push_back([port](QDialog& dialog) {
        auto* list = dialog.findChild<QComboBox*>(QStringLiteral("Port"));
        list->setCurrentIndex(list->findText(port));
        dialog.findChild<QAbstractButton*>(QStringLiteral("connect"))->click();
    });
}

// Scripts the next modal dialog to be answered by clicking its button `name`.
inline void scriptDialogClick(ScriptedPrompts& prompts, const QString& name) {
    prompts.dialogScripts.push_back(
        [name](QDialog& dialog) { dialog.findChild<QAbstractButton*>(name)->click(); });
}

// A main window connected on COM1 with every part enabled and, when `power`, powered; trace,
// messages and dialog titles emptied.
template <typename W>
std::unique_ptr<W> openConnected(Bench& bench, bool power) {
    auto window = std::make_unique<W>(bench.app);
    QWidget* w = window.get();
    scriptPortChoice(bench.prompts, "COM1");
    click(w, "connect");
    const bool oneSupply = window->context().oneSupply();
    for (int part = 0; part < (oneSupply ? 1 : 2); ++part) {
        if (!oneSupply) {
            check(w, "PartEnable", part, true);
        }
        if (power) {
            click(w, "PowerOn", oneSupply ? -1 : part);
        }
    }
    bench.clearTrace();
    bench.prompts.messages.clear();
    bench.prompts.modalTitles.clear();
    return window;
}

}  // namespace rk31::test
