#include "RkUtilities/geometry/CrkFloatMargin.h"
#include "RkUtilities/geometry/CrkFloatVector2D.h"
#include "RkUtilities/geometry/CrkMathUtilities.h"

#include <climits>
#include <cmath>
#include <complex>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

void PrintTo(const CrkFloatPoint& p, std::ostream* out)
{
    *out << '(' << p.x << ", " << p.y << ')';
}
void PrintTo(const CrkFloatRect& r, std::ostream* out)
{
    *out << '(' << r.x << ", " << r.y << ", " << r.width << ", " << r.height << ')';
}

namespace {

using Math = CrkMathUtilities;
constexpr float kInf = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr double kPi = 3.14159265358979323846;

void ExpectNear(const CrkFloatPoint& a, const CrkFloatPoint& b, float tolerance)
{
    EXPECT_NEAR(a.x, b.x, tolerance);
    EXPECT_NEAR(a.y, b.y, tolerance);
}

TEST(Records, AdjustAndIntersect)
{
    constexpr CrkFloatMargin margin{10, 5, 20, 15};
    CrkFloatRect rect{0, 0, 100, 50};
    margin.DeflateRect(rect);
    EXPECT_EQ(rect, (CrkFloatRect{10, 5, 70, 30}));
    margin.InflateRect(rect);
    EXPECT_EQ(rect, (CrkFloatRect{0, 0, 100, 50}));
    CrkFloatMargin united{1, 5, 3, 0};
    EXPECT_EQ(&united.Union({2, 4, 3, -1}), &united);
    EXPECT_EQ(united, (CrkFloatMargin{2, 5, 3, 0}));

    const struct {
        CrkFloatRect a, b, result;
        bool meets;
    } rows[] = {
        {{0, 0, 10, 10}, {5, 5, 10, 10}, {5, 5, 5, 5}, true},
        {{0, 0, 10, 10}, {10, 0, 5, 5}, {10, 0, 0, 5}, false},     // touching is not meeting
        {{10, 10, -10, -10}, {5, 5, 10, 10}, {5, 5, 5, 5}, true},  // a negative size is its mirror image
        {{0, 0, 1, 1}, {5, 5, 1, 1}, {5, 5, -4, -4}, false},       // written also where nothing is shared
        {{0, 0, 10, 10}, {2, 2, 0, 5}, {2, 2, 0, 5}, false},
        {{-kInf, 0, kInf, 1}, {0, 0, 1, 1}, {0, 0, 0, 0}, false},
    };
    for (const auto& row : rows) {
        CrkFloatRect result{9, 9, 9, 9};
        EXPECT_EQ(CrkFloatRect::Intersect(result, row.a, row.b), row.meets);
        if (std::isfinite(row.a.x)) {
            EXPECT_EQ(result, row.result);
        }
    }
    const CrkFloatVector2D x(1, 0);
    const CrkFloatVector2D y(CrkFloatPoint{0, 1});
    EXPECT_EQ(x.Kross(y), 1);
    EXPECT_EQ(y.Kross(x), -1);
    EXPECT_EQ((2.0F * x + y * 3).Dot({4, 5}), 23);
    EXPECT_FALSE(x == CrkFloatVector2D(1, 1e-6F));
    EXPECT_TRUE(x == x && !(x == CrkFloatVector2D(kNan, 0)));
    EXPECT_TRUE(std::isinf((x / 0).x) && std::isnan((x / 0).y));
}

TEST(Numbers, RoundToIntegersAndSteps)
{
    const std::pair<double, int> integers[] = {{2.5, 3},
                                               {-2.5, -3},
                                               {2.4999, 2},
                                               {-0.4, 0},
                                               {0.5, 1},
                                               {-0.5, -1},
                                               {1e300, INT_MAX},
                                               {-1e300, INT_MIN},
                                               {2147483646.5, INT_MAX},
                                               {NAN, 0},
                                               {-2147483648.4, INT_MIN},
                                               {INFINITY, INT_MAX}};
    for (const auto& [value, rounded] : integers)
        EXPECT_EQ(Math::RoundToNearestInt(value), rounded) << value;
    const double steps[][3] = {{7.4, 5, 5},   {7.5, 5, 10}, {-7.5, 5, -10}, {12, -5, 10},
                               {100, 0, 100}, {47, 45, 45}, {67.5, 45, 90}};
    for (const auto& [value, step, result] : steps) {
        EXPECT_EQ(Math::RoundToNearest(value, step), result);
        EXPECT_EQ(Math::SnapAngle(value, step), result);
    }
    EXPECT_TRUE(Math::FloatsEqual(1.0F, 1.0F) && !Math::FloatsEqual(1.0F, std::nextafter(1.0F, 2.0F)));
    EXPECT_TRUE(Math::FloatsEqual(1.0, 1.0 + 0x1p-52) && !Math::FloatsEqual(1.0, 1.0 + 0x1p-51));
    EXPECT_FALSE(Math::FloatsEqual(kNan, kNan) || Math::FloatsEqual(1.0, 1.0, 0.0) || Math::FloatsEqual(kInf, kInf));
    EXPECT_EQ(Math::Length(3, 4), 5);
    EXPECT_EQ(Math::Length(1, 1), 1);
    EXPECT_EQ(Math::Length(INT_MIN, 0), INT_MAX);
    EXPECT_EQ(Math::Length(INT_MIN, INT_MIN), INT_MAX);
    EXPECT_EQ(Math::Length(60000, 80000), 100000);
    EXPECT_EQ(Math::Length(CrkFloatPoint{0, 0}, CrkFloatPoint{3, 4}), 5);
    EXPECT_EQ(Math::Length(CrkFloatPoint{3e30F, 4e30F}), 5e30F);  // squared in double precision
    const CrkFloatSize old{100, 100};
    EXPECT_TRUE(!Math::WidthChangedMore(old, {120, 130}) && Math::WidthChangedMore(old, {130, 120}));
    EXPECT_TRUE(!Math::WidthChangedMore(old, {80, 90}) && Math::WidthChangedMore(old, {90, 80}));
    EXPECT_TRUE(!Math::WidthChangedMore(old, old) && Math::WidthChangedMore(old, {110, 90}));
}

TEST(Numbers, DrawFromTheProcessesGenerator)
{
    srandom(1);
    const auto first = random();
    srandom(1);
    EXPECT_EQ(Math::RandomInRange(0, 1000), 1000 * first / 2147483647);
    for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(Math::RandomInRange(5, 5), 5);
        const int wide = Math::RandomInRange(INT_MIN, INT_MAX);
        const int backwards = Math::RandomInRange(10, 0);
        EXPECT_TRUE(backwards >= 0 && backwards <= 10 && wide != INT_MAX);
    }
}

