#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/CAtlArray.h"
#include "RkUtilities/foundation/CAtlMap.h"
#include "RkUtilities/foundation/COleDateTime.h"
#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/foundation/CTime.h"

/// Dates as texts, between UTC and local time, by day and by week, and the calendar of working days. Calendar fields of
/// a `CTime` are those of local time (`TZ`, else the system's zone), as `CTime` tells. A `COleDateTime` has no zone; a
/// value that is no number or lies outside the years 1 to 9999 counts as 30 December 1899, 00:00. Members throw
/// `std::bad_alloc` and what they name, nothing else; nothing incomplete is kept then, and the next call is right. Safe
/// from any thread, and in a child after `fork`. The first text of each style needs memory for ICU's data
/// (`rk::PrepareFormats`).
class RK_EXPORT CrkDateUtilities {
public:
    // --- Three times that callers know by name
    // Made when the library is loaded, after the zone of that moment; the initialisers of other files may use them.
    static const CTime NullTime;     ///< `CTime()`
    static const CTime MinimumTime;  ///< 2 January 1970, 00:00:00 local time
    static const CTime MaximumTime;  ///< 30 December 3000, 23:59:59 local time

    // --- Texts in the user's language, after the styles of CLDR
    // The process's first date text fixes the locale of all
    // date texts, its first time text the locale of all time texts; a later change is not seen. The zone is looked up
    // at each call. Days before 1582 are Gregorian too; a locale with another calendar (Buddhist in "th_TH", Persian in
    // "fa_IR") shows that calendar. The examples are from "en_US", where U+202F stands before "PM", and "de_DE".

    static CString ShortDateString(const CTime& time);  ///< "11/16/26", "16.11.26"
    static CString LongDateString(const CTime& time);   ///< "November 16, 2026", "16. November 2026"
    static CString ShortTimeString(const CTime& time);  ///< "9:52 PM", "21:52"
    static CString LongTimeString(const CTime& time);   ///< "9:52:05 PM GMT+1", "21:52:05 MEZ"
    static CString CurrentShortDateString() { return ShortDateString(CTime::GetCurrentTime()); }  ///< of today
    static CString CurrentShortTimeString() { return ShortTimeString(CTime::GetCurrentTime()); }  ///< of now
    /// The short date, one space, the long time: "16.11.26 21:52:05 MEZ".
    static CString DateTimeString(const CTime& time) { return ShortDateString(time) + u' ' + LongTimeString(time); }
    /// The short date, one space, the short time: "16.11.26 21:52".
    static CString ShortDateTimeString(const CTime& time) {
        return ShortDateString(time) + u' ' + ShortTimeString(time);
    }

    // --- UTC and local time
    // Mind the directions: existing callers rely on them. The offset is always the present offset,
    // also for a time in another daylight-saving period.

    /// The time less the zone's offset from UTC: one hour earlier in a zone at UTC+1.
    static CTime ConvertUtcTimeToLocalTime(const CTime& time) noexcept;
    /// The time plus the zone's offset from UTC: one hour later in a zone at UTC+1.
    static CTime ConvertLocalTimeToUtcTime(const CTime& time) noexcept;

    // --- Between the two types of time
    // The date value of a time has the time's local calendar fields, to the second.

    static CTime COleDateTimeToCTime(COleDateTime date) noexcept { return CTime(date.m_dt); }  ///< `CTime(date.m_dt)`.
    /// `COleDateTime(time)`.
    static COleDateTime CTimeToCOleDateTime(CTime time) noexcept { return COleDateTime(time); }

    // --- Days

    /// The same calendar day at 00:00:00. Where a clock change leaves 00:00:00 out, `CTime` decides.
    static COleDateTime RemoveTimeFromDate(const COleDateTime& date) noexcept;
    static CTime RemoveTimeFromDate(const CTime& time) noexcept;  ///< The same for a time.
    /// True when year, month and day are the same, whatever the time of day.
    static bool IsSameDay(const CTime& a, const CTime& b) noexcept;
    static bool IsSameDay(const COleDateTime& a, const COleDateTime& b) noexcept;  ///< The same for date values.
    /// Does nothing; for callers from the time when `NullTime` had to be made.
    static void InitNullDate() noexcept {}

    // --- Weeks

    /// 00:00 on the Sunday that begins the date's week.
    static COleDateTime GetWeekStart(const COleDateTime& date) noexcept { return GetLocalizedWeekStart(date, {}); }
    /// 00:00 on the Sunday that ends the date's week.
    static COleDateTime GetWeekEnd(const COleDateTime& date) noexcept {
        return GetWeekStart(date) + COleDateTimeSpan(7, 0, 0, 0);
    }
    /// 00:00 on the first day of the date's week: a Monday when `language` is exactly "de" or "fr", else a Sunday.
    static COleDateTime GetLocalizedWeekStart(const COleDateTime& date, const CString& language) noexcept;
    /// The same in local time, also in a week with a clock change; `MinimumTime` for 1, 2 and 3 January 1970. Where a
    /// clock change leaves 00:00 out, `CTime` decides.
    static CTime GetLocalizedWeekStart(CTime date, CString language) noexcept;

    // --- The calendar of working days
    // Its text, which is stored with a map, has seven flags from Sunday to Saturday, "1" for a
    // working day and "0" for a day off, then dates, each ";" and a date value with six decimals.
    //
    //     "0111110;45000.000000"     Monday to Friday, and the 15th of March 2023

    /// Writes a calendar. The decimal point is "." in every locale; dates stand in the order in which `dates` is
    /// walked, and its values are not looked at. Flags past the seventh are not written; missing flags are days off.
    static CString CreatePtmCalendarString(const CAtlArray<bool>& workingDays, const CAtlMap<double, bool>& dates);
    /// Reads a calendar: seven flags into `workingDays`, dates into `dates` (cut down to the whole day below, each with
    /// the value true), in place of the old contents. An empty text changes nothing.
    /// Pieces end at ";", empty pieces are skipped. The first piece holds the flags: every unit except "0" marks a
    /// working day, units past the seventh are ignored, missing units are days off; without any piece (";;") the flags
    /// stay. A later piece is a date as `CrkStringConversionUtilities::StringToDouble` reads it in the user's locale; a
    /// piece that does not begin with a number is skipped.
    /// @throws CAtlException when memory is exhausted; either output may hold a part then
    static void ParsePtmCalendarString(CString text, CAtlArray<bool>& workingDays, CAtlMap<double, bool>& dates);
    static CString DefaultWorkweekString();  ///< "0111110": Monday to Friday, no dates.
};
