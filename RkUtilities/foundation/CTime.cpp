#include "RkUtilities/foundation/CTime.h"

#include "RkUtilities/foundation/detail/DateValue.h"
#include "RkUtilities/platform/process/LocalTime.h"

#include <chrono>
#include <cmath>

namespace {

using rk::platform::CalendarTime;
using rk::platform::kUtcSecondsOf2001;

std::int64_t UtcSeconds(double absoluteSeconds) noexcept
{
    return static_cast<std::int64_t>(std::floor(absoluteSeconds)) + kUtcSecondsOf2001;
}

CalendarTime LocalFields(double absoluteSeconds) noexcept
{
    return rk::platform::LocalCalendar(UtcSeconds(absoluteSeconds));
}

std::tm* Fill(std::tm* record, const CalendarTime& fields) noexcept
{
    *record = std::tm{};
    record->tm_year = fields.year;
    record->tm_mon = fields.month;
    record->tm_mday = fields.day;
    record->tm_hour = fields.hour;
    record->tm_min = fields.minute;
    record->tm_sec = fields.second;
    record->tm_wday = fields.dayOfWeek;
    record->tm_yday = fields.dayOfYear;
    record->tm_isdst = fields.daylightTime;
    return record;
}

CTime LocalTime(std::int64_t localSeconds, int dst) noexcept
{
    using rk::platform::DaylightTime;
    if (localSeconds < rk::platform::kFirstCalendarSecond || localSeconds > rk::platform::kLastCalendarSecond)
        return CTime();
    const DaylightTime daylight =
        dst < 0 ? DaylightTime::Decide : (dst == 0 ? DaylightTime::Standard : DaylightTime::Daylight);
    return CTime::FromCFAbsoluteTime(
        static_cast<double>(rk::platform::LocalToUtc(localSeconds, daylight) - kUtcSecondsOf2001));
}

}  // namespace

CTime::CTime(double dateValue) noexcept : CTime(LocalTime(rk::SecondsOfDateValue(dateValue), -1))
{}

CTime::CTime(int year, int month, int day, int hour, int minute, int second, int dst) noexcept
    : CTime(LocalTime(rk::platform::SecondsOf(year, month, day, hour, minute, second), dst))
{}

CTime CTime::GetCurrentTime() noexcept
{
    using namespace std::chrono;
    const auto now = duration_cast<microseconds>(system_clock::now().time_since_epoch());
    const auto seconds = floor<std::chrono::seconds>(now);
    return FromCFAbsoluteTime(static_cast<double>(seconds.count() - kUtcSecondsOf2001) +
                              static_cast<double>((now - seconds).count()) / 1e6);
}

CTime CTime::FromCFAbsoluteTime(double seconds) noexcept
{
    constexpr auto kFirst = static_cast<double>(rk::platform::kFirstUtcSecond - kUtcSecondsOf2001);
    constexpr auto kEnd = static_cast<double>(rk::platform::kLastUtcSecond + 1 - kUtcSecondsOf2001);
    CTime time;
    if (seconds >= kFirst && seconds < kEnd)
        time.m_seconds = seconds;
    return time;
}

int CTime::GetYear() const noexcept
{
    return LocalFields(m_seconds).year;
}

int CTime::GetMonth() const noexcept
{
    return LocalFields(m_seconds).month;
}

int CTime::GetDay() const noexcept
{
    return LocalFields(m_seconds).day;
}

int CTime::GetHour() const noexcept
{
    return LocalFields(m_seconds).hour;
}

int CTime::GetMinute() const noexcept
{
    return LocalFields(m_seconds).minute;
}

int CTime::GetSecond() const noexcept
{
    return LocalFields(m_seconds).second;
}

int CTime::GetDayOfWeek() const noexcept
{
    return LocalFields(m_seconds).dayOfWeek + 1;
}

std::tm* CTime::GetGmtTm(std::tm* fields) const noexcept
{
    return Fill(fields, rk::platform::UtcCalendar(UtcSeconds(m_seconds)));
}

std::tm* CTime::GetLocalTm(std::tm* fields) const noexcept
{
    return Fill(fields, LocalFields(m_seconds));
}