TEST(Numbers, SolveQuadraticEquations)
{
    float first = 0;
    float second = 0;
    Math::SolveQuadraticEquation(1, -3, 2, &first, &second);
    EXPECT_EQ(std::pair(first, second), std::pair(2.0F, 1.0F));
    Math::SolveQuadraticEquation(1, 1e4F, 1, &first, &second);
    EXPECT_FLOAT_EQ(first, -1e-4F);  // no cancellation
    Math::SolveQuadraticEquation(0, 2, -4, &first, &second);
    EXPECT_EQ(first, 2);
    Math::SolveQuadraticEquation(1, 0, 1, &first, &second);
    EXPECT_TRUE(std::isnan(first) && std::isnan(second));
    Math::SolveQuadraticEquation(1, -3, 2, nullptr, &second);
    EXPECT_TRUE(std::isnan(second));
}

TEST(Angles, RunClockwiseFromStraightUp)
{
    const double rows[][3] = {{1, 0, kPi / 2},      {0, 1, kPi},      {1, -1, kPi / 4},     {-1, -1, 7 * kPi / 4},
                              {-1, 1, 5 * kPi / 4}, {0, -1, 2 * kPi}, {-1, 0, 7 * kPi / 2}, {-1, -0.0, 3 * kPi / 2},
                              {0, 0, 5 * kPi / 2}};
    for (const auto& [x, y, angle] : rows)
        EXPECT_NEAR(Math::CalculateAngle(static_cast<float>(x), static_cast<float>(y)), angle, 1e-6) << x << ' ' << y;
    EXPECT_NEAR(Math::CalculateAngle({10, 0}, {0, 10}, CrkFloatPoint{}), kPi / 2, 1e-5);
    EXPECT_NEAR(Math::NormalizeAngle(7, 0, 2 * kPi), 7 - 2 * kPi, 1e-12);
    EXPECT_EQ(Math::NormalizeAngle(-1, 0, 360), 359);
    EXPECT_EQ(Math::NormalizeAngle(360, 0, 360), 0);
    EXPECT_TRUE(std::isnan(Math::NormalizeAngle(1, 2, 2)));
    EXPECT_NEAR(Math::DegreesToRadians(Math::RadiansToDegrees(1.25)), 1.25, 1e-15);

    std::mt19937 random(2);
    std::uniform_real_distribution<float> any(-500, 500);
    for (int i = 0; i < 2000; ++i) {
        const CrkFloatPoint centre{any(random), any(random)};
        const CrkFloatPoint point{any(random), any(random)};
        const float degrees = any(random);
        CrkFloatPoint single = point;
        CrkFloatPoint exact = point;
        CrkFloatPoint many[2] = {point, point};
        Math::RotatePoint(&single, degrees, centre);
        Math::RotatePointAt(&exact, degrees, centre);
        Math::RotatePointsAt(many, 2, degrees, centre);
        const std::complex<double> turned =
            std::complex<double>(point.x - centre.x, point.y - centre.y) * std::polar(1.0, degrees * kPi / 180);
        const CrkFloatPoint expected{static_cast<float>(turned.real() + centre.x),
                                     static_cast<float>(turned.imag() + centre.y)};
        ExpectNear(single, expected, 1e-3F);
        ExpectNear(exact, expected, 5e-4F);
        EXPECT_EQ(many[1], exact);
    }
    CrkFloatPoint kept{1, 2};
    Math::RotatePointsAt(&kept, 0, 90, {});
    Math::RotatePointsAt(nullptr, 5, 90, {});
    EXPECT_EQ(kept, (CrkFloatPoint{1, 2}));
}

