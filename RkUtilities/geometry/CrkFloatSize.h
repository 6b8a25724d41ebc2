#pragma once

#include "RkUtilities/RkExport.h"

#include <iosfwd>

/// An extent; negative values are legal where a rectangle has them.
struct CrkFloatSize {
    float width = 0;   ///< in x
    float height = 0;  ///< in y

    /// Whether both fields are equal, exactly.
    constexpr bool operator==(const CrkFloatSize& other) const noexcept = default;
};

/// Writes "width x height", in the number format of the stream.
RK_EXPORT std::ostream& operator<<(std::ostream& stream, const CrkFloatSize& size);
