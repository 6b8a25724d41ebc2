#include "RkUtilities/geometry/CrkMathUtilities.h"

using rk::FloatLanes;
using rk::Larger;
using rk::LoadLanes;
using rk::Smaller;

CrkFloatRect CrkMathUtilities::CalculatePointsBoundingRectangle(const CrkFloatPoint* points, int count) noexcept
{
    static_assert(2 * sizeof(CrkFloatPoint) == sizeof(FloatLanes));
    if (!points || count <= 0)
        return {};

    // Two points a load, and four of each so that none waits for the one before. Every lane starts with the first
    // point: that is what a first coordinate that is not a number asks for, as nothing ever replaces it.
    const FloatLanes first{points->x, points->y, points->x, points->y};
    FloatLanes low0 = first, low1 = first, low2 = first, low3 = first;
    FloatLanes high0 = first, high1 = first, high2 = first, high3 = first;
    const CrkFloatPoint* const end = points + count;
    for (; end - points >= 8; points += 8) {
        const FloatLanes v0 = LoadLanes(points), v1 = LoadLanes(points + 2);
        const FloatLanes v2 = LoadLanes(points + 4), v3 = LoadLanes(points + 6);
        low0 = Smaller(low0, v0), high0 = Larger(high0, v0);
        low1 = Smaller(low1, v1), high1 = Larger(high1, v1);
        low2 = Smaller(low2, v2), high2 = Larger(high2, v2);
        low3 = Smaller(low3, v3), high3 = Larger(high3, v3);
    }
    for (; points != end; ++points) {
        const FloatLanes v{points->x, points->y, points->x, points->y};
        low0 = Smaller(low0, v), high0 = Larger(high0, v);
    }
    const FloatLanes low = Smaller(Smaller(low0, low1), Smaller(low2, low3));
    const FloatLanes high = Larger(Larger(high0, high1), Larger(high2, high3));
    const FloatLanes corner = Smaller(low, __builtin_shufflevector(low, low, 2, 3, 2, 3));
    const FloatLanes size = Larger(high, __builtin_shufflevector(high, high, 2, 3, 2, 3)) - corner;
    return {corner[0], corner[1], size[0], size[1]};
}

namespace {

/// x and y in double precision, and in single.
using DoubleLanes [[gnu::vector_size(16)]] = double;
using FloatPair [[gnu::vector_size(8)]] = float;

DoubleLanes Widened(FloatLanes lanes)
{
    return __builtin_convertvector(__builtin_shufflevector(lanes, lanes, 0, 1), DoubleLanes);
}

FloatPair Narrowed(DoubleLanes point)
{
    return __builtin_convertvector(point, FloatPair);
}

/// The bounding rectangle by its definition: four corners, one after the other.
[[gnu::noinline]] CrkFloatRect BoundsOfMappedCorners(const CrkFloatRect& rectangle, const CGAffineTransform& t)
{
    const auto mapped = [&](double x, double y) {
        const FloatPair point =
            Narrowed(DoubleLanes{t.a, t.b} * x + DoubleLanes{t.c, t.d} * y + DoubleLanes{t.tx, t.ty});
        return CrkFloatPoint{point[0], point[1]};
    };
    const double left = rectangle.MinX(), right = rectangle.MaxX(), top = rectangle.MinY(), bottom = rectangle.MaxY();
    const CrkFloatPoint corners[] = {mapped(left, top), mapped(right, top), mapped(right, bottom),
                                     mapped(left, bottom)};
    return CrkMathUtilities::CalculatePointsBoundingRectangle(corners, 4);
}

}  // namespace

CrkFloatRect CrkMathUtilities::CalculateTransformedRectBoundingRectangle(const CrkFloatRect& rectangle,
                                                                         const CGAffineTransform& transform) noexcept
{
    if (CGAffineTransformIsIdentity(transform))
        return rectangle;
    const FloatLanes origin = LoadLanes(&rectangle), opposite = origin + rk::UpperLanes(origin);
    const DoubleLanes near = Widened(Smaller(opposite, origin)), far = Widened(Larger(opposite, origin));

    // Each step rounds, and rounding keeps the order: the sum of the smaller products, rounded step by step, is the
    // smallest of the corners to the last bit. That is no longer so once infinities meet, which leaves no finite size.
    const DoubleLanes forX{transform.a, transform.b}, forY{transform.c, transform.d}, shift{transform.tx, transform.ty};
    const DoubleLanes x0 = forX * near[0], x1 = forX * far[0], y0 = forY * near[1], y1 = forY * far[1];
    const FloatPair low = Narrowed((x1 < x0 ? x1 : x0) + (y1 < y0 ? y1 : y0) + shift);
    const FloatPair high = Narrowed((x1 > x0 ? x1 : x0) + (y1 > y0 ? y1 : y0) + shift);
    const FloatLanes corners = __builtin_shufflevector(low, high, 0, 1, 2, 3);
    const FloatLanes size = rk::UpperLanes(corners) - corners;
    if (!rk::HoldsInLanes0And1(size - size == 0)) [[unlikely]]
        return BoundsOfMappedCorners(rectangle, transform);
    return {low[0], low[1], size[0], size[1]};
}