TEST(Edges, OfRectanglesAndEllipses)
{
    const CrkFloatRect box{0, 0, 100, 50};
    const struct {
        CrkFloatPoint direction;
        float offset;
        CrkFloatPoint rectangle, ellipse;
    } rows[] = {
        {{1, 0}, 0, {100, 25}, {100, 25}},
        {{1, 0}, 10, {110, 25}, {110, 25}},
        {{0, -1}, 0, {50, 0}, {50, 0}},
        {{0, 1}, 0, {50, 50}, {50, 50}},
        {{0, 0}, 0, {50, 50}, {50, 25}},
        {{-3, 0}, 0, {0, 25}, {0, 25}},
        {{1, 1}, 0, {75, 50}, {72.360680F, 47.360680F}},
        {{2, 1}, 0, {100, 50}, {85.355339F, 42.677670F}},
        {{1, 0}, -30, {50, 25}, {50, 25}},  // nothing is left
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.direction));
        ExpectNear(Math::GetRectangleEdgePoint(box, row.direction, row.offset), row.rectangle, 1e-4F);
        ExpectNear(Math::GetEllipseEdgePoint(box, row.direction, row.offset), row.ellipse, 1e-4F);
        ExpectNear(Math::GetEllipseEdgePoint({100, 50, -100, -50}, row.direction, row.offset), row.ellipse, 1e-4F);
    }
    EXPECT_EQ(Math::GetRectangleEdgePoint(box, {1, 0}, CrkFloatPoint{20, 40}, 0), (CrkFloatPoint{100, 25}));
    ExpectNear(Math::GetEllipseEdgePoint(box, {0, 1}, CrkFloatPoint{80, 25}, 0), {80, 45},
               1e-4F);  // the ray's own edge
    ExpectNear(Math::GetEllipseEdgePoint(box, {0, -1}, CrkFloatPoint{80, 30}, 0), {80, 5}, 1e-4F);
    EXPECT_EQ(Math::GetEllipseEdgePoint(box, {1, 0}, CrkFloatPoint{200, 25}, 0), (CrkFloatPoint{200, 25}));
    EXPECT_EQ(Math::GetEllipseEdgePoint(box, {kNan, 0}, 0), (CrkFloatPoint{50, 25}));
}

