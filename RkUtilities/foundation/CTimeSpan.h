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

    // The parts of the span, each of its sign: -90 minutes are -1 hour and -30 minutes. 0 for a span that is no number or longer
    // than 10,000,000 years.
    [[nodiscard]] constexpr long GetDays() const noexcept { return WholeSeconds() / 86400; }  ///< Whole days.
    [[nodiscard]] constexpr int GetHours() const noexcept
    {
        return static_cast<int>(WholeSeconds() / 3600 % 24);
    }  ///< -23 to 23
    [[nodiscard]] constexpr int GetMinutes() const noexcept
    {
        return static_cast<int>(WholeSeconds() / 60 % 60);
    }  ///< -59 to 59
    [[nodiscard]] constexpr int GetSeconds() const noexcept
    {
        return static_cast<int>(WholeSeconds() % 60);
    }  ///< -59 to 59
    [[nodiscard]] constexpr double GetTotalMinutes() const noexcept { return m_seconds / 60; }  ///< With fractions.
    [[nodiscard]] constexpr double GetTotalHours() const noexcept { return m_seconds / 3600; }  ///< With fractions.

    friend constexpr CTimeSpan operator+(const CTimeSpan& a, const CTimeSpan& b) noexcept
    {
        return FromSeconds(a.m_seconds + b.m_seconds);
    }  ///< The sum.
    friend constexpr CTimeSpan operator-(const CTimeSpan& a, const CTimeSpan& b) noexcept
    {
        return FromSeconds(a.m_seconds - b.m_seconds);
    }  ///< The difference.
    friend constexpr CTimeSpan operator-(const CTimeSpan& span) noexcept
    {
        return FromSeconds(-span.m_seconds);
    }  ///< The reverse.
    friend constexpr CTimeSpan operator*(const CTimeSpan& span, double factor) noexcept
    {
        return FromSeconds(span.m_seconds * factor);
    }  ///< So many times the span.
    constexpr CTimeSpan& operator+=(const CTimeSpan& other) noexcept
    {
        return *this = *this + other;
    }  ///< Adds a span.
    constexpr CTimeSpan& operator-=(const CTimeSpan& other) noexcept
    {
        return *this = *this - other;
    }  ///< Subtracts a span.
    /// The shorter span is less.
    friend constexpr auto operator<=>(const CTimeSpan&, const CTimeSpan&) noexcept = default;

private:
    [[nodiscard]] constexpr long WholeSeconds() const noexcept
    {
        return m_seconds > -3e14 && m_seconds < 3e14 ? static_cast<long>(m_seconds) : 0;
    }

    double m_seconds = 0;
};
