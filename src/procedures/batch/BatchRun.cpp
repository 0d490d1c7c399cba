#include "procedures/batch/BatchRun.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSysInfo>
#include <QtGlobal>
#include <algorithm>
#include <cmath>
#include <map>

#include "device/Application.h"
#include "device/ChipOperations.h"
#include "device/ChipStateMachine.h"
#include "device/DeviceSession.h"
#include "device/ModeChange.h"
#include "device/UpdateControl.h"
#include "domain/Messages.h"
#include "procedures/points/PointCommands.h"
#include "procedures/points/PointPreparation.h"
#include "procedures/twopart/ProgramAction.h"
#include "procedures/twopart/SessionCommands.h"
#include "rk31/DeviceError.h"
#include "rk31/PortProber.h"
#include "rk31/Station.h"

namespace rk31 {

namespace {

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

QString portName(int port) {
    return QStringLiteral("COM") + QString::number(port);
}

const QString kInterruptedCause = QStringLiteral("interrupted by Ctrl-C");

// The stage a window's message tells of, when it is not the stage the step runs in.
Stage stageOfMessage(const QString& message, Stage step) {
    if (message == kResetHardwareText || message == kReadErrorText ||
        message == kCommLockRefusedText || message.startsWith(kCommLockedText)) {
        return Stage::Identification;
    }
    if (step == Stage::Power &&
        (message == kClearSolverErrorText || message == kFailedProgrammingText)) {
        return Stage::Program;
    }
    return step;
}

QJsonValue finiteOrNull(double value) {
    return std::isnan(value) ? QJsonValue() : QJsonValue(value);
}

}  // namespace

QString StageName(Stage stage) {
    switch (stage) {
        case Stage::None:
            return {};
        case Stage::File:
            return QStringLiteral("file");
        case Stage::Connect:
            return QStringLiteral("connect");
        case Stage::Power:
            return QStringLiteral("power");
        case Stage::Identification:
            return QStringLiteral("identification");
        case Stage::Program:
            return QStringLiteral("program");
        case Stage::Verify:
            return QStringLiteral("verify");
        case Stage::Lock:
            return QStringLiteral("lock");
    }
    return {};
}

int PartVerdict::exit() const {
    if (interrupted) {
        return kExitInterrupted;
    }
    switch (stage) {
        case Stage::None:
            return kExitOk;
        case Stage::File:
            return kExitBadInput;
        case Stage::Verify:
            return kExitVerifyFailed;
        default:
            return kExitDevice;
    }
}

bool ChipResult::passed() const {
    return std::all_of(parts.begin(), parts.end(), [](const auto& v) { return v.passed(); });
}

int ChipResult::exit() const {
    int exit = kExitOk;
    for (const PartVerdict& v : parts) {
        exit = std::max(exit, v.exit());
    }
    return exit;
}

SettingsKind SniffSettingsKind(const QString& path) {
    QFile file(path);
    // Only a settings file is read here; anything else is refused by the window's own load.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        return SettingsKind::TwoPart;
    }
    const QByteArray first = file.readLine(256);
    const QByteArray second = file.readLine(256);
    if (first.startsWith("Part #Index:")) {
        return SettingsKind::OnePartPoint;
    }
    if (second.startsWith("VDD is(V):") || !second.startsWith("Direction is:")) {
        return SettingsKind::TwoPart;
    }
    return SettingsKind::DualPoint;
}

BatchRunner::BatchRunner(BatchOptions options, BatchOutput& output, Application& app,
                         BatchPrompts& prompts)
    : m_options(std::move(options)),
      m_output(output),
      m_app(app),
      m_kind(SniffSettingsKind(m_options.settings)),
      m_traits(traitsOf(m_kind)),
      m_view(m_kind == SettingsKind::TwoPart ? TwoPartControls(false) : PointControls(m_traits)),
      m_prompts(prompts),
      m_traffic(std::make_shared<ChipTraffic>()) {
    m_ctx = std::make_unique<WindowContext>(familyOf(m_kind), app.session(), m_view, m_prompts,
                                            app.pause(), m_ui);
    m_ui.port = static_cast<std::int16_t>(m_options.port);
    m_ui.onWaitText = [this](const QString& text) {
        if (m_output.terminal) {
            say(QStringLiteral("      ") + text);
        }
    };
}

