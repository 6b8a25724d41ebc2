#pragma once

#include <compare>
#include <cstdint>

/// A signed duration, in seconds.
class CTimeSpan {
public:
    /// No time at all.
    constexpr CTimeSpan() noexcept = default;
    /// The sum of its parts, each of any sign and size.
    constexpr CTimeSpan(int days, int hours, int minutes, int seconds) noexcept
        : m_seconds(static_cast<double>(days * std::int64_t{86400} + hours * std::int64_t{3600} +
                                        minutes * std::int64_t{60} + seconds))
    {}
    /// The span of `seconds`.
    static constexpr CTimeSpan FromSeconds(double seconds) noexcept
    {
        CTimeSpan span;
        span.m_seconds = seconds;
        return span;
    }

    /// The whole duration in seconds, fractions included.
    [[nodiscard]] constexpr double GetTotalSeconds() const noexcept { return m_seconds; }

    /// The shorter span is less.
    friend constexpr auto operator<=>(const CTimeSpan&, const CTimeSpan&) noexcept = default;

private:
    double m_seconds = 0;
};
