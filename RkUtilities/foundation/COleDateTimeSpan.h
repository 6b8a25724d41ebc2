#pragma once

#include "RkUtilities/foundation/SpanParts.h"

#include <compare>
#include <cstdint>

/// A signed duration, in days. Its parts are those of the nearest second.
class COleDateTimeSpan : public rk::SpanParts<COleDateTimeSpan> {
public:
    constexpr COleDateTimeSpan() noexcept = default;  ///< No time at all.
    /// The sum of its parts, each of any sign and size.
    constexpr COleDateTimeSpan(int days, int hours, int minutes, int seconds) noexcept
        : m_span(static_cast<double>(days) +
                 static_cast<double>(hours * std::int64_t{3600} + minutes * std::int64_t{60} + seconds) / 86400) {}

    /// The span of that many days.
    static constexpr COleDateTimeSpan FromDays(double days) noexcept {
        COleDateTimeSpan span;
        span.m_span = days;
        return span;
    }

    [[nodiscard]] constexpr double GetTotalDays() const noexcept { return m_span; }             ///< With fractions.
    [[nodiscard]] constexpr double GetTotalHours() const noexcept { return m_span * 24; }       ///< With fractions.
    [[nodiscard]] constexpr double GetTotalMinutes() const noexcept { return m_span * 1440; }   ///< With fractions.
    [[nodiscard]] constexpr double GetTotalSeconds() const noexcept { return m_span * 86400; }  ///< With fractions.

    /// Adds a span.
    constexpr COleDateTimeSpan& operator+=(const COleDateTimeSpan& other) noexcept {
        m_span += other.m_span;
        return *this;
    }
    /// Makes the span that many times as long.
    constexpr COleDateTimeSpan& operator*=(double factor) noexcept {
        m_span *= factor;
        return *this;
    }
    /// By the numbers.
    friend constexpr auto operator<=>(const COleDateTimeSpan&, const COleDateTimeSpan&) noexcept = default;

    double m_span = 0;  ///< the whole duration in days

private:
    friend class rk::SpanParts<COleDateTimeSpan>;
    static constexpr double kRounding = 0.5;  // a fraction of a day is seldom exactly its seconds
};
