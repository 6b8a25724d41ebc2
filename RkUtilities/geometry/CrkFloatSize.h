#pragma once

/// An extent; negative values are legal where a rectangle has them.
struct CrkFloatSize {
    float width = 0;
    float height = 0;

    constexpr bool operator==(const CrkFloatSize& other) const noexcept = default;
};
