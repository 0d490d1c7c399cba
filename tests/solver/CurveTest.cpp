#include <gtest/gtest.h>

#include <QRegularExpression>
#include <array>
#include <span>
#include <string>
#include <vector>

#include "solver/Curve.h"
#include "support/ScriptedPrompts.h"

using namespace rk31;

namespace {

// Curves are written as text: points "100,20 200,80", segments "83,10>100,20 100,20>200,80".
using Seg = std::array<int, 4>;
using Segs = std::vector<Seg>;
using Texts = std::vector<std::string>;

std::vector<int> Numbers(const char* text) {
    std::vector<int> out;
    static const QRegularExpression separators(QStringLiteral("[ ,>]+"));
    for (const QString& n : QString::fromLatin1(text).split(separators, Qt::SkipEmptyParts)) {
        out.push_back(n.toInt());
    }
    return out;
}

Segs ParseSegs(const char* text) {
    const std::vector<int> n = Numbers(text);
    Segs out;
    for (std::size_t i = 0; i + 3 < n.size(); i += 4) {
        out.push_back({n[i], n[i + 1], n[i + 2], n[i + 3]});
    }
    return out;
}

template <std::size_t N>
void SetRows(std::array<CurvePoint, N>& rows, const char* text) {
    const std::vector<int> n = Numbers(text);
    for (std::size_t i = 0; i + 1 < n.size(); i += 2) {
        rows[i / 2] = {static_cast<std::int16_t>(n[i]), static_cast<std::int16_t>(n[i + 1])};
    }
}

PointPair Pair(const char* points) {
    PointPair pair{};
    SetRows(pair, points);
    return pair;
}

Texts ToTexts(const QStringList& list) {
    Texts out;
    for (const QString& s : list) {
        out.push_back(s.toStdString());
    }
    return out;
}

Texts Expected(const char* message) {
    return message ? Texts{message} : Texts{};
}

bool IsEmpty(std::span<const CurvePoint> rows, std::size_t k) {
    return rows[2 * k] == CurvePoint{0, 0} && rows[2 * k + 1] == CurvePoint{0, 0};
}

// The segments up to the first empty one, as the plots read them.
Segs Segments(std::span<const CurvePoint> rows) {
    Segs out;
    for (std::size_t k = 0; 2 * k + 1 < rows.size() && !IsEmpty(rows, k); ++k) {
        out.push_back({rows[2 * k][0], rows[2 * k][1], rows[2 * k + 1][0], rows[2 * k + 1][1]});
    }
    return out;
}

// Nothing stale may follow the written rows.
bool ZeroFrom(std::span<const CurvePoint> rows, std::size_t firstRow) {
    for (std::size_t r = firstRow; r < rows.size(); ++r) {
        if (rows[r] != CurvePoint{0, 0}) {
            return false;
        }
    }
    return true;
}

constexpr ClampLevels k10to90{.high = 90, .low = 10};
constexpr ClampLevels k5to95{.high = 95, .low = 5};
const char* const kExtend0Error = "Error in Cal2PointsExtend0";
const char* const kExtend1Error = "Error in Cal2PointsExtend1";

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
    const struct {
        const char* name;
        bool reversed;
        const char* pair;
        const char* segs;
    } cases[] = {
        {"forward", false, "100,20 200,80", "100,20>200,80"},
        {"reversed", true, "200,20 100,80", "200,20>100,80"},
        {"forward over the seam", false, "350,20 10,80", "350,20>360,50 0,50>10,80"},
        {"reversed over the seam", true, "10,80 350,20", "10,80>0,50 360,50>350,20"},
        {"forward at one angle: a full turn", false, "100,20 100,80", "100,20>360,63 0,63>100,80"},
        {"reversed at one angle: the same turn", true, "100,20 100,80",
         "100,20>360,63 0,63>100,80"},
    };
    for (const auto& c : cases) {
        ScratchRows scratch{};
        CalSegment(c.reversed, Pair(c.pair), scratch);
        const Segs expected = ParseSegs(c.segs);
        EXPECT_EQ(Segments(scratch), expected) << c.name;
        EXPECT_TRUE(ZeroFrom(scratch, 2 * expected.size())) << c.name;
    }
}

