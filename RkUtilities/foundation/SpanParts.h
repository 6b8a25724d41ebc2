#pragma once

#include "RkUtilities/RkExport.h"

#include <compare>

namespace rk {

/// What spans of time have in common, added to `Span` by inheritance: parts, sums and multiples. Of an amount that is
/// no number the parts are 0.
template <class Span> class SpanParts {
public:
    // The parts are whole and have the span's sign: -90 minutes are -1 hour and -30 minutes. The parts of a span longer
    // than 9,500,000 years are 0.
    [[nodiscard]] constexpr long GetDays() const noexcept { return WholeSeconds() / 86400; }       ///< Whole days.
    [[nodiscard]] constexpr int GetHours() const noexcept { return Part(3600, 24); }               ///< -23 to 23
    [[nodiscard]] constexpr int GetMinutes() const noexcept { return Part(60, 60); }               ///< -59 to 59
    [[nodiscard]] constexpr int GetSeconds() const noexcept { return Part(1, 60); }                ///< -59 to 59
    friend constexpr Span operator+(Span a, const Span& b) noexcept { return a += b; }             ///< The sum.
    friend constexpr Span operator-(Span a, const Span& b) noexcept { return a -= b; }             ///< The difference.
    friend constexpr Span operator-(Span span) noexcept { return span *= -1; }                     ///< The reverse.
    friend constexpr Span operator*(Span span, double factor) noexcept { return span *= factor; }  ///< A multiple.
    friend constexpr Span& operator-=(Span& a, const Span& b) noexcept { return a += -b; }  ///< Subtracts a span.
    /// The parts add nothing to the order of the spans.
    friend constexpr auto operator<=>(const SpanParts&, const SpanParts&) noexcept = default;

private:
    friend Span;
    constexpr SpanParts() noexcept = default;

    [[nodiscard]] constexpr int Part(int seconds, int count) const noexcept {
        return static_cast<int>(WholeSeconds() / seconds % count);
    }
    [[nodiscard]] constexpr long WholeSeconds() const noexcept {
        constexpr double kMost = 3e14;
        const double seconds = static_cast<const Span*>(this)->GetTotalSeconds();
        const double rounding = seconds < 0 ? -Span::kRounding : Span::kRounding;
        return seconds > -kMost && seconds < kMost ? static_cast<long>(seconds + rounding) : 0;
    }
};

}  // namespace rk
