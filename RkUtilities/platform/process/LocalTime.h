#pragma once

#include <cmath>
#include <cstdint>
#include <ctime>
#include <string>

/// The calendar, in UTC and in the C library's local time (`TZ`, else the system's zone). Gregorian on both sides of
/// 1582, as the C library counts. A changed `TZ` is seen by the next call, a changed system's zone within a second. A
/// zone for which there is no memory counts as UTC in that call only. Safe from any thread as long as no thread changes
/// the environment meanwhile.
namespace rk::platform {

/// Calendar fields as C's, but the year in full and the month from 1. The zone has an offset and no name.
using CalendarTime = std::tm;

/// What a calendar may read, in seconds since it read 1 January 1970, 00:00:00: the years 1 to 9999.
constexpr std::int64_t kFirstCalendarSecond = -62135596800;
constexpr std::int64_t kLastCalendarSecond = 253402300799;

/// Times are whole seconds since 1 January 1970, 00:00:00 UTC, and lie in this range: the same years in every zone.
constexpr std::int64_t kFirstUtcSecond = kFirstCalendarSecond - 86400;
constexpr std::int64_t kLastUtcSecond = kLastCalendarSecond + 86400;

/// The second of 1 January 2001, 00:00:00 UTC.
constexpr std::int64_t kUtcSecondsOf2001 = 978307200;
/// The whole second of a time that is given in seconds since 1 January 2001.
inline std::int64_t UtcSecondsOf(double absoluteSeconds) noexcept {
    return static_cast<std::int64_t>(std::floor(absoluteSeconds)) + kUtcSecondsOf2001;
}

/// The fields of a time in range.
CalendarTime UtcCalendar(std::int64_t utcSeconds);
CalendarTime LocalCalendar(std::int64_t utcSeconds);

/// The seconds that the fields count when no zone is looked at; never overflows. Fields out of their ranges are carried
/// into the next larger field ("32 January" is 1 February).
std::int64_t SecondsOf(int year, int month, int day, int hour, int minute, int second);

/// The time whose local calendar reads `localSeconds` (`SecondsOf` its fields). Where a local time exists twice,
/// `daylight` chooses as C's tm_isdst does (0 standard time, 1 daylight saving time), else the first time counts. A
/// local time that a clock change leaves out is moved on by the length of the gap. The result may lie outside the
/// range.
std::int64_t LocalToUtc(std::int64_t localSeconds, int daylight);

/// The fields by a format of C's strftime; "" for more than 1 MiB. Names are those of the process's LC_TIME. Throws
/// `std::bad_alloc`, also where there is no memory for the zone.
std::string FormattedTime(CalendarTime fields, std::string format);

/// A number that changes with the zone of local times; 0 while no zone could be read for lack of memory.
std::uint64_t ZoneGeneration();

/// The zone's abbreviation at a time ("CET"); "" while no zone can be read for lack of memory.
std::string ZoneAbbreviation(std::int64_t utcSeconds);

/// The zone's name in the zone database ("Europe/Berlin"), as far as `TZ` or the system's link into the database tell;
/// where they do not, what `TZ` holds or where the link leads.
std::string ZoneName();

}  // namespace rk::platform
