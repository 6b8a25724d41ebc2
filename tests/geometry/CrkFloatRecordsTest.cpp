#include "benchmarks/PlainGeometry.h"
#include "tests/support/Test.h"

namespace {

constexpr float kInfinity = INFINITY, kNan = NAN;

TEST(Rectangles, GrowByMarginsAndOffsets) {
    constexpr CrkFloatMargin margin{10, 5, 20, 15};
    CrkFloatRect rectangle{0, 0, 100, 50}, small{0, 0, 10, 10};
    margin.DeflateRect(rectangle);
    EXPECT_EQ(rectangle, (CrkFloatRect{10, 5, 70, 30}));
    margin.InflateRect(rectangle);
    EXPECT_EQ(rectangle, (CrkFloatRect{0, 0, 100, 50}));
    margin.DeflateRect(small);
    EXPECT_EQ(small, (CrkFloatRect{10, 5, -20, -10}));  // not clamped
    EXPECT_EQ((CrkFloatMargin{1, 3, 5, 0}.Union({2, 4, 3, -1})), (CrkFloatMargin{2, 4, 5, 0}));
    EXPECT_EQ(small.Moved(1, -1), (CrkFloatRect{11, 4, -20, -10}));
    EXPECT_EQ(small.Inflated(2, 1), (CrkFloatRect{-12, -6, 24, 12}));
    EXPECT_EQ(small.Inflated(-10, -5), (CrkFloatRect{0, 0, 0, 0}));
    EXPECT_EQ(small.Inflated(-10.5f, 0), CrkFloatRect::Null());
    EXPECT_EQ(CrkFloatRect::Null().Inflated(1, 1).Moved(-kInfinity, 0), CrkFloatRect::Null());
}

TEST(Records, AddContainUniteAndWriteThemselves) {
    constexpr CrkFloatPoint p{1, 2}, q{3, 5};
    static_assert(p + q == CrkFloatPoint{4, 7} && q - p == CrkFloatPoint{2, 3});
    const CrkFloatVector2D v(1, 1);
    static_assert(std::same_as<decltype(p + v), CrkFloatPoint> && std::same_as<decltype(v + p), CrkFloatVector2D>);
    EXPECT_EQ(p - v, (CrkFloatPoint{0, 1}));
    constexpr CrkFloatRect r{10, 10, -10, -10}, s{8, 8, 4, 1}, null = CrkFloatRect::Null();
    constexpr std::tuple<CrkFloatRect, CrkFloatPoint, bool> kPoints[] = {
        {r, {0, 10}, true},  {r, {5, 5}, true},     {r, {10.5f, 5}, false},
        {r, {5, -1}, false}, {r, {kNan, 5}, false}, {null, {kInfinity, kInfinity}, false}};
    for (const auto& [rectangle, point, isInside] : kPoints)
        EXPECT_EQ(rectangle.Contains(point), isInside) << rectangle << point;
    for (const auto& [a, b] : {std::pair(r, s), {s, r}, {r, null}, {null, null}})
        EXPECT_FALSE(a.Contains(b)) << a << b;
    EXPECT_TRUE(r.Contains({0, 0, 10, 10}));
    EXPECT_EQ(CrkFloatRect::Union(r, s), (CrkFloatRect{0, 0, 12, 10}));
    EXPECT_EQ(CrkFloatRect::Union(r, null), r);
    std::ostringstream text;
    text << p << ' ' << CrkFloatSize{2.5f, 3} << ' ' << s << ' ' << v;
    EXPECT_EQ(text.str(), "(1, 2) 2.5 x 3 (8, 8, 4 x 1) (1, 1)");
    const CAtlArray<CrkFloatPoint> points{p, q, {0, 4}};
    std::vector<CrkFloatPoint> turned(points.begin(), points.end());
    CrkMathUtilities::RotatePointsAt(turned, 180, {0, 0});
    EXPECT_NEAR(turned[1].x, -3, 1e-6);
    EXPECT_EQ(CrkMathUtilities::CalculatePointsBoundingRectangle(points), (CrkFloatRect{0, 2, 3, 3}));
    EXPECT_EQ(CrkMathUtilities::CalculatePointsBoundingRectangle(&p, INT_MIN), CrkFloatRect{});
    EXPECT_EQ(CrkMathUtilities::CalculatePointsBoundingRectangle(nullptr, INT_MAX), CrkFloatRect{});
    EXPECT_EQ(CrkMathUtilities::CalculateTransformedRectBoundingRectangle(r, {}), r);
    EXPECT_EQ(CrkMathUtilities::GetPolylineMidpoint(std::array{p, p + v * 2}), p + v);
    EXPECT_TRUE(CrkMathUtilities::IsPointOnPolyline(q, points, 0.1f));
    EXPECT_TRUE(CrkMathUtilities::IsPolylineCrossingRect(points, r));
}

TEST(Vectors, CalculateAndCompareByDistance) {
    const CrkFloatVector2D x(1, 0), y(CrkFloatPoint{0, 1});
    EXPECT_EQ(x.Kross(y), 1);
    EXPECT_EQ((x * 3 - y * 4).Length(), 5);
    EXPECT_EQ((2.0f * x + y * 3).Dot({4, 5}), 23);
    CrkFloatVector2D v(CrkFloatSize{1, 2});
    ((v += x) *= 4) -= y;
    EXPECT_EQ(CrkFloatPoint(v /= 2), (CrkFloatPoint{4, 3.5f}));
    EXPECT_EQ(x, CrkFloatVector2D(1, 1e-13f));
    EXPECT_EQ(x, CrkFloatPoint(x));
    EXPECT_EQ(x, CrkFloatSize(x));
    EXPECT_NE(x, CrkFloatVector2D(1, 1e-6f));
}

/// Equal, or both not a number, in every field.
bool SameRect(const CrkFloatRect& a, const CrkFloatRect& b) {
    const auto same = [](float f, float g) { return f == g || (std::isnan(f) && std::isnan(g)); };
    return same(a.x, b.x) && same(a.y, b.y) && same(a.width, b.width) && same(a.height, b.height);
}

/// Whether the library agrees on four points, as two lines or two rectangles too, and a transform.
bool AgreesOn(const std::array<CrkFloatPoint, 4>& p, const CGAffineTransform& transform) {
    const CrkFloatRect a{p[0].x, p[0].y, p[1].x, p[1].y}, b{p[2].x, p[2].y, p[3].x, p[3].y};
    const bool hasNan = std::isnan(a.MaxX()) || std::isnan(a.MaxY()) || std::isnan(b.MaxX()) || std::isnan(b.MaxY());
    CrkFloatRect expected, result = a;
    const bool meet = plain::Intersect(expected, a, b);
    return CrkFloatRect::Intersect(result, result, b) == (meet && !hasNan) && (hasNan || SameRect(result, expected)) &&
           CrkMathUtilities::IsLineCrossingLine(p[0], p[1], p[2], p[3]) ==
               plain::IsLineCrossingLine(p[0], p[1], p[2], p[3]) &&
           CrkMathUtilities::IsLineCrossingRect(p[0], p[1], b) == plain::IsLineCrossingRect(p[0], p[1], b) &&
           SameRect(CrkMathUtilities::CalculatePointsBoundingRectangle(p.data(), 4), plain::BoundsOf(p.data(), 4)) &&
           (CGAffineTransformIsIdentity(transform) ||
            SameRect(CrkMathUtilities::CalculateTransformedRectBoundingRectangle(a, transform),
                     plain::TransformedBounds(a, transform)));
}

TEST(Pairs, AgreeWithThePlainStepsOnEdgesAndExtremes) {
    const float extremes[] = {-0.0f, kInfinity, -kInfinity, kNan, 3.4e38f, -3.4e38f, 1e-45f, 1e19f, -1e-23f};
    std::mt19937 random(1);
    std::uniform_real_distribution<float> any(-100, 100);
    for (int i = 0; i < 600'000; ++i) {
        // A third few whole numbers and extremes, so that shapes touch and lines are vertical; a third only some.
        const auto next = [&] {
            const auto kind = i % 3 == 0 ? 2 : random() % (i % 3 == 1 ? 6 : 60);
            return kind == 0  ? extremes[random() % std::size(extremes)]
                   : kind > 2 ? static_cast<float>(random() % 7) - 3
                              : any(random);
        };
        const std::array<CrkFloatPoint, 4> p = {
            {{next(), next()}, {next(), next()}, {next(), next()}, {next(), next()}}};
        const CGAffineTransform transform{next(), next(), next(), next(), next(), next()};
        ASSERT_TRUE(AgreesOn(p, transform)) << testing::PrintToString(p) << testing::PrintToString(transform);
    }
    std::array<CrkFloatPoint, 40> points;
    for (CrkFloatPoint& p : points)
        p = {random() % 9 == 0 ? kNan : any(random), any(random)};
    for (int first = 0; first < 9; ++first) {
        for (int count = 1; first + count <= 40; ++count)
            ASSERT_PRED2(SameRect, CrkMathUtilities::CalculatePointsBoundingRectangle(points.data() + first, count),
                         plain::BoundsOf(points.data() + first, count));
    }
}

}  // namespace