BatchRunner::~BatchRunner() = default;

int BatchRunner::run() {
    switch (m_options.command) {
        case BatchCommand::Check:
        case BatchCommand::Curve:
            return check();
        case BatchCommand::Program:
        case BatchCommand::Verify:
            return production();
        case BatchCommand::Report:
        case BatchCommand::Help:
        case BatchCommand::Version:
            break;
    }
    return kExitBadInput;
}

void BatchRunner::attempt(const std::function<void()>& handler) {
    try {
        handler();
    } catch (const DeviceError& e) {
        m_prompts.message(e.description());
        if (m_kind == SettingsKind::TwoPart) {
            TwoPartAfterDeviceFailure(*m_ctx);
        } else {
            PointAfterDeviceFailure(*m_ctx);
        }
    }
}

QStringList BatchRunner::since(qsizetype mark) const {
    return m_prompts.messages.mid(mark);
}

void BatchRunner::say(const QString& line) {
    if (!m_options.quiet && !m_options.json) {
        m_output.out(line);
    }
}

void BatchRunner::step(Stage stage, const QString& text) {
    // Once: the steps that power the chip off and disconnect after Ctrl-C must run.
    m_stage = stage;
    if (!m_stopping && m_output.interrupted()) {
        m_stopping = true;
        throw Interrupted{};
    }
    ++m_step;
    say(QStringLiteral("[%1] ").arg(m_step) + text);
}

void BatchRunner::setContext(const QString& where) {
    m_prompts.where = where;
}

void BatchRunner::fail(PartVerdict& verdict, Stage stage, qsizetype mark,
                       const QString& otherwise) {
    if (!verdict.passed()) {
        return;
    }
    const QStringList shown = since(mark);
    verdict.stage = shown.isEmpty() ? stage : stageOfMessage(shown.front(), stage);
    verdict.cause = shown.isEmpty() ? otherwise : shown.front();
}

QString BatchRunner::noSupplyCause(int part) const {
    const auto vdd = m_traffic->part(part).vdd;
    if (vdd && *vdd < kNoVddReading) {
        return QStringLiteral("no supply voltage read on ") + partName(part) +
               QStringLiteral(" (MeasureVDD gave ") + number(*vdd) + QStringLiteral(" V)");
    }
    return partName(part) + QStringLiteral(" did not reach OWI mode");
}

// ---- The run ----------------------------------------------------------------------------

QString BatchRunner::openOutputs() {
    if (!m_options.log.isEmpty()) {
        // The log is appended by every device object the run creates; one that cannot be
        // opened now would leave the run without its log.
        QFile probe(m_options.log);
        if (!probe.open(QIODevice::WriteOnly | QIODevice::Append)) {
            return QStringLiteral("cannot append to the device log ") + m_options.log +
                   QStringLiteral(": ") + probe.errorString();
        }
    }
    if (!m_options.record.isEmpty()) {
        const QString why = m_record.open(m_options.record);
        if (!why.isEmpty()) {
            return QStringLiteral("cannot append to the record file ") + m_options.record +
                   QStringLiteral(": ") + why;
        }
    }
    return {};
}

