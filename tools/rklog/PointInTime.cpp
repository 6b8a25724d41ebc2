#include "rklog/PointInTime.h"

#include <charconv>
#include <string>

namespace rklog {

namespace {

std::optional<Seconds> ReadAge(std::string_view text) {
    constexpr struct {
        char name;
        Seconds seconds;
    } kUnits[] = {{'s', 1}, {'m', kSecondsOfMinute}, {'h', kSecondsOfHour}, {'d', kSecondsOfDay}};
    constexpr unsigned kMost = 1'000'000'000;

    unsigned count = 0;
    const char* const end = text.data() + text.size();
    const auto [unit, error] = std::from_chars(text.data(), end, count);
    if (error != std::errc() || unit + 1 != end || count > kMost)
        return {};
    for (const auto& [name, seconds] : kUnits) {
        if (*unit == name)
            return count * seconds;
    }
    return {};
}

}  // namespace

std::optional<Stretch> ReadPointInTime(std::string_view text, Seconds nowUtc) {
    if (const std::optional<Seconds> age = ReadAge(text))
        return Stretch{nowUtc - *age, nowUtc - *age};
    const IsoTime today{.wall = WallOfUtc(nowUtc), .zoneOffset = {}, .precision = kSecondsOfDay};
    std::optional<IsoTime> time = ReadIsoTime(text);
    if (!time)
        time = ReadIsoTime(IsoText(today) + "T" + std::string(text));
    if (!time)
        return {};
    const Seconds last = time->wall + time->precision - 1;
    if (time->zoneOffset)
        return Stretch{time->wall - *time->zoneOffset, last - *time->zoneOffset};
    return Stretch{UtcOfWall(time->wall), UtcOfWall(last)};
}

}  // namespace rklog
