#include "RkUtilities/platform/process/LocalTime.h"

#include "RkUtilities/platform/process/Threads.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <new>
#include <string_view>
#include <sys/stat.h>

namespace rk::platform {

namespace {

constexpr std::int64_t kSecondsADay = 86400;
constexpr const char* kSystemZone = "/etc/localtime";

/// Where a zone comes from: `TZ`, or the file of the system's zone.
struct ZoneSource {
    bool isVariable = false;
    std::array<char, 256> variable{};
    dev_t device = 0;
    ino_t file = 0;
    std::time_t fileTime = 0;

    bool operator==(const ZoneSource&) const = default;
};

/// The zone that the C library has read last. Guarded by `Lock::Zone`, since no fork looks at the C library's own lock.
/// Takes no memory: asking for a calendar field must not fail.
struct ReadZone {
    std::uint64_t generation = 0;
    bool isKnown = false;  // whether `source` is where it came from
    ZoneSource source;
    std::time_t lookedAt = 0;  // when the system's zone was looked at last
};
constinit ReadZone zone;

std::time_t CoarseSeconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return now.tv_sec;
}

/// The C library takes a zone for which it has no memory for UTC, and stays with that.
bool HasMemoryForZone() {
    constexpr std::size_t kZoneByteCount = std::size_t{64} * 1024;  // more than any zone takes
    void* volatile const memory =
        std::malloc(kZoneByteCount);  // NOLINT(cppcoreguidelines-no-malloc): as the C library does
    const bool hasMemory = memory != nullptr;
    std::free(memory);  // NOLINT(cppcoreguidelines-no-malloc)
    return hasMemory;
}

/// Whether the C library's zone is that of `TZ`, or of the system as it was seen within this second.
bool IsUpToDate(const char* variable) {
    if (!zone.isKnown || zone.source.isVariable != (variable != nullptr))
        return false;
    return variable != nullptr ? std::strcmp(variable, zone.source.variable.data()) == 0
                               : CoarseSeconds() == zone.lookedAt;
}

/// Calls tzset for a changed zone, which localtime_r does not read by itself. False without memory for that zone.
bool UpdateZone() {
    const char* const variable = std::getenv("TZ");
    if (IsUpToDate(variable))
        return true;
    ZoneSource source;
    source.isVariable = variable != nullptr;
    const std::string_view value(variable != nullptr ? variable : "");
    const bool fits = value.size() < source.variable.size();  // a longer value counts as changed each time
    struct stat facts{};
    if (source.isVariable && fits) {
        value.copy(source.variable.data(), value.size());
    } else if (!source.isVariable && stat(kSystemZone, &facts) == 0) {
        source.device = facts.st_dev;
        source.file = facts.st_ino;
        source.fileTime = facts.st_mtime;
    }
    zone.lookedAt = CoarseSeconds();
    if (zone.isKnown && zone.source == source)
        return true;
    if (!HasMemoryForZone())
        return false;
    tzset();
    zone.source = source;
    zone.isKnown = fits;
    ++zone.generation;
    return true;
}

CalendarTime FieldsOf(std::tm fields) {
    fields.tm_year += 1900;
    ++fields.tm_mon;
    fields.tm_zone = nullptr;  // it does not outlive the zone
    return fields;
}

}  // namespace

CalendarTime UtcCalendar(std::int64_t utcSeconds) {
    const auto time = static_cast<std::time_t>(utcSeconds);
    std::tm fields{};
    gmtime_r(&time, &fields);
    return FieldsOf(fields);
}

CalendarTime LocalCalendar(std::int64_t utcSeconds) {
    const auto time = static_cast<std::time_t>(utcSeconds);
    std::tm fields{};
    const std::lock_guard lock(MutexOf(Lock::Zone));
    if (!UpdateZone())
        return UtcCalendar(utcSeconds);
    localtime_r(&time, &fields);
    return FieldsOf(fields);
}

