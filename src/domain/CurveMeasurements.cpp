#include "domain/CurveMeasurements.h"

#include <algorithm>
#include <cmath>

#include "domain/Messages.h"

namespace rk31 {

namespace {

bool isPart(int part) {
    return part == 0 || part == 1;
}

}  // namespace

std::vector<double> SweepAngles(int step) {
    const int held = std::clamp(step, kSweepStepMin, kSweepStepMax);
    std::vector<double> angles;
    for (int angle = 0; angle < 360; angle += held) {
        angles.push_back(angle);
    }
    return angles;
}

QString MeasurementSummary(const std::vector<int>& parts, const CurveTables& curves,
                           const PartReadings& readings) {
    QStringList lines;
    for (const int part : parts) {
        if (!isPart(part)) {
            continue;
        }
        const auto& taken = readings[static_cast<std::size_t>(part)];
        if (taken.empty()) {
            continue;
        }
        const int count = static_cast<int>(taken.size());
        const auto largest = LargestDeviation(curves[static_cast<std::size_t>(part)], taken);
        lines << (largest ? LargestDeviationText(part, count,
                                                 std::abs(largest->measured - largest->expected),
                                                 largest->angle, largest->passed)
                          : NoneOnTheCurveText(part, count));
    }
    return lines.isEmpty() ? kNoMeasurementsText : lines.join(u'\n');
}

QStringList MeasuredCsvLines(const std::vector<int>& parts, const PartReadings& readings) {
    QStringList lines;
    for (const int part : parts) {
        if (!isPart(part)) {
            continue;
        }
        for (const AngleReading& r : readings[static_cast<std::size_t>(part)]) {
            lines << QStringLiteral("%1,measured,%2,%3")
                         .arg(part + 1)
                         .arg(QString::number(r.angle, 'f', 2),
                              QString::number(r.measured, 'f', 2));
        }
    }
    return lines;
}

}  // namespace rk31