TEST(Edges, LieOnTheOutlineInTheRaysDirection)
{
    std::mt19937 random(4);
    std::uniform_real_distribution<float> part(-0.9F, 0.9F);
    for (int i = 0; i < 20000; ++i) {
        const CrkFloatRect rect{part(random) * 1000, part(random) * 1000, 150 + part(random) * 100,
                                150 + part(random) * 100};
        const CrkFloatPoint centre{rect.x + rect.width / 2, rect.y + rect.height / 2};
        const CrkFloatPoint direction{part(random), part(random)};
        const CrkFloatPoint inside{centre.x + part(random) * rect.width / 2, centre.y + part(random) * rect.height / 2};
        const CrkFloatPoint edge = Math::GetRectangleEdgePoint(rect, direction, inside, 0);
        const float toSide = std::min({std::fabs(edge.x - rect.x), std::fabs(edge.x - rect.x - rect.width),
                                       std::fabs(edge.y - rect.y), std::fabs(edge.y - rect.y - rect.height)});
        EXPECT_LT(toSide, 1e-2F);
        EXPECT_TRUE(Math::IsPointInRect(edge, {rect.x - 0.1F, rect.y - 0.1F, rect.width + 0.2F, rect.height + 0.2F}));
        EXPECT_GE((edge.x - inside.x) * direction.x + (edge.y - inside.y) * direction.y, -1e-3F);

        const CrkFloatPoint onEllipse = Math::GetEllipseEdgePoint(rect, direction, 0);
        const auto level = [&](CrkFloatPoint p) {
            return std::hypot(2 * (p.x - centre.x) / rect.width, 2 * (p.y - centre.y) / rect.height);
        };
        EXPECT_NEAR(level(onEllipse), 1, 2e-3) << testing::PrintToString(direction);
    }
}

TEST(Lines, KnowTheirPointsAndSides)
{
    const CrkFloatPoint origin{0, 0};
    const CrkFloatPoint right{10, 0};
    EXPECT_EQ(Math::ClampPoint({-5, 200}, {0, 0, 100, 50}), (CrkFloatPoint{0, 50}));
    EXPECT_TRUE(Math::IsPointInRect({0, 50}, {0, 0, 100, 50}) && !Math::IsPointInRect({-1, 0}, {0, 0, -5, 1}));
    EXPECT_EQ(Math::CalculateDistanceToLine({5, 5}, origin, right), 5);
    EXPECT_FLOAT_EQ(Math::CalculateDistanceToLine({5, 5}, origin, origin), 7.071068F);
    EXPECT_TRUE(!Math::IsPointOnLine({12, 0}, origin, right, 1) && Math::IsPointOnLine({12, 0}, origin, right, 2));
    EXPECT_TRUE(Math::IsPointOnLine({1, 0}, origin, origin, 1) && !Math::IsPointOnLine(origin, origin, right, -1));
    const CrkFloatPoint corner[] = {{0, 0}, {10, 0}, {10, 10}};
    EXPECT_TRUE(Math::IsPointOnPolyline({10, 5}, corner, 3, 0.5F) && !Math::IsPointOnPolyline({0, 0}, corner, 1, 9));
    EXPECT_EQ(Math::GetPolylineMidpoint(corner, 3), (CrkFloatPoint{10, 0}));
    EXPECT_EQ(Math::GetPolylineMidpoint(corner, 2), (CrkFloatPoint{5, 0}));
    EXPECT_EQ(Math::GetPolylineMidpoint(corner + 2, 1), origin);
    EXPECT_EQ(Math::IsPointAboveLine({5, -1}, origin, right), 1);
    EXPECT_EQ(Math::IsPointAboveLine({5, -1}, right, origin), 1);
    EXPECT_GT(Math::IsPointRightOfLine({5, -1}, origin, {10, 1}), 0);
    EXPECT_GT(Math::IsPointBelowLine({5, -1}, {10, 1}, origin), 0);
    EXPECT_EQ(Math::IsPointLeftOfLine({3, 5}, origin, {0, 10}), -3);
    EXPECT_EQ(Math::IsPointAboveLine(origin, origin, {10, 1}), 0);
}

