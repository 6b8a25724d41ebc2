#include "RkUtilities/geometry/CrkMathUtilities.h"

using rk::FloatPair;
using rk::Larger;
using rk::Smaller;

namespace {

using TwoPoints [[gnu::vector_size(16)]] = float;
/// x and y in double precision.
using DoublePair [[gnu::vector_size(16)]] = double;

FloatPair Narrowed(DoublePair pair) { return __builtin_convertvector(pair, FloatPair); }

CrkFloatRect RectBetween(FloatPair low, FloatPair high) {
    const FloatPair size = high - low;
    return {low[0], low[1], size[0], size[1]};
}

}  // namespace

CrkFloatRect CrkMathUtilities::CalculatePointsBoundingRectangle(const CrkFloatPoint* points, int count) noexcept {
    if (!points || count <= 1)  // a point has no size, also at infinity
        return points && count == 1 ? CrkFloatRect{points->x, points->y, 0, 0} : CrkFloatRect{};
    // Two points a load, and four copies of each bound so that no comparison waits for the comparison before it. Each
    // copy starts with the first point. A coordinate of it that is not a number stays: no other is smaller or larger.
    const TwoPoints first{points->x, points->y, points->x, points->y};
    TwoPoints low[] = {first, first, first, first}, high[] = {first, first, first, first};
    const CrkFloatPoint* const end = points + count;
    for (; end - points >= 8; points += 8) {
        for (std::ptrdiff_t i = 0; i < 4; ++i) {
            TwoPoints next;
            std::memcpy(&next, points + 2 * i, sizeof next);
            low[i] = Smaller(low[i], next);
            high[i] = Larger(high[i], next);
        }
    }
    for (; points != end; ++points) {
        const TwoPoints next{points->x, points->y, points->x, points->y};
        low[0] = Smaller(low[0], next);
        high[0] = Larger(high[0], next);
    }
    const TwoPoints least = Smaller(Smaller(low[0], low[1]), Smaller(low[2], low[3]));
    const TwoPoints most = Larger(Larger(high[0], high[1]), Larger(high[2], high[3]));
    return RectBetween(Smaller(FloatPair{least[0], least[1]}, FloatPair{least[2], least[3]}),
                       Larger(FloatPair{most[0], most[1]}, FloatPair{most[2], most[3]}));
}

CrkFloatRect CrkMathUtilities::CalculateTransformedRectBoundingRectangle(const CrkFloatRect& rectangle,
                                                                         const CGAffineTransform& t) noexcept {
    if (CGAffineTransformIsIdentity(t))
        return rectangle;
    const double left = rectangle.MinX(), right = rectangle.MaxX(), top = rectangle.MinY(), bottom = rectangle.MaxY();
    const DoublePair forX{t.a, t.b}, forY{t.c, t.d}, shift{t.tx, t.ty};
    const DoublePair x0 = forX * left, x1 = forX * right, y0 = forY * top, y1 = forY * bottom;
    // Each step rounds, and rounding keeps the order. So the sum of the smaller products is the smallest of the four
    // corners to the last bit, unless infinities meet, which leaves no finite size.
    const CrkFloatRect bounds = RectBetween(Narrowed(Smaller(x0, x1) + Smaller(y0, y1) + shift),
                                            Narrowed(Larger(x0, x1) + Larger(y0, y1) + shift));
    if (std::isfinite(bounds.width) && std::isfinite(bounds.height))
        return bounds;
    const FloatPair corners[] = {Narrowed(x0 + y0 + shift), Narrowed(x1 + y0 + shift), Narrowed(x1 + y1 + shift),
                                 Narrowed(x0 + y1 + shift)};
    FloatPair low = corners[0], high = corners[0];
    for (const FloatPair corner : corners)
        low = Smaller(low, corner), high = Larger(high, corner);
    return RectBetween(low, high);
}
