#include "domain/Curve.h"

#include <QString>
#include <algorithm>
#include <initializer_list>
#include <optional>
#include <span>

#include "domain/Rounding.h"

namespace rk31 {

namespace {

constexpr int kSegmentSlots = 20;
constexpr int kScratchSegments = static_cast<int>(std::tuple_size_v<ScratchRows>) / 2;
constexpr int kScratchRowsCleared = 11;

// Working values are plain ints: a point moved by a full turn (angle + 360) and the differences
// of such points must not wrap before they are stored back as 16-bit rows.
struct Point {
    int angle;
    int level;
};

struct Segment {
    Point from;
    Point to;
};

std::int16_t Narrow(int value) {
    return RoundToInt16(static_cast<double>(value));
}

CurvePoint Row(Point p) {
    return {Narrow(p.angle), Narrow(p.level)};
}

Point AsPoint(const CurvePoint& row) {
    return {row[0], row[1]};
}

void WriteSegments(std::span<CurvePoint> rows, std::span<const Segment> segments) {
    std::size_t row = 0;
    for (const Segment& s : segments) {
        rows[row++] = Row(s.from);
        rows[row++] = Row(s.to);
    }
}

void WriteSegments(std::span<CurvePoint> rows, std::initializer_list<Segment> segments) {
    WriteSegments(rows, std::span<const Segment>(segments.begin(), segments.size()));
}

bool IsEmptySegment(std::span<const CurvePoint> rows, int k) {
    const CurvePoint& from = rows[2 * k];
    const CurvePoint& to = rows[2 * k + 1];
    return from[0] == 0 && from[1] == 0 && to[0] == 0 && to[1] == 0;
}

// 64 bits for the product: differences of up to two turns times the full level range occur.
std::int16_t InterpolateWide(int x, int x1, int y1, int x2, int y2) {
    if (x1 == x2) {
        return Narrow(y1);
    }
    const std::int64_t product =
        static_cast<std::int64_t>(x - x1) * static_cast<std::int64_t>(y2 - y1);
    return RoundToInt16(static_cast<double>(product) / static_cast<double>(x2 - x1) + y1);
}

// The line of one extension case through its first point p and its second point q (either may
// be moved by a full turn).
struct Line {
    Point p;
    Point q;

