#include "RkUtilities/interop/SysTime.h"

#include "tests/support/Test.h"
#include "tests/support/Zones.h"

#include <chrono>

namespace {

const CTime kBeforeMain;

CTime LocalTime(const std::tm& fields, int dst) {
    return {fields.tm_year, fields.tm_mon, fields.tm_mday, fields.tm_hour, fields.tm_min, fields.tm_sec, dst};
}

TEST(Time, CountsEveryDayOfTheYears1To9999AsTheCalendarDoes) {
    using namespace std::chrono;
    const ScopedZone utc("UTC");
    const sys_days last{9999y / December / 31};
    for (sys_days day{1y / January / 1}; day <= last; day += days{day.time_since_epoch().count() % 5 + 7}) {
        const year_month_day date(day);
        const std::tuple fields(static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                                static_cast<unsigned>(date.day()), weekday(day).c_encoding() + 1);
        const COleDateTime value(static_cast<double>((day - sys_days{1899y / December / 30}).count()) + 0.25);
        const CTime time(value.m_dt);
        ASSERT_EQ(time, At(sys_seconds(day).time_since_epoch().count() + 21600));
        ASSERT_EQ(std::tuple(time.GetYear(), time.GetMonth(), time.GetDay(), time.GetDayOfWeek()), fields);
        ASSERT_EQ(std::tuple(value.GetYear(), value.GetMonth(), value.GetDay(), value.GetDayOfWeek()), fields);
        ASSERT_EQ(COleDateTime(time), value);
    }
    EXPECT_EQ(kBeforeMain.GetCFAbsoluteTime(), CTime(1970, 1, 1, 0, 0, 0, -1).GetCFAbsoluteTime());
}

/// Zone; year to second, dst; UTC seconds, 0 for the null time.
constexpr std::tuple<const char*, std::array<int, 7>, std::time_t> kLocalRows[] = {
    {"Europe/Berlin", {2026, 3, 29, 2, 30, 0, 0}, 1774747800},  // does not exist: 3:30
    {"Europe/Berlin", {2026, 7, 1, 12, 0, 0, 0}, 1782900000},   // dst does not shift what exists once
    {"Etc/UTC", {2026, 13, 32, 25, -1, 61, -1}, 1801530001},    // fields are carried
    {"Asia/Tokyo", {1, 1, 1, 0, 0, 0, -1}, -62135630339},       // in UTC the year before
    {"EST5EDT,M3.2.0,M11.1.0", {9999, 12, 31, 23, 59, 59, -1}, 253402318799},
    {"Etc/UTC", {0, 12, 31, 23, 59, 59, -1}, 0},
    {"Etc/UTC", {10000, 1, 1, 0, 0, 0, -1}, 0},
    {"Etc/UTC", {INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX}, 0},
    {"Etc/UTC", {INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN}, 0},
};

TEST(Time, IsMadeFromFieldsOfEveryKind) {
    for (const auto& [zoneName, f, utcSeconds] : kLocalRows) {
        const ScopedZone zone(zoneName);
        EXPECT_EQ(CTime(f[0], f[1], f[2], f[3], f[4], f[5], f[6]), At(utcSeconds)) << zoneName << ' ' << f[0];
    }
}

/// Reads the fields of a time as the C library tells them, and finds the way back from them.
void CheckThereAndBack(std::time_t utcSeconds) {
    const CTime time = At(utcSeconds);
    const std::tm expected = CLocalTime(utcSeconds);
    std::tm own{};
    ASSERT_EQ(time.GetLocalTm(&own), &own);
    ASSERT_EQ(std::tuple(own.tm_year, own.tm_mon, own.tm_mday, own.tm_hour, own.tm_min, own.tm_sec, own.tm_wday,
                         own.tm_yday, own.tm_isdst),
              std::tuple(expected.tm_year + 1900, expected.tm_mon + 1, expected.tm_mday, expected.tm_hour,
                         expected.tm_min, expected.tm_sec, expected.tm_wday, expected.tm_yday, expected.tm_isdst));
    const CTime first = LocalTime(own, -1);
    ASSERT_LE(first, time);
    ASSERT_EQ(COleDateTime(first), COleDateTime(time));
    ASSERT_EQ(CTime(COleDateTime(time).m_dt), first);
    std::tm ofFirst{};
    first.GetLocalTm(&ofFirst);
    ASSERT_EQ(LocalTime(own, own.tm_isdst), ofFirst.tm_isdst == own.tm_isdst ? first : time);
}

TEST(Time, ComesBackFromItsFieldsAroundEveryClockChangeOfEveryZone) {
    std::size_t changeCount = 0;
    for (const std::string& name : AllZones()) {
        SCOPED_TRACE(name);
        const ScopedZone zone(name.c_str());
        tzset();  // for the C library; ours sees the change by itself
        for (const std::time_t change : ClockChanges(-3000000000, 2500000000)) {
            const long before = CLocalTime(change - 1).tm_gmtoff;
            const long gap = CLocalTime(change).tm_gmtoff - before;
            for (const long distance : {-3601L, -1800L, -1L, 0L, 1L, 1800L, 3599L, -std::abs(gap), std::abs(gap)})
                ASSERT_NO_FATAL_FAILURE(CheckThereAndBack(change + distance)) << change << ' ' << distance;
            for (long into = 0; into < gap; into += gap / 3 + 1) {  // what is left out is moved on by the gap
                std::tm fields{};
                At(change + before + into).GetGmtTm(&fields);
                ASSERT_EQ(LocalTime(fields, -1), At(change + into)) << change << ' ' << into;
            }
            ++changeCount;
        }
    }
    EXPECT_GT(changeCount, 10000U) << "no zone database";
}

static_assert(!std::is_constructible_v<CTime, std::time_t> && !std::is_constructible_v<COleDateTime, int>);
static_assert(std::is_constructible_v<CTime, double> && std::is_constructible_v<COleDateTime, float>);

TEST(Time, GoesToTheCLibrarysAndTheClocksTimesAndBackAndKeepsOthersOut) {
    using namespace std::chrono;
    for (const double value : {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e300, -1e300, 3e6}) {
        EXPECT_EQ(COleDateTime(value).GetYear(), 1899) << value;
        EXPECT_EQ(CTime(value), CTime()) << value;
        EXPECT_EQ(CTime::FromCFAbsoluteTime(value * 1e6), CTime()) << value;
    }
    const CTimeSpan longest(INT_MAX, INT_MAX, INT_MAX, INT_MAX);
    EXPECT_EQ(CTime::GetCurrentTime() + longest, CTime());
    for (const std::time_t seconds : {-62135596800L, -1L, 0L, 1L, 1'795'000'000L, 253402300799L}) {
        EXPECT_EQ(CTime::FromTimeT(seconds).GetTime(), seconds);
        const sys_time<microseconds> time = sys_seconds(std::chrono::seconds(seconds)) + microseconds(500'000);
        EXPECT_EQ(rk::ToSysTime(rk::FromSysTime(time)), time);
    }
    EXPECT_EQ(rk::FromSysTime(sys_days{2001y / January / 1}).GetCFAbsoluteTime(), 0);
    for (const std::time_t seconds : {LONG_MIN, -62135683201L, 253402387200L, LONG_MAX}) {
        EXPECT_EQ(CTime::FromTimeT(seconds), CTime());
        EXPECT_EQ(rk::FromSysTime(sys_time<hours>(hours(seconds))), CTime());
    }
    for (microseconds time(1'795'000'000'000'000); time < microseconds(1'795'000'000'001'000); ++time)
        ASSERT_EQ(rk::ToSysTime(rk::FromSysTime(sys_time<microseconds>(time))).time_since_epoch(), time);
}

TEST(Time, AddsAndSubtractsSpans) {
    const CTime start(2024, 2, 28, 12, 0, 0, -1);
    const CTimeSpan span(1, 2, 3, 4);
    EXPECT_EQ((start + span - start).GetTotalSeconds(), 93784);
    EXPECT_EQ(start + span - span, start);
    const COleDateTime date(2024, 2, 28, 12, 0, 0);
    EXPECT_EQ(date + COleDateTimeSpan(1, 12, 0, 0), COleDateTime(2024, 3, 1, 0, 0, 0));
    EXPECT_NEAR((COleDateTime::GetCurrentTime() - COleDateTime(CTime::GetCurrentTime())).GetTotalSeconds(), 0, 2);
    const auto parts = [](const auto& s) {
        return std::tuple(s.GetDays(), s.GetHours(), s.GetMinutes(), s.GetSeconds());
    };
    const COleDateTimeSpan days(1, 2, 3, 4);
    EXPECT_EQ(parts(span), std::tuple(1, 2, 3, 4));
    EXPECT_EQ(parts(-span), std::tuple(-1, -2, -3, -4));
    EXPECT_EQ(parts(days), parts(span));  // although the fraction of a day is not exact
    EXPECT_EQ(parts(-days), parts(-span));
    EXPECT_EQ(parts(span * 1e300), std::tuple(0, 0, 0, 0));
    EXPECT_EQ((span + span - span * 0.5).GetTotalHours(), 1.5 * 93784 / 3600);
    EXPECT_EQ((COleDateTimeSpan(1, 12, 0, 0) * 2 - COleDateTimeSpan::FromDays(1)).GetTotalMinutes(), 2880);
    EXPECT_NEAR((CTime::GetCurrentTime() - At(std::time(nullptr))).GetTotalSeconds(), 0, 5);
}

TEST(Time, IsWrittenByAFormatOfC) {
    const ScopedZone zone("Europe/Berlin");
    const CTime time(2026, 7, 1, 9, 5, 7);
    const COleDateTime date(time);
    const std::tuple<CString, CString, CString> rows[] = {
        {u"%Y-%m-%d %H:%M:%S", u"2026-07-01 09:05:07", u"2026-07-01 09:05:07"},
        {u"%j %a \u00FC%%", u"182 Wed \u00FC%", u"182 Wed \u00FC%"},
        {u"%z", u"+0200", u""},
        {u"", u"", u""},
        {CString(std::u16string_view(u"%d\0%d", 5)), u"01", u"01"},
        {u"%1048576d", CString(std::u16string(1048575, u'0')) + u"1", CString(std::u16string(1048575, u'0')) + u"1"},
        {u"%1048577d", u"", u""}};
    for (const auto& [format, ofTime, ofDate] : rows) {
        EXPECT_EQ(time.Format(format), ofTime) << format;
        EXPECT_EQ(date.Format(format), ofDate) << format;
    }
}

}  // namespace
