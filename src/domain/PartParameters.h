#pragma once

#include <QString>
#include <array>

#include "domain/NumberText.h"

namespace rk31 {

// The texts a part's boxes show when a window opens.
inline const QString DefaultVDDText = QStringLiteral("5.000");
inline const QString DefaultDPText = QStringLiteral("260.00");
inline const QString DefaultClampHighText = QStringLiteral("95.00");
inline const QString DefaultClampLowText = QStringLiteral("5.00");
inline const QString DefaultHYSText = QStringLiteral("1.00");
inline const QString DefaultOffsetText = QStringLiteral("0.00");
inline const QString DefaultReadAngleText = QStringLiteral("360.00");

// The values one part keeps beside its boxes: whatever the last validation of each box stored.
// The solvers read these, never the box texts, so a box typed into but not yet left does not
// count. The DP and clamp values shown here are what the open-time validation of the default
// texts stores; the window runs that validation anyway.
struct PartParameters {
    float DP = 260.0f;
    float ClampHigh = 95.0f;
    float ClampLow = 5.0f;
    // Points A to D; an angle of EmptyValue marks a point that is not given.
    std::array<float, 4> Angle{EmptyValue, EmptyValue, EmptyValue, EmptyValue};
    std::array<float, 4> Level{};
    float Slope = EmptyValue;
    float OP = EmptyValue;
    float HYS = 1.0f;
};

// The per-part working copy the solvers reorder and fill before it is sent.
struct SolverInputs {
    std::array<float, 4> WorkAngle{};
    std::array<float, 4> WorkLevel{};
    float WorkSlope = EmptyValue;
    float WorkOP = EmptyValue;
    float WorkHYS = EmptyValue;
    float WorkPolarity = 0;
};

}  // namespace rk31
