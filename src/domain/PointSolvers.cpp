#include "domain/PointSolvers.h"

#include <utility>

#include "domain/Rounding.h"

namespace rk31 {

namespace {

SolvedPoints Refused(const QString& message) {
    SolvedPoints refused;
    refused.message = message;
    return refused;
}

SolvedPoints Noted(int part, const QString& tail) {
    return Refused(QStringLiteral("Please noted: Part#") + QString::number(part + 1) + tail);
}

// The working copy a solver reorders: the loaded points with their rounded images unchanged.
SolvedPoints Taken(const SolverPoints& points, int count) {
    SolvedPoints solved;
    solved.count = count;
    solved.angle = points.angle;
    solved.level = points.level;
    solved.rounded = points.rounded;
    return solved;
}

void SwapPoints(SolvedPoints& s, int i, int j) {
    std::swap(s.angle[i], s.angle[j]);
    std::swap(s.level[i], s.level[j]);
}

// The unused points repeat the last used angle with level 0.
void FillFrom(SolvedPoints& s, int last) {
    for (int k = last + 1; k < 4; ++k) {
        s.angle[k] = s.angle[last];
        s.level[k] = 0.0f;
    }
}

// Two points with the same rounded level give no line.
bool EqualLevels(int part, const SolverPoints& points, SolvedPoints& refusal) {
    if (points.rounded[4] != points.rounded[5]) {
        return false;
    }
    const QString number = QString::number(part + 1);
    refusal = Noted(part, QStringLiteral("-Level#0 is the same as Part#") + number +
                              QStringLiteral("-Level#1 !"));
    refusal.emptyLevelB = true;
    return true;
}

SolvedPoints FirstEmptyLevel(int part, const SolverPoints& points, int count) {
    for (int k = 0; k < count; ++k) {
        if (!points.levelGiven[k]) {
            return Noted(part, QStringLiteral("-Level#%1 is Empty!").arg(k));
        }
    }
    return {};
}

const QString kAnglesABText = QStringLiteral("Error Angles of Point A and Point B input");

}  // namespace

bool IsAngleInRange(float angle) {
    return angle >= 0.0f && angle < 360.0f;
}

float MidPointOf(float angle) {
    return angle < 180.0f ? angle + 180.0f : angle - 180.0f;
}

bool HasEqualAngles(int n, const std::array<std::int16_t, 8>& rounded) {
    if (n < 2 || n > 4) {
        return true;
    }
    for (int i = 0; i < n; ++i) {
        for (int j = i + 1; j < n; ++j) {
            if (rounded[i] == rounded[j]) {
                return true;
            }
        }
    }
    return false;
}

bool IsDescendingTriple(std::int16_t a0, std::int16_t a1, std::int16_t a2) {
    const int s = (a1 > a0 ? 1 : 0) + (a2 > a1 ? 1 : 0) + (a0 > a2 ? 1 : 0);
    return s < 2;
}

bool UsesOnePointAndSlope(const SolverPoints& points) {
    return IsAngleInRange(points.angle[0]) && points.slope != EmptyValue;
}

SolvedPoints SolveMultiPoints(int part, const SolverPoints& points) {
    if (!IsAngleInRange(points.angle[0]) || !IsAngleInRange(points.angle[1])) {
        return Refused(kAnglesABText);
    }
    const bool c = IsAngleInRange(points.angle[2]);
    const bool d = IsAngleInRange(points.angle[3]);
    int count = 0;
    if (!c && !HasEqualAngles(2, points.rounded)) {
        count = 2;
    } else if (c && !d && !HasEqualAngles(3, points.rounded)) {
        count = 3;
    } else if (c && d && !HasEqualAngles(4, points.rounded)) {
        count = 4;
    } else {
        return Refused(QStringLiteral(
            "Rules: Angles should be DIFFERENT in CCW/CW within [0.0, 360.0) to fill in!"));
    }
    if (SolvedPoints empty = FirstEmptyLevel(part, points, count); !empty.message.isEmpty()) {
        return empty;
    }
    const auto& p = points.rounded;
    SolvedPoints solved = Taken(points, count);
    if (count == 4) {
        const bool adc = IsDescendingTriple(p[0], p[3], p[2]);
        const bool abc = IsDescendingTriple(p[0], p[1], p[2]);
        if (adc == abc) {
            return Refused(QStringLiteral(
                "Error: The order of 4 Points angles is unable to be determined in-DrawMain!"));
        }
        solved.reversed = abc;
        if (solved.reversed) {
            SwapPoints(solved, 0, 3);
            SwapPoints(solved, 1, 2);
        }
    } else if (count == 3) {
        solved.reversed = IsDescendingTriple(p[0], p[1], p[2]);
        if (solved.reversed) {
            SwapPoints(solved, 0, 2);
        }
        FillFrom(solved, 2);
    } else {
        if (SolvedPoints refusal; EqualLevels(part, points, refusal)) {
            return refusal;
        }
        solved.reversed = points.clockwise;
        if (solved.reversed) {
            SwapPoints(solved, 0, 1);
        }
        FillFrom(solved, 1);
    }
    return solved;
}

SolvedPoints SolveOnePointAndSlope(int part, const SolverPoints& points) {
    if (SolvedPoints empty = FirstEmptyLevel(part, points, 1); !empty.message.isEmpty()) {
        return empty;
    }
    SolvedPoints solved = Taken(points, 2);
    solved.reversed = points.clockwise;
    // Point B lies 10 degrees after A on the sloped line; no range check, A at 355 gives 365.
    solved.angle[1] = static_cast<float>(static_cast<double>(solved.angle[0]) + 10.0);
    solved.level[1] = static_cast<float>(static_cast<double>(points.slope) * 10.0 +
                                         static_cast<double>(solved.level[0]));
    if (solved.reversed) {
        SwapPoints(solved, 0, 1);
    }
    FillFrom(solved, 1);
    for (int k = 0; k < 4; ++k) {
        solved.rounded[k] = RoundToInt16(solved.angle[k]);
        solved.rounded[4 + k] = RoundToInt16(solved.level[k]);
    }
    return solved;
}

SolvedPoints SolveTwoPoints(int part, const SolverPoints& points) {
    if (!IsAngleInRange(points.angle[0]) || !IsAngleInRange(points.angle[1])) {
        return Refused(kAnglesABText);
    }
    if (points.rounded[0] == points.rounded[1]) {
        return Refused(QStringLiteral("Rules: Wrong in configure 2 points!"));
    }
    if (SolvedPoints empty = FirstEmptyLevel(part, points, 2); !empty.message.isEmpty()) {
        return empty;
    }
    if (SolvedPoints refusal; EqualLevels(part, points, refusal)) {
        return refusal;
    }
    SolvedPoints solved = Taken(points, 2);
    solved.reversed = points.clockwise;
    if (solved.reversed) {
        SwapPoints(solved, 0, 1);
    }
    return solved;
}

}  // namespace rk31
