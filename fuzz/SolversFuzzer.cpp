// Any part values, NaN and infinities included, through the solvers and the curve calculation;
// the solvers send what they made to the simulated programmer.
#include <memory>

#include "FuzzSupport.h"
#include "device/WindowContext.h"
#include "device/ConfigSolvers.h"
#include "device/SolverInputs.h"
#include "domain/Curve.h"
#include "domain/PointSolvers.h"
#include "support/FakeWindow.h"

using namespace rk31;

namespace {

constexpr WindowFamily kFamilies[] = {WindowFamily::TwoPartTwoSupplies,
                                      WindowFamily::TwoPartOneSupply, WindowFamily::OnePartPoint,
                                      WindowFamily::DualPoint};

void fillParameters(fuzz::Input& in, PartParameters& p) {
    p.DP = in.real();
    p.ClampHigh = in.real();
    p.ClampLow = in.real();
    for (int k = 0; k < 4; ++k) {
        p.Angle[static_cast<std::size_t>(k)] = in.real();
        p.Level[static_cast<std::size_t>(k)] = in.real();
    }
    p.Slope = in.real();
}

void runSolvers(fuzz::Input& in, WindowContext& ctx, std::int16_t part) {
    switch (in.take<std::uint8_t>() % 4) {
        case 0:
            if (LoadSolverInputs(ctx, part)) {
                configsolver(ctx, part);
            }
            break;
        case 1:
            if (LoadSolverInputsTwoPoints(ctx, part)) {
                configsolver_2Points(ctx, part);
            }
            break;
        case 2:
            // Working values the loading would never make, straight into each solver.
            for (int k = 0; k < 4; ++k) {
                ctx.inputs[part].WorkAngle[static_cast<std::size_t>(k)] = in.real();
                ctx.inputs[part].WorkLevel[static_cast<std::size_t>(k)] = in.real();
            }
            ctx.inputs[part].WorkSlope = in.real();
            configsolver_MultiPoints(ctx, part);
            configsolver_OnePointAndSlope(ctx, part);
            break;
        default:
            HasEqualAngles(in.take<std::uint8_t>() % 6, ctx.session.rounded.RoundedPoints[part]);
            IsDescendingTriple(in.take<std::int16_t>(), in.take<std::int16_t>(),
                               in.take<std::int16_t>());
            break;
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
    Interpolate(in.take<std::int16_t>(), in.take<std::int16_t>(), in.take<std::int16_t>(),
                in.take<std::int16_t>(), in.take<std::int16_t>());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::ConnectedBench& b = fuzz::ConnectedBench::get();
    fuzz::Input in(data, size);
    const WindowFamily family = kFamilies[in.take<std::uint8_t>() % 4];
    test::FakeView view;
    test::FakeUi ui;
    WindowContext ctx(family, DeviceSession::instance(), view, b.prompts, b.pause, ui);
    const auto part = static_cast<std::int16_t>(in.take<std::uint8_t>() % 2);
    view.setText(ctl::op, part, QString::number(in.real()));
    view.setText(ctl::hys, part, QString::number(in.real()));
    for (auto& p : ctx.params) {
        fillParameters(in, p);
    }
    runSolvers(in, ctx, part);
    runCurve(in, DeviceSession::instance().rounded, b.prompts);
    b.simulation.box->clearTrace();
    return 0;
}
