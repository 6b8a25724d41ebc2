#pragma once

/// An extent in the drawing plane.
struct CrkFloatSize {
    float width = 0;
    float height = 0;

    friend constexpr bool operator==(const CrkFloatSize&, const CrkFloatSize&) noexcept = default;
};
