#pragma once

#include "RkUtilities/geometry/CrkFloatRect.h"

#include <limits>

namespace rk {

/// The tolerance below which two coordinates count as one: 2^-23.
constexpr float kAxisTolerance = 1.1920928955078125e-07F;

/// Moves a rectangle.
constexpr CrkFloatRect OffsetRect(const CrkFloatRect& rect, float dx, float dy) noexcept
{
    return {rect.x + dx, rect.y + dy, rect.width, rect.height};
}

/// Makes the size positive and grows the rectangle on all four sides, in double precision; negative distances shrink
/// it. One that would be left with a negative size is the null rectangle: at infinity, of size 0.
constexpr CrkFloatRect InflateRect(const CrkFloatRect& rect, float dx, float dy) noexcept
{
    const double width = rect.width < 0 ? -static_cast<double>(rect.width) : static_cast<double>(rect.width);
    const double height = rect.height < 0 ? -static_cast<double>(rect.height) : static_cast<double>(rect.height);
    const double x = rect.width < 0 ? static_cast<double>(rect.x) - width : static_cast<double>(rect.x);
    const double y = rect.height < 0 ? static_cast<double>(rect.y) - height : static_cast<double>(rect.y);
    const double newWidth = width + 2.0 * static_cast<double>(dx);
    const double newHeight = height + 2.0 * static_cast<double>(dy);
    if (newWidth < 0 || newHeight < 0) {
        constexpr float kInfinity = std::numeric_limits<float>::infinity();
        return {kInfinity, kInfinity, 0, 0};
    }
    return {static_cast<float>(x - static_cast<double>(dx)), static_cast<float>(y - static_cast<double>(dy)),
            static_cast<float>(newWidth), static_cast<float>(newHeight)};
}

}  // namespace rk
