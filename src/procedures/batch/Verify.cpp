#include "procedures/batch/Verify.h"

#include <algorithm>
#include <cmath>

#include "device/DeviceSession.h"
#include "device/Measurement.h"
#include "device/WindowContext.h"
#include "domain/Curve.h"
#include "domain/CurveCheck.h"
#include "domain/Prompts.h"

namespace rk31 {

namespace {

QString number(double value) {
    return QString::number(value, 'f', 2);
}

}  // namespace

bool VerifyResult::passed() const {
    return complete && !readings.empty() &&
           std::all_of(readings.begin(), readings.end(), [](const auto& r) { return r.passed; });
}

bool VerifyResult::blankWouldPass() const {
    return !readings.empty() && std::all_of(readings.begin(), readings.end(),
                                            [](const auto& r) { return r.blankWouldPass; });
}

QString VerifyResult::cause() const {
    const auto off =
        std::find_if(readings.begin(), readings.end(), [](const auto& r) { return !r.passed; });
    if (off == readings.end()) {
        return {};
    }
    if (std::isnan(off->expected)) {
        return QStringLiteral("no curve is drawn at ") + number(off->angle) +
               QStringLiteral(" deg");
    }
    const auto failed =
        std::count_if(readings.begin(), readings.end(), [](const auto& r) { return !r.passed; });
    QString text = QStringLiteral("output off the curve ") + ReadingText(*off);
    if (readings.size() > 1) {
        text += QStringLiteral(", %1 of %2 angles off").arg(failed).arg(readings.size());
    }
    return text;
}

QString ReadingText(const VerifyReading& r) {
    return QStringLiteral("at ") + number(r.angle) + QStringLiteral(" deg expected ") +
           number(r.expected) + QStringLiteral(" %VDD, measured ") + number(r.measured) +
           QStringLiteral(" %VDD (tolerance ") + number(r.tolerance) + u')';
}

int CurvePointCount(const RoundedImages& rounded, std::int16_t part) {
    const auto& images = rounded.RoundedPoints.at(static_cast<std::size_t>(part));
    const auto used = std::count_if(images.begin(), images.begin() + 4,
                                    [](std::int16_t angle) { return angle != 500; });
    return std::max(2, static_cast<int>(used));
}

VerifyResult VerifyPart(WindowContext& ctx, std::int16_t part, int count, MagnetFixture* fixture) {
    CurveTables curves{};
    ShowMessages(ctx.prompts, CalLinearGraph(part, static_cast<std::int16_t>(count), 0, 0,
                                             ctx.session.rounded, curves));
    const CurveRows& rows = curves[static_cast<std::size_t>(part)];
    VerifyResult result;
    std::vector<OutputSample> samples;
    if (fixture != nullptr) {
        const std::vector<double> angles = ProvingAngles(rows);
        samples = SampleAtAngles(ctx, part, *fixture, angles);
        result.complete = !angles.empty() && samples.size() == angles.size();
    } else if (const auto sample = SampleOutput(ctx, part)) {
        samples.push_back(*sample);
        result.complete = true;
    }
    for (const OutputSample& s : samples) {
        VerifyReading r;
        r.angle = s.angle;
        r.measured = s.output;
        if (const auto c = CompareWithCurve(rows, s.angle, s.output)) {
            r.expected = c->expected;
            r.tolerance = c->tolerance;
            r.passed = c->passed;
            r.blankWouldPass = c->blankWouldPass;
        } else {
            r.expected = std::nan("");
        }
        result.readings.push_back(r);
    }
    return result;
}

}  // namespace rk31
