#include <gtest/gtest.h>

#include <QRegularExpression>

#include "domain/Curve.h"

using namespace rk31;

namespace {

// Curves are written as text: points "100,20 200,80", segments "83,10>100,20 100,20>200,80".
template <std::size_t N>
void SetRows(std::array<CurvePoint, N>& rows, const char* text) {
    static const QRegularExpression separators(QStringLiteral("[ ,>]+"));
    const QStringList n = QString::fromLatin1(text).split(separators, Qt::SkipEmptyParts);
    for (qsizetype i = 0; i + 1 < n.size(); i += 2) {
        rows[static_cast<std::size_t>(i / 2)] = {static_cast<std::int16_t>(n[i].toInt()),
                                                 static_cast<std::int16_t>(n[i + 1].toInt())};
    }
}

// The rows up to the last one in use, so that a stale row behind the curve shows as well.
template <std::size_t N>
QString Text(const std::array<CurvePoint, N>& rows) {
    std::size_t used = N;
    while (used > 0 && rows[used - 1] == CurvePoint{}) {
        --used;
    }
    QStringList segments;
    for (std::size_t r = 0; r < used; r += 2) {
        const CurvePoint to = r + 1 < N ? rows[r + 1] : CurvePoint{};
        segments
            << QStringLiteral("%1,%2>%3,%4").arg(rows[r][0]).arg(rows[r][1]).arg(to[0]).arg(to[1]);
    }
    return segments.join(u' ');
}

PointPair Pair(const char* points) {
    PointPair pair{};
    SetRows(pair, points);
    return pair;
}

QStringList Said(const char* message) {
    return message != nullptr ? QStringList{message} : QStringList{};
}

// A returned message as the list of what is shown: nothing for an empty one.
QStringList Said(const QString& message) {
    return message.isEmpty() ? QStringList{} : QStringList{message};
}

constexpr ClampLevels k10to90{.high = 90, .low = 10};
constexpr ClampLevels k5to95{.high = 95, .low = 5};
const char* const kExtend0Error = "Error in Cal2PointsExtend0";
const char* const kExtend1Error = "Error in Cal2PointsExtend1";
const char* const kTwoPointSegs =
    "83,10>100,20 100,20>200,80 200,80>217,90 217,90>300,90 300,90>300,10 300,10>360,10 "
    "0,10>83,10";
const char* const kFourPointSegs =
    "62,5>100,20 100,20>150,40 150,40>250,60 250,60>300,80 300,80>338,95 338,95>360,95 0,95>20,95 "
    "20,95>20,5 20,5>62,5";

}  // namespace

TEST(Interpolate, ExactProductHalvesToEvenAndEqualEnds) {
    const struct {
        int x, x1, y1, x2, y2, out;
    } cases[] = {
        {360, -360, 0, 1080, 100, 50},         // 720 degrees times 100 %VDD inside the product
        {100, 0, 720, 50, 0, -720},            // 100 %VDD times -720 degrees
        {5, 60, 110, 20, 90, 82},              // 82.5 goes to the even 82
        {5, 60, 112, 20, 92, 84},              // 83.5 goes to 84
        {10, 80, 200, 20, 100, 83},            // 83.33
        {7, 7, 42, 7, 99, 42},                 // equal ends give y1
        {30000, -30000, 0, -29999, 1, 32767},  // beyond 16 bits saturates
        {-30000, 30000, 0, 29999, -1, -32768},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Interpolate(c.x, c.x1, c.y1, c.x2, c.y2), c.out)
            << c.x << " " << c.x1 << " " << c.y1 << " " << c.x2 << " " << c.y2;
    }
}

