#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "procedures/batch/BatchOptions.h"
#include "procedures/batch/BatchSeams.h"
#include "domain/ValueControlView.h"
#include "domain/WindowFamily.h"
#include "procedures/batch/Verify.h"
#include "device/WindowContext.h"
#include "procedures/points/PointCommands.h"

namespace rk31 {

class Application;

// Which window a settings file belongs to, judged by its first lines: the one-part point file
// starts "Part #Index:", the two-part windows' file has "VDD is(V):" on line 2, anything else is
// read as the dual point windows' file. The window's own Load then judges the file.
enum class SettingsKind { TwoPart, OnePartPoint, DualPoint };
SettingsKind SniffSettingsKind(const QString& path);

// What happened to one part.
struct PartReport {
    int part = 0;                                // 0 = Part#1
    QString result = QStringLiteral("not run");  // "programmed", "verified", "verify failed",
                                                 // "failed"
    QStringList messages;
    std::optional<VerifyReading> reading;
    bool locked = false;
    int exit = kExitOk;
};

// rk31prog: one settings file, one chip, through the windows' own procedures on controls held
// as values. For a two-part file these are the "/1" window's (Connect, Enable Part, Power On,
// Program, Power Off, Disconnect per part); for a one-part point file the "/4" window's
// (Connect, Power On, Set point B with the stored point B, Disconnect); for a two-part point
// file the "/5" window's.
class BatchRunner {
  public:
    // Runs on the application's session and driver; `prompts` are the application's.
    BatchRunner(BatchOptions options, BatchOutput& output, Application& app, BatchPrompts& prompts);
    ~BatchRunner();
    BatchRunner(const BatchRunner&) = delete;
    BatchRunner& operator=(const BatchRunner&) = delete;

    // Runs the command; the exit code.
    int run();

    const std::vector<PartReport>& reports() const { return m_reports; }

  private:
    int load();
    int check();
    int program();
    bool connect();
    // The window's connect button.
    void connectCommand();
    void disconnect();
    void programTwoPart(PartReport& report);
    void programPoints(std::vector<PartReport*>& reports);
    void verifyAndLock(PartReport& report, bool programmed, int count);
    void lockPointPart(PartReport& report);
    std::optional<std::vector<int>> parts();

    // A window handler's frame: a device call that fails as a whole is shown and the window
    // follows the chip states.
    void attempt(const std::function<void()>& handler);
    // The messages shown since `mark`.
    QStringList since(qsizetype mark) const;
    void step(const QString& text);
    int finish(int exit);

    BatchOptions m_options;
    BatchOutput& m_output;
    SettingsKind m_kind = SettingsKind::TwoPart;
    PointWindowTraits m_traits;
    ValueControlView m_view;
    BatchPrompts& m_prompts;
    BatchUi m_ui;
    std::unique_ptr<WindowContext> m_ctx;
    std::vector<PartReport> m_reports;
    int m_step = 0;
    int m_steps = 0;
};

}  // namespace rk31
