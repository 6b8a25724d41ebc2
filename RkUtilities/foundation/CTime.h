#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/CTimeSpan.h"

#include <compare>
#include <concepts>
#include <ctime>

class CString;

/// A point in time, kept as one `double`: seconds since 1 January 2001, 00:00:00 UTC.
/// - Times lie in the years 1 to 9999 of UTC or one day beyond (years 0 and 10000), to the microsecond and better near
///   the present. A time outside, or from no number (NaN), is the null time.
/// - The null time is 1 January 1970, 00:00:00 UTC: before every time that `CrkDateUtilities::MinimumTime` allows.
/// - Calendar fields are read in the C library's local time (`TZ`, else the system's zone), for past and future dates
///   after the rules of that date, in the Gregorian calendar throughout. A changed `TZ` is seen by the next call. A
///   zone that cannot be read is UTC until `TZ` or the zone's file changes; where memory is short, in that call alone.
/// - Nothing throws but `Format`. Safe from any thread, as long as no thread changes the environment meanwhile.
class RK_EXPORT CTime {
public:
    constexpr CTime() noexcept = default;  ///< The null time.
    /// The local time of a date value: days since 30 December 1899, 00:00, to the nearest second. The null time for a
    /// value that is no number or lies outside the years 1 to 9999.
    explicit CTime(double dateValue) noexcept;
    template <std::integral T>
    explicit CTime(T) = delete;  ///< An integer is no date value: `FromTimeT` takes seconds since 1970.
    /// The local time of calendar fields: full year, month 1 to 12. Fields out of range are carried ("31 April" is 1
    /// May); outside the years 1 to 9999 they give the null time. A local time that a clock change leaves out is moved
    /// on by the length of the gap (2:30 becomes 3:30). Where a local time exists twice, `dst` decides: -1 means the
    /// first time, 1 the time in daylight saving time, 0 that in standard time; where both are alike, the first.
    CTime(int year, int month, int day, int hour, int minute, int second, int dst = -1) noexcept;

    [[nodiscard]] static CTime GetCurrentTime() noexcept;  ///< Now, to the microsecond.
    /// The time `seconds` after 1 January 2001, 00:00:00 UTC.
    [[nodiscard]] static CTime FromCFAbsoluteTime(double seconds) noexcept;
    /// The time `seconds` after 1 January 1970, 00:00:00 UTC, as the C library counts them (`std::time`).
    /// `RkUtilities/interop/SysTime.h` converts from and to the times of `std::chrono::system_clock`.
    [[nodiscard]] static CTime FromTimeT(std::time_t seconds) noexcept;
    /// Whole seconds since 1 January 1970, 00:00:00 UTC, as the C library counts them; fractions are cut downwards.
    [[nodiscard]] std::time_t GetTime() const noexcept;

    [[nodiscard]] int GetYear() const noexcept { return Fields().tm_year; }           ///< The full year.
    [[nodiscard]] int GetMonth() const noexcept { return Fields().tm_mon; }           ///< 1 to 12
    [[nodiscard]] int GetDay() const noexcept { return Fields().tm_mday; }            ///< 1 to 31
    [[nodiscard]] int GetHour() const noexcept { return Fields().tm_hour; }           ///< 0 to 23
    [[nodiscard]] int GetMinute() const noexcept { return Fields().tm_min; }          ///< 0 to 59
    [[nodiscard]] int GetSecond() const noexcept { return Fields().tm_sec; }          ///< 0 to 59
    [[nodiscard]] int GetDayOfWeek() const noexcept { return Fields().tm_wday + 1; }  ///< 1 is Sunday, 7 Saturday

    /// Fills a record with the UTC fields and returns it. Unlike C's, it holds the full year and the month
    /// from 1, so that the fields fit the constructor; day of the week and of the year count from 0, as C's.
    std::tm* GetGmtTm(std::tm* fields) const noexcept;
    std::tm* GetLocalTm(std::tm* fields) const noexcept;  ///< Fills a record with the local fields, as `GetGmtTm` does.

    /// The local fields by a format of C's strftime: "%Y-%m-%d %H:%M" gives "2026-11-16 21:52". Names of months and
    /// days are those of the process's LC_TIME, "%Z" is the zone's present abbreviation. The format ends at U+0000; ""
    /// for a result of more than 1 MiB. `CrkDateUtilities` has texts for people. Throws `std::bad_alloc`; needs
    /// CString.h.
    [[nodiscard]] CString Format(const CString& format) const;

    /// Seconds since 1 January 2001, 00:00:00 UTC.
    [[nodiscard]] constexpr double GetCFAbsoluteTime() const noexcept { return m_seconds; }

    /// The span from `b` to `a`.
    friend CTimeSpan operator-(const CTime& a, const CTime& b) noexcept {
        return CTimeSpan::FromSeconds(a.m_seconds - b.m_seconds);
    }
    /// The time later by the span.
    friend CTime operator+(const CTime& time, const CTimeSpan& span) noexcept {
        return FromCFAbsoluteTime(time.m_seconds + span.GetTotalSeconds());
    }
    /// The time earlier by the span.
    friend CTime operator-(const CTime& time, const CTimeSpan& span) noexcept {
        return FromCFAbsoluteTime(time.m_seconds - span.GetTotalSeconds());
    }
    friend constexpr auto operator<=>(const CTime&, const CTime&) noexcept = default;  ///< The earlier time is less.

private:
    [[nodiscard]] std::tm Fields() const noexcept;

    double m_seconds = -978307200;  // of the null time
};
