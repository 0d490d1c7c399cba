#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

#include "device/WindowContext.h"
#include "domain/Prompts.h"

namespace rk31 {

// Where the batch programmer's lines go and what it hears from outside: `error` is standard
// error (every message a window would show, after where it happened), `out` standard output
// (steps, verdicts, results).
struct BatchOutput {
    std::function<void(const QString&)> error;
    std::function<void(const QString&)> out;
    bool terminal = false;  // standard output is a terminal: the wait texts show progress
    // Ctrl-C was pressed: the chip in the socket is finished safely and the run stops.
    std::function<bool()> interrupted = [] { return false; };
    // Nobody reads standard output any more: the chip is finished and the run stops.
    std::function<bool()> closed = [] { return false; };
    // Asks for the next chip where the station has no feeder (Enter on the terminal); false at
    // the end of input.
    std::function<bool()> nextChip = [] { return false; };
};

// The message boxes of the window procedures, without a window: each message becomes a line on
// standard error, the open-file dialog answers with the settings file, and questions are
// answered No (nothing the batch runs asks one that should be answered Yes).
class BatchPrompts : public Prompts {
  public:
    explicit BatchPrompts(BatchOutput& output) : m_output(output) {}

    void message(const QString& text) override;
    bool question(const QString& text) override;
    QString openFileName(const QString& title, const QString& suggested) override;
    QString saveFileName(const QString& title, const QString& suggested, const QStringList& filters,
                         int* chosenFilter) override;
    void runModal(QDialog& dialog) override;

    QString file;          // what the open-file dialog answers
    QStringList messages;  // every message so far, in order
    QString where;         // the file, port and part a message is about

  private:
    BatchOutput& m_output;
};

// The dialogs and wait windows the procedures open: the port dialog chooses `port`, the Comm Lock
// confirmation is confirmed, wait texts go to `onWaitText` (the progress of a step), the
// windows over the main window are not opened.
class BatchUi : public WindowUi {
  public:
    std::unique_ptr<WaitWindow> createWaitWindow(const QString& text) override;
    void processEvents() override {}
    std::int16_t choosePort() override { return port; }
    bool confirmCommLock() override { return true; }
    void showAbout(const QString& /*hardwareVersion*/) override {}
    void showLinearGraph(std::int16_t, std::int16_t, std::int16_t, std::int16_t) override {}
    void showRealTimeDisplay(std::int16_t, std::int16_t) override {}
    void showAdvanced(std::int16_t, std::int16_t) override {}

    std::int16_t port = 0;
    std::function<void(const QString&)> onWaitText;
};

}  // namespace rk31
