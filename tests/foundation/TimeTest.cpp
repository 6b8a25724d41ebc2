#include "RkUtilities/foundation/COleDateTime.h"
#include "RkUtilities/foundation/CTime.h"

#include "tests/support/ScopedVariable.h"
#include "tests/support/Zones.h"

#include <chrono>
#include <climits>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace {

const CTime kBeforeMain;

std::string Fields(const CTime& time)
{
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", time.GetYear(), time.GetMonth(), time.GetDay(),
                  time.GetHour(), time.GetMinute(), time.GetSecond());
    return text;
}

TEST(Time, CountsEveryDayOfTheYears1To9999AsTheCalendarDoes)
{
    using namespace std::chrono;
    const ScopedZone utc("UTC");
    const sys_days last{9999y / December / 31};
    for (sys_days day{1y / January / 1}; day <= last; day += days{day.time_since_epoch().count() % 5 + 7}) {
        const year_month_day date(day);
        const int year = static_cast<int>(date.year());
        const auto month = static_cast<int>(static_cast<unsigned>(date.month()));
        const auto dayOfMonth = static_cast<int>(static_cast<unsigned>(date.day()));
        const auto ofWeek = static_cast<int>(weekday(day).c_encoding()) + 1;
        const CTime time(year, month, dayOfMonth, 23, 59, 58, -1);
        ASSERT_EQ(time.GetCFAbsoluteTime(),
                  static_cast<double>(sys_seconds(day).time_since_epoch().count() - 978307200 + 86398));
        ASSERT_EQ(std::tuple(time.GetYear(), time.GetMonth(), time.GetDay(), time.GetDayOfWeek()),
                  std::tuple(year, month, dayOfMonth, ofWeek));
        const COleDateTime value(time);
        ASSERT_EQ(
            std::tuple(value.GetYear(), value.GetMonth(), value.GetDay(), value.GetDayOfWeek(), value.GetSecond()),
            std::tuple(year, month, dayOfMonth, ofWeek, 58));
        ASSERT_EQ(CTime(value.m_dt), time);
    }
    EXPECT_EQ(COleDateTime(1900, 2, 28, 0, 0, 0).m_dt, 60);
    EXPECT_EQ(COleDateTime(1900, 3, 1, 0, 0, 0).m_dt, 61);
    EXPECT_EQ(COleDateTime(1899, 12, 29, 18, 0, 0).m_dt, -0.25);
    EXPECT_EQ(kBeforeMain.GetCFAbsoluteTime(), CTime(1970, 1, 1, 0, 0, 0, -1).GetCFAbsoluteTime());
}

struct LocalRow {
    const char* zone;
    int fields[7];  // year to second, dst
    const char* read;
    double utcOffset;  // hours
};
constexpr LocalRow kLocalRows[] = {
    {"Europe/Berlin", {2026, 3, 29, 2, 30, 0, -1}, "2026-03-29 03:30:00", 2},  // does not exist
    {"Europe/Berlin", {2026, 3, 29, 2, 30, 0, 0}, "2026-03-29 03:30:00", 2},
    {"Europe/Berlin", {2026, 10, 25, 2, 30, 0, -1}, "2026-10-25 02:30:00", 2},  // exists twice: the first
    {"Europe/Berlin", {2026, 10, 25, 2, 30, 0, 1}, "2026-10-25 02:30:00", 2},
    {"Europe/Berlin", {2026, 10, 25, 2, 30, 0, 0}, "2026-10-25 02:30:00", 1},
    {"Europe/Berlin", {2026, 7, 1, 12, 0, 0, 0}, "2026-07-01 12:00:00", 2},  // dst does not shift what exists once
    {"America/St_Johns", {2026, 1, 1, 0, 0, 0, -1}, "2026-01-01 00:00:00", -3.5},
    {"Asia/Kathmandu", {2026, 1, 1, 0, 0, 0, -1}, "2026-01-01 00:00:00", 5.75},
    {"Australia/Lord_Howe", {2026, 10, 4, 2, 15, 0, -1}, "2026-10-04 02:45:00", 11},  // half an hour is left out
    {"Pacific/Apia", {2011, 12, 30, 12, 0, 0, -1}, "2011-12-31 12:00:00", 14},        // the day is left out
    {"Etc/UTC", {2026, 13, 32, 25, -1, 61, -1}, "2027-02-02 01:00:01", 0},            // fields are carried
    {"Etc/UTC", {2026, 0, 0, 0, 0, 0, -1}, "2025-11-30 00:00:00", 0},
    {"Asia/Tokyo", {1, 1, 1, 0, 0, 0, -1}, "0001-01-01 00:00:00", 9 + 19 / 60.0},  // in UTC the year before
    {"America/New_York", {9999, 12, 31, 23, 59, 59, -1}, "9999-12-31 23:59:59", -5},
    {"Etc/UTC", {0, 12, 31, 23, 59, 59, -1}, "1970-01-01 00:00:00", 0},
    {"Etc/UTC", {10000, 1, 1, 0, 0, 0, -1}, "1970-01-01 00:00:00", 0},  // out of range: the null time
    {"Etc/UTC", {INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX}, "1970-01-01 00:00:00", 0},
    {"Etc/UTC", {INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN}, "1970-01-01 00:00:00", 0},
};

