#pragma once

#include <QDateTime>
#include <QJsonArray>
#include <QString>
#include <QStringList>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "device/WindowContext.h"
#include "domain/ValueControlView.h"
#include "domain/WindowFamily.h"
#include "procedures/batch/BatchOptions.h"
#include "procedures/batch/BatchSeams.h"
#include "procedures/batch/ChipRecord.h"
#include "procedures/batch/Verify.h"

namespace rk31 {

class Application;

// Which window a settings file belongs to, judged by its first lines: the one-part point file
// starts "Part #Index:", the two-part windows' file has "VDD is(V):" on line 2, anything else is
// read as the dual point windows' file. The window's own Load then judges the file.
enum class SettingsKind { TwoPart, OnePartPoint, DualPoint };
SettingsKind SniffSettingsKind(const QString& path);

// Where a part's run stopped.
enum class Stage { None, File, Connect, Power, Identification, Program, Verify, Lock };
QString StageName(Stage stage);

// The verdict on one part of one chip.
struct PartVerdict {
    int part = 0;               // 0 = Part#1
    Stage stage = Stage::None;  // the stage it failed in; None: it passed
    QString cause;              // why, in words
    std::optional<VerifyResult> verify;
    QString warning;  // what the verdict cannot vouch for
    bool locked = false;
    bool interrupted = false;
    bool started = false;   // its first step began
    bool finished = false;  // its last step ended

    bool passed() const { return stage == Stage::None; }
    int exit() const;
};

// One chip of a run.
struct ChipResult {
    int number = 1;
    QDateTime started;
    qint64 milliseconds = 0;
    std::vector<PartVerdict> parts;
    bool interrupted = false;
    bool passed() const;
    int exit() const;
};

// rk31prog: one settings file, chip after chip, through the windows' own procedures on controls
// held as values. For a two-part file these are the "/1" window's (Connect, Enable Part, Power
// On, Program, Power Off, Disconnect per part); for a one-part point file the "/4" window's
// (Connect, Power On, Set point B with the stored point B, Disconnect); for a two-part point
// file the "/5" window's. Before the first device call the file is loaded and solved exactly as
// `check` does, so a file that check refuses touches nothing.
class BatchRunner {
  public:
    // Runs on the application's session and driver; `prompts` are the application's.
    BatchRunner(BatchOptions options, BatchOutput& output, Application& app, BatchPrompts& prompts);
    ~BatchRunner();
    BatchRunner(const BatchRunner&) = delete;
    BatchRunner& operator=(const BatchRunner&) = delete;

    // Runs the command; the exit code.
    int run();

  private:
    // Thrown between two steps when Ctrl-C was pressed.
    struct Interrupted {};

    int load();
    std::optional<std::vector<int>> parts();
    // The windows' solvers on the file's values; nothing is sent anywhere.
    bool solve(const std::vector<int>& parts, CurveTables& curves);
    int check();
    int production();
    QString openOutputs();

    ChipResult runChip(int number);
    bool connect(ChipResult& chip);
    void connectCommand();
    void disconnect();
    void programTwoPart(PartVerdict& verdict);
    void programPoints(std::vector<PartVerdict>& verdicts);
    void verifyOnly(PartVerdict& verdict);
    bool powerForVerify(PartVerdict& verdict);
    void verifyAndLock(PartVerdict& verdict, int count);
    void lockPointPart(PartVerdict& verdict);
    void powerOffAll();
    // Marks a part failed at `stage`: the first message shown since `mark`, else `otherwise`.
    void fail(PartVerdict& verdict, Stage stage, qsizetype mark, const QString& otherwise);
    QString noSupplyCause(int part) const;
    bool nextChip();

    // A window handler's frame: a device call that fails as a whole is shown and the window
    // follows the chip states.
    void attempt(const std::function<void()>& handler);
    QStringList since(qsizetype mark) const;
    // Starts a step of `stage` on the parts that are `started` from now on.
    void step(Stage stage, const QString& text);
    void say(const QString& line);
    void setContext(const QString& where);

    void printChip(const ChipResult& chip);
    QString verdictLine(const ChipResult& chip, const PartVerdict& verdict) const;
    QJsonObject chipObject(const ChipResult& chip) const;
    void count(const ChipResult& chip);
    int finish(int exit, QString fileCause = {});

    BatchOptions m_options;
    BatchOutput& m_output;
    Application& m_app;
    SettingsKind m_kind = SettingsKind::TwoPart;
    PointWindowTraits m_traits;
    ValueControlView m_view;
    BatchPrompts& m_prompts;
    BatchUi m_ui;
    std::unique_ptr<WindowContext> m_ctx;
    std::shared_ptr<ChipTraffic> m_traffic;
    RecordFile m_record;
    QString m_sha256;
    std::vector<int> m_parts;
    // What the summary needs of the chips so far; a run may go on all day, so the chips
    // themselves are kept only for the JSON document that lists them.
    struct Tally {
        int chips = 0;
        int passed = 0;
        qint64 milliseconds = 0;
        std::map<QString, int> failedByStage;
    } m_tally;
    QJsonArray m_chipObjects;
    QString m_runFailure;  // a log or record that could not be written
    QString m_refusal;     // "Part#2: " and the first message of the part the solvers refused
    int m_step = 0;
    Stage m_stage = Stage::Connect;
    bool m_stopping = false;
};

}  // namespace rk31
