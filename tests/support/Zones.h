#pragma once

#include <ctime>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

/// A zone for each set of rules since 1970 in the system's zone database.
inline std::vector<std::string> AllZones() {
    std::ifstream table("/usr/share/zoneinfo/zone1970.tab");
    std::vector<std::string> zones;
    for (std::string line, countries, place, zone; std::getline(table, line);)
        if (std::istringstream row(line); !line.starts_with('#') && row >> countries >> place >> zone)
            zones.push_back(zone);
    return zones;
}

/// What the C library says of a time in the process's zone; call tzset first.
inline std::tm CLocalTime(std::time_t utcSeconds) {
    std::tm fields{};
    localtime_r(&utcSeconds, &fields);
    return fields;
}

/// The first seconds after each change of the zone's offset between two times; periods below two weeks may be missed.
inline std::vector<std::time_t> ClockChanges(std::time_t from, std::time_t to) {
    constexpr std::time_t kStep = 14 * 86400;
    std::vector<std::time_t> changes;
    for (std::time_t time = from; time < to; time += kStep) {
        const auto isBefore = [offset = CLocalTime(time).tm_gmtoff](std::time_t each) {
            return CLocalTime(each).tm_gmtoff == offset;
        };
        std::time_t last = time, change = time + kStep;
        if (isBefore(change))
            continue;
        while (change - last > 1) {
            const std::time_t middle = last + (change - last) / 2;
            (isBefore(middle) ? last : change) = middle;
        }
        changes.push_back(change);
    }
    return changes;
}
