#include "batch/BatchRun.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtGlobal>
#include <algorithm>
#include <cmath>

#include "chipsession/ModeChange.h"
#include "chipsession/SessionControls.h"
#include "core/DeviceError.h"
#include "link/Connection.h"
#include "link/DeviceFactory.h"
#include "params/PartParameters.h"
#include "params/SettingsCommands.h"
#include "params/UpdateControl.h"
#include "programming/ProgramSequence.h"
#include "programming/SolverInputs.h"
#include "shell/DeviceSession.h"
#include "solver/Curve.h"
#include "solver/PointSolvers.h"

namespace rk31 {

namespace {

const QString kPowerOnCaption = QStringLiteral("Power On");
const QString kConnectCaption = QStringLiteral("Connect");

WindowFamily familyOf(SettingsKind kind) {
    switch (kind) {
        case SettingsKind::OnePartPoint:
            return WindowFamily::OnePartPoint;
        case SettingsKind::DualPoint:
            return WindowFamily::DualPoint;
        case SettingsKind::TwoPart:
            break;
    }
    return WindowFamily::TwoPartTwoSupplies;
}

PointWindowTraits traitsOf(SettingsKind kind) {
    return kind == SettingsKind::DualPoint ? kTwoPointsDualWithPower : kTwoPointsWithPower;
}

QString partName(int part) {
    return QStringLiteral("Part#") + QString::number(part + 1);
}

QString number(double value) {
    return QString::number(value, 'f', 2);
}

// The controls as the window builds them, before its load runs.
void seedControls(ValueControlView& view, SettingsKind kind, const PointWindowTraits& traits) {
    view.setText(ctl::connect, -1, kConnectCaption);
    if (kind == SettingsKind::TwoPart) {
        view.setText(ctl::status, -1, QStringLiteral("status: N/A"));
        for (int part = 0; part < 2; ++part) {
            view.setText(ctl::PowerOn, part, kPowerOnCaption);
            view.setText(ctl::btnconfigsolver, part, QStringLiteral("Program"));
            view.setText(ctl::VDD, part, QStringLiteral("5.000"));
            view.setText(ctl::Rangle, part, QStringLiteral("360.00"));
            view.setText(ctl::DP, part, DefaultDPText);
            view.setText(ctl::clamphigh, part, DefaultClampHighText);
            view.setText(ctl::clamplow, part, DefaultClampLowText);
            view.setText(ctl::hys, part, QStringLiteral("1.00"));
        }
        return;
    }
    if (traits.powerButton) {
        view.setText(ctl::PowerOn, -1, kPowerOnCaption);
    }
    for (int part = 0; part < (traits.bothParts ? 2 : 1); ++part) {
        const int index = traits.bothParts ? part : -1;
        view.setText(ctl::DP, index, DefaultDPText);
        view.setText(ctl::clamphigh, index, DefaultClampHighText);
        view.setText(ctl::clamplow, index, DefaultClampLowText);
    }
}

// Takes the solver values of `check` and `curve`, which never reach a device.
class SolverSink : public QZ7734Device,
                   public MemoryAccess,
                   public SolverAccess,
                   public std::enable_shared_from_this<SolverSink> {
  public:
    void OpenChannel(const QVariant&, std::int32_t&) override {}
    void CloseChannel(std::int32_t) override {}
    void ProgramEEPROM(std::int16_t, std::int32_t&) override { refuse(); }
    void MeasureOutput(std::int16_t, std::int16_t, float&) override { refuse(); }
    void MeasureVDD(std::int16_t, float&) override { refuse(); }
    void GetMemoryAccess(std::shared_ptr<MemoryAccess>& object) override {
        object = shared_from_this();
    }
    void ReadAngle(std::int16_t, float&) override { refuse(); }
    void GetSolverAccess(std::shared_ptr<SolverAccess>& object) override {
        object = shared_from_this();
    }
    void EnterOWIMode(std::int16_t, std::int32_t&) override { refuse(); }
    void ExitOWIMode(std::int16_t, std::int32_t&) override { refuse(); }
    void PowerOnChip(std::int16_t, std::int32_t&) override { refuse(); }
    void SelectOutputChannel(std::int16_t, std::int32_t&) override { refuse(); }
    void PowerOffChip(std::int16_t, std::int32_t&) override { refuse(); }
    void EnterADCMode(std::int16_t, std::int32_t&) override { refuse(); }
    void GetDACCalibration(std::int16_t, float&, float&, float&, float&, std::int32_t&) override {
        refuse();
    }
    void GetHardwareVersion(std::int32_t&, std::int32_t&, std::int32_t&, std::int32_t&) override {
        refuse();
    }
    void SetOutputMode(std::int16_t, std::int16_t, std::int16_t, std::int16_t,
                       std::int32_t&) override {
        refuse();
    }
    void WriteMemory(std::int16_t, std::int32_t, std::int32_t) override { refuse(); }
    void ReadMemory(std::int16_t, std::int32_t, std::int32_t&) override { refuse(); }
    void SetSolverParameter(std::int16_t, std::int16_t, const SolverValue&, std::int16_t,
                            std::int32_t&) override {}
    void CommLock(std::int16_t, std::int32_t&) override { refuse(); }
    void WriteBufferToDevice(std::int16_t, std::int32_t&) override { refuse(); }
    void ClearSolverSettings(std::int16_t, std::int32_t&) override { refuse(); }

  private:
    [[noreturn]] static void refuse() {
        throw DeviceError(QStringLiteral("No device is used by this command."));
    }
};

QJsonObject reportObject(const PartReport& report) {
    QJsonObject object{{"part", report.part + 1},
                       {"result", report.result},
                       {"messages", QJsonArray::fromStringList(report.messages)},
                       {"locked", report.locked}};
    if (report.reading) {
        const VerifyReading& r = *report.reading;
        object.insert("angle", r.angle);
        object.insert("expected", std::isnan(r.expected) ? QJsonValue() : QJsonValue(r.expected));
        object.insert("measured", r.measured);
        object.insert("tolerance", r.tolerance);
    }
    return object;
}

}  // namespace

SettingsKind SniffSettingsKind(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return SettingsKind::TwoPart;
    }
    const QByteArray first = file.readLine();
    const QByteArray second = file.readLine();
    if (first.startsWith("Part #Index:")) {
        return SettingsKind::OnePartPoint;
    }
    if (second.startsWith("VDD is(V):") || !second.startsWith("Direction is:")) {
        return SettingsKind::TwoPart;
    }
    return SettingsKind::DualPoint;
}

