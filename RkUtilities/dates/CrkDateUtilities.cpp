#include "RkUtilities/dates/CrkDateUtilities.h"

#include "RkUtilities/platform/process/LocalTime.h"

#include <chrono>
#include <tuple>

constinit const CTime CrkDateUtilities::NullTime;
/// Made before other files' initialisers run, in the static library too, where files have no order of their own.
[[gnu::init_priority(101)]] const CTime CrkDateUtilities::MinimumTime(1970, 1, 2, 0, 0, 0, -1);
[[gnu::init_priority(101)]] const CTime CrkDateUtilities::MaximumTime(3000, 12, 30, 23, 59, 59, -1);

namespace {

std::tm LocalFields(const CTime& time) noexcept {
    std::tm fields{};
    time.GetLocalTm(&fields);
    return fields;
}

CTimeSpan OffsetNow() noexcept {
    using namespace std::chrono;
    const auto now = floor<seconds>(system_clock::now().time_since_epoch());
    return CTimeSpan::FromSeconds(static_cast<double>(rk::platform::LocalCalendar(now.count()).tm_gmtoff));
}

/// Days that have passed since the first day of the week; `dayOfWeek` is 1 on Sunday.
int DaysIntoWeek(int dayOfWeek, std::u16string_view language) noexcept {
    const bool beginsOnMonday = language == u"de" || language == u"fr";
    return beginsOnMonday ? (dayOfWeek + 5) % 7 : dayOfWeek - 1;
}

}  // namespace

CTime CrkDateUtilities::ConvertUtcTimeToLocalTime(const CTime& time) noexcept { return time - OffsetNow(); }

CTime CrkDateUtilities::ConvertLocalTimeToUtcTime(const CTime& time) noexcept { return time + OffsetNow(); }

COleDateTime CrkDateUtilities::RemoveTimeFromDate(const COleDateTime& date) noexcept {
    return {date.GetYear(), date.GetMonth(), date.GetDay(), 0, 0, 0};
}

CTime CrkDateUtilities::RemoveTimeFromDate(const CTime& time) noexcept {
    const std::tm fields = LocalFields(time);
    return {fields.tm_year, fields.tm_mon, fields.tm_mday, 0, 0, 0, -1};
}

bool CrkDateUtilities::IsSameDay(const CTime& a, const CTime& b) noexcept {
    const std::tm first = LocalFields(a);
    const std::tm second = LocalFields(b);
    return std::tie(first.tm_year, first.tm_yday) == std::tie(second.tm_year, second.tm_yday);
}

bool CrkDateUtilities::IsSameDay(const COleDateTime& a, const COleDateTime& b) noexcept {
    return RemoveTimeFromDate(a) == RemoveTimeFromDate(b);
}

COleDateTime CrkDateUtilities::GetLocalizedWeekStart(const COleDateTime& date, const CString& language) noexcept {
    return RemoveTimeFromDate(date) - COleDateTimeSpan(DaysIntoWeek(date.GetDayOfWeek(), language), 0, 0, 0);
}

CTime CrkDateUtilities::GetLocalizedWeekStart(CTime date, CString language) noexcept {
    const std::tm fields = LocalFields(date);
    if (fields.tm_year == 1970 && fields.tm_mon == 1 && fields.tm_mday <= 3)
        return MinimumTime;
    return {fields.tm_year, fields.tm_mon, fields.tm_mday - DaysIntoWeek(fields.tm_wday + 1, language), 0, 0, 0, -1};
}