TEST(CalSegment, DirectionAndSeam) {
    // clang-format off
    const struct { bool reversed; const char* pair; const char* segs; } cases[] = {
        {false, "100,20 200,80", "100,20>200,80"},
        {true, "200,20 100,80", "200,20>100,80"},
        {false, "350,20 10,80", "350,20>360,50 0,50>10,80"},  // over the seam
        {true, "10,80 350,20", "10,80>0,50 360,50>350,20"},
        {false, "100,20 100,80", "100,20>360,63 0,63>100,80"},  // one angle: a full turn
        {true, "100,20 100,80", "100,20>360,63 0,63>100,80"},
    };
    // clang-format on
    for (const auto& c : cases) {
        ScratchRows scratch{};
        CalSegment(c.reversed, Pair(c.pair), scratch);
        EXPECT_EQ(Text(scratch), c.segs) << c.pair;
    }
}

TEST(Cal2PointsExtend, EachCaseItsWrapAndItsFailure) {
    // clang-format off
    const struct {
        int end; const char* name; bool reversed; const char* pair; const char* segs; bool fails;
        ClampLevels clamps = k10to90;
    } cases[] = {
        {0, "1: lower crossing", false, "100,20 200,80", "83,10>100,20", false},
        {0, "1: falling line meets clamp high first", false, "100,80 200,20", "83,90>100,80", false},
        {0, "1: below 0, moved by a turn, cut at 0", false, "40,44 50,45", "60,10>360,40 0,40>40,44", false},
        {0, "1: moved crossing reaches B", false, "40,45 50,46", "", true},
        {0, "2: upper crossing", true, "200,20 100,80", "217,10>200,20", false},
        {0, "2: above 360, moved back, cut at 360", true, "320,44 310,45", "300,10>0,40 360,40>320,44", false},
        {0, "2: moved crossing reaches B", true, "320,45 310,46", "", true},
        {0, "3: forward over the seam", false, "350,20 10,80", "347,10>350,20", false},
        {0, "3: crossing not after B", false, "350,50 10,51", "", true},
        {0, "4: reversed over the seam", true, "10,20 350,80", "13,10>10,20", false},
        {0, "4: crossing not before B", true, "10,50 350,51", "", true},
        {0, "equal angles", false, "100,20 100,80", "", false},
        {0, "equal levels", false, "100,50 200,50", "", false},
        {0, "halfway crossing to the even degree", false, "90,20 110,60", "82,5>90,20", false, k5to95},
        // Both crossings saturate to one angle: the tie goes to clamp low.
        {0, "tie of lower crossings", false, "0,20 359,21", "32767,150>0,20", false, {200, 150}},
        {0, "tie of upper crossings", true, "359,21 0,20", "-32768,-150>359,21", false, {-100, -150}},
        {1, "1: upper crossing", false, "100,20 200,80", "200,80>217,90", false},
        {1, "1: beyond 360, cut at 360, moved back", false, "300,70 350,80", "350,80>360,82 0,82>40,90", false},
        {1, "1: moved crossing reaches A", false, "310,45 320,46", "", true},
        {1, "2: lower crossing", true, "200,20 100,80", "100,80>83,90", false},
        {1, "2: below 0, cut at 0, moved by a turn", true, "60,70 10,80", "10,80>0,82 360,82>320,90", false},
        {1, "2: moved crossing reaches A", true, "50,45 40,46", "", true},
        {1, "3: forward over the seam", false, "350,20 10,80", "10,80>13,90", false},
        {1, "3: crossing not before A", false, "350,50 10,51", "", true},
        {1, "4: reversed over the seam", true, "10,20 350,80", "350,80>347,90", false},
        {1, "4: crossing not after A", true, "10,50 350,51", "", true},
        {1, "equal angles", true, "100,20 100,80", "", false},
        {1, "equal levels", false, "100,50 200,50", "", false},
    };
    // clang-format on
    for (const auto& c : cases) {
        QString segs;
        QString message;
        if (c.end == 0) {
            CurveRows list{};
            message = Cal2PointsExtend0(c.reversed, Pair(c.pair), list, c.clamps);
            segs = Text(list);
        } else {
            ScratchRows scratch{};
            message = Cal2PointsExtend1(c.reversed, Pair(c.pair), scratch, c.clamps);
            segs = Text(scratch);
        }
        EXPECT_EQ(segs, c.segs) << c.end << " " << c.name;
        EXPECT_EQ(Said(message), Said(!c.fails     ? nullptr
                                      : c.end == 0 ? kExtend0Error
                                                   : kExtend1Error))
            << c.end << " " << c.name;
    }
}

