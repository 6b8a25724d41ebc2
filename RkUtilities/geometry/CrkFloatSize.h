#pragma once

/// An extent; negative values are legal where a rectangle has them.
struct CrkFloatSize {
    float width = 0;   ///< in x
    float height = 0;  ///< in y

    /// Whether both fields are equal, exactly.
    constexpr bool operator==(const CrkFloatSize& other) const noexcept = default;
};
