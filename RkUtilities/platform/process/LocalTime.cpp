#include "RkUtilities/platform/process/LocalTime.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <mutex>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <system_error>

namespace rk::platform {

namespace {

constexpr std::int64_t kSecondsADay = 86400;
constexpr const char* kSystemZone = "/etc/localtime";

/// The zone that the C library has read last.
struct ReadZone {
    std::mutex mutex;
    std::string source;  // where it came from
    std::atomic<std::uint64_t> generation{0};
};

ReadZone& TheReadZone()
{
    static auto& zone = *new ReadZone;  // never destroyed: a static object's destructor may still ask
    return zone;
}

/// What must change for the zone to have changed: `TZ`, or the file of the system's zone.
std::string SourceOf(const char* variable)
{
    if (variable != nullptr)
        return std::string("TZ=") + variable;
    struct stat file {};
    if (stat(kSystemZone, &file) != 0)
        return "none";
    return std::to_string(file.st_dev) + ' ' + std::to_string(file.st_ino) + ' ' + std::to_string(file.st_mtime);
}

/// What a thread saw when it last looked closely.
struct SeenZone {
    std::uint64_t generation = 0;
    std::time_t second = 0;
    bool isVariable = false;
    std::array<char, 40> variable{};  // longer ones are looked at closely each time
};

bool IsUnchanged(const SeenZone& seen, const char* variable, std::time_t now)
{
    return seen.generation == TheReadZone().generation.load(std::memory_order_acquire) &&
           seen.isVariable == (variable != nullptr) &&
           (variable != nullptr ? variable == std::string_view(seen.variable.data()) : now == seen.second);
}

std::time_t CoarseSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return now.tv_sec;
}

/// localtime_r reads the zone once, and a changed one only after tzset.
std::uint64_t UpToDateZone()
{
    thread_local SeenZone seen;
    const char* const variable = std::getenv("TZ");
    const std::time_t now = variable != nullptr ? 0 : CoarseSeconds();
    if (IsUnchanged(seen, variable, now))
        return seen.generation;
    ReadZone& zone = TheReadZone();
    std::string source = SourceOf(variable);
    const std::lock_guard lock(zone.mutex);
    if (zone.source != source) {
        tzset();
        zone.source = std::move(source);
        zone.generation.fetch_add(1, std::memory_order_release);
    }
    const std::string_view value(variable != nullptr ? variable : "");
    seen = {.generation = zone.generation.load(std::memory_order_relaxed),
            .second = now,
            .isVariable = variable != nullptr};
    if (value.size() < seen.variable.size())
        value.copy(seen.variable.data(), value.size());
    else
        seen.generation = 0;
    return zone.generation.load(std::memory_order_relaxed);
}

CalendarTime FieldsOf(const std::tm& fields)
{
    return {.year = fields.tm_year + 1900,
            .month = fields.tm_mon + 1,
            .day = fields.tm_mday,
            .hour = fields.tm_hour,
            .minute = fields.tm_min,
            .second = fields.tm_sec,
            .dayOfWeek = fields.tm_wday,
            .dayOfYear = fields.tm_yday,
            .daylightTime = fields.tm_isdst,
            .utcOffset = static_cast<int>(fields.tm_gmtoff)};
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
    UpToDateZone();
    const auto time = static_cast<std::time_t>(utcSeconds);
    std::tm fields{};
    localtime_r(&time, &fields);
    return FieldsOf(fields);
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
    // An offset is less than a day, so these are the offsets before and after a change near by.
    const auto at = [](std::int64_t seconds) {
        return LocalCalendar(std::clamp(seconds, kFirstUtcSecond, kLastUtcSecond));
    };
    const int offsetBefore = at(localSeconds - kSecondsADay).utcOffset;
    const int offsetAfter = at(localSeconds + kSecondsADay).utcOffset;
    const std::int64_t first = localSeconds - offsetBefore;
    const std::int64_t second = localSeconds - offsetAfter;
    if (first == second)
        return first;
    const CalendarTime atFirst = at(first);
    const CalendarTime atSecond = at(second);
    const bool firstExists = atFirst.utcOffset == offsetBefore;
    const bool secondExists = atSecond.utcOffset == offsetAfter;
    if (firstExists != secondExists)
        return firstExists ? first : second;
    const bool wantsSecond = daylight != DaylightTime::Decide &&
                             (atFirst.daylightTime > 0) != (daylight == DaylightTime::Daylight) &&
                             (atSecond.daylightTime > 0) == (daylight == DaylightTime::Daylight);
    return firstExists && wantsSecond ? second : first;
}

std::uint64_t ZoneGeneration()
{
    return UpToDateZone();
}

std::string ZoneName()
{
    constexpr std::string_view kDatabase = "/zoneinfo/";
    std::string name;
    if (const char* const variable = std::getenv("TZ")) {
        name = *variable == ':' ? variable + 1 : variable;
        if (name.empty())
            return "UTC";  // as the C library takes it
    } else {
        std::error_code ignored;
        name = std::filesystem::canonical(kSystemZone, ignored).string();
    }
    const std::size_t folder = name.find(kDatabase);
    return folder != std::string::npos ? name.substr(folder + kDatabase.size()) : name;
}

}  // namespace rk::platform
