#include "RkUtilities/platform/LocalTime.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <mutex>
#include <optional>
#include <string>

namespace rk::platform {

namespace {

constexpr std::int64_t kSecondsADay = 86400;

/// localtime_r reads the zone once; a changed `TZ` is seen only after tzset.
std::uint64_t ReadZone()
{
    static std::mutex mutex;
    static std::optional<std::string> known;
    static std::uint64_t generation = 0;
    const char* const now = std::getenv("TZ");
    const std::lock_guard lock(mutex);
    const bool same = generation != 0 && known.has_value() == (now != nullptr) && (now == nullptr || *known == now);
    if (!same) {
        known = now != nullptr ? std::optional<std::string>(now) : std::nullopt;
        tzset();
        ++generation;
    }
    return generation;
}

CalendarTime FieldsOf(const std::tm& fields)
{
    return {fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday, fields.tm_hour, fields.tm_min,
            fields.tm_sec,         fields.tm_wday,    fields.tm_yday, fields.tm_isdst};
}

std::tm LocalFields(std::int64_t utcSeconds)
{
    ReadZone();
    const auto time = static_cast<std::time_t>(utcSeconds);
    std::tm fields{};
    localtime_r(&time, &fields);
    return fields;
}

}  // namespace

CalendarTime UtcCalendar(std::int64_t utcSeconds)
{
    const auto time = static_cast<std::time_t>(utcSeconds);
    std::tm fields{};
    gmtime_r(&time, &fields);
    return FieldsOf(fields);
}

CalendarTime LocalCalendar(std::int64_t utcSeconds)
{
    return FieldsOf(LocalFields(utcSeconds));
}

std::int64_t LocalOffset(std::int64_t utcSeconds)
{
    return LocalFields(utcSeconds).tm_gmtoff;
}

std::int64_t SecondsOf(int year, int month, int day, int hour, int minute, int second)
{
    // Days from civil: years begin in March, so that the leap day comes last; 400 years have 146,097 days.
    const std::int64_t months = static_cast<std::int64_t>(year) * 12 + month - 3;
    const std::int64_t marchYear = months >= 0 ? months / 12 : (months - 11) / 12;
    const std::int64_t marchMonth = months - marchYear * 12;
    const std::int64_t era = marchYear >= 0 ? marchYear / 400 : (marchYear - 399) / 400;
    const std::int64_t yearOfEra = marchYear - era * 400;
    const std::int64_t dayOfYear = (153 * marchMonth + 2) / 5;
    const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    const std::int64_t days = era * 146097 + dayOfEra - 719468 + day - 1;
    return days * kSecondsADay + std::int64_t{hour} * 3600 + std::int64_t{minute} * 60 + second;
}

std::int64_t LocalToUtc(std::int64_t localSeconds, DaylightTime daylight)
{
    const auto clamped = [](std::int64_t seconds) { return std::clamp(seconds, kFirstUtcSecond, kLastUtcSecond); };
    const std::tm before = LocalFields(clamped(localSeconds - kSecondsADay));
    const std::tm after = LocalFields(clamped(localSeconds + kSecondsADay));
    const std::int64_t first = localSeconds - before.tm_gmtoff;
    const std::int64_t second = localSeconds - after.tm_gmtoff;
    if (first == second)
        return first;
    const std::tm atFirst = LocalFields(clamped(first));
    const std::tm atSecond = LocalFields(clamped(second));
    const bool firstExists = atFirst.tm_gmtoff == before.tm_gmtoff;
    const bool secondExists = atSecond.tm_gmtoff == after.tm_gmtoff;
    if (firstExists != secondExists)
        return firstExists ? first : second;
    const bool wantsSecond = daylight != DaylightTime::Decide &&
                             (atFirst.tm_isdst > 0) != (daylight == DaylightTime::Daylight) &&
                             (atSecond.tm_isdst > 0) == (daylight == DaylightTime::Daylight);
    return firstExists && wantsSecond ? second : first;
}

std::uint64_t ZoneGeneration()
{
    return ReadZone();
}

}  // namespace rk::platform