BatchRunner::BatchRunner(BatchOptions options, BatchOutput& output, Pause& pause)
    : m_options(std::move(options)), m_output(output), m_prompts(output) {
    m_kind = SniffSettingsKind(m_options.settings);
    m_traits = traitsOf(m_kind);
    m_ctx = std::make_unique<WindowContext>(familyOf(m_kind), DeviceSession::instance(), m_view,
                                            m_prompts, pause, m_ui);
    m_ui.port = static_cast<std::int16_t>(m_options.port);
    m_ui.onWaitText = [this](const QString& text) {
        if (!m_options.quiet && !m_options.json && m_output.terminal) {
            m_output.out(QStringLiteral("      ") + text);
        }
    };
}

BatchRunner::~BatchRunner() = default;

int BatchRunner::run() {
    switch (m_options.command) {
        case BatchCommand::Check:
            return check();
        case BatchCommand::Curve:
            return curve();
        case BatchCommand::Program:
            break;
    }
    return program();
}

void BatchRunner::attempt(const std::function<void()>& handler) {
    try {
        handler();
    } catch (const DeviceError& e) {
        m_prompts.message(e.description());
        AfterDeviceFailure(*m_ctx);
    }
}

QStringList BatchRunner::since(qsizetype mark) const {
    return m_prompts.messages.mid(mark);
}