namespace {

struct ExtensionCase {
    const char* name;
    bool reversed;
    const char* pair;
    const char* segs;  // empty: nothing written
    bool fails;
    ClampLevels clamps = k10to90;
};

}  // namespace

TEST(Cal2PointsExtend0, EachCaseItsWrapAndItsFailure) {
    const ExtensionCase cases[] = {
        {"1: lower crossing", false, "100,20 200,80", "83,10>100,20", false},
        {"1: falling line meets clamp high first", false, "100,80 200,20", "83,90>100,80", false},
        {"1: below 0, moved by a turn, cut at 0", false, "40,44 50,45", "60,10>360,40 0,40>40,44",
         false},
        {"1: moved crossing reaches B", false, "40,45 50,46", "", true},
        {"2: upper crossing", true, "200,20 100,80", "217,10>200,20", false},
        {"2: above 360, moved back, cut at 360", true, "320,44 310,45", "300,10>0,40 360,40>320,44",
         false},
        {"2: moved crossing reaches B", true, "320,45 310,46", "", true},
        {"3: forward over the seam", false, "350,20 10,80", "347,10>350,20", false},
        {"3: crossing not after B", false, "350,50 10,51", "", true},
        {"4: reversed over the seam", true, "10,20 350,80", "13,10>10,20", false},
        {"4: crossing not before B", true, "10,50 350,51", "", true},
        {"equal angles", false, "100,20 100,80", "", false},
        {"equal levels", false, "100,50 200,50", "", false},
        {"halfway crossing to the even degree", false, "90,20 110,60", "82,5>90,20", false, k5to95},
        // Both crossings saturate to one angle: the tie goes to clamp low.
        {"tie of lower crossings", false, "0,20 359,21", "32767,150>0,20", false, {200, 150}},
        {"tie of upper crossings", true, "359,21 0,20", "-32768,-150>359,21", false, {-100, -150}},
    };
    for (const auto& c : cases) {
        CurveRows list{};
        test::ScriptedPrompts prompts;
        Cal2PointsExtend0(c.reversed, Pair(c.pair), list, c.clamps, prompts);
        const Segs expected = ParseSegs(c.segs);
        EXPECT_EQ(Segments(list), expected) << c.name;
        EXPECT_TRUE(ZeroFrom(list, 2 * expected.size())) << c.name;
        EXPECT_EQ(ToTexts(prompts.messages), Expected(c.fails ? kExtend0Error : nullptr)) << c.name;
    }
}

TEST(Cal2PointsExtend1, EachCaseItsWrapAndItsFailure) {
    const ExtensionCase cases[] = {
        {"1: upper crossing", false, "100,20 200,80", "200,80>217,90", false},
        {"1: beyond 360, cut at 360, moved back", false, "300,70 350,80",
         "350,80>360,82 0,82>40,90", false},
        {"1: moved crossing reaches A", false, "310,45 320,46", "", true},
        {"2: lower crossing", true, "200,20 100,80", "100,80>83,90", false},
        {"2: below 0, cut at 0, moved by a turn", true, "60,70 10,80", "10,80>0,82 360,82>320,90",
         false},
        {"2: moved crossing reaches A", true, "50,45 40,46", "", true},
        {"3: forward over the seam", false, "350,20 10,80", "10,80>13,90", false},
        {"3: crossing not before A", false, "350,50 10,51", "", true},
        {"4: reversed over the seam", true, "10,20 350,80", "350,80>347,90", false},
        {"4: crossing not after A", true, "10,50 350,51", "", true},
        {"equal angles", true, "100,20 100,80", "", false},
        {"equal levels", false, "100,50 200,50", "", false},
    };
    for (const auto& c : cases) {
        ScratchRows scratch{};
        test::ScriptedPrompts prompts;
        Cal2PointsExtend1(c.reversed, Pair(c.pair), scratch, k10to90, prompts);
        const Segs expected = ParseSegs(c.segs);
        EXPECT_EQ(Segments(scratch), expected) << c.name;
        EXPECT_TRUE(ZeroFrom(scratch, 2 * expected.size())) << c.name;
        EXPECT_EQ(ToTexts(prompts.messages), Expected(c.fails ? kExtend1Error : nullptr)) << c.name;
    }
}