int BatchRunner::production() {
    setContext(m_options.settings);
    const int loaded = load();
    const auto which = loaded == kExitOk ? parts() : std::nullopt;
    if (!which) {
        return finish(kExitBadInput, m_prompts.messages.value(0));
    }
    m_parts = *which;
    CurveTables curves{};
    if (!solve(m_parts, curves)) {
        return finish(kExitBadInput, m_refusal);
    }
    if (const QString why = openOutputs(); !why.isEmpty()) {
        m_output.error(QStringLiteral("rk31prog: ") + why);
        return finish(kExitBadInput, why);
    }
    m_sha256 = FileSha256(m_options.settings);
    m_app.watchTraffic(m_traffic);
    int exit = kExitOk;
    for (int number = 1; m_options.count == 0 || number <= m_options.count; ++number) {
        if (number > 1 && !nextChip()) {
            break;
        }
        const ChipResult chip = runChip(number);
        count(chip);
        exit = std::max(exit, chip.exit());
        printChip(chip);
        if (m_record.isOpen()) {
            if (const QString why = m_record.append(chipObject(chip)); !why.isEmpty()) {
                m_runFailure = QStringLiteral("cannot append to the record file ") +
                               m_options.record + QStringLiteral(": ") + why;
            }
        }
        if (m_runFailure.isEmpty() && !m_app.deviceLogFailure().isEmpty()) {
            m_runFailure =
                QStringLiteral("cannot write the device log ") + m_app.deviceLogFailure();
        }
        if (!m_runFailure.isEmpty()) {
            m_output.error(QStringLiteral("rk31prog: ") + m_runFailure);
            exit = std::max(exit, static_cast<int>(kExitDevice));
            break;
        }
        if (chip.interrupted || m_output.interrupted() || m_output.closed()) {
            break;
        }
    }
    if (m_output.interrupted()) {
        exit = kExitInterrupted;
    }
    return finish(exit);
}

bool BatchRunner::nextChip() {
    if (m_output.interrupted() || m_output.closed()) {
        return false;
    }
    if (ChipFeeder* feeder = m_app.feeder()) {
        return feeder->nextChip();
    }
    return m_output.nextChip();
}

ChipResult BatchRunner::runChip(int number) {
    ChipResult chip;
    chip.number = number;
    chip.started = QDateTime::currentDateTime();
    QElapsedTimer clock;
    clock.start();
    m_traffic->clear();
    // Each chip's causes are its own messages; those of chips before are already printed.
    m_prompts.messages.clear();
    m_step = 0;
    for (const int part : m_parts) {
        PartVerdict verdict;
        verdict.part = part;
        chip.parts.push_back(verdict);
    }
    try {
        if (connect(chip)) {
            if (m_options.command == BatchCommand::Verify) {
                for (PartVerdict& verdict : chip.parts) {
                    verifyOnly(verdict);
                }
            } else if (m_kind == SettingsKind::TwoPart) {
                for (PartVerdict& verdict : chip.parts) {
                    programTwoPart(verdict);
                }
            } else {
                programPoints(chip.parts);
            }
        }
    } catch (const Interrupted&) {
        chip.interrupted = true;
        for (PartVerdict& verdict : chip.parts) {
            if (verdict.finished) {
                continue;
            }
            verdict.interrupted = true;
            if (verdict.passed()) {
                verdict.stage = verdict.started ? m_stage : Stage::Power;
                verdict.cause = kInterruptedCause;
            }
        }
        setContext(portName(m_options.port));
        powerOffAll();
    }
    setContext(portName(m_options.port));
    disconnect();
    chip.milliseconds = clock.elapsed();
    return chip;
}

void BatchRunner::connectCommand() {
    if (m_kind == SettingsKind::TwoPart) {
        TwoPartConnectCommand(*m_ctx);
    } else {
        PointConnectCommand(*m_ctx);
    }
}

