#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/geometry/CrkFloatPoint.h"
#include "RkUtilities/geometry/detail/FloatPair.h"

#include <iosfwd>
#include <limits>

/// A rectangle as origin corner and size (not two corners), in the coordinates of CrkFloatPoint.
/// A negative width or height is legal: the bounds, and every function that does not speak of the raw fields, then see
/// the mirror image with positive size, so (10, 10, -10, -10) is (0, 0, 10, 10). Bounds that are formed from a field
/// that is not a number are not numbers.
struct RK_EXPORT CrkFloatRect {
    float x = 0;       ///< of the origin corner
    float y = 0;       ///< of the origin corner
    float width = 0;   ///< to the right of the origin, or to its left where negative
    float height = 0;  ///< below the origin, or above it where negative

    /// Whether the raw fields are equal, exactly.
    constexpr bool operator==(const CrkFloatRect& other) const noexcept = default;

    // --- The standardized bounds
    constexpr float MinX() const noexcept { return x < x + width ? x : x + width; }    ///< the left bound
    constexpr float MaxX() const noexcept { return x > x + width ? x : x + width; }    ///< the right bound
    constexpr float MinY() const noexcept { return y < y + height ? y : y + height; }  ///< the upper bound
    constexpr float MaxY() const noexcept { return y > y + height ? y : y + height; }  ///< the lower bound

    /// The rectangle that stands for "no rectangle": its origin at infinity, its size 0. Inflated() gives it for a
    /// rectangle that shrinks to less than nothing.
    static constexpr CrkFloatRect Null() noexcept {
        return {std::numeric_limits<float>::infinity(), std::numeric_limits<float>::infinity(), 0, 0};
    }
    /// Whether the origin lies at positive infinity, in x or in y.
    constexpr bool IsNull() const noexcept {
        return x == std::numeric_limits<float>::infinity() || y == std::numeric_limits<float>::infinity();
    }

    /// The same rectangle elsewhere: the size keeps its sign, the null rectangle stays null.
    CrkFloatRect Moved(float dx, float dy) const noexcept;

    /// The mirror image with positive size, grown by `dx` on the left and on the right and by `dy` at the top and at
    /// the bottom. Computed in double precision and narrowed. Negative values shrink; a width or height that would
    /// become negative gives Null(), and a null rectangle stays as it is.
    CrkFloatRect Inflated(float dx, float dy) const noexcept;

    /// Whether the point lies inside the bounds or on an edge; never in the null rectangle.
    constexpr bool Contains(const CrkFloatPoint& point) const noexcept {
        return MinX() <= point.x && point.x <= MaxX() && MinY() <= point.y && point.y <= MaxY() && !IsNull();
    }
    /// Whether the bounds of `other` lie inside these bounds or touch them from inside; never for a null rectangle.
    constexpr bool Contains(const CrkFloatRect& other) const noexcept {
        return MinX() <= other.MinX() && other.MaxX() <= MaxX() && MinY() <= other.MinY() && other.MaxY() <= MaxY() &&
               !IsNull() && !other.IsNull();
    }
    /// The smallest rectangle around both bounds, with positive size up to rounding. The null rectangle adds nothing:
    /// the result is the other rectangle as it is.
    static constexpr CrkFloatRect Union(const CrkFloatRect& a, const CrkFloatRect& b) noexcept {
        if (a.IsNull() || b.IsNull())
            return a.IsNull() ? b : a;
        const float left = a.MinX() < b.MinX() ? a.MinX() : b.MinX();
        const float top = a.MinY() < b.MinY() ? a.MinY() : b.MinY();
        return {left, top, (a.MaxX() > b.MaxX() ? a.MaxX() : b.MaxX()) - left,
                (a.MaxY() > b.MaxY() ? a.MaxY() : b.MaxY()) - top};
    }

    /// Where two rectangles overlap.
    ///
    /// @param[out] result  from the larger of the minima to the smaller of the maxima of both bounds, written in every
    ///                     case: of rectangles that lie apart, its width or height is negative. May be `a` or `b`.
    /// @return true when the result has a positive width and height: false for rectangles that only touch along an edge
    ///         and for rectangles that lie apart. Where a field is not a number, false, and the result is of no use.
    static bool Intersect(CrkFloatRect& result, const CrkFloatRect& a, const CrkFloatRect& b) noexcept;
};

/// Writes "(x, y, width x height)" of the raw fields, in the number format of the stream.
RK_EXPORT std::ostream& operator<<(std::ostream& stream, const CrkFloatRect& rectangle);

inline bool CrkFloatRect::Intersect(CrkFloatRect& result, const CrkFloatRect& a, const CrkFloatRect& b) noexcept {
    using rk::FloatPair, rk::LoadPair, rk::Smaller, rk::Larger;
    const FloatPair originA = LoadPair(&a.x), oppositeA = originA + LoadPair(&a.width);
    const FloatPair originB = LoadPair(&b.x), oppositeB = originB + LoadPair(&b.width);
    // Where a bound is not a number, the low corner has b's bound and the high corner a's, so the size is no number.
    const FloatPair low = Larger(Smaller(oppositeB, originB), Smaller(oppositeA, originA));
    const FloatPair size = Smaller(Larger(oppositeA, originA), Larger(oppositeB, originB)) - low;
    result = {low[0], low[1], size[0], size[1]};
    return rk::HoldsForBoth(size > 0);
}
