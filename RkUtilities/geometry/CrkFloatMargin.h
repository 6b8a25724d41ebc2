#pragma once

#include "RkUtilities/geometry/CrkFloatRect.h"

/// Distances added to or removed from each side of a rectangle. The operations work on the raw fields of the rectangle
/// and never clamp: deflating by more than the size makes it negative.
struct CrkFloatMargin {
    float left = 0;    ///< the distance at the left
    float top = 0;     ///< the distance at the top
    float right = 0;   ///< the distance at the right
    float bottom = 0;  ///< the distance at the bottom

    constexpr bool operator==(const CrkFloatMargin& other) const noexcept = default;  ///< Whether all fields are equal.

    /// Moves each side inwards: (0, 0, 100, 50) less the margin (10, 5, 20, 15) is (10, 5, 70, 30).
    constexpr void DeflateRect(CrkFloatRect& rectangle) const noexcept {
        rectangle.x += left;
        rectangle.y += top;
        rectangle.width -= left + right;
        rectangle.height -= top + bottom;
    }

    /// Moves each side outwards, the reverse of DeflateRect up to rounding.
    constexpr void InflateRect(CrkFloatRect& rectangle) const noexcept {
        rectangle.x -= left;
        rectangle.y -= top;
        rectangle.width += left + right;
        rectangle.height += top + bottom;
    }

    /// Raises each side of this margin to the other margin's where the other is larger. A side of the other that is not
    /// a number replaces nothing. Returns this margin.
    constexpr CrkFloatMargin& Union(CrkFloatMargin other) noexcept { return *this = Union(*this, other); }

    /// The larger of each side; the side of `a` where a side of `a` or `b` is not a number.
    static constexpr CrkFloatMargin Union(CrkFloatMargin a, CrkFloatMargin b) noexcept {
        return {a.left < b.left ? b.left : a.left, a.top < b.top ? b.top : a.top, a.right < b.right ? b.right : a.right,
                a.bottom < b.bottom ? b.bottom : a.bottom};
    }
};
