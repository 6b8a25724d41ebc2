#pragma once

#include "RkUtilities/foundation/SpanParts.h"

#include <compare>
#include <cstdint>

/// A signed duration, in seconds.
class CTimeSpan : public rk::SpanParts<CTimeSpan> {
public:
    constexpr CTimeSpan() noexcept = default;  ///< No time at all.
    /// The sum of its parts, each of any sign and size.
    constexpr CTimeSpan(int days, int hours, int minutes, int seconds) noexcept
        : m_seconds(static_cast<double>(days * std::int64_t{86400} + hours * std::int64_t{3600} +
                                        minutes * std::int64_t{60} + seconds)) {}
    /// The span of `seconds`.
    static constexpr CTimeSpan FromSeconds(double seconds) noexcept {
        CTimeSpan span;
        span.m_seconds = seconds;
        return span;
    }

    /// The whole duration in seconds, fractions included.
    [[nodiscard]] constexpr double GetTotalSeconds() const noexcept { return m_seconds; }

    [[nodiscard]] constexpr double GetTotalMinutes() const noexcept { return m_seconds / 60; }  ///< With fractions.
    [[nodiscard]] constexpr double GetTotalHours() const noexcept { return m_seconds / 3600; }  ///< With fractions.

    /// Adds a span.
    constexpr CTimeSpan& operator+=(const CTimeSpan& other) noexcept {
        m_seconds += other.m_seconds;
        return *this;
    }
    /// Makes the span that many times as long.
    constexpr CTimeSpan& operator*=(double factor) noexcept {
        m_seconds *= factor;
        return *this;
    }
    friend constexpr auto operator<=>(const CTimeSpan&, const CTimeSpan&) noexcept = default;  ///< By the seconds.

private:
    friend class rk::SpanParts<CTimeSpan>;
    static constexpr double kRounding = 0;  // a part counts once it is whole

    double m_seconds = 0;
};