TEST(CalDPSegments, EachRegionAndTheInvalidDP) {
    const char* const invalid = "DP Point is Invalid with two angle ends-(%1) direction!";
    // clang-format off
    const struct {
        const char* name; bool reversed; const char* curve; int dp; const char* segs; const char* ends;
    } cases[] = {
        {"CCW, DP before the start", false, "83,10>100,20 100,20>200,80 200,80>217,90", 50,
         "217,90>360,90 0,90>50,90 50,90>50,10 50,10>83,10", nullptr},
        {"CCW, DP after the end", false, "83,10>217,90", 300, "217,90>300,90 300,90>300,10 300,10>360,10 0,10>83,10", nullptr},
        {"CCW, DP on the curve", false, "83,10>217,90", 150, "", "83 And 217) And (CCW"},
        {"CCW, DP at the start", false, "83,10>217,90", 83, "", "83 And 217) And (CCW"},
        {"CW, DP below the end", true, "217,10>83,90", 50, "83,90>50,90 50,90>50,10 50,10>0,10 360,10>217,10", nullptr},
        {"CW, DP above the start", true, "217,10>83,90", 300, "83,90>0,90 360,90>300,90 300,90>300,10 300,10>217,10", nullptr},
        {"CW, DP at the start", true, "217,10>83,90", 217, "", "217 And 83) And (CW"},
        {"CCW over the seam, DP in the gap", false, "347,10>350,20 350,20>360,50 0,50>13,90", 180,
         "13,90>180,90 180,90>180,10 180,10>347,10", nullptr},
        {"CCW over the seam, DP on the curve", false, "347,10>13,90", 5, "", "347 And 13) And (CCW"},
        {"CW over the seam, DP in the gap", true, "13,10>347,90", 180, "347,90>180,90 180,90>180,10 180,10>13,10", nullptr},
        {"CW over the seam, DP on the curve", true, "13,10>347,90", 350, "", "13 And 347) And (CW"},
        {"closed curve: nothing", false, "100,20>200,80 200,80>100,90", 300, "", nullptr},
        {"no curve: nothing", false, "", 300, "", nullptr},
    };
    // clang-format on
    for (const auto& c : cases) {
        CurveRows list{};
        SetRows(list, c.curve);
        ScratchRows scratch{};
        const QString message =
            CalDPSegments(c.reversed, list, scratch, static_cast<std::int16_t>(c.dp));
        EXPECT_EQ(Text(scratch), c.segs) << c.name;
        EXPECT_EQ(Said(message), c.ends ? QStringList{QString(invalid).arg(c.ends)} : QStringList{})
            << c.name;
    }
}

TEST(AppendSegments, FillsEmptySlotsUpToTheFirstEmptyScratchSegment) {
    CurveRows list{};
    SetRows(list, "1,1>2,2 2,2>3,3 0,0>0,0 4,4>5,5");
    ScratchRows scratch{};
    // A jump at DP 0 between two levels of 0 is all zeros and ends the copy.
    SetRows(scratch, "10,1>11,1 11,1>12,1 0,0>0,0 12,1>13,1");
    scratch[10] = {8, 8};  // not copied, but cleared
    scratch[11] = {7, 7};  // beyond the cleared head: left as it is
    AppendSegments(list, scratch);
    EXPECT_EQ(Text(list), "1,1>2,2 2,2>3,3 10,1>11,1 4,4>5,5 11,1>12,1");
    EXPECT_EQ(Text(scratch), "0,0>0,0 0,0>0,0 0,0>0,0 0,0>0,0 0,0>0,0 0,0>7,7");
}

