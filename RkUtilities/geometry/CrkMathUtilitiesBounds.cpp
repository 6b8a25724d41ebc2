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

/// x and y in double precision.
using DoubleLanes [[gnu::vector_size(16)]] = double;

CrkFloatPoint Narrowed(DoubleLanes point)
{
    return {static_cast<float>(point[0]), static_cast<float>(point[1])};
}

/// The bounding rectangle by its definition: four corners, one after the other.
CrkFloatRect BoundsOfMappedCorners(const double (&xs)[2], const double (&ys)[2], const CGAffineTransform& t)
{
    const auto mapped = [&](double x, double y) {
        return Narrowed(DoubleLanes{t.a, t.b} * x + DoubleLanes{t.c, t.d} * y + DoubleLanes{t.tx, t.ty});
    };
    const CrkFloatPoint corners[] = {mapped(xs[0], ys[0]), mapped(xs[1], ys[0]), mapped(xs[1], ys[1]),
                                     mapped(xs[0], ys[1])};
    return CrkMathUtilities::CalculatePointsBoundingRectangle(corners, 4);
}

}  // namespace

CrkFloatRect CrkMathUtilities::CalculateTransformedRectBoundingRectangle(const CrkFloatRect& rectangle,
                                                                         const CGAffineTransform& transform) noexcept
{
    if (CGAffineTransformIsIdentity(transform))
        return rectangle;
    const double xs[] = {rectangle.MinX(), rectangle.MaxX()}, ys[] = {rectangle.MinY(), rectangle.MaxY()};

    // Each step rounds, and rounding keeps the order: the sum of the smaller products, rounded step by step, is the
    // smallest of the corners to the last bit. That is no longer so once infinities meet, which leaves no finite size.
    const DoubleLanes forX{transform.a, transform.b}, forY{transform.c, transform.d}, shift{transform.tx, transform.ty};
    const DoubleLanes x0 = forX * xs[0], x1 = forX * xs[1], y0 = forY * ys[0], y1 = forY * ys[1];
    const CrkFloatPoint low = Narrowed((x1 < x0 ? x1 : x0) + (y1 < y0 ? y1 : y0) + shift);
    const CrkFloatPoint high = Narrowed((x1 > x0 ? x1 : x0) + (y1 > y0 ? y1 : y0) + shift);
    const CrkFloatRect bounds{low.x, low.y, high.x - low.x, high.y - low.y};
    if (std::isfinite(bounds.width) && std::isfinite(bounds.height))
        return bounds;
    return BoundsOfMappedCorners(xs, ys, transform);
}