void BatchRunner::step(const QString& text) {
    ++m_step;
    if (!m_options.quiet && !m_options.json) {
        m_output.out(QStringLiteral("[%1] ").arg(m_step) + text);
    }
}

int BatchRunner::load() {
    seedControls(m_view, m_kind, m_traits);
    const qsizetype mark = m_prompts.messages.size();
    attempt([this] {
        if (m_kind == SettingsKind::TwoPart) {
            TwoPartWindowLoad(*m_ctx);
        } else {
            PointWindowLoad(*m_ctx, m_traits);
        }
    });
    m_prompts.file = m_options.settings;
    LoadSettingsCommand(*m_ctx);
    return since(mark).isEmpty() ? kExitOk : kExitBadInput;
}

std::optional<std::vector<int>> BatchRunner::parts() {
    const PartChoice choice = m_options.part;
    if (m_kind == SettingsKind::TwoPart) {
        if (choice == PartChoice::Part1) {
            return std::vector<int>{0};
        }
        if (choice == PartChoice::Part2) {
            return std::vector<int>{1};
        }
        return std::vector<int>{0, 1};
    }
    if (m_kind == SettingsKind::DualPoint) {
        if (choice == PartChoice::Part1 || choice == PartChoice::Part2) {
            m_output.error(QStringLiteral("A two-part point file programs both parts."));
            return std::nullopt;
        }
        return std::vector<int>{0, 1};
    }
    if (choice == PartChoice::Both) {
        m_output.error(QStringLiteral("A one-part point file programs one part."));
        return std::nullopt;
    }
    if (choice != PartChoice::FromFile) {
        m_view.setListIndex(ctl::PartSel, -1, choice == PartChoice::Part1 ? 0 : 1);
    }
    return std::vector<int>{m_ctx->selectedPart()};
}

int BatchRunner::check() {
    int exit = load();
    std::optional<std::vector<int>> which;
    if (exit == kExitOk) {
        which = parts();
        exit = which ? kExitOk : kExitBadInput;
    }
    CurveTables curves{};
    if (exit == kExitOk) {
        // The solvers hand their values to the device as they go; here nothing is behind it.
        qunsetenv("RK31_DEVICE_LOG");
        DeviceFactory::Register(QString::fromLatin1(kDeviceProgId),
                                [] { return std::make_shared<SolverSink>(); });
        m_ctx->session.ConnectProgrammer(0, m_prompts);
        const qsizetype mark = m_prompts.messages.size();
        for (const int part : *which) {
            const auto p = static_cast<std::int16_t>(part);
            int count = 0;
            attempt([this, p, &count] {
                if (m_kind == SettingsKind::TwoPart) {
                    count = LoadSolverInputs(*m_ctx, p) ? configsolver(*m_ctx, p) : 0;
                } else {
                    count =
                        LoadSolverInputsTwoPoints(*m_ctx, p) ? configsolver_2Points(*m_ctx, p) : 0;
                }
            });
            if (count < 2 || count > 4) {
                exit = kExitBadInput;
                continue;
            }
            CalLinearGraph(p, static_cast<std::int16_t>(count), 0, 0, m_ctx->session.rounded,
                           curves, m_prompts);
        }
        m_ctx->session.DisconnectProgrammer();
        DeviceFactory::Unregister(QString::fromLatin1(kDeviceProgId));
        if (!since(mark).isEmpty()) {
            exit = kExitBadInput;
        }
    }
    if (m_options.command == BatchCommand::Curve) {
        if (exit == kExitOk && curveCsv) {
            for (const QString& line : curveCsv(curves, *which)) {
                m_output.out(line);
            }
        }
        return exit;
    }
    if (m_options.json) {
        m_output.out(QString::fromUtf8(
            QJsonDocument(QJsonObject{{"file", m_options.settings},
                                      {"result", exit == kExitOk ? "good" : "refused"},
                                      {"messages", QJsonArray::fromStringList(m_prompts.messages)}})
                .toJson(QJsonDocument::Compact)));
    } else if (!m_options.quiet) {
        m_output.out(m_options.settings +
                     (exit == kExitOk ? QStringLiteral(": good") : QStringLiteral(": refused")));
    }
    return exit;
}