TEST(CalDPSegments, EachRegionAndTheInvalidDP) {
    const struct {
        const char* name;
        bool reversed;
        const char* curve;
        int dp;
        const char* segs;
        const char* message;
    } cases[] = {
        {"CCW, DP before the start", false, "83,10>100,20 100,20>200,80 200,80>217,90", 50,
         "217,90>360,90 0,90>50,90 50,90>50,10 50,10>83,10", nullptr},
        {"CCW, DP after the end", false, "83,10>217,90", 300,
         "217,90>300,90 300,90>300,10 300,10>360,10 0,10>83,10", nullptr},
        {"CCW, DP on the curve", false, "83,10>217,90", 150, "",
         "DP Point is Invalid with two angle ends-(83 And 217) And (CCW) direction!"},
        {"CCW, DP at the start", false, "83,10>217,90", 83, "",
         "DP Point is Invalid with two angle ends-(83 And 217) And (CCW) direction!"},
        {"CW, DP below the end", true, "217,10>83,90", 50,
         "83,90>50,90 50,90>50,10 50,10>0,10 360,10>217,10", nullptr},
        {"CW, DP above the start", true, "217,10>83,90", 300,
         "83,90>0,90 360,90>300,90 300,90>300,10 300,10>217,10", nullptr},
        {"CW, DP at the start", true, "217,10>83,90", 217, "",
         "DP Point is Invalid with two angle ends-(217 And 83) And (CW) direction!"},
        {"CCW over the seam, DP in the gap", false, "347,10>350,20 350,20>360,50 0,50>13,90", 180,
         "13,90>180,90 180,90>180,10 180,10>347,10", nullptr},
        {"CCW over the seam, DP on the curve", false, "347,10>13,90", 5, "",
         "DP Point is Invalid with two angle ends-(347 And 13) And (CCW) direction!"},
        {"CW over the seam, DP in the gap", true, "13,10>347,90", 180,
         "347,90>180,90 180,90>180,10 180,10>13,10", nullptr},
        {"CW over the seam, DP on the curve", true, "13,10>347,90", 350, "",
         "DP Point is Invalid with two angle ends-(13 And 347) And (CW) direction!"},
        {"closed curve: nothing", false, "100,20>200,80 200,80>100,90", 300, "", nullptr},
        {"no curve: nothing", false, "", 300, "", nullptr},
    };
    for (const auto& c : cases) {
        CurveRows list{};
        SetRows(list, c.curve);
        ScratchRows scratch{};
        test::ScriptedPrompts prompts;
        CalDPSegments(c.reversed, list, scratch, static_cast<std::int16_t>(c.dp), prompts);
        const Segs expected = ParseSegs(c.segs);
        EXPECT_EQ(Segments(scratch), expected) << c.name;
        EXPECT_TRUE(ZeroFrom(scratch, 2 * expected.size())) << c.name;
        EXPECT_EQ(ToTexts(prompts.messages), Expected(c.message)) << c.name;
    }
}

TEST(AppendSegments, FillsEmptySlotsInOrderAndClearsTheScratchHead) {
    CurveRows list{};
    SetRows(list, "1,1>2,2 2,2>3,3 0,0>0,0 4,4>5,5");
    ScratchRows scratch{};
    SetRows(scratch, "10,1>11,1 11,1>12,1 12,1>13,1");
    scratch[10] = {8, 8};  // past the first empty segment: not copied, but cleared
    scratch[11] = {7, 7};  // beyond the cleared head: left as it is
    AppendSegments(list, scratch);
    EXPECT_EQ(Segments(list), ParseSegs("1,1>2,2 2,2>3,3 10,1>11,1 4,4>5,5 11,1>12,1 12,1>13,1"));
    EXPECT_TRUE(ZeroFrom(list, 12));
    EXPECT_TRUE(ZeroFrom(std::span<const CurvePoint>(scratch).first(11), 0));
    EXPECT_EQ(scratch[11], (CurvePoint{7, 7}));
}

