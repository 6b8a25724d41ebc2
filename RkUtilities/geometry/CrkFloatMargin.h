#pragma once

#include "RkUtilities/geometry/CrkFloatRect.h"

/// Distances that are added to or taken from each side of a rectangle. Works on the rectangle's stored fields and
/// clamps nothing: taking away more than there is leaves a negative size.
struct CrkFloatMargin {
    float left = 0;
    float top = 0;
    float right = 0;
    float bottom = 0;

    friend constexpr bool operator==(const CrkFloatMargin&, const CrkFloatMargin&) noexcept = default;

    /// Takes the margin away from / adds it to each side.
    constexpr void DeflateRect(CrkFloatRect& rect) const noexcept
    {
        rect.x += left;
        rect.y += top;
        rect.width -= left + right;
        rect.height -= top + bottom;
    }
    constexpr void InflateRect(CrkFloatRect& rect) const noexcept
    {
        rect.x -= left;
        rect.y -= top;
        rect.width += left + right;
        rect.height += top + bottom;
    }

    /// Each side becomes the larger of this margin's and the other's.
    constexpr CrkFloatMargin& Union(CrkFloatMargin other) noexcept
    {
        *this = Union(*this, other);
        return *this;
    }
    /// The margin whose sides are the larger ones of both.
    static constexpr CrkFloatMargin Union(CrkFloatMargin a, CrkFloatMargin b) noexcept
    {
        return {b.left > a.left ? b.left : a.left, b.top > a.top ? b.top : a.top, b.right > a.right ? b.right : a.right,
                b.bottom > a.bottom ? b.bottom : a.bottom};
    }
};
