// Any part values, NaN and infinities included, through the solvers the way each window runs
// them, and through the curve calculation. A solver that refuses says why and sends nothing; one
// that solves sends the part's eleven solver values to the simulated programmer; solving alone
// sends nothing.
#include <QStringList>
#include <vector>

#include "FuzzBench.h"
#include "device/ConfigSolvers.h"
#include "device/SolverInputs.h"
#include "domain/ControlNames.h"
#include "domain/Curve.h"
#include "domain/PointSolvers.h"
#include "domain/Validation.h"
#include "domain/ValueControlView.h"
#include "domain/WindowControls.h"

using namespace rk31;

namespace {

struct Window {
    WindowFamily family;
    std::vector<ControlSeed> controls;
};

const Window& windowOf(std::uint8_t choice) {
    static const std::vector<Window> all = {
        {WindowFamily::TwoPartTwoSupplies, TwoPartControls(false)},
        {WindowFamily::TwoPartOneSupply, TwoPartControls(true)},
        {WindowFamily::OnePartPoint, PointControls(kTwoPoints)},
        {WindowFamily::DualPoint, PointControls(kTwoPointsDual)},
    };
    return all[choice % all.size()];
}

void fillParameters(fuzz::Input& in, PartParameters& p) {
    p.DP = in.real();
    p.ClampHigh = in.real();
    p.ClampLow = in.real();
    for (std::size_t k = 0; k < 4; ++k) {
        p.Angle[k] = in.real();
        p.Level[k] = in.real();
    }
    p.Slope = in.real();
}

// The boxes the solvers read beside the stored values: which Level boxes hold a text, and the
// direction check box, which may be greyed.
void fillBoxes(fuzz::Input& in, WindowContext& ctx, std::int16_t part) {
    const auto boxes = in.take<std::uint8_t>();
    const PartParameters& params = ctx.params[ctx.family == WindowFamily::OnePartPoint ? 0 : part];
    for (int k = 0; k < (ctx.isTwoPart() ? 4 : 2); ++k) {
        const bool given = (boxes >> k & 1) != 0;
        ctx.view.setText(
            ctl::Level, PointBoxIndex(ctx.family, part, k),
            given ? QString::number(params.Level[static_cast<std::size_t>(k)]) : QString());
    }
    const int clockwiseBox = ctx.family == WindowFamily::OnePartPoint ? -1 : part;
    ctx.view.setValue(ctl::clockwise, clockwiseBox, (boxes >> 4) % 3);
}

int solverValuesSent(const fuzz::ConnectedBench& bench, std::int16_t part, bool& otherPart) {
    const QString mine = QStringLiteral("SetSolverParameter(%1, ").arg(part);
    int sent = 0;
    for (const QString& call : bench.trace()) {
        if (call.startsWith(u"SetSolverParameter(")) {
            ++sent;
            otherPart = otherPart || !call.startsWith(mine);
        }
    }
    return sent;
}

// One solver run as a command runs it; `sends` for the configsolver procedures.
template <typename Solve>
void checkSolver(fuzz::ConnectedBench& bench, std::int16_t part, bool sends, Solve solve) {
    bench.box().clearTrace();
    const int messages = bench.prompts.messages;
    const int count = solve();
    RK31_FUZZ_CHECK(count >= 0 && count <= 4);
    bool otherPart = false;
    const int sent = solverValuesSent(bench, part, otherPart);
    RK31_FUZZ_CHECK(!otherPart);
    if (count == 0) {
        RK31_FUZZ_CHECK(bench.prompts.messages > messages);
    }
    RK31_FUZZ_CHECK(sent == (sends && count != 0 ? 11 : 0));
}

void runSolvers(fuzz::Input& in, fuzz::ConnectedBench& bench, WindowContext& ctx,
                std::int16_t part) {
    const auto choice = in.take<std::uint8_t>() % 4;
    const auto command = [&](bool sends, auto solve) { checkSolver(bench, part, sends, solve); };
    if (choice == 2) {
        // Working values the loading would never make, straight into the solvers.
        for (std::size_t k = 0; k < 4; ++k) {
            ctx.inputs[part].WorkAngle[k] = in.real();
            ctx.inputs[part].WorkLevel[k] = in.real();
        }
        ctx.inputs[part].WorkSlope = in.real();
        if (ctx.isTwoPart()) {
            command(true, [&] { return configsolver_MultiPoints(ctx, part); });
            command(true, [&] { return configsolver_OnePointAndSlope(ctx, part); });
        } else {
            command(true, [&] { return configsolver_2Points(ctx, part); });
        }
        return;
    }
    if (ctx.isTwoPart()) {
        if (!LoadSolverInputs(ctx, part)) {
            return;
        }
        switch (choice) {
            case 0:  // the Configure Solver command
                command(true, [&] { return configsolver(ctx, part); });
                break;
            case 1:  // the program command
                command(true, [&] {
                    return UsesSlope(ctx, part) ? configsolver_OnePointAndSlope(ctx, part)
                                                : configsolver_MultiPoints(ctx, part);
                });
                break;
            default:  // rk31prog's check
                command(false, [&] { return SolvePart(ctx, part, SolverChoice::Chosen); });
                break;
        }
        return;
    }
    if (!LoadSolverInputsTwoPoints(ctx, part)) {
        return;
    }
    if (choice == 3) {
        command(false, [&] { return SolvePart(ctx, part, SolverChoice::TwoPoints); });
    } else {
        command(true, [&] { return configsolver_2Points(ctx, part); });
    }
}

void checkAngleRules(fuzz::Input& in, const RoundedImages& rounded, std::int16_t part) {
    // Any count but 2, 3 or 4 counts as equal angles, which refuses the solve.
    const int n = in.take<std::int8_t>();
    if (n < 2 || n > 4) {
        RK31_FUZZ_CHECK(HasEqualAngles(n, rounded.RoundedPoints[part]));
    } else {
        HasEqualAngles(n, rounded.RoundedPoints[part]);
    }
    // Three different angles run one way round the circle whichever of them comes first, and
    // the other way read backwards: the four-point solver decides the direction on this.
    const auto a = in.take<std::int16_t>();
    const auto b = in.take<std::int16_t>();
    const auto c = in.take<std::int16_t>();
    const bool descending = IsDescendingTriple(a, b, c);
    if (a != b && b != c && a != c) {
        RK31_FUZZ_CHECK(IsDescendingTriple(b, c, a) == descending);
        RK31_FUZZ_CHECK(IsDescendingTriple(c, b, a) != descending);
    }
}

void runCurve(fuzz::Input& in, RoundedImages& rounded, fuzz::QuietPrompts& prompts) {
    for (std::size_t part = 0; part < 2; ++part) {
        for (auto& angle : rounded.RoundedPoints[part]) {
            angle = in.take<std::int16_t>();
        }
        rounded.RoundedDP[part] = in.take<std::int16_t>();
        rounded.RoundedClampHigh[part] = in.take<std::int16_t>();
        rounded.RoundedClampLow[part] = in.take<std::int16_t>();
        rounded.PointsReversed[part] = in.take<std::uint8_t>() % 2 != 0;
    }
    CurveTables curves{};
    const auto count1 = static_cast<std::int16_t>(in.take<std::uint8_t>() % 6);
    const auto count2 = static_cast<std::int16_t>(in.take<std::uint8_t>() % 6);
    ShowMessages(prompts, CalLinearGraph(0, count1, 1, count2, rounded, curves));
    ShowMessages(prompts, CalPartCurve(count2, 1, rounded, curves));
    // The last row ends no segment; the plots rely on it to stop.
    for (const CurveRows& rows : curves) {
        RK31_FUZZ_CHECK(rows[40][0] == 0 && rows[40][1] == 0);
    }
    Interpolate(in.take<std::int16_t>(), in.take<std::int16_t>(), in.take<std::int16_t>(),
                in.take<std::int16_t>(), in.take<std::int16_t>());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::ConnectedBench bench;
    fuzz::NoWindowUi ui;
    fuzz::Input in(data, size);
    const Window& window = windowOf(in.take<std::uint8_t>());
    ValueControlView view(window.controls);
    WindowContext ctx(window.family, bench.session(), view, bench.prompts, bench.pause, ui);
    const auto part = static_cast<std::int16_t>(in.take<std::uint8_t>() % 2);
    const float op = in.real();
    const float hys = in.real();
    if (ctx.isTwoPart()) {
        view.setText(ctl::op, part, QString::number(op));
        view.setText(ctl::hys, part, QString::number(hys));
    } else if (window.family == WindowFamily::OnePartPoint) {
        view.setListIndex(ctl::PartSel, -1, part);
    }
    for (auto& p : ctx.params) {
        fillParameters(in, p);
    }
    fillBoxes(in, ctx, part);
    runSolvers(in, bench, ctx, part);
    checkAngleRules(in, bench.session().rounded, part);
    runCurve(in, bench.session().rounded, bench.prompts);
    return 0;
}
