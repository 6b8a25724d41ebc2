#pragma once

#include "RkUtilities/RkExport.h"

#include <cmath>

/// An affine map of the plane in double precision: (x, y) goes to (a·x + c·y + tx, b·x + d·y + ty).
/// Starts as the identity. Positive angles turn clockwise on the screen, where y grows downwards.
struct CGAffineTransform {
    double a = 1;   ///< x from x
    double b = 0;   ///< y from x
    double c = 0;   ///< x from y
    double d = 1;   ///< y from y
    double tx = 0;  ///< the move in x
    double ty = 0;  ///< the move in y

    /// Whether all fields are equal.
    constexpr bool operator==(const CGAffineTransform& other) const noexcept = default;
};

inline constexpr CGAffineTransform CGAffineTransformIdentity;

/// Whether every field is exactly that of the identity (-0 counts as 0).
constexpr bool CGAffineTransformIsIdentity(const CGAffineTransform& transform) noexcept {
    return transform == CGAffineTransformIdentity;
}

constexpr CGAffineTransform CGAffineTransformMakeTranslation(double tx, double ty) noexcept {
    return {1, 0, 0, 1, tx, ty};
}

/// The map that first moves by (tx, ty) and then applies `transform`.
constexpr CGAffineTransform CGAffineTransformTranslate(const CGAffineTransform& transform, double tx,
                                                       double ty) noexcept {
    const auto& [a, b, c, d, oldTx, oldTy] = transform;
    return {a, b, c, d, a * tx + c * ty + oldTx, b * tx + d * ty + oldTy};
}

/// The map that first turns about the origin by `angle` radians and then applies `transform`.
inline CGAffineTransform CGAffineTransformRotate(const CGAffineTransform& transform, double angle) noexcept {
    const auto& [a, b, c, d, tx, ty] = transform;
    const double sine = std::sin(angle), cosine = std::cos(angle);
    return {cosine * a + sine * c, cosine * b + sine * d, cosine * c - sine * a, cosine * d - sine * b, tx, ty};
}
