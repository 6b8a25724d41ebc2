#pragma once

/// A point in the drawing plane, x to the right and y downwards; or a direction, where a function says so.
struct CrkFloatPoint {
    float x = 0;
    float y = 0;

    friend constexpr bool operator==(const CrkFloatPoint&, const CrkFloatPoint&) noexcept = default;
};