TEST(AppendSegments, StopsAtTheFirstEmptyScratchSegment) {
    CurveRows list{};
    ScratchRows scratch{};
    // A jump at DP 0 between two levels of 0 is all zeros and ends the copy.
    SetRows(scratch, "10,1>11,1 0,0>0,0 12,1>13,1");
    AppendSegments(list, scratch);
    EXPECT_EQ(Segments(list), ParseSegs("10,1>11,1"));
    EXPECT_TRUE(ZeroFrom(list, 2));
    EXPECT_TRUE(ZeroFrom(scratch, 0));
}

TEST(AppendSegments, FullListTakesNothing) {
    CurveRows list{};
    for (std::size_t r = 0; r < 40; ++r) {
        list[r] = {static_cast<std::int16_t>(r + 1), 1};
    }
    const CurveRows before = list;
    ScratchRows scratch{};
    SetRows(scratch, "10,1>11,1");
    AppendSegments(list, scratch);
    EXPECT_EQ(list, before);
    EXPECT_TRUE(ZeroFrom(scratch, 0));
}

namespace {

struct CurveCase {
    const char* name;
    const char* points;  // A, B, ...; the rest not in use (angle 500)
    std::int16_t count;
    bool reversed;
    ClampLevels clamps;
    int dp;
    const char* segs;
    Texts messages;
};

void SetPart(RoundedImages& images, std::int16_t part, const CurveCase& c) {
    const std::vector<int> n = Numbers(c.points);
    auto& points = images.RoundedPoints[part];
    for (std::size_t i = 0; i < 4; ++i) {
        const bool used = 2 * i + 1 < n.size();
        points[i] = static_cast<std::int16_t>(used ? n[2 * i] : 500);
        points[i + 4] = static_cast<std::int16_t>(used ? n[2 * i + 1] : 0);
    }
    images.RoundedDP[part] = static_cast<std::int16_t>(c.dp);
    images.RoundedClampHigh[part] = c.clamps.high;
    images.RoundedClampLow[part] = c.clamps.low;
    images.PointsReversed[part] = c.reversed;
}

// clang-format off
const CurveCase kTwoPoints{"two points, DP after the end", "100,20 200,80", 2, false, k10to90, 300,
    "83,10>100,20 100,20>200,80 200,80>217,90 217,90>300,90 300,90>300,10 300,10>360,10 0,10>83,10",
    {}};
const CurveCase kFourPoints{"four points: nine segments", "100,20 150,40 250,60 300,80", 4, false,
    k5to95, 20,
    "62,5>100,20 100,20>150,40 150,40>250,60 250,60>300,80 300,80>338,95 338,95>360,95 0,95>20,95 "
    "20,95>20,5 20,5>62,5",
    {}};
// clang-format on

}  // namespace

