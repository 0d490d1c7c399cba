#pragma once

#include <QDialog>
#include <QStringList>
#include <deque>
#include <functional>
#include <memory>

#include "device/Application.h"
#include "domain/Prompts.h"
#include "sim/SimulatedProgrammer.h"
#include "ui/windows/MainForm2Parts.h"

namespace rk31::bench {

// Records every message and runs modal dialogs from scripts; an unscripted dialog is closed at
// once. A benchmark that meets an unexpected message has measured the wrong thing.
class BenchPrompts : public Prompts {
  public:
    using DialogScript = std::function<void(QDialog&)>;

    void message(const QString& text) override { messages << text; }
    bool question(const QString& text) override {
        messages << text;
        return false;
    }
    QString openFileName(const QString&, const QString&) override { return {}; }
    QString saveFileName(const QString&, const QString&, const QStringList&, int*) override {
        return {};
    }
    void runModal(QDialog& dialog) override;

    QStringList messages;
    std::deque<DialogScript> dialogScripts;
};

// Blocking sleeps are the program waiting for the chip, not the program working: they are
// counted, not slept.
class BenchPause : public Pause {
  public:
    void sleep(int milliseconds) override { requestedMs += milliseconds; }
    long long requestedMs = 0;
};

// The "/1" main window of a fresh application on the simulated programmer, connected on COM1,
// Part#1 enabled, powered and in OWI mode, with a four-point characteristic typed into its
// boxes. Throws std::runtime_error when any step shows a message or a control is missing.
class PreparedWindow {
  public:
    explicit PreparedWindow(const sim::SimConfig& config);

    MainForm2Parts2Src& window() { return *m_window; }
    sim::SimulatedBox& box() { return m_programmer.box(); }
    BenchPrompts prompts;
    BenchPause pause;

    // Clicks a button of the window as a user does; throws when it is missing or disabled.
    void click(const QString& name, int index = -1);
    // Throws with the messages shown so far, if any.
    void expectNoMessages(const char* during) const;

  private:
    void typeInto(const QString& name, int index, const QString& text);

    sim::SimulatedProgrammer m_programmer;
    Application m_app;
    std::unique_ptr<MainForm2Parts2Src> m_window;
};

}  // namespace rk31::bench
