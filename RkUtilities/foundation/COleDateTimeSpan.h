#pragma once

#include <compare>
#include <cstdint>

/// A signed duration, in days.
class COleDateTimeSpan {
public:
    /// No time at all.
    constexpr COleDateTimeSpan() noexcept = default;
    /// The sum of its parts, each of any sign and size.
    constexpr COleDateTimeSpan(int days, int hours, int minutes, int seconds) noexcept
        : m_span(static_cast<double>(days) +
                 static_cast<double>(hours * std::int64_t{3600} + minutes * std::int64_t{60} + seconds) / 86400)
    {}

    /// By the numbers.
    friend constexpr auto operator<=>(const COleDateTimeSpan&, const COleDateTimeSpan&) noexcept = default;

    double m_span = 0;  ///< the whole duration in days
};