TEST(Lines, CrossLinesAndRectangles)
{
    const struct {
        CrkFloatPoint a, b, c, d;
        bool cross;
    } rows[] = {
        {{0, 0}, {0, 1}, {0, 5}, {0, 6}, true},   {{0, 0}, {0, 1}, {1, 0}, {1, 1}, false},
        {{0, 0}, {1, 1}, {2, 2}, {3, 3}, false},  {{0, 0}, {10, 10}, {0, 10}, {10, 0}, true},
        {{0, 0}, {5, 5}, {5, 5}, {9, 0}, true},   {{0, 0}, {4, 4}, {5, 5}, {9, 0}, false},
        {{5, -5}, {5, 5}, {0, 0}, {10, 0}, true}, {{0, 0}, {kNan, 1}, {0, 1}, {1, 0}, false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Math::IsLineCrossingLine(row.a, row.b, row.c, row.d), row.cross);
        EXPECT_EQ(Math::IsLineCrossingLine(row.c, row.d, row.a, row.b), row.cross);
    }
    const CrkFloatRect rect{0, 0, 10, 10};
    const CrkFloatPoint through[] = {{-20, -20}, {-5, 5}, {15, 5}};
    EXPECT_TRUE(Math::IsLineCrossingRect({2, 2}, {3, 3}, rect) && Math::IsLineCrossingRect({-5, 5}, {15, 5}, rect));
    EXPECT_FALSE(Math::IsLineCrossingRect({-5, 20}, {15, 20}, rect));
    EXPECT_TRUE(Math::IsPolylineCrossingRect(through, 3, rect) && !Math::IsPolylineCrossingRect(through, 2, rect));
    EXPECT_FALSE(Math::IsRightAngleLineCrossingRect({-5, 5}, {0, 5}, rect));  // only touches
    EXPECT_TRUE(Math::IsRightAngleLineCrossingRect({-5, 0}, {1, 0}, rect));
    EXPECT_TRUE(Math::IsRightAngleLineCrossingRect({5, 20}, {5, 9}, rect));
    EXPECT_FALSE(Math::IsRightAngleLineCrossingRect({-5, -5}, {15, 15}, rect));
}

TEST(Bounds, EncloseEveryPointForEveryCount)
{
    std::mt19937 random(6);
    for (int count = 0; count < 40; ++count) {
        std::vector<CrkFloatPoint> points;
        for (int i = 0; i < count; ++i)
            points.push_back({static_cast<float>(random() % 100) - 50,
                              random() % 9 == 0 && i > 0 ? kNan : static_cast<float>(random() % 100)});
        CrkFloatPoint low = count > 0 ? points[0] : CrkFloatPoint{};
        CrkFloatPoint high = low;
        for (const CrkFloatPoint& p : points) {
            low = {p.x < low.x ? p.x : low.x, p.y < low.y ? p.y : low.y};
            high = {p.x > high.x ? p.x : high.x, p.y > high.y ? p.y : high.y};
        }
        EXPECT_EQ(Math::CalculatePointsBoundingRectangle(points.data(), count),
                  (CrkFloatRect{low.x, low.y, high.x - low.x, high.y - low.y}));
    }
    const CrkFloatPoint one{3, 4};
    EXPECT_EQ(Math::CalculatePointsBoundingRectangle(&one, 1), (CrkFloatRect{3, 4, 0, 0}));
    EXPECT_EQ(Math::CalculatePointsBoundingRectangle(nullptr, INT_MAX), CrkFloatRect{});
    const CrkFloatRect mirrored{5, 5, -5, 3};
    EXPECT_EQ(Math::CalculateTransformedRectBoundingRectangle(mirrored, {}), mirrored);
    const CGAffineTransform quarterTurn{0, 1, -1, 0, 0, 0};
    EXPECT_EQ(Math::CalculateTransformedRectBoundingRectangle({0, 0, 10, 20}, quarterTurn),
              (CrkFloatRect{-20, 0, 20, 10}));
}

}  // namespace