TEST(CalPartCurve, WholeCurves) {
    // clang-format off
    const CurveCase cases[] = {
        kTwoPoints,
        {"two points, DP before the start", "100,20 200,80", 2, false, k10to90, 50,
         "83,10>100,20 100,20>200,80 200,80>217,90 217,90>360,90 0,90>50,90 50,90>50,10 "
         "50,10>83,10",
         {}},
        {"two points, DP on the curve: no closing segments", "100,20 200,80", 2, false, k10to90,
         150,
         "83,10>100,20 100,20>200,80 200,80>217,90",
         {"DP Point is Invalid with two angle ends-(83 And 217) And (CCW) direction!"}},
        {"clockwise", "200,20 100,80", 2, true, k10to90, 300,
         "217,10>200,20 200,20>100,80 100,80>83,90 83,90>0,90 360,90>300,90 300,90>300,10 "
         "300,10>217,10",
         {}},
        kFourPoints,
        {"three points: D is not read, the end extension uses B and C",
         "100,20 150,40 250,80 300,10", 3, false, k5to95, 20,
         "62,5>100,20 100,20>150,40 150,40>250,80 250,80>288,95 288,95>360,95 0,95>20,95 "
         "20,95>20,5 20,5>62,5",
         {}},
        {"two points over the seam", "350,20 10,80", 2, false, k10to90, 180,
         "347,10>350,20 350,20>360,50 0,50>10,80 10,80>13,90 13,90>180,90 180,90>180,10 "
         "180,10>347,10",
         {}},
        {"start crossing below 0", "10,50 20,60", 2, false, k10to90, 100,
         "330,10>360,40 0,40>10,50 10,50>20,60 20,60>50,90 50,90>100,90 100,90>100,10 "
         "100,10>330,10",
         {}},
        {"both extensions fail: the rest is stored", "40,45 50,46", 2, false, k10to90, 100,
         "40,45>50,46 50,46>100,46 100,46>100,45 100,45>360,45 0,45>40,45",
         {kExtend0Error, kExtend1Error}},
        {"equal levels: no extensions, no message", "100,50 200,50", 2, false, k10to90, 300,
         "100,50>200,50 200,50>300,50 300,50>300,50 300,50>360,50 0,50>100,50",
         {}},
    };
    // clang-format on
    for (const std::int16_t part : {0, 1}) {
        for (const auto& c : cases) {
            RoundedImages images;
            SetPart(images, part, c);
            CurveTables curves{};
            test::ScriptedPrompts prompts;
            CalPartCurve(c.count, part, images, curves, prompts);
            const Segs expected = ParseSegs(c.segs);
            EXPECT_EQ(Segments(curves[part]), expected) << c.name << ", part " << part;
            EXPECT_TRUE(ZeroFrom(curves[part], 2 * expected.size())) << c.name;
            EXPECT_EQ(ToTexts(prompts.messages), c.messages) << c.name;
            EXPECT_EQ(curves[1 - part], CurveRows{}) << c.name << ": other part touched";
        }
    }
}

TEST(CalPartCurve, CountsOtherThanTwoAndThreeTakeAllFourPoints) {
    RoundedImages images;
    SetPart(images, 0, kFourPoints);
    test::ScriptedPrompts prompts;
    for (const std::int16_t count : {0, 1, 5, -1}) {
        CurveTables curves{};
        CalPartCurve(count, 0, images, curves, prompts);
        EXPECT_EQ(Segments(curves[0]), ParseSegs(kFourPoints.segs)) << count;
    }
}

TEST(CalPartCurve, OverwritesEveryRowOfThePart) {
    RoundedImages images;
    SetPart(images, 1, kTwoPoints);
    CurveTables curves{};
    curves[1].fill({7, 7});
    test::ScriptedPrompts prompts;
    CalPartCurve(2, 1, images, curves, prompts);
    EXPECT_EQ(Segments(curves[1]), ParseSegs(kTwoPoints.segs));
    EXPECT_TRUE(ZeroFrom(curves[1], 14));
}

TEST(CalLinearGraph, SecondPartOnlyWhenItsCountIsGiven) {
    RoundedImages images;
    SetPart(images, 0, kTwoPoints);
    SetPart(images, 1, {"", "200,20 100,80", 2, true, k10to90, 150, "", {}});
    CurveTables curves{};
    curves[1][0] = {9, 9};
    test::ScriptedPrompts prompts;

    CalLinearGraph(0, 2, 0, 0, images, curves, prompts);
    EXPECT_EQ(Segments(curves[0]), ParseSegs(kTwoPoints.segs));
    EXPECT_EQ(curves[1][0], (CurvePoint{9, 9}));
    EXPECT_TRUE(prompts.messages.isEmpty());

    CalLinearGraph(0, 2, 1, 2, images, curves, prompts);
    EXPECT_EQ(Segments(curves[0]), ParseSegs(kTwoPoints.segs));
    EXPECT_EQ(Segments(curves[1]), ParseSegs("217,10>200,20 200,20>100,80 100,80>83,90"));
    EXPECT_EQ(ToTexts(prompts.messages),
              Texts{"DP Point is Invalid with two angle ends-(217 And 83) And (CW) direction!"});
}
