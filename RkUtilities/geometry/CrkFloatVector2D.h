#pragma once

#include "RkUtilities/geometry/CrkFloatPoint.h"
#include "RkUtilities/geometry/CrkFloatSize.h"

#include <cmath>

/// A two-dimensional vector, in the coordinates of CrkFloatPoint. All arithmetic is single precision and follows IEEE
/// 754: dividing by 0 gives infinite or not-a-number components, nothing is reported. The arithmetic is inline, so a
/// program that lets its compiler fuse multiplication and addition may see other last bits.
class CrkFloatVector2D {
public:
    float x = 0;  ///< to the right
    float y = 0;  ///< downwards

    constexpr CrkFloatVector2D() noexcept = default;
    /// The vector (xValue, yValue).
    constexpr CrkFloatVector2D(float xValue, float yValue) noexcept : x(xValue), y(yValue) {}
    /// From the origin to a point.
    constexpr CrkFloatVector2D(const CrkFloatPoint& point) noexcept : x(point.x), y(point.y) {}
    /// (width, height).
    constexpr CrkFloatVector2D(const CrkFloatSize& size) noexcept : x(size.width), y(size.height) {}

    /// Whether the distance between both, in single precision, is below 1e-12.
    /// So vectors that differ by 1e-6 are different, and a vector with a component that is infinite or not a number
    /// equals no vector, not even itself. A point or a size beside a vector counts as a vector.
    bool operator==(const CrkFloatVector2D& other) const noexcept { return (*this - other).Length() < 1e-12; }
    /// The same beside a point.
    bool operator==(const CrkFloatPoint& point) const noexcept { return *this == CrkFloatVector2D(point); }
    /// The same beside a size.
    bool operator==(const CrkFloatSize& size) const noexcept { return *this == CrkFloatVector2D(size); }

    /// The sum.
    constexpr CrkFloatVector2D operator+(const CrkFloatVector2D& other) const noexcept {
        return {x + other.x, y + other.y};
    }
    /// The difference.
    constexpr CrkFloatVector2D operator-(const CrkFloatVector2D& other) const noexcept {
        return {x - other.x, y - other.y};
    }
    constexpr CrkFloatVector2D operator*(float s) const noexcept { return {x * s, y * s}; }  ///< `s` times as long.
    /// Each component divided by `s`.
    constexpr CrkFloatVector2D operator/(float s) const noexcept { return {x / s, y / s}; }

    /// Adds a vector.
    constexpr CrkFloatVector2D& operator+=(const CrkFloatVector2D& other) { return *this = *this + other; }
    /// Subtracts a vector.
    constexpr CrkFloatVector2D& operator-=(const CrkFloatVector2D& other) { return *this = *this - other; }
    constexpr CrkFloatVector2D& operator*=(float s) { return *this = *this * s; }  ///< Multiplies by `s`.
    constexpr CrkFloatVector2D& operator/=(float s) { return *this = *this / s; }  ///< Divides by `s`.

    /// The square root of x² + y². Squares leave the range of float: infinite from about 1.8e19 on, 0 below 2.6e-23.
    float Length() const noexcept { return std::sqrt(Dot(*this)); }

    /// The dot product, x·v.x + y·v.y.
    constexpr float Dot(const CrkFloatVector2D& v) const noexcept { return x * v.x + y * v.y; }

    /// The z component of the cross product, x·v.y - y·v.x: positive when `v` lies clockwise of this vector on the
    /// screen.
    constexpr float Kross(const CrkFloatVector2D& v) const noexcept { return x * v.y - y * v.x; }

    constexpr operator CrkFloatPoint() const noexcept { return {x, y}; }  ///< The point (x, y).
    constexpr operator CrkFloatSize() const noexcept { return {x, y}; }   ///< The size (x, y).
};

constexpr CrkFloatVector2D operator*(float s, const CrkFloatVector2D& v) noexcept { return v * s; }

/// Writes the vector as a point.
inline std::ostream& operator<<(std::ostream& stream, const CrkFloatVector2D& vector) {
    return stream << static_cast<CrkFloatPoint>(vector);
}
