#include "RkUtilities/foundation/COleDateTime.h"

#include "RkUtilities/foundation/detail/DateValue.h"
#include "RkUtilities/platform/process/LocalTime.h"

#include <cmath>

namespace rk {

namespace {

constexpr double kSecondsADay = 86400;
constexpr std::int64_t kDateValueZero = -2209161600;  // 30 December 1899

}  // namespace

std::int64_t SecondsOfDateValue(double dateValue) noexcept
{
    const double seconds = std::round(dateValue * kSecondsADay);
    const auto first = static_cast<double>(platform::kFirstCalendarSecond - kDateValueZero);
    const auto last = static_cast<double>(platform::kLastCalendarSecond - kDateValueZero);
    if (!(seconds >= first && seconds <= last))  // not-a-number fails too
        return kDateValueZero;
    return static_cast<std::int64_t>(seconds) + kDateValueZero;
}

double DateValueOfSeconds(std::int64_t seconds) noexcept
{
    return static_cast<double>(seconds - kDateValueZero) / kSecondsADay;
}

}  // namespace rk

namespace {

rk::platform::CalendarTime FieldsOf(double dateValue) noexcept
{
    return rk::platform::UtcCalendar(rk::SecondsOfDateValue(dateValue));
}

}  // namespace

COleDateTime::COleDateTime(const CTime& time) noexcept
{
    std::tm fields{};
    time.GetLocalTm(&fields);
    *this = COleDateTime(fields.tm_year, fields.tm_mon, fields.tm_mday, fields.tm_hour, fields.tm_min, fields.tm_sec);
}

COleDateTime::COleDateTime(int year, int month, int day, int hour, int minute, int second) noexcept
    : m_dt(rk::DateValueOfSeconds(rk::platform::SecondsOf(year, month, day, hour, minute, second)))
{}

int COleDateTime::GetYear() const noexcept
{
    return FieldsOf(m_dt).year;
}

int COleDateTime::GetMonth() const noexcept
{
    return FieldsOf(m_dt).month;
}

int COleDateTime::GetDay() const noexcept
{
    return FieldsOf(m_dt).day;
}

int COleDateTime::GetHour() const noexcept
{
    return FieldsOf(m_dt).hour;
}

int COleDateTime::GetMinute() const noexcept
{
    return FieldsOf(m_dt).minute;
}

int COleDateTime::GetSecond() const noexcept
{
    return FieldsOf(m_dt).second;
}

int COleDateTime::GetDayOfWeek() const noexcept
{
    return FieldsOf(m_dt).dayOfWeek + 1;
}