std::int64_t SecondsOf(int year, int month, int day, int hour, int minute, int second) {
    // std::chrono's years are of 16 bits: eras of 400 years, which have 146,097 days, are taken out before.
    constexpr std::int64_t kMonths = 4800, kDays = 146097;
    const std::int64_t months = static_cast<std::int64_t>(year) * 12 + month - 1;
    const std::int64_t eras = (months >= 0 ? months : months - (kMonths - 1)) / kMonths;
    const auto monthOfEra = static_cast<int>(months - eras * kMonths);
    const auto first = std::chrono::year(monthOfEra / 12) / (monthOfEra % 12 + 1) / 1;
    const std::int64_t days = std::chrono::sys_days(first).time_since_epoch().count() + eras * kDays + day - 1;
    return days * kSecondsADay + std::int64_t{hour} * 3600 + std::int64_t{minute} * 60 + second;
}

std::int64_t LocalToUtc(std::int64_t localSeconds, int daylight) {
    // An offset is less than a day, so these are the offsets before and after a change near by.
    const auto at = [](std::int64_t seconds) {
        return LocalCalendar(std::clamp(seconds, kFirstUtcSecond, kLastUtcSecond));
    };
    const long offsetBefore = at(localSeconds - kSecondsADay).tm_gmtoff;
    const long offsetAfter = at(localSeconds + kSecondsADay).tm_gmtoff;
    const std::int64_t first = localSeconds - offsetBefore;
    const std::int64_t second = localSeconds - offsetAfter;
    if (first == second)
        return first;
    const CalendarTime atFirst = at(first);
    const CalendarTime atSecond = at(second);
    const bool firstExists = atFirst.tm_gmtoff == offsetBefore;
    const bool secondExists = atSecond.tm_gmtoff == offsetAfter;
    if (firstExists != secondExists)
        return firstExists ? first : second;
    const bool wantsSecond =
        daylight >= 0 && (atFirst.tm_isdst > 0) != (daylight > 0) && (atSecond.tm_isdst > 0) == (daylight > 0);
    return firstExists && wantsSecond ? second : first;
}

std::string FormattedTime(CalendarTime fields, std::string format) {
    constexpr std::size_t kMostBytes = (std::size_t{1} << 20) + 2;  // with the "." and the terminator
    fields.tm_year -= 1900;
    --fields.tm_mon;
    format.resize(std::min(format.size(), format.find('\0')));
    format += '.';  // tells an empty result from a lack of room
    std::string text;
    const std::lock_guard lock(MutexOf(Lock::Zone));
    if (!UpdateZone())
        throw std::bad_alloc();
    do {
        text.resize(std::min(std::max(format.size() + 64, 4 * text.size()), kMostBytes));
        if (const std::size_t count = std::strftime(text.data(), text.size(), format.c_str(), &fields); count > 0)
            return text.substr(0, count - 1);
    } while (text.size() < kMostBytes);
    return {};
}

std::uint64_t ZoneGeneration() {
    const std::lock_guard lock(MutexOf(Lock::Zone));
    return UpdateZone() ? zone.generation : 0;
}

std::string ZoneAbbreviation(std::int64_t utcSeconds) {
    const auto time = static_cast<std::time_t>(utcSeconds);
    std::tm fields{};
    const std::lock_guard lock(MutexOf(Lock::Zone));
    if (!UpdateZone() || localtime_r(&time, &fields) == nullptr || fields.tm_zone == nullptr)
        return {};
    return fields.tm_zone;
}

std::string ZoneName() {
    constexpr std::string_view kDatabase = "/zoneinfo/";
    std::string name;
    if (const char* const variable = std::getenv("TZ")) {
        name = *variable == ':' ? variable + 1 : variable;
        if (name.empty())
            return "UTC";  // as the C library takes it
    } else {
        char path[PATH_MAX];
        name = realpath(kSystemZone, path) != nullptr ? path : "";
    }
    const std::size_t folder = name.find(kDatabase);
    return folder != std::string::npos ? name.substr(folder + kDatabase.size()) : name;
}

}  // namespace rk::platform
