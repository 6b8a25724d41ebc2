#pragma once

#include "RkUtilities/geometry/CrkFloatPoint.h"
#include "RkUtilities/geometry/CrkFloatSize.h"

#include <cmath>

/// A vector in the drawing plane, with arithmetic in single precision after IEEE 754: dividing by 0 gives infinities or
/// not-a-number, with no error.
class CrkFloatVector2D {
public:
    constexpr CrkFloatVector2D() noexcept = default;
    constexpr CrkFloatVector2D(float vectorX, float vectorY) noexcept : x(vectorX), y(vectorY) {}
    constexpr CrkFloatVector2D(const CrkFloatPoint& point) noexcept : x(point.x), y(point.y) {}
    constexpr CrkFloatVector2D(const CrkFloatSize& size) noexcept : x(size.width), y(size.height) {}

    /// Whether the distance between the vectors is below 1e-12. Vectors with an infinite component equal nothing.
    bool operator==(const CrkFloatVector2D& other) const noexcept { return (*this - other).Length() < 1e-12; }

    constexpr CrkFloatVector2D operator+(const CrkFloatVector2D& other) const noexcept
    {
        return {x + other.x, y + other.y};
    }
    constexpr CrkFloatVector2D operator-(const CrkFloatVector2D& other) const noexcept
    {
        return {x - other.x, y - other.y};
    }
    constexpr CrkFloatVector2D operator*(float factor) const noexcept { return {x * factor, y * factor}; }
    constexpr CrkFloatVector2D operator/(float divisor) const noexcept { return {x / divisor, y / divisor}; }
    friend constexpr CrkFloatVector2D operator*(float factor, const CrkFloatVector2D& vector) noexcept
    {
        return vector * factor;
    }
    constexpr CrkFloatVector2D& operator+=(const CrkFloatVector2D& other) noexcept { return *this = *this + other; }
    constexpr CrkFloatVector2D& operator-=(const CrkFloatVector2D& other) noexcept { return *this = *this - other; }
    constexpr CrkFloatVector2D& operator*=(float factor) noexcept { return *this = *this * factor; }
    constexpr CrkFloatVector2D& operator/=(float divisor) noexcept { return *this = *this / divisor; }

    [[nodiscard]] float Length() const noexcept { return std::sqrt(x * x + y * y); }
    [[nodiscard]] constexpr float Dot(const CrkFloatVector2D& other) const noexcept
    {
        return x * other.x + y * other.y;
    }
    /// The z component of the cross product: positive when `other` lies clockwise of this vector on the screen.
    [[nodiscard]] constexpr float Kross(const CrkFloatVector2D& other) const noexcept
    {
        return x * other.y - y * other.x;
    }

    constexpr operator CrkFloatPoint() const noexcept { return {x, y}; }
    constexpr operator CrkFloatSize() const noexcept { return {x, y}; }

    float x = 0;
    float y = 0;
};
