#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/COleDateTimeSpan.h"
#include "RkUtilities/foundation/CTime.h"

#include <compare>
#include <concepts>
#include <ctime>

/// A date value: days since 30 December 1899, 00:00, whose fraction is the time of day. It belongs to no time zone.
/// - Days are counted in one line, before that date too: -0.25 is 18:00 on 29 December 1899. The calendar is Gregorian.
/// - Fields are read to the nearest second. A value that is no number or lies outside the years 1 to 9999 reads as 0.
/// - Nothing throws but `Format`. Safe from any thread.
class RK_EXPORT COleDateTime {
public:
    constexpr COleDateTime() noexcept = default;  ///< The value 0: 30 December 1899, 00:00.
    explicit constexpr COleDateTime(double dateValue) noexcept : m_dt(dateValue) {}  ///< The given value.
    /// Refused. Seconds since 1970: `COleDateTime(CTime::FromTimeT(seconds))`; days: a `double`.
    template <std::integral T> explicit COleDateTime(T) = delete;
    /// The local calendar fields of a time, seconds included, fractions of a second not.
    explicit COleDateTime(const CTime& time) noexcept;
    /// The value of these fields; those out of range are carried ("31 April" is 1 May).
    COleDateTime(int year, int month, int day, int hour, int minute, int second) noexcept;

    /// Now.
    [[nodiscard]] static COleDateTime GetCurrentTime() noexcept { return COleDateTime(CTime::GetCurrentTime()); }

    [[nodiscard]] int GetYear() const noexcept { return Fields().tm_year; }           ///< The full year.
    [[nodiscard]] int GetMonth() const noexcept { return Fields().tm_mon; }           ///< 1 to 12
    [[nodiscard]] int GetDay() const noexcept { return Fields().tm_mday; }            ///< 1 to 31
    [[nodiscard]] int GetHour() const noexcept { return Fields().tm_hour; }           ///< 0 to 23
    [[nodiscard]] int GetMinute() const noexcept { return Fields().tm_min; }          ///< 0 to 59
    [[nodiscard]] int GetSecond() const noexcept { return Fields().tm_sec; }          ///< 0 to 59
    [[nodiscard]] int GetDayOfWeek() const noexcept { return Fields().tm_wday + 1; }  ///< 1 is Sunday, 7 Saturday

    /// The fields by a format of C's strftime, as `CTime::Format`; "%z" and "%Z" are empty.
    [[nodiscard]] CString Format(const CString& format) const;

    /// The span from `b` to `a`.
    friend constexpr COleDateTimeSpan operator-(const COleDateTime& a, const COleDateTime& b) noexcept {
        return COleDateTimeSpan::FromDays(a.m_dt - b.m_dt);
    }
    /// The date value later by the span.
    friend constexpr COleDateTime operator+(const COleDateTime& date, const COleDateTimeSpan& span) noexcept {
        return COleDateTime(date.m_dt + span.m_span);
    }
    /// The date value earlier by the span.
    friend constexpr COleDateTime operator-(const COleDateTime& date, const COleDateTimeSpan& span) noexcept {
        return COleDateTime(date.m_dt - span.m_span);
    }
    /// By the numbers.
    friend constexpr auto operator<=>(const COleDateTime&, const COleDateTime&) noexcept = default;

    double m_dt = 0;  ///< the date value

private:
    [[nodiscard]] std::tm Fields() const noexcept;
};