bool BatchRunner::connect(ChipResult& chip) {
    setContext(portName(m_options.port));
    step(Stage::Connect, QStringLiteral("Connect ") + portName(m_options.port));
    const qsizetype mark = m_prompts.messages.size();
    attempt([this] { connectCommand(); });
    if (since(mark).isEmpty() && m_ctx->session.ProgrammerConnected == 1) {
        return true;
    }
    // The box gives one answer for a port held elsewhere and a port with nothing behind it;
    // the port itself can tell them apart.
    const QStringList shown = since(mark);
    // Without a driver there is no port to ask; the message says why.
    if (!m_app.hasDriver()) {
        for (PartVerdict& verdict : chip.parts) {
            verdict.stage = Stage::Connect;
            verdict.cause = shown.value(0, QStringLiteral("no device driver"));
        }
        return false;
    }
    QString otherwise = QStringLiteral("no programmer answers on ") + portName(m_options.port);
    PortProber& ports = m_app.ports();
    if (!ports.isOpenHere(m_options.port)) {
        const int opened = ports.open(m_options.port);
        if (opened == 0) {
            ports.close(m_options.port);
        } else if (opened == kPortAlreadyOpen) {
            otherwise = portName(m_options.port) + QStringLiteral(" is held by another program");
        } else {
            otherwise = portName(m_options.port) + QStringLiteral(" cannot be opened");
        }
    }
    for (PartVerdict& verdict : chip.parts) {
        verdict.stage = Stage::Connect;
        verdict.cause =
            shown.isEmpty() ? otherwise : shown.front() + QStringLiteral(" (") + otherwise + u')';
    }
    return false;
}

void BatchRunner::disconnect() {
    if (m_view.text(ctl::connect) != kConnectCaption) {
        step(Stage::Connect, QStringLiteral("Disconnect"));
        attempt([this] { connectCommand(); });
    }
}

// Whatever was interrupted: every part the window shows powered is powered off.
void BatchRunner::powerOffAll() {
    if (m_kind == SettingsKind::TwoPart) {
        for (const std::int16_t p : {0, 1}) {
            if (m_view.text(ctl::PowerOn, p) != kPowerOnCaption) {
                attempt([this, p] { PowerCommand(*m_ctx, p); });
            }
        }
    } else {
        attempt([this] {
            PowerOffIfPowered(*m_ctx, m_traits.bothParts
                                          ? kBothParts
                                          : static_cast<std::int16_t>(m_ctx->selectedPart()));
        });
    }
    for (const std::int16_t p : {0, 1}) {
        if (m_ctx->session.ChipState[static_cast<std::size_t>(p)] != PowerOff) {
            attempt([this, p] {
                Machine(*m_ctx).ChipChangeToState(p, m_ctx->session.ChipState[p], PowerOff);
            });
        }
    }
}

void BatchRunner::programTwoPart(PartVerdict& verdict) {
    const auto p = static_cast<std::int16_t>(verdict.part);
    const QString name = partName(p);
    setContext(portName(m_options.port) + u' ' + name);
    verdict.started = true;
    qsizetype mark = m_prompts.messages.size();
    step(Stage::Power, name + QStringLiteral(": Power On"));
    // What ticking the part's Enable box does.
    m_view.setValue(ctl::PartEnable, p, 1);
    attempt([this] { UpdateControl(*m_ctx); });
    attempt([this, p] { PowerCommand(*m_ctx, p); });
    if (m_ctx->session.ChipState[static_cast<std::size_t>(p)] != OwiMode ||
        !since(mark).isEmpty()) {
        fail(verdict, Stage::Power, mark, noSupplyCause(p));
    } else {
        mark = m_prompts.messages.size();
        step(Stage::Program, name + QStringLiteral(": Program"));
        bool programmed = false;
        attempt([this, p, &programmed] { programmed = ProgramAction(*m_ctx, p); });
        if (!programmed) {
            fail(verdict, Stage::Program, mark, name + QStringLiteral(" was not programmed"));
        }
        verifyAndLock(verdict, CurvePointCount(m_ctx->session.rounded, p));
    }
    if (m_view.text(ctl::PowerOn, p) != kPowerOnCaption) {
        step(Stage::Power, name + QStringLiteral(": Power Off"));
        attempt([this, p] { PowerCommand(*m_ctx, p); });
    }
    verdict.finished = true;
}