    int angleAtLevel(int level) const {
        return InterpolateWide(level, q.level, q.angle, p.level, p.angle);
    }
    int levelAtAngle(int angle) const {
        return InterpolateWide(angle, q.angle, q.level, p.angle, p.level);
    }
    // On a tie both crossings give the clamp-low one.
    Point lowerCrossing(ClampLevels clamps) const {
        const int xh = angleAtLevel(clamps.high);
        const int xl = angleAtLevel(clamps.low);
        return xh < xl ? Point{xh, clamps.high} : Point{xl, clamps.low};
    }
    Point upperCrossing(ClampLevels clamps) const {
        const int xh = angleAtLevel(clamps.high);
        const int xl = angleAtLevel(clamps.low);
        return xh > xl ? Point{xh, clamps.high} : Point{xl, clamps.low};
    }
};

}  // namespace

std::int16_t Interpolate(std::int16_t x, std::int16_t x1, std::int16_t y1, std::int16_t x2,
                         std::int16_t y2) {
    return InterpolateWide(x, x1, y1, x2, y2);
}

void CalSegment(bool reversed, const PointPair& pair, ScratchRows& scratch) {
    const Point p = AsPoint(pair[0]);
    const Point q = AsPoint(pair[1]);
    if ((!reversed && p.angle < q.angle) || (reversed && p.angle > q.angle)) {
        WriteSegments(scratch, {{p, q}});
        return;
    }
    if (reversed && p.angle < q.angle) {
        const int y = Line{{p.angle + 360, p.level}, q}.levelAtAngle(360);
        WriteSegments(scratch, {{p, {0, y}}, {{360, y}, q}});
        return;
    }
    // Forward across the seam, or a reversed pair at one angle, which is taken the long way
    // round just as a forward one.
    const int y = Line{p, {q.angle + 360, q.level}}.levelAtAngle(360);
    WriteSegments(scratch, {{p, {360, y}}, {{0, y}, q}});
}

namespace {

// The segments that extend a line from one of its points to the clamp it meets: nothing, one
// segment, or two when the extension crosses the seam.
struct Extension {
    bool failed = false;
    std::size_t count = 0;
    std::array<Segment, 2> segments{};
};

Extension Segments(std::initializer_list<Segment> segments) {
    Extension e;
    for (const Segment& s : segments) {
        e.segments[e.count++] = s;
    }
    return e;
}

// The extension before first point p of a curve that travels on to q: from the clamp crossing
// to p.
Extension ExtendBefore(bool reversed, Point p, Point q, ClampLevels clamps) {
    // A flat line never meets a clamp; points at one angle give no direction to extend in.
    if (p.angle == q.angle || p.level == q.level) {
        return {};
    }
    if (!reversed && p.angle < q.angle) {
        const Line line{p, q};
        const Point xs = line.lowerCrossing(clamps);
        if (xs.angle >= 0) {
            return Segments({{xs, p}});
        }
        if (xs.angle + 360 > q.angle) {
            const int y0 = line.levelAtAngle(0);
            return Segments({{{xs.angle + 360, xs.level}, {360, y0}}, {{0, y0}, p}});
        }
    } else if (reversed && p.angle > q.angle) {
        const Line line{p, q};
        const Point xs = line.upperCrossing(clamps);
        if (xs.angle <= 360) {
            return Segments({{xs, p}});
        }
        if (xs.angle - 360 < q.angle) {
            const int y360 = line.levelAtAngle(360);
            return Segments({{{xs.angle - 360, xs.level}, {0, y360}}, {{360, y360}, p}});
        }
    } else if (!reversed) {
        const Point xs = Line{p, {q.angle + 360, q.level}}.lowerCrossing(clamps);
        if (xs.angle > q.angle) {
            return Segments({{xs, p}});
        }
    } else {
        Point xs = Line{{p.angle + 360, p.level}, q}.upperCrossing(clamps);
        xs.angle -= 360;
        if (xs.angle < q.angle) {
            return Segments({{xs, p}});
        }
    }
    return {.failed = true};
}

}  // namespace

QString Cal2PointsExtend0(bool reversed, const PointPair& pair, CurveRows& list,
                          ClampLevels clamps) {
    const Extension e = ExtendBefore(reversed, AsPoint(pair[0]), AsPoint(pair[1]), clamps);
    WriteSegments(list, std::span<const Segment>(e.segments.data(), e.count));
    return e.failed ? QStringLiteral("Error in Cal2PointsExtend0") : QString();
}

QString Cal2PointsExtend1(bool reversed, const PointPair& pair, ScratchRows& scratch,
                          ClampLevels clamps) {
    // Past the last point is before the first point of the same line travelled the other way:
    // the same segments, read backwards.
    Extension e = ExtendBefore(!reversed, AsPoint(pair[1]), AsPoint(pair[0]), clamps);
    std::reverse(e.segments.begin(), e.segments.begin() + static_cast<std::ptrdiff_t>(e.count));
    for (std::size_t k = 0; k < e.count; ++k) {
        std::swap(e.segments[k].from, e.segments[k].to);
    }
    WriteSegments(scratch, std::span<const Segment>(e.segments.data(), e.count));
    return e.failed ? QStringLiteral("Error in Cal2PointsExtend1") : QString();
}

QString CalDPSegments(bool reversed, const CurveRows& list, ScratchRows& scratch, std::int16_t dp) {
    int last = kSegmentSlots - 1;
    while (last >= 0 && IsEmptySegment(list, last)) {
        --last;
    }
    if (last < 0) {
        return {};
    }
    const int sa = list[0][0];
    const int sl = list[0][1];
    const int ea = list[2 * last + 1][0];
    const int el = list[2 * last + 1][1];
    if (sa == ea) {
        return {};
    }
    const Segment jump{{dp, el}, {dp, sl}};
    if (!reversed && sa < ea) {
        if (dp < sa) {
            WriteSegments(scratch,
                          {{{ea, el}, {360, el}}, {{0, el}, {dp, el}}, jump, {{dp, sl}, {sa, sl}}});
            return {};
        }
        if (dp > ea) {
            WriteSegments(scratch,
                          {{{ea, el}, {dp, el}}, jump, {{dp, sl}, {360, sl}}, {{0, sl}, {sa, sl}}});
            return {};
        }
    } else if (reversed && sa > ea) {
        if (dp < ea) {
            WriteSegments(scratch,
                          {{{ea, el}, {dp, el}}, jump, {{dp, sl}, {0, sl}}, {{360, sl}, {sa, sl}}});
            return {};
        }
        if (dp > sa) {
            WriteSegments(scratch,
                          {{{ea, el}, {0, el}}, {{360, el}, {dp, el}}, jump, {{dp, sl}, {sa, sl}}});
            return {};
        }
    } else if (!reversed) {
        if (ea < dp && dp < sa) {
            WriteSegments(scratch, {{{ea, el}, {dp, el}}, jump, {{dp, sl}, {sa, sl}}});
            return {};
        }
    } else if (sa < dp && dp < ea) {
        WriteSegments(scratch, {{{ea, el}, {dp, el}}, jump, {{dp, sl}, {sa, sl}}});
        return {};
    }
    return QStringLiteral(
               "DP Point is Invalid with two angle ends-(%1 And %2) And (%3) "
               "direction!")
        .arg(sa)
        .arg(ea)
        .arg(reversed ? QStringLiteral("CW") : QStringLiteral("CCW"));
}

void AppendSegments(CurveRows& list, ScratchRows& scratch) {
    int k = 0;
    for (int i = 0; i < kSegmentSlots; ++i) {
        if (!IsEmptySegment(list, i)) {
            continue;
        }
        if (k >= kScratchSegments || IsEmptySegment(scratch, k)) {
            break;
        }
        list[2 * i] = scratch[2 * k];
        list[2 * i + 1] = scratch[2 * k + 1];
        ++k;
    }
    for (int r = 0; r < kScratchRowsCleared; ++r) {
        scratch[r] = {0, 0};
    }
}

QStringList CalPartCurve(std::int16_t count, std::int16_t part, const RoundedImages& rounded,
                         CurveTables& curves) {
    const auto& images = rounded.RoundedPoints.at(part);
    PointList points{};
    for (std::size_t i = 0; i < points.size(); ++i) {
        points[i] = {images[i], images[i + 4]};
    }
    const bool reversed = rounded.PointsReversed.at(part);
    const ClampLevels clamps{rounded.RoundedClampHigh.at(part), rounded.RoundedClampLow.at(part)};
    const auto pairFrom = [&points](std::size_t first) {
        PointPair pair{};
        pair[0] = points[first];
        pair[1] = points[first + 1];
        return pair;
    };

    // count 2 and 3 end at that many points; any other count takes all four.
    const std::size_t lastPair = count == 2 ? 0 : count == 3 ? 1 : 2;
    // A pair of equal levels at different angles never meets a clamp: the part gets only its
    // point segments, so neither the extensions nor the closing through DP have ends to join.
    const auto flat = [](const PointPair& pair) {
        return pair[0][1] == pair[1][1] && pair[0][0] != pair[1][0];
    };
    const bool closed = !flat(pairFrom(0)) && !flat(pairFrom(lastPair));

    QStringList messages;
    const auto note = [&messages](const QString& message) {
        if (!message.isEmpty()) {
            messages << message;
        }
    };
    CurveRows list{};
    ScratchRows scratch{};
    if (closed) {
        note(Cal2PointsExtend0(reversed, pairFrom(0), list, clamps));
    }
    for (std::size_t first = 0; first <= lastPair; ++first) {
        CalSegment(reversed, pairFrom(first), scratch);
        AppendSegments(list, scratch);
    }
    if (closed) {
        note(Cal2PointsExtend1(reversed, pairFrom(lastPair), scratch, clamps));
        AppendSegments(list, scratch);
        note(CalDPSegments(reversed, list, scratch, rounded.RoundedDP.at(part)));
        AppendSegments(list, scratch);
    }
    curves.at(part) = list;
    return messages;
}

QStringList CalLinearGraph(std::int16_t part1, std::int16_t count1, std::int16_t part2,
                           std::int16_t count2, const RoundedImages& rounded, CurveTables& curves) {
    QStringList messages = CalPartCurve(count1, part1, rounded, curves);
    if (count2 != 0) {
        messages << CalPartCurve(count2, part2, rounded, curves);
    }
    return messages;
}

std::optional<double> CurveLevelAt(const CurveRows& rows, double angle) {
    for (std::size_t k = 0; k < 20; ++k) {
        const auto& a = rows[2 * k];
        const auto& b = rows[2 * k + 1];
        if (a[0] == 0 && a[1] == 0 && b[0] == 0 && b[1] == 0) {
            break;
        }
        const double lo = std::min(a[0], b[0]);
        const double hi = std::max(a[0], b[0]);
        if (a[0] == b[0] || angle < lo || angle > hi) {
            continue;
        }
        return a[1] + (angle - a[0]) * (b[1] - a[1]) / static_cast<double>(b[0] - a[0]);
    }
    return std::nullopt;
}

int DrawnSegmentCount(const CurveRows& rows) {
    constexpr int kMostDrawnSegments = 11;
    int count = 0;
    while (count < kMostDrawnSegments && !IsEmptySegment(rows, count)) {
        ++count;
    }
    return count;
}

QStringList CurveDegreeCsvLines(const CurveTables& curves, const std::vector<int>& parts) {
    QStringList lines;
    for (const int part : parts) {
        if (part < 0 || part > 1) {
            continue;
        }
        const CurveRows& rows = curves[static_cast<std::size_t>(part)];
        for (int angle = 0; angle <= 360; ++angle) {
            const std::optional<double> level = CurveLevelAt(rows, angle);
            lines << QStringLiteral("%1,degree,%2,%3")
                         .arg(part + 1)
                         .arg(angle)
                         .arg(level ? QString::number(*level, 'f', 2) : QString());
        }
    }
    return lines;
}

QStringList CurveCsvLines(const CurveTables& curves, const std::vector<int>& parts) {
    QStringList lines{QStringLiteral("part,segment,angle_deg,level_pct_vdd")};
    for (const int part : parts) {
        if (part < 0 || part > 1) {
            continue;
        }
        const CurveRows& rows = curves[static_cast<std::size_t>(part)];
        for (int k = 0; k < DrawnSegmentCount(rows); ++k) {
            for (int end = 0; end < 2; ++end) {
                const auto& row = rows[static_cast<std::size_t>(2 * k + end)];
                lines << QStringLiteral("%1,%2,%3,%4").arg(part + 1).arg(k).arg(row[0]).arg(row[1]);
            }
        }
    }
    return lines;
}

}  // namespace rk31