int BatchRunner::curve() {
    return check();
}

bool BatchRunner::connect() {
    step(QStringLiteral("Connect COM") + QString::number(m_options.port));
    const qsizetype mark = m_prompts.messages.size();
    attempt([this] { ConnectCommand(*m_ctx); });
    return since(mark).isEmpty() && m_ctx->session.ProgrammerConnected == 1;
}

void BatchRunner::disconnect() {
    if (m_view.text(ctl::connect) != kConnectCaption) {
        step(QStringLiteral("Disconnect"));
        attempt([this] { ConnectCommand(*m_ctx); });
    }
}

int BatchRunner::program() {
    const int loaded = load();
    const auto which = loaded == kExitOk ? parts() : std::nullopt;
    if (!which) {
        return finish(kExitBadInput);
    }
    for (const int part : *which) {
        PartReport report;
        report.part = part;
        m_reports.push_back(report);
    }
    if (!connect()) {
        for (PartReport& report : m_reports) {
            report.result = QStringLiteral("failed");
            report.exit = kExitDevice;
            report.messages = m_prompts.messages;
        }
        disconnect();
        return finish(kExitDevice);
    }
    if (m_kind == SettingsKind::TwoPart) {
        for (PartReport& report : m_reports) {
            programTwoPart(report);
        }
    } else {
        std::vector<PartReport*> reports;
        for (PartReport& report : m_reports) {
            reports.push_back(&report);
        }
        programPoints(reports);
    }
    disconnect();
    return finish(kExitOk);
}

void BatchRunner::programTwoPart(PartReport& report) {
    const auto p = static_cast<std::int16_t>(report.part);
    const QString name = partName(p);
    const qsizetype mark = m_prompts.messages.size();
    step(name + QStringLiteral(": Power On"));
    // What ticking the part's Enable box does.
    m_view.setValue(ctl::PartEnable, p, 1);
    attempt([this] { UpdateControl(*m_ctx); });
    attempt([this, p] { PowerCommand(*m_ctx, p); });
    if (m_ctx->session.ChipState[static_cast<std::size_t>(p)] != OwiMode ||
        !since(mark).isEmpty()) {
        report.exit = kExitDevice;
        report.result = QStringLiteral("failed");
    } else {
        step(name + QStringLiteral(": Program"));
        bool programmed = false;
        attempt([this, p, &programmed] { programmed = ProgramAction(*m_ctx, p); });
        verifyAndLock(report, programmed, CurvePointCount(m_ctx->session.rounded, p));
    }
    if (m_view.text(ctl::PowerOn, p) != kPowerOnCaption) {
        step(name + QStringLiteral(": Power Off"));
        attempt([this, p] { PowerCommand(*m_ctx, p); });
    }
    report.messages = since(mark);
}

void BatchRunner::programPoints(std::vector<PartReport*>& reports) {
    const qsizetype mark = m_prompts.messages.size();
    step(QStringLiteral("Power On"));
    attempt([this] { PointPowerOnCommand(*m_ctx, m_traits); });
    if (!m_ctx->powered || !since(mark).isEmpty()) {
        for (PartReport* report : reports) {
            report->exit = kExitDevice;
            report->result = QStringLiteral("failed");
        }
        attempt(
            [this] { PowerOffIfPowered(*m_ctx, m_traits.bothParts ? -1 : m_ctx->selectedPart()); });
    } else {
        step(QStringLiteral("Program"));
        SetPointBOptions options;
        options.capturePointB = false;
        options.beforePowerOff = [this, &reports](bool programmed) {
            for (PartReport* report : reports) {
                verifyAndLock(*report, programmed, 2);
            }
        };
        attempt([this, &options] { SetPointBCommand(*m_ctx, m_traits, options); });
    }
    for (PartReport* report : reports) {
        report->messages = since(mark);
    }
}