void BatchRunner::programPoints(std::vector<PartVerdict>& verdicts) {
    setContext(
        portName(m_options.port) + u' ' +
        (m_traits.bothParts ? QStringLiteral("Part#1 Part#2") : partName(m_ctx->selectedPart())));
    for (PartVerdict& verdict : verdicts) {
        verdict.started = true;
    }
    qsizetype mark = m_prompts.messages.size();
    step(Stage::Power, QStringLiteral("Power On"));
    attempt([this] { PointPowerOnCommand(*m_ctx, m_traits); });
    if (!m_ctx->powered || !since(mark).isEmpty()) {
        for (PartVerdict& verdict : verdicts) {
            fail(verdict, Stage::Power, mark, noSupplyCause(verdict.part));
        }
        attempt([this] {
            PowerOffIfPowered(*m_ctx, m_traits.bothParts
                                          ? kBothParts
                                          : static_cast<std::int16_t>(m_ctx->selectedPart()));
        });
        for (PartVerdict& verdict : verdicts) {
            verdict.finished = true;
        }
        return;
    }
    mark = m_prompts.messages.size();
    step(Stage::Program, QStringLiteral("Program"));
    SetPointBOptions options;
    options.capturePointB = false;
    options.beforePowerOff = [this, &verdicts, mark](bool programmed) {
        for (PartVerdict& verdict : verdicts) {
            if (!programmed) {
                fail(verdict, Stage::Program, mark,
                     partName(verdict.part) + QStringLiteral(" was not programmed"));
            }
            verifyAndLock(verdict, 2);
        }
    };
    attempt([this, &options] { SetPointBCommand(*m_ctx, m_traits, options); });
    for (PartVerdict& verdict : verdicts) {
        verdict.finished = true;
    }
}

void BatchRunner::verifyAndLock(PartVerdict& verdict, int count) {
    // Nothing is verified or locked after a step failed.
    if (!verdict.passed()) {
        return;
    }
    const auto p = static_cast<std::int16_t>(verdict.part);
    const QString name = partName(p);
    if (m_options.verify) {
        const qsizetype mark = m_prompts.messages.size();
        step(Stage::Verify, name + QStringLiteral(": Verify"));
        MagnetFixture* fixture = m_app.fixture();
        VerifyResult result;
        attempt(
            [this, p, count, fixture, &result] { result = VerifyPart(*m_ctx, p, count, fixture); });
        for (const VerifyReading& r : result.readings) {
            say(QStringLiteral("      ") + name + u' ' + ReadingText(r) +
                (r.passed ? QStringLiteral(": ok") : QStringLiteral(": OFF")));
        }
        verdict.verify = result;
        if (!result.passed()) {
            fail(verdict, Stage::Verify, mark, result.cause());
        } else if (result.blankWouldPass()) {
            const QString where = fixture ? QStringLiteral("at the angles of this curve")
                                          : QStringLiteral("at ") +
                                                number(result.readings.front().angle) +
                                                QStringLiteral(" deg");
            verdict.warning = where + QStringLiteral(
                                          " a blank chip would pass as well: the verify "
                                          "cannot tell them apart (turn the magnet where the "
                                          "curve is off its clamp low)");
            if (m_options.strict) {
                fail(verdict, Stage::Verify, m_prompts.messages.size(), verdict.warning);
            } else {
                m_output.error(QStringLiteral("rk31prog: ") + portName(m_options.port) + u' ' +
                               name + QStringLiteral(": ") + verdict.warning);
            }
        }
    }
    if (m_options.lock && verdict.passed()) {
        step(Stage::Lock, name + QStringLiteral(": Comm Lock"));
        const qsizetype mark = m_prompts.messages.size();
        if (m_kind == SettingsKind::TwoPart) {
            attempt([this, p] { CommLockCommand(*m_ctx, p); });
        } else {
            attempt([this, &verdict] { lockPointPart(verdict); });
        }
        verdict.locked = since(mark).isEmpty();
        if (!verdict.locked) {
            fail(verdict, Stage::Lock, mark, name + QStringLiteral(" was not locked"));
        }
    }
}

// The point windows have no Comm Lock button: the two-part windows' lock, without its
// confirmation (given on the command line) and without its power toggle (the Set point B
// action powers the part off next).
void BatchRunner::lockPointPart(PartVerdict& verdict) {
    const auto p = static_cast<std::int16_t>(verdict.part);
    ToOWIMode(*m_ctx, p);
    if (m_ctx->session.ChipState[static_cast<std::size_t>(p)] != OwiMode) {
        m_prompts.message(kNotInOwiModeText);
        return;
    }
    std::int32_t failed = 0;
    m_ctx->session.solverAccess()->CommLock(p, failed);
    if (failed != 0) {
        m_prompts.message(kCommLockErrorText);
    }
}