TEST(Time, FollowsTheZoneOnDaysOfClockChanges)
{
    for (const LocalRow& row : kLocalRows) {
        SCOPED_TRACE(row.read);
        const ScopedZone zone(row.zone);
        const auto& f = row.fields;
        const CTime time(f[0], f[1], f[2], f[3], f[4], f[5], f[6]);
        EXPECT_EQ(Fields(time), row.read);
        std::tm local{};
        std::tm utc{};
        time.GetLocalTm(&local);
        time.GetGmtTm(&utc);
        const auto value = [](const std::tm& t) {
            return COleDateTime(t.tm_year, t.tm_mon, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec).m_dt;
        };
        EXPECT_NEAR((value(local) - value(utc)) * 24, row.utcOffset, 0.01);
    }
}

CTime At(std::time_t utcSeconds)
{
    return CTime::FromCFAbsoluteTime(static_cast<double>(utcSeconds - 978307200));
}

/// Reads the fields of a time as the C library tells them, and finds the way back from them.
void CheckThereAndBack(std::time_t utcSeconds)
{
    const CTime time = At(utcSeconds);
    const std::tm expected = CLocalTime(utcSeconds);
    std::tm own{};
    ASSERT_EQ(time.GetLocalTm(&own), &own);
    ASSERT_EQ(std::tuple(own.tm_year, own.tm_mon, own.tm_mday, own.tm_hour, own.tm_min, own.tm_sec, own.tm_wday,
                         own.tm_yday, own.tm_isdst),
              std::tuple(expected.tm_year + 1900, expected.tm_mon + 1, expected.tm_mday, expected.tm_hour,
                         expected.tm_min, expected.tm_sec, expected.tm_wday, expected.tm_yday, expected.tm_isdst));
    const CTime first(own.tm_year, own.tm_mon, own.tm_mday, own.tm_hour, own.tm_min, own.tm_sec, -1);
    ASSERT_LE(first, time);
    ASSERT_EQ(COleDateTime(first).m_dt, COleDateTime(time).m_dt);
    ASSERT_EQ(CTime(COleDateTime(time).m_dt), first);
    const CTime meant(own.tm_year, own.tm_mon, own.tm_mday, own.tm_hour, own.tm_min, own.tm_sec, own.tm_isdst);
    std::tm of{};
    first.GetLocalTm(&of);
    ASSERT_EQ(meant, of.tm_isdst == own.tm_isdst ? first : time);
}

TEST(Time, ComesBackFromItsFieldsAroundEveryClockChangeOfEveryZone)
{
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
                const std::time_t local = change + before + into;
                std::tm fields{};
                gmtime_r(&local, &fields);
                ASSERT_EQ(CTime(fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday, fields.tm_hour, fields.tm_min,
                                fields.tm_sec, -1),
                          At(change + into))
                    << change << ' ' << into;
            }
            ++changeCount;
        }
    }
    EXPECT_GT(changeCount, 10000U);
}

TEST(Time, KeepsNumbersThatAreNoDatesOut)
{
    const double bad[] = {NAN, INFINITY, -INFINITY, 1e300, -1e300, 3e6};
    for (const double value : bad) {
        EXPECT_EQ(COleDateTime(value).GetYear(), 1899) << value;
        EXPECT_EQ(CTime(value), CTime(1899, 12, 30, 0, 0, 0, -1)) << value;
    }
    EXPECT_EQ(CTime::FromCFAbsoluteTime(NAN), CTime());
    EXPECT_EQ(CTime::FromCFAbsoluteTime(1e12), CTime());
    const CTimeSpan longest(INT_MAX, INT_MAX, INT_MAX, INT_MAX);
    EXPECT_EQ(CTime::GetCurrentTime() + longest, CTime());
    EXPECT_EQ(CTime::GetCurrentTime() - longest, CTime());
}

TEST(Time, AddsAndSubtractsSpans)
{
    const CTime start(2024, 2, 28, 12, 0, 0, -1);
    const CTimeSpan span(1, 2, 3, 4);
    EXPECT_EQ(start + span - start, span);
    EXPECT_EQ(span.GetTotalSeconds(), 93784);
    EXPECT_EQ(start + span - span, start);
    EXPECT_LT(start, start + span);
    const COleDateTime date(2024, 2, 28, 12, 0, 0);
    EXPECT_EQ((date + COleDateTimeSpan(1, 12, 0, 0)).GetDay(), 1);
    EXPECT_EQ((date - COleDateTimeSpan(58, 12, 0, 0)).GetYear(), 2024);
    EXPECT_EQ((date - COleDateTimeSpan(58, 12, 0, 1)).GetYear(), 2023);
    const double now = CTime::GetCurrentTime().GetCFAbsoluteTime();
    const double clock = std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
    EXPECT_NEAR(now + 978307200, clock, 5);
}

}  // namespace
