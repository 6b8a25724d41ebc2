#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace rklog {

/// Seconds since 1970-01-01 00:00, on a clock without a zone (that of a wall) or on that of UTC.
using Seconds = std::int64_t;

constexpr Seconds kSecondsOfMinute = 60;
constexpr Seconds kSecondsOfHour = 3600;
constexpr Seconds kSecondsOfDay = 86400;

/// A time as ISO 8601 writes it.
struct IsoTime {
    Seconds wall = 0;
    std::optional<Seconds> zoneOffset;  ///< of the zone from UTC, eastwards positive; empty when the text names no zone
    Seconds precision = kSecondsOfMinute;  ///< what the last field that is given counts: a day, a minute or a second
};

/// Reads "2026-11-16", "2026-11-16T21:52", "2026-11-16 21:52:05.123+01:00", "...Z". Fractions of a second are left out.
[[nodiscard]] std::optional<IsoTime> ReadIsoTime(std::string_view text);
/// "2026-11-16T21:52:05+01:00", without what the precision or a missing offset leaves out.
[[nodiscard]] std::string IsoText(const IsoTime& time);

/// The seconds of a date in the Gregorian calendar; nothing when there is no such day.
[[nodiscard]] std::optional<Seconds> WallOfDay(int year, int month, int day);

/// Converts between the clock on the wall and UTC, in the zone of this process.
[[nodiscard]] Seconds UtcOfWall(Seconds wall);
[[nodiscard]] Seconds WallOfUtc(Seconds utc);

}  // namespace rklog
