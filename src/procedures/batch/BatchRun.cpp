#include "procedures/batch/BatchRun.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtGlobal>
#include <algorithm>
#include <cmath>

#include "device/Application.h"
#include "device/DeviceSession.h"
#include "device/ModeChange.h"
#include "device/UpdateControl.h"
#include "domain/Messages.h"
#include "procedures/points/PointPreparation.h"
#include "procedures/twopart/ProgramAction.h"
#include "procedures/twopart/SessionCommands.h"
#include "rk31/DeviceError.h"

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

BatchRunner::BatchRunner(BatchOptions options, BatchOutput& output, Application& app,
                         BatchPrompts& prompts)
    : m_options(std::move(options)),
      m_output(output),
      m_kind(SniffSettingsKind(m_options.settings)),
      m_traits(traitsOf(m_kind)),
      m_view(m_kind == SettingsKind::TwoPart ? TwoPartControls(false) : PointControls(m_traits)),
      m_prompts(prompts) {
    m_ctx = std::make_unique<WindowContext>(familyOf(m_kind), app.session(), m_view, m_prompts,
                                            app.pause(), m_ui);
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
            return check();
        case BatchCommand::Program:
        case BatchCommand::Help:
        case BatchCommand::Version:
            break;
    }
    return program();
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

void BatchRunner::connectCommand() {
    if (m_kind == SettingsKind::TwoPart) {
        TwoPartConnectCommand(*m_ctx);
    } else {
        PointConnectCommand(*m_ctx);
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

bool BatchRunner::connect() {
    step(QStringLiteral("Connect COM") + QString::number(m_options.port));
    const qsizetype mark = m_prompts.messages.size();
    attempt([this] { connectCommand(); });
    return since(mark).isEmpty() && m_ctx->session.ProgrammerConnected == 1;
}

void BatchRunner::disconnect() {
    if (m_view.text(ctl::connect) != kConnectCaption) {
        step(QStringLiteral("Disconnect"));
        attempt([this] { connectCommand(); });
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
        attempt([this] {
            PowerOffIfPowered(*m_ctx, m_traits.bothParts
                                          ? kBothParts
                                          : static_cast<std::int16_t>(m_ctx->selectedPart()));
        });
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
        m_prompts.message(kNotInOwiModeText);
        return;
    }
    std::int32_t failed = 0;
    m_ctx->session.solverAccess()->CommLock(p, failed);
    if (failed != 0) {
        m_prompts.message(kCommLockErrorText);
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