void BatchRunner::verifyAndLock(PartReport& report, bool programmed, int count) {
    const auto p = static_cast<std::int16_t>(report.part);
    const QString name = partName(p);
    if (!programmed) {
        report.exit = kExitDevice;
    }
    if (m_options.verify && m_ctx->session.ChipState[static_cast<std::size_t>(p)] == OwiMode) {
        step(name + QStringLiteral(": Verify"));
        std::optional<VerifyReading> reading;
        attempt([this, p, count, &reading] { reading = VerifyPart(*m_ctx, p, count); });
        if (!reading) {
            report.exit = kExitDevice;
        } else {
            report.reading = reading;
            const QString levels = QStringLiteral("at ") + number(reading->angle) +
                                   QStringLiteral(" deg expected ") + number(reading->expected) +
                                   QStringLiteral(" %VDD, measured ") + number(reading->measured) +
                                   QStringLiteral(" %VDD (tolerance ") +
                                   number(reading->tolerance) + u')';
            if (reading->passed) {
                if (!m_options.quiet && !m_options.json) {
                    m_output.out(name + QStringLiteral(": verified ") + levels);
                }
            } else {
                m_output.error(name + QStringLiteral(": verify failed ") + levels);
                report.exit = kExitVerifyFailed;
            }
        }
    } else if (m_options.verify && report.exit == kExitOk) {
        report.exit = kExitDevice;
    }
    if (m_options.lock && report.exit == kExitOk) {
        step(name + QStringLiteral(": Comm Lock"));
        const qsizetype mark = m_prompts.messages.size();
        if (m_kind == SettingsKind::TwoPart) {
            attempt([this, p] { CommLockCommand(*m_ctx, p); });
        } else {
            attempt([this, &report] { lockPointPart(report); });
        }
        report.locked = since(mark).isEmpty();
        if (!report.locked) {
            report.exit = kExitDevice;
        }
    }
    switch (report.exit) {
        case kExitOk:
            report.result =
                m_options.verify ? QStringLiteral("verified") : QStringLiteral("programmed");
            break;
        case kExitVerifyFailed:
            report.result = QStringLiteral("verify failed");
            break;
        default:
            report.result = QStringLiteral("failed");
            break;
    }
}

// The point windows have no Comm Lock button: the two-part windows' lock, without its
// confirmation (given on the command line) and without its power toggle (the Set point B
// action powers the part off next).
void BatchRunner::lockPointPart(PartReport& report) {
    const auto p = static_cast<std::int16_t>(report.part);
    ToOWIMode(*m_ctx, p);
    if (m_ctx->session.ChipState[static_cast<std::size_t>(p)] != OwiMode) {
        m_prompts.message(QString::fromLatin1(kNotInOwiModeText));
        return;
    }
    std::shared_ptr<SolverAccess> solver;
    m_ctx->session.device().GetSolverAccess(solver);
    if (!solver) {
        throw DeviceError(QStringLiteral("The programmer gave no solver access."));
    }
    std::int32_t failed = 0;
    solver->CommLock(p, failed);
    if (failed != 0) {
        m_prompts.message(QStringLiteral("Errors in Commlock!"));
    }
}

int BatchRunner::finish(int exit) {
    for (const PartReport& report : m_reports) {
        exit = std::max(exit, report.exit);
        if (m_options.json) {
            m_output.out(QString::fromUtf8(
                QJsonDocument(reportObject(report)).toJson(QJsonDocument::Compact)));
        } else if (!m_options.quiet) {
            m_output.out(partName(report.part) + QStringLiteral(": ") + report.result +
                         (report.locked ? QStringLiteral(", locked") : QString()));
        }
    }
    return exit;
}

}  // namespace rk31
