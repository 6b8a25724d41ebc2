#include "RkUtilities/foundation/CTime.h"

#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/foundation/detail/DateValue.h"
#include "RkUtilities/platform/process/LocalTime.h"

#include <chrono>

namespace {

using rk::platform::kUtcSecondsOf2001;

CTime LocalTime(std::int64_t localSeconds, int dst) noexcept {
    if (localSeconds < rk::platform::kFirstCalendarSecond || localSeconds > rk::platform::kLastCalendarSecond)
        return CTime();
    return CTime::FromCFAbsoluteTime(
        static_cast<double>(rk::platform::LocalToUtc(localSeconds, dst) - kUtcSecondsOf2001));
}

}  // namespace

CTime::CTime(double dateValue) noexcept
    : CTime(rk::IsDateValue(dateValue) ? LocalTime(rk::SecondsOfDateValue(dateValue), -1) : CTime()) {}

CTime::CTime(int year, int month, int day, int hour, int minute, int second, int dst) noexcept
    : CTime(LocalTime(rk::platform::SecondsOf(year, month, day, hour, minute, second), dst)) {}

CTime CTime::GetCurrentTime() noexcept {
    using namespace std::chrono;
    const auto now = duration_cast<microseconds>(system_clock::now().time_since_epoch());
    const auto seconds = floor<std::chrono::seconds>(now);
    return FromCFAbsoluteTime(static_cast<double>(seconds.count() - kUtcSecondsOf2001) +
                              static_cast<double>((now - seconds).count()) / 1e6);
}

CTime CTime::FromCFAbsoluteTime(double seconds) noexcept {
    constexpr auto kFirst = static_cast<double>(rk::platform::kFirstUtcSecond - kUtcSecondsOf2001);
    constexpr auto kEnd = static_cast<double>(rk::platform::kLastUtcSecond + 1 - kUtcSecondsOf2001);
    CTime time;
    if (seconds >= kFirst && seconds < kEnd)
        time.m_seconds = seconds;
    return time;
}

CTime CTime::FromTimeT(std::time_t seconds) noexcept {
    return FromCFAbsoluteTime(static_cast<double>(seconds) - static_cast<double>(kUtcSecondsOf2001));
}

std::time_t CTime::GetTime() const noexcept { return rk::platform::UtcSecondsOf(m_seconds); }

std::tm CTime::Fields() const noexcept { return rk::platform::LocalCalendar(rk::platform::UtcSecondsOf(m_seconds)); }

std::tm* CTime::GetGmtTm(std::tm* fields) const noexcept {
    *fields = rk::platform::UtcCalendar(rk::platform::UtcSecondsOf(m_seconds));
    return fields;
}

std::tm* CTime::GetLocalTm(std::tm* fields) const noexcept {
    *fields = Fields();
    return fields;
}

CString CTime::Format(const CString& format) const { return rk::platform::FormattedTime(Fields(), format.ToUtf8()); }