// A chip already programmed: the windows' power-up steps without any programming (no solver
// cleared, no EEPROM burnt), the verify, and power off.
bool BatchRunner::powerForVerify(PartVerdict& verdict) {
    const auto p = static_cast<std::int16_t>(verdict.part);
    const qsizetype mark = m_prompts.messages.size();
    step(Stage::Power, partName(p) + QStringLiteral(": Power On"));
    attempt([this, p, &verdict, mark] {
        ToADCMode(*m_ctx, p);
        if (MeasureVdd(*m_ctx, p) < kNoVddReading) {
            fail(verdict, Stage::Power, mark, noSupplyCause(p));
            return;
        }
        ToOWIMode(*m_ctx, p);
        if (m_ctx->session.ChipState[static_cast<std::size_t>(p)] != OwiMode) {
            fail(verdict, Stage::Power, mark, noSupplyCause(p));
            return;
        }
        if (!ChipAnswers(*m_ctx, p)) {
            m_prompts.message(kResetHardwareText);
        }
    });
    if (!since(mark).isEmpty()) {
        fail(verdict, Stage::Power, mark, {});
    }
    return verdict.passed();
}

void BatchRunner::verifyOnly(PartVerdict& verdict) {
    const auto p = static_cast<std::int16_t>(verdict.part);
    setContext(portName(m_options.port) + u' ' + partName(p));
    verdict.started = true;
    if (powerForVerify(verdict)) {
        verifyAndLock(verdict, CurvePointCount(m_ctx->session.rounded, p));
    }
    if (m_ctx->session.ChipState[static_cast<std::size_t>(p)] != PowerOff) {
        step(Stage::Power, partName(p) + QStringLiteral(": Power Off"));
        attempt([this, p] {
            Machine(*m_ctx).ChipChangeToState(p, m_ctx->session.ChipState[p], PowerOff);
        });
    }
    verdict.finished = true;
}

// ---- What the run prints and records ----------------------------------------------------

QString BatchRunner::verdictLine(const ChipResult& chip, const PartVerdict& verdict) const {
    QString line = chip.started.toString(Qt::ISODate) + u' ' + portName(m_options.port) + u' ' +
                   m_options.settings + QStringLiteral(" chip ") + QString::number(chip.number) +
                   u' ' + partName(verdict.part) + u' ';
    if (verdict.passed()) {
        line += QStringLiteral("PASS");
        if (!verdict.warning.isEmpty()) {
            line += QStringLiteral(" (") + verdict.warning + u')';
        }
    } else {
        line += QStringLiteral("FAIL ") + StageName(verdict.stage) + QStringLiteral(": ") +
                verdict.cause;
    }
    if (verdict.locked) {
        line += QStringLiteral(", locked");
    }
    return line;
}

void BatchRunner::printChip(const ChipResult& chip) {
    if (m_options.json) {
        return;
    }
    for (const PartVerdict& verdict : chip.parts) {
        m_output.out(verdictLine(chip, verdict));
    }
}

