#include "rklog/IsoTime.h"

#include <RkUtilities/foundation/CTime.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace rklog {

namespace {

using namespace std::chrono;

constexpr Seconds kUtcOf2001 = 978307200;  // where the seconds of CTime begin

/// Reads a text of fixed places from its start.
class Places {
public:
    explicit Places(std::string_view text) : m_text(text) {}

    bool Skip(std::string_view oneOf) {
        if (m_text.empty() || oneOf.find(m_text[0]) == std::string_view::npos)
            return false;
        m_text.remove_prefix(1);
        return true;
    }
    bool ReadNumber(std::size_t digitCount, int& number) {
        if (m_text.size() < digitCount)
            return false;
        number = 0;
        for (const char c : m_text.substr(0, digitCount)) {
            if (c < '0' || c > '9')
                return false;
            number = number * 10 + (c - '0');
        }
        m_text.remove_prefix(digitCount);
        return true;
    }
    void SkipDigits() {
        while (Skip("0123456789")) {
        }
    }
    [[nodiscard]] bool AreAtEnd() const { return m_text.empty(); }

private:
    std::string_view m_text;
};

bool ReadDay(Places& places, IsoTime& time) {
    int year = 0, month = 0, day = 0;
    if (!places.ReadNumber(4, year) || !places.Skip("-") || !places.ReadNumber(2, month) || !places.Skip("-") ||
        !places.ReadNumber(2, day))
        return false;
    const std::optional<Seconds> wall = WallOfDay(year, month, day);
    time.wall = wall.value_or(0);
    time.precision = kSecondsOfDay;
    return wall.has_value();
}

bool ReadTimeOfDay(Places& places, IsoTime& time) {
    int hour = 0, minute = 0, second = 0;
    if (!places.ReadNumber(2, hour) || !places.Skip(":") || !places.ReadNumber(2, minute))
        return false;
    time.precision = kSecondsOfMinute;
    if (places.Skip(":")) {
        if (!places.ReadNumber(2, second))
            return false;
        time.precision = 1;
        if (places.Skip(".,"))
            places.SkipDigits();
    }
    time.wall += hour * kSecondsOfHour + minute * kSecondsOfMinute + second;
    return hour < 24 && minute < 60 && second <= 60;
}

bool ReadZone(Places& places, IsoTime& time) {
    if (places.Skip("Z")) {
        time.zoneOffset = 0;
        return true;
    }
    int hour = 0, minute = 0;
    const bool isWest = places.Skip("-");
    if ((!isWest && !places.Skip("+")) || !places.ReadNumber(2, hour))
        return false;
    places.Skip(":");
    if (!places.ReadNumber(2, minute) || hour > 23 || minute > 59)
        return false;
    const Seconds offset = hour * kSecondsOfHour + minute * kSecondsOfMinute;
    time.zoneOffset = isWest ? -offset : offset;
    return true;
}

}  // namespace

std::optional<IsoTime> ReadIsoTime(std::string_view text) {
    Places places(text);
    IsoTime time;
    if (!ReadDay(places, time))
        return {};
    if (places.AreAtEnd())
        return time;
    if (!places.Skip("T ") || !ReadTimeOfDay(places, time))
        return {};
    if (!places.AreAtEnd() && !ReadZone(places, time))
        return {};
    return places.AreAtEnd() ? std::optional(time) : std::nullopt;
}

std::string IsoText(const IsoTime& time) {
    const auto day = floor<days>(sys_seconds(seconds(time.wall)));
    const year_month_day date(day);
    const Seconds ofDay = time.wall - duration_cast<seconds>(day.time_since_epoch()).count();
    char text[64];
    int length = std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(date.year()),
                               static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
    const auto append = [&](const char* format, auto... values) {
        length += std::snprintf(text + length, sizeof text - static_cast<std::size_t>(length), format, values...);
    };
    if (time.precision < kSecondsOfDay)
        append("T%02d:%02d", static_cast<int>(ofDay / kSecondsOfHour), static_cast<int>(ofDay / kSecondsOfMinute % 60));
    if (time.precision == 1)
        append(":%02d", static_cast<int>(ofDay % kSecondsOfMinute));
    if (time.zoneOffset) {
        const auto minutes = static_cast<int>(std::abs(*time.zoneOffset) / kSecondsOfMinute);
        append("%c%02d:%02d", *time.zoneOffset < 0 ? '-' : '+', minutes / 60, minutes % 60);
    }
    return text;
}

std::optional<Seconds> WallOfDay(int year, int month, int day) {
    const year_month_day date{std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                              std::chrono::day(static_cast<unsigned>(day))};
    if (!date.ok())
        return {};
    return duration_cast<seconds>(sys_days(date).time_since_epoch()).count();
}

Seconds UtcOfWall(Seconds wall) {
    const auto day = floor<days>(sys_seconds(seconds(wall)));
    const year_month_day date(day);
    const auto ofDay = static_cast<int>(wall - duration_cast<seconds>(day.time_since_epoch()).count());
    const CTime time(static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
                     static_cast<int>(static_cast<unsigned>(date.day())), ofDay / 3600, ofDay / 60 % 60, ofDay % 60);
    return static_cast<Seconds>(std::floor(time.GetCFAbsoluteTime())) + kUtcOf2001;
}

Seconds WallOfUtc(Seconds utc) {
    const CTime time = CTime::FromCFAbsoluteTime(static_cast<double>(utc - kUtcOf2001));
    const std::optional<Seconds> day = WallOfDay(time.GetYear(), time.GetMonth(), time.GetDay());
    return day.value_or(0) + time.GetHour() * kSecondsOfHour + time.GetMinute() * kSecondsOfMinute + time.GetSecond();
}

}  // namespace rklog
