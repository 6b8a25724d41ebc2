#pragma once

#include "RkUtilities/RkExport.h"

#include <concepts>
#include <iosfwd>

/// A point of the drawing plane, or a direction where a function says so. The geometry of the library uses screen
/// coordinates in single precision: x grows to the right, y grows downwards, so "above" means a smaller y and the top
/// of a rectangle is its side with the smaller y. The records CrkFloatPoint, CrkFloatSize, CrkFloatRect and
/// CrkFloatMargin are plain: start at zero, compare field by field, and any value is legal in any field.
struct CrkFloatPoint {
    float x = 0;  ///< to the right
    float y = 0;  ///< downwards

    /// Whether both coordinates are equal, exactly.
    constexpr bool operator==(const CrkFloatPoint& other) const noexcept = default;

    // Templates, so that a vector before a point keeps its own arithmetic.
    /// The point moved by another point's coordinates, or by a vector.
    template <std::same_as<CrkFloatPoint> Point>
    friend constexpr Point operator+(const Point& a, const CrkFloatPoint& b) noexcept {
        return {a.x + b.x, a.y + b.y};
    }
    /// The difference of two points, or the point moved back by a vector.
    template <std::same_as<CrkFloatPoint> Point>
    friend constexpr Point operator-(const Point& a, const CrkFloatPoint& b) noexcept {
        return {a.x - b.x, a.y - b.y};
    }
};

/// Writes "(x, y)", in the number format of the stream.
RK_EXPORT std::ostream& operator<<(std::ostream& stream, const CrkFloatPoint& point);