QJsonObject BatchRunner::chipObject(const ChipResult& chip) const {
    QJsonArray parts;
    const PartVerdict* first = nullptr;
    for (const PartVerdict& v : chip.parts) {
        if (!first && !v.passed()) {
            first = &v;
        }
        const ChipTraffic::Part& sent = m_traffic->part(v.part);
        QJsonArray readings;
        if (v.verify) {
            for (const VerifyReading& r : v.verify->readings) {
                readings.append(QJsonObject{{"angle", r.angle},
                                            {"expected", finiteOrNull(r.expected)},
                                            {"measured", r.measured},
                                            {"tolerance", r.tolerance},
                                            {"passed", r.passed}});
            }
        }
        parts.append(QJsonObject{
            {"part", v.part + 1},
            {"verdict", v.passed() ? "PASS" : "FAIL"},
            {"stage", StageName(v.stage)},
            {"cause", v.cause},
            {"warning", v.warning},
            {"id", sent.idWord},
            {"vdd", sent.vdd ? QJsonValue(*sent.vdd) : QJsonValue()},
            {"solver", sent.solver},
            {"verify", readings},
            {"locked", v.locked},
        });
    }
    return QJsonObject{
        {"time", chip.started.toString(Qt::ISODateWithMs)},
        {"host", QSysInfo::machineHostName()},
        {"port", m_options.port},
        {"command", m_options.command == BatchCommand::Verify ? "verify" : "program"},
        {"file", QFileInfo(m_options.settings).absoluteFilePath()},
        {"sha256", m_sha256},
        {"chip", chip.number},
        {"parts", parts},
        {"verdict", chip.passed() ? "PASS" : "FAIL"},
        {"stage", first ? StageName(first->stage) : QString()},
        {"cause", first ? first->cause : QString()},
        {"interrupted", chip.interrupted},
        {"duration_ms", chip.milliseconds},
    };
}

void BatchRunner::count(const ChipResult& chip) {
    ++m_tally.chips;
    m_tally.milliseconds += chip.milliseconds;
    if (chip.passed()) {
        ++m_tally.passed;
    } else {
        for (const PartVerdict& v : chip.parts) {
            if (!v.passed()) {
                ++m_tally.failedByStage[StageName(v.stage)];
                break;
            }
        }
    }
    if (m_options.json) {
        m_chipObjects.append(chipObject(chip));
    }
}

int BatchRunner::finish(int exit, QString fileCause) {
    if (exit == kExitBadInput && m_tally.chips == 0 && fileCause.isEmpty()) {
        fileCause = QStringLiteral("the settings file was refused");
    }
    const std::map<QString, int>& failedByStage = m_tally.failedByStage;
    const int chips = m_tally.chips;
    const int passed = m_tally.passed;
    const double perChip = chips > 0 ? m_tally.milliseconds / 1000.0 / chips : 0.0;
    if (m_options.json) {
        const QJsonArray& list = m_chipObjects;
        QJsonObject byStage;
        for (const auto& [stage, count] : failedByStage) {
            byStage.insert(stage, count);
        }
        QJsonObject document{
            {"file", m_options.settings},
            {"port", m_options.port},
            {"exit", exit},
            {"chips", list},
            {"summary", QJsonObject{{"chips", chips},
                                    {"passed", passed},
                                    {"failed", chips - passed},
                                    {"failed_by_stage", byStage},
                                    {"seconds_per_chip", perChip}}},
        };
        if (!fileCause.isEmpty()) {
            document.insert("stage", StageName(Stage::File));
            document.insert("cause", fileCause);
        }
        if (!m_runFailure.isEmpty()) {
            document.insert("error", m_runFailure);
        }
        m_output.out(QString::fromUtf8(QJsonDocument(document).toJson(QJsonDocument::Compact)));
        return exit;
    }
    if (exit == kExitBadInput && chips == 0) {
        m_output.out(QDateTime::currentDateTime().toString(Qt::ISODate) + u' ' +
                     portName(m_options.port) + u' ' + m_options.settings +
                     QStringLiteral(" FAIL file: ") + fileCause);
        return exit;
    }
    if (chips > 1 || m_options.count != 1) {
        QStringList stages;
        for (const auto& [stage, count] : failedByStage) {
            stages << stage + u' ' + QString::number(count);
        }
        // Like the verdicts, the summary is printed under -q too.
        m_output.out(
            QStringLiteral("%1 chips: %2 passed, %3 failed%4; %5 s per chip")
                .arg(chips)
                .arg(passed)
                .arg(chips - passed)
                .arg(stages.isEmpty() ? QString() : QStringLiteral(" (") + stages.join(", ") + u')')
                .arg(number(perChip)));
    }
    return exit;
}

}  // namespace rk31
