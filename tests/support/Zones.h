#pragma once

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

/// Every zone of the system's zone database by name ("Europe/Berlin"), without those that count leap seconds.
inline std::vector<std::string> AllZones()
{
    const std::filesystem::path database = "/usr/share/zoneinfo";
    std::vector<std::string> zones;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(database)) {
        const std::string name = entry.path().lexically_relative(database).string();
        std::string magic(4, '\0');
        std::ifstream(entry.path(), std::ios::binary).read(magic.data(), 4);
        if (magic == "TZif" && name.rfind("right/", 0) != 0 && name.rfind("posix/", 0) != 0)
            zones.push_back(name);
    }
    std::sort(zones.begin(), zones.end());
    EXPECT_GT(zones.size(), 300U) << "no zone database";
    return zones;
}

/// What the C library says of a time in the process's zone; call tzset first.
inline std::tm CLocalTime(std::time_t utcSeconds)
{
    std::tm fields{};
    localtime_r(&utcSeconds, &fields);
    return fields;
}

/// The first seconds after each change of the zone's offset between two times; shorter periods than two weeks may be missed.
inline std::vector<std::time_t> ClockChanges(std::time_t from, std::time_t to)
{
    constexpr std::time_t kStep = 14 * 86400;
    std::vector<std::time_t> changes;
    long offset = CLocalTime(from).tm_gmtoff;
    for (std::time_t time = from + kStep; time <= to; time += kStep) {
        if (CLocalTime(time).tm_gmtoff == offset)
            continue;
        std::time_t before = time - kStep;
        std::time_t after = time;
        while (after - before > 1) {
            const std::time_t middle = before + (after - before) / 2;
            (CLocalTime(middle).tm_gmtoff == offset ? before : after) = middle;
        }
        changes.push_back(after);
        offset = CLocalTime(after).tm_gmtoff;
        time = after;
    }
    return changes;
}
