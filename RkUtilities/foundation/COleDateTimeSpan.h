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

    /// The span of that many days.
    static constexpr COleDateTimeSpan FromDays(double days) noexcept
    {
        COleDateTimeSpan span;
        span.m_span = days;
        return span;
    }

    // The parts of the span, each of its sign, to the nearest second: -90 minutes are -1 hour and -30 minutes. 0 for a span that is no number or longer
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
    [[nodiscard]] constexpr double GetTotalDays() const noexcept { return m_span; }             ///< With fractions.
    [[nodiscard]] constexpr double GetTotalHours() const noexcept { return m_span * 24; }       ///< With fractions.
    [[nodiscard]] constexpr double GetTotalMinutes() const noexcept { return m_span * 1440; }   ///< With fractions.
    [[nodiscard]] constexpr double GetTotalSeconds() const noexcept { return m_span * 86400; }  ///< With fractions.

    friend constexpr COleDateTimeSpan operator+(const COleDateTimeSpan& a, const COleDateTimeSpan& b) noexcept
    {
        return FromDays(a.m_span + b.m_span);
    }  ///< The sum.
    friend constexpr COleDateTimeSpan operator-(const COleDateTimeSpan& a, const COleDateTimeSpan& b) noexcept
    {
        return FromDays(a.m_span - b.m_span);
    }  ///< The difference.
    friend constexpr COleDateTimeSpan operator-(const COleDateTimeSpan& span) noexcept
    {
        return FromDays(-span.m_span);
    }  ///< The reverse.
    friend constexpr COleDateTimeSpan operator*(const COleDateTimeSpan& span, double factor) noexcept
    {
        return FromDays(span.m_span * factor);
    }  ///< So many times the span.
    constexpr COleDateTimeSpan& operator+=(const COleDateTimeSpan& other) noexcept
    {
        return *this = *this + other;
    }  ///< Adds a span.
    constexpr COleDateTimeSpan& operator-=(const COleDateTimeSpan& other) noexcept
    {
        return *this = *this - other;
    }  ///< Subtracts a span.
    /// By the numbers.
    friend constexpr auto operator<=>(const COleDateTimeSpan&, const COleDateTimeSpan&) noexcept = default;

    double m_span = 0;  ///< the whole duration in days

private:
    [[nodiscard]] constexpr long WholeSeconds() const noexcept
    {
        const double seconds = m_span * 86400;
        return seconds > -3e14 && seconds < 3e14 ? static_cast<long>(seconds + (seconds < 0 ? -0.5 : 0.5)) : 0;
    }
};