TEST(CalPartCurve, WholeCurves) {
    // clang-format off
    const struct {
        const char* name;
        const char* points;  // A, B, ...; the rest not in use (angle 500)
        std::int16_t count; bool reversed; ClampLevels clamps; int dp; const char* segs;
        QStringList messages;
    } cases[] = {
        {"two points, DP after the end", "100,20 200,80", 2, false, k10to90, 300, kTwoPointSegs, {}},
        {"two points, DP on the curve: no closing segments", "100,20 200,80", 2, false, k10to90, 150,
         "83,10>100,20 100,20>200,80 200,80>217,90",
         {"DP Point is Invalid with two angle ends-(83 And 217) And (CCW) direction!"}},
        {"clockwise", "200,20 100,80", 2, true, k10to90, 300,
         "217,10>200,20 200,20>100,80 100,80>83,90 83,90>0,90 360,90>300,90 300,90>300,10 300,10>217,10", {}},
        {"four points: nine segments", "100,20 150,40 250,60 300,80", 4, false, k5to95, 20, kFourPointSegs, {}},
        {"count 0 takes all four points", "100,20 150,40 250,60 300,80", 0, false, k5to95, 20, kFourPointSegs, {}},
        {"count 5 takes all four points", "100,20 150,40 250,60 300,80", 5, false, k5to95, 20, kFourPointSegs, {}},
        {"three points: D is not read, the end extension uses B and C", "100,20 150,40 250,80 300,10", 3, false, k5to95, 20,
         "62,5>100,20 100,20>150,40 150,40>250,80 250,80>288,95 288,95>360,95 0,95>20,95 20,95>20,5 20,5>62,5", {}},
        {"two points over the seam", "350,20 10,80", 2, false, k10to90, 180,
         "347,10>350,20 350,20>360,50 0,50>10,80 10,80>13,90 13,90>180,90 180,90>180,10 180,10>347,10", {}},
        {"start crossing below 0", "10,50 20,60", 2, false, k10to90, 100,
         "330,10>360,40 0,40>10,50 10,50>20,60 20,60>50,90 50,90>100,90 100,90>100,10 100,10>330,10", {}},
        {"both extensions fail: the rest is stored", "40,45 50,46", 2, false, k10to90, 100,
         "40,45>50,46 50,46>100,46 100,46>100,45 100,45>360,45 0,45>40,45", {kExtend0Error, kExtend1Error}},
        {"equal levels: the point segments alone, no message", "100,50 200,50", 2, false, k10to90, 300,
         "100,50>200,50", {}},
        {"first pair flat among four: the point segments alone", "100,50 150,50 250,60 300,80", 4, false,
         k10to90, 20, "100,50>150,50 150,50>250,60 250,60>300,80", {}},
        {"last pair flat among three, over the seam", "300,20 350,60 20,60", 3, false, k10to90, 200,
         "300,20>350,60 350,60>360,60 0,60>20,60", {}},
    };
    // clang-format on
    for (const std::int16_t part : {0, 1}) {
        for (const auto& c : cases) {
            RoundedImages images;
            const auto p = static_cast<std::size_t>(part);
            images.RoundedPoints[p] = {500, 500, 500, 500, 0, 0, 0, 0};
            PointList points{};
            SetRows(points, c.points);
            for (std::size_t i = 0; i < 4 && points[i] != CurvePoint{}; ++i) {
                images.RoundedPoints[p][i] = points[i][0];
                images.RoundedPoints[p][i + 4] = points[i][1];
            }
            images.RoundedDP[p] = static_cast<std::int16_t>(c.dp);
            images.RoundedClampHigh[p] = c.clamps.high;
            images.RoundedClampLow[p] = c.clamps.low;
            images.PointsReversed[p] = c.reversed;
            CurveTables curves{};
            curves[p].fill({7, 7});  // every row of the part is overwritten
            const QStringList messages = CalPartCurve(c.count, part, images, curves);
            EXPECT_EQ(Text(curves[p]), c.segs) << c.name << ", part " << part;
            EXPECT_EQ(messages, c.messages) << c.name;
            EXPECT_EQ(curves[1 - p], CurveRows{}) << c.name << ": other part touched";
        }
    }
}
