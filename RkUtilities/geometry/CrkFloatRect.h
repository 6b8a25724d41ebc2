#pragma once

/// A rectangle: the corner it starts from and its size. y grows downwards, so the top is the side with the smaller y.
///
/// Its bounds are `rk::RectBounds`: a negative size has the bounds of its mirror image. Functions that look at the
/// stored fields instead say so.
struct CrkFloatRect {
    float x = 0;
    float y = 0;
    float width = 0;
    float height = 0;

    friend constexpr bool operator==(const CrkFloatRect&, const CrkFloatRect&) noexcept = default;

    /// What two rectangles have in common, by their bounds.
    ///
    /// @param[out] result  written in every case; where the rectangles do not meet, its width or height is 0 or
    /// negative.
    /// @return whether they share an area: false when they only touch, when one is empty, and for numbers that are
    /// none.
    static constexpr bool Intersect(CrkFloatRect& result, const CrkFloatRect& a, const CrkFloatRect& b) noexcept;
};

namespace rk {

/// The sides of a rectangle, whichever corner it is stored from.
struct RectBounds {
    float minX;
    float minY;
    float maxX;
    float maxY;

    explicit constexpr RectBounds(const CrkFloatRect& rect) noexcept
        : RectBounds(rect.x, rect.x + rect.width, rect.y, rect.y + rect.height)
    {}

private:
    // A sum of two floats rounds to the same float in double precision, so single precision serves.
    constexpr RectBounds(float x, float farX, float y, float farY) noexcept
        : minX(farX < x ? farX : x), minY(farY < y ? farY : y), maxX(farX > x ? farX : x), maxY(farY > y ? farY : y)
    {}
};

}  // namespace rk

constexpr bool CrkFloatRect::Intersect(CrkFloatRect& result, const CrkFloatRect& a, const CrkFloatRect& b) noexcept
{
    const rk::RectBounds boundsA(a);
    const rk::RectBounds boundsB(b);
    const float left = boundsB.minX > boundsA.minX ? boundsB.minX : boundsA.minX;
    const float top = boundsB.minY > boundsA.minY ? boundsB.minY : boundsA.minY;
    const float right = boundsB.maxX < boundsA.maxX ? boundsB.maxX : boundsA.maxX;
    const float bottom = boundsB.maxY < boundsA.maxY ? boundsB.maxY : boundsA.maxY;
    result = {left, top, right - left, bottom - top};
    return result.width > 0 && result.height > 0;
}
