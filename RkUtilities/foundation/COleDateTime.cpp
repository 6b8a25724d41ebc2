#include "RkUtilities/foundation/COleDateTime.h"

#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/foundation/detail/DateValue.h"
#include "RkUtilities/platform/process/LocalTime.h"

#include <cmath>

namespace platform = rk::platform;

namespace {

constexpr double kSecondsADay = 86400;
constexpr std::int64_t kDateValueZero = -2209161600;  // 30 December 1899

}  // namespace

bool rk::IsDateValue(double dateValue) noexcept {
    const double seconds = std::round(dateValue * kSecondsADay);
    const auto first = static_cast<double>(platform::kFirstCalendarSecond - kDateValueZero);
    const auto last = static_cast<double>(platform::kLastCalendarSecond - kDateValueZero);
    return seconds >= first && seconds <= last;  // not-a-number fails too
}

std::int64_t rk::SecondsOfDateValue(double dateValue) noexcept {
    return kDateValueZero +
           (IsDateValue(dateValue) ? static_cast<std::int64_t>(std::round(dateValue * kSecondsADay)) : 0);
}

COleDateTime::COleDateTime(const CTime& time) noexcept {
    std::tm fields{};
    time.GetLocalTm(&fields);
    *this = COleDateTime(fields.tm_year, fields.tm_mon, fields.tm_mday, fields.tm_hour, fields.tm_min, fields.tm_sec);
}

COleDateTime::COleDateTime(int year, int month, int day, int hour, int minute, int second) noexcept
    : m_dt(static_cast<double>(platform::SecondsOf(year, month, day, hour, minute, second) - kDateValueZero) /
           kSecondsADay) {}

std::tm COleDateTime::Fields() const noexcept { return platform::UtcCalendar(rk::SecondsOfDateValue(m_dt)); }

CString COleDateTime::Format(const CString& format) const {
    std::tm fields = Fields();
    fields.tm_isdst = -1;  // no zone is known
    return platform::FormattedTime(fields, format.ToUtf8());
}
