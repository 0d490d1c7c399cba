// The batch programmer's reading of a settings file: the window's load, and the solve and curve
// that check, curve and every production run make before touching a device.
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "device/ConfigSolvers.h"
#include "device/DeviceSession.h"
#include "device/SolverInputs.h"
#include "domain/Curve.h"
#include "domain/Prompts.h"
#include "procedures/batch/BatchRun.h"
#include "procedures/points/PointCommands.h"
#include "procedures/shared/SettingsCommands.h"
#include "procedures/twopart/SessionCommands.h"

namespace rk31 {

int BatchRunner::load() {
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
            m_prompts.message(QStringLiteral("A two-part point file programs both parts."));
            return std::nullopt;
        }
        return std::vector<int>{0, 1};
    }
    if (choice == PartChoice::Both) {
        m_prompts.message(QStringLiteral("A one-part point file programs one part."));
        return std::nullopt;
    }
    if (choice != PartChoice::FromFile) {
        m_view.setListIndex(ctl::PartSel, -1, choice == PartChoice::Part1 ? 0 : 1);
    }
    return std::vector<int>{m_ctx->selectedPart()};
}

bool BatchRunner::solve(const std::vector<int>& parts, CurveTables& curves) {
    const qsizetype mark = m_prompts.messages.size();
    const QString where = m_prompts.where;
    bool solved = true;
    m_refusal.clear();
    for (const int part : parts) {
        const auto p = static_cast<std::int16_t>(part);
        const QString name = QStringLiteral("Part#%1").arg(part + 1);
        setContext(where + u' ' + name);
        const qsizetype partMark = m_prompts.messages.size();
        const bool twoPart = m_kind == SettingsKind::TwoPart;
        const bool loaded =
            twoPart ? LoadSolverInputs(*m_ctx, p) : LoadSolverInputsTwoPoints(*m_ctx, p);
        const int count =
            loaded ? SolvePart(*m_ctx, p, twoPart ? SolverChoice::Chosen : SolverChoice::TwoPoints)
                   : 0;
        if (count < 2 || count > 4) {
            solved = false;
        } else {
            ShowMessages(m_prompts, CalLinearGraph(p, static_cast<std::int16_t>(count), 0, 0,
                                                   m_ctx->session.rounded, curves));
        }
        if (m_refusal.isEmpty() && (count < 2 || count > 4 || !since(partMark).isEmpty())) {
            m_refusal = name + QStringLiteral(": ") +
                        since(partMark).value(0, QStringLiteral("the solver refused the settings"));
        }
    }
    setContext(where);
    return solved && since(mark).isEmpty();
}

int BatchRunner::check() {
    setContext(m_options.settings);
    int exit = load();
    std::optional<std::vector<int>> which;
    if (exit == kExitOk) {
        which = parts();
        exit = which ? kExitOk : kExitBadInput;
    }
    CurveTables curves{};
    if (exit == kExitOk && !solve(*which, curves)) {
        exit = kExitBadInput;
    }
    if (m_options.command == BatchCommand::Curve) {
        if (exit == kExitOk) {
            for (const QString& line : CurveCsvLines(curves, *which)) {
                m_output.out(line);
            }
        }
        return exit;
    }
    const QString cause = m_refusal.isEmpty() ? m_prompts.messages.value(0) : m_refusal;
    if (m_options.json) {
        m_output.out(QString::fromUtf8(
            QJsonDocument(QJsonObject{{"file", m_options.settings},
                                      {"result", exit == kExitOk ? "good" : "refused"},
                                      {"exit", exit},
                                      {"messages", QJsonArray::fromStringList(m_prompts.messages)}})
                .toJson(QJsonDocument::Compact)));
    } else if (exit == kExitOk) {
        if (!m_options.quiet) {
            m_output.out(m_options.settings + QStringLiteral(": good"));
        }
    } else {
        m_output.out(m_options.settings + QStringLiteral(": refused: ") +
                     (cause.isEmpty() ? QStringLiteral("the solver refused the settings") : cause));
    }
    return exit;
}

}  // namespace rk31
