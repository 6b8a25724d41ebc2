#pragma once

#include "RkUtilities/foundation/CTime.h"

#include <chrono>
#include <cmath>

namespace rk {

/// The time as the clock of the system counts it, to the nearest microsecond: a clock's time near the present comes
/// back from `FromSysTime` as it was. The result converts to `std::chrono::system_clock::time_point`, whose nanoseconds
/// reach from 1677 to 2262 only.
inline std::chrono::sys_time<std::chrono::microseconds> ToSysTime(const CTime& time) noexcept {
    constexpr double kMicroseconds = 1e6;
    const double seconds = std::floor(time.GetCFAbsoluteTime());
    const double fraction = std::round((time.GetCFAbsoluteTime() - seconds) * kMicroseconds);
    return std::chrono::sys_seconds(std::chrono::seconds(time.GetTime())) +
           std::chrono::microseconds(static_cast<long>(fraction));
}

/// The time that a clock of the system shows (`std::chrono::system_clock::now()`, `std::chrono::sys_days`), to the
/// microsecond and better; the null time for years that `CTime` does not reach.
template <class Duration> CTime FromSysTime(std::chrono::sys_time<Duration> time) noexcept {
    using Seconds = std::chrono::duration<double>;
    constexpr double kSecondsOf2001 = 978307200;
    constexpr double kMost = 1e12;  // beyond every year of CTime, and within the clock's whole seconds
    const double roughSeconds = Seconds(time.time_since_epoch()).count();
    if (!(std::abs(roughSeconds) < kMost))
        return {};
    const auto whole = std::chrono::floor<std::chrono::seconds>(time);
    return CTime::FromCFAbsoluteTime(static_cast<double>(whole.time_since_epoch().count()) - kSecondsOf2001 +
                                     Seconds(time - whole).count());
}

}  // namespace rk
