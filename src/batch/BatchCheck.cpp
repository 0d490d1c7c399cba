// The batch programmer's reading of a settings file: the window's load, and the solve and curve
// of check and curve.
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtGlobal>

#include "batch/BatchRun.h"
#include "batch/SolverSink.h"
#include "commands/SessionControls.h"
#include "commands/SettingsCommands.h"
#include "context/PartParameters.h"
#include "core/Prompts.h"
#include "link/DeviceFactory.h"
#include "programming/ConfigSolvers.h"
#include "programming/SolverInputs.h"
#include "shell/DeviceSession.h"
#include "solver/Curve.h"

namespace rk31 {

namespace {

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

}  // namespace

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
            ShowMessages(m_prompts, CalLinearGraph(p, static_cast<std::int16_t>(count), 0, 0,
                                                   m_ctx->session.rounded, curves));
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

}  // namespace rk31
