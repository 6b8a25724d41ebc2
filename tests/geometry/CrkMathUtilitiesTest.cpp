#include "tests/support/Test.h"

#include <complex>

namespace {

using testing::ElementsAre, testing::NanSensitiveFloatEq;
using Math = CrkMathUtilities;
constexpr float kInfinity = INFINITY, kNan = NAN;
constexpr double kPi = 3.14159265358979323846;

CrkFloatPoint Narrowed(double x, double y) { return {static_cast<float>(x), static_cast<float>(y)}; }

bool AreNear(CrkFloatPoint a, CrkFloatPoint b, double distance) {
    return std::fabs(a.x - b.x) <= distance && std::fabs(a.y - b.y) <= distance;
}

TEST(Numbers, RoundHalvesAwayFromZeroAndNeverLeaveInt) {
    const double integers[][2] = {{2.5, 3}, {-2.5, -3}, {2.4999, 2}, {-2147483648.4, INT_MIN}, {2147483647.4, INT_MAX},
                                  {NAN, 0}};
    for (const auto& [value, rounded] : integers)
        EXPECT_EQ(Math::RoundToNearestInt(value), rounded) << value;
    const double steps[][3] = {{7.4, 5, 5}, {-7.5, 5, -10}, {12, -5, 10}, {100, 0, 100}, {67.5, 45, 90}};
    for (const auto& [value, step, result] : steps)
        EXPECT_EQ(Math::SnapAngle(value, step), result) << value;
}

TEST(Numbers, CompareStrictlyBelowTheTolerance) {
    EXPECT_TRUE(Math::FloatsEqual(1.0f, 1.0f));
    EXPECT_FALSE(Math::FloatsEqual(1.0f, std::nextafter(1.0f, 2.0f)));
    EXPECT_TRUE(Math::FloatsEqual(1.0, 1.0 + 0x1p-52));
    EXPECT_FALSE(Math::FloatsEqual(1.0, 1.0 + 0x1p-51));
    EXPECT_FALSE(Math::FloatsEqual(1.0f, 3.0f, 2.0f));
    const std::pair<CrkFloatSize, bool> rows[] = {{{120, 130}, false}, {{130, 120}, true}, {{100, 100}, false},
                                                  {{90, 100}, false},  {{100, 90}, true},  {{110, 110}, true}};
    for (const auto& [size, more] : rows)
        EXPECT_EQ(Math::WidthChangedMore({100, 100}, size), more) << size.width << ' ' << size.height;
}

TEST(Numbers, MeasureAndDrawOverAllOfInt) {
    std::mt19937 random(1);
    const int extremes[] = {0, 1, 3, 4, 46341, -46341, INT_MAX, INT_MIN, INT_MIN + 1, 1'800'000'000, 60'000};
    for (int i = 0; i < 100'000; ++i) {
        const int x = i < 121 ? extremes[i / 11] : static_cast<int>(random());
        const int y = i < 121 ? extremes[i % 11] : static_cast<int>(random()) >> random() % 32;
        const long double exact = std::sqrt(static_cast<long double>(x) * x + static_cast<long double>(y) * y);
        ASSERT_EQ(Math::Length(x, y), static_cast<int>(std::min<long double>(exact, INT_MAX))) << x << ' ' << y;

        srandom(static_cast<unsigned>(i));
        const long double range = static_cast<long double>(y) - x, next = static_cast<long double>(::random());
        srandom(static_cast<unsigned>(i));
        ASSERT_EQ(Math::RandomInRange(x, y), static_cast<int>(x + std::trunc(range * next / 2147483647)));
    }
    EXPECT_EQ(Math::Length(CrkFloatPoint{3e30f, 4e30f}), 5e30f);  // squared in double precision
}

TEST(Numbers, SolveQuadraticEquationsWithoutCancellation) {
    const float rows[][5] = {{1, -3, 2, 2, 1},          {1, 1e4f, 1, -1e-4f, -1e4f}, {1, -1e4f, 1, 1e4f, 1e-4f},
                             {0, 2, -4, 2, -kInfinity}, {0, -2, 4, kInfinity, 2},    {1, 0, 1, kNan, kNan}};
    for (const auto& [a, b, c, first, second] : rows) {
        float roots[2] = {9, 9};
        Math::SolveQuadraticEquation(a, b, c, &roots[0], nullptr);
        EXPECT_EQ(roots[0], 9);
        Math::SolveQuadraticEquation(a, b, c, &roots[0], &roots[1]);
        EXPECT_THAT(roots, ElementsAre(NanSensitiveFloatEq(first), NanSensitiveFloatEq(second)));
    }
}

TEST(Angles, RunClockwiseFromStraightUp) {
    const float rows[][3] = {{1, 0, 2},  {0, 1, 4},   {1, -1, 1},     {-1, -1, 7},
                             {0, -1, 8}, {-1, 0, 14}, {-1, -0.0f, 6}, {0, 0, 10}};
    for (const auto& [x, y, eighths] : rows)
        EXPECT_NEAR(Math::CalculateAngle(x, y), eighths * kPi / 4, 1e-6) << x << ' ' << y;
    EXPECT_EQ(Math::NormalizeAngle(-200, -180, 180), 160);
    EXPECT_EQ(Math::NormalizeAngle(360, 0, 360), 0);
    EXPECT_EQ(Math::RadiansToDegrees(kPi), 180);
    EXPECT_EQ(Math::DegreesToRadians(180), kPi);
}

TEST(Angles, AgreeWithRotationsOfComplexNumbers) {
    std::mt19937 random(2);
    std::uniform_real_distribution<float> any(-500, 500);
    for (int i = 0; i < 20'000; ++i) {
        const CrkFloatPoint centre{any(random), any(random)}, point{any(random), any(random)};
        const float degrees = any(random);
        CrkFloatPoint single = point, exact = point, many[3] = {point, point, point};
        Math::RotatePoint(&single, degrees, centre);
        Math::RotatePointAt(&exact, degrees, centre);
        Math::RotatePointsAt(many, 2, degrees, centre);
        const std::complex<double> from(double{point.x} - centre.x, double{point.y} - centre.y);
        const std::complex<double> to = from * std::polar(1.0, degrees * kPi / 180);
        const CrkFloatPoint expected = Narrowed(to.real() + centre.x, to.imag() + centre.y);
        ASSERT_PRED3(AreNear, single, expected, 1e-3);
        ASSERT_PRED3(AreNear, exact, expected, 1.3e-4);
        ASSERT_THAT(many, ElementsAre(exact, exact, point));
        const double turn = Math::CalculateAngle(point, expected, centre) - degrees * kPi / 180;
        ASSERT_NEAR(std::remainder(turn, 2 * kPi), 0, 1e-5 + 1e-3 / std::abs(from));
        const double angle = std::fmod(std::arg(from) + 2.5 * kPi, 2 * kPi);
        ASSERT_NEAR(Math::CalculateAngle(point.x - centre.x, point.y - centre.y), angle, 1e-6);
    }
}

TEST(Edges, OfRectanglesAndEllipses) {
    const CrkFloatRect box{0, 0, 100, 50};
    const struct {
        CrkFloatPoint direction;
        float offset;
        CrkFloatPoint onRectangle, onEllipse;
    } rows[] = {{{1, 0}, 10, {110, 25}, {110, 25}}, {{0, -1}, 0, {50, 0}, {50, 0}},
                {{0, 1}, 0, {50, 50}, {50, 50}},    {{0, 0}, 0, {50, 50}, {50, 25}},
                {{-3, 0}, 0, {0, 25}, {0, 25}},     {{1, 0}, -30, {50, 25}, {50, 25}}};  // nothing is left
    for (const auto& row : rows) {
        for (const CrkFloatRect& same : {box, {100, 50, -100, -50}, {0, 50, 100, -50}}) {
            EXPECT_PRED3(AreNear, Math::GetRectangleEdgePoint(same, row.direction, row.offset), row.onRectangle, 1e-4);
            EXPECT_PRED3(AreNear, Math::GetEllipseEdgePoint(same, row.direction, row.offset), row.onEllipse, 1e-4);
        }
    }
    EXPECT_EQ(Math::GetRectangleEdgePoint(box, {1, 0}, CrkFloatPoint{20, 40}, 0), (CrkFloatPoint{100, 25}));
    EXPECT_EQ(Math::GetRectangleEdgePoint(box, {-1, -1}, CrkFloatPoint{50, 0}, 0), (CrkFloatPoint{0, -50}));
    EXPECT_EQ(Math::GetEllipseEdgePoint(box, {-1, 0}, CrkFloatPoint{105, 25}, 0), (CrkFloatPoint{105, 25}));
    EXPECT_EQ(Math::GetEllipseEdgePoint(box, {1, 0.5f}, CrkFloatPoint{20, 15}, 0),
              (CrkFloatPoint{20, 15}));  // too short
}

TEST(Edges, AreWhereTheRayMeetsTheOutline) {
    std::mt19937 random(4);
    std::uniform_real_distribution<float> part(-1, 1);
    for (int i = 0; i < 50'000; ++i) {
        const CrkFloatRect r{part(random) * 500, part(random) * 500, 150 + part(random) * 100,
                             150 + part(random) * 100};
        const CrkFloatPoint ray{i % 9 == 0 ? 0 : part(random) * 1e5f, part(random) * 1e5f};
        const float offset = part(random) * 10;
        const double a = r.width / 2 + offset, b = r.height / 2 + offset, dx = ray.x, dy = ray.y;
        const double x = part(random) * a * 0.6, y = part(random) * b * 0.6;
        const CrkFloatPoint origin = Narrowed(r.x + r.width / 2 + x, r.y + r.height / 2 + y);

        const double toSide = std::min((std::copysign(a, dx) - x) / dx, (std::copysign(b, dy) - y) / dy);
        if (dx != 0) {
            ASSERT_PRED3(AreNear, Math::GetRectangleEdgePoint(r, ray, origin, offset),
                         Narrowed(origin.x + toSide * dx, origin.y + toSide * dy), 2e-3);
        }
        if (std::fabs(dy) > 30 * std::fabs(dx) && dx != 0)
            continue;  // single precision promises less there
        const double A = dx * dx / (a * a) + dy * dy / (b * b), B = x * dx / (a * a) + y * dy / (b * b);
        const double toEllipse = (std::sqrt(B * B - A * (x * x / (a * a) + y * y / (b * b) - 1)) - B) / A;
        ASSERT_PRED3(AreNear, Math::GetEllipseEdgePoint(r, ray, origin, offset),
                     Narrowed(origin.x + toEllipse * dx, origin.y + toEllipse * dy), dx == 0 ? 1e-3 : 5e-2);
    }
}

TEST(Lines, KnowTheirPointsAndSides) {
    const CrkFloatPoint origin{0, 0}, right{10, 0}, corner[] = {{0, 0}, {10, 0}, {10, 10}};
    EXPECT_EQ(Math::ClampPoint({-5, 200}, {0, 0, 100, 50}), (CrkFloatPoint{0, 50}));
    EXPECT_TRUE(Math::IsPointInRect({0, 50}, {0, 0, 100, 50}));
    EXPECT_FALSE(Math::IsPointInRect({-1, 0}, {0, 0, -5, 1}));
    EXPECT_EQ(Math::CalculateDistanceToLine({15, 5}, origin, right), 5);  // of the endless line
    EXPECT_FLOAT_EQ(Math::CalculateDistanceToLine({5, 5}, origin, origin), 7.071068f);
    EXPECT_FALSE(Math::IsPointOnLine({12, 0}, origin, right, 1));
    EXPECT_TRUE(Math::IsPointOnLine({12, 0}, origin, right, 2));
    EXPECT_FALSE(Math::IsPointOnLine({1, 1}, origin, origin, 1));
    EXPECT_FALSE(Math::IsPointOnLine({1e30f, 1e30f}, origin, {9e30f, 9e30f}, -1));
    EXPECT_TRUE(Math::IsPointOnPolyline({10, 5}, corner, 3, 0.5f));
    EXPECT_EQ(Math::GetPolylineMidpoint(corner, 3), (CrkFloatPoint{10, 0}));
    EXPECT_EQ(Math::GetPolylineMidpoint(corner, 2), (CrkFloatPoint{5, 0}));
    const CrkFloatPoint same[] = {right, right};
    EXPECT_EQ(Math::GetPolylineMidpoint(same, 2), origin);
    EXPECT_EQ(Math::IsPointAboveLine({5, -1}, origin, right), 1);
    EXPECT_GT(Math::IsPointRightOfLine({5, -1}, origin, {10, 1}), 0);
    EXPECT_GT(Math::IsPointBelowLine({5, -1}, {10, 1}, origin), 0);
    EXPECT_EQ(Math::IsPointLeftOfLine({3, 5}, origin, {0, 10}), -3);
    EXPECT_EQ(Math::IsPointAboveLine({1e-8f, 0}, origin, {10, 1}), 0);
}

TEST(Lines, CrossRectangles) {
    const CrkFloatRect box{0, 0, 10, 10};
    const CrkFloatPoint upright[][2] = {{{-5, 0}, {1, 0}},  {{-5, 10}, {1, 10}}, {{5, 20}, {5, 9}},
                                        {{0, 1}, {0, 2}},   {{10, 1}, {10, 2}},  {{-5, 5}, {0, 5}},
                                        {{5, 10}, {5, 12}}, {{-5, -5}, {9, 9}}};
    for (std::size_t i = 0; i < std::size(upright); ++i)
        EXPECT_EQ(Math::IsRightAngleLineCrossingRect(upright[i][0], upright[i][1], box), i < 5) << i;
}

}  // namespace
