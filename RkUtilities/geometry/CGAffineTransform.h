#pragma once

/// An affine transform: maps (x, y) to (a·x + c·y + tx, b·x + d·y + ty).
struct CGAffineTransform {
    double a = 1;
    double b = 0;
    double c = 0;
    double d = 1;
    double tx = 0;
    double ty = 0;

    friend constexpr bool operator==(const CGAffineTransform&, const CGAffineTransform&) noexcept = default;
};
