#pragma once

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <string>
#include <vector>

/// Every zone of the system's zone database, by the first of its names ("Africa/Abidjan", but not "Africa/Accra", which has
/// the same rules), without those that count leap seconds.
inline std::vector<std::string> AllZones() {
    const std::filesystem::path database = "/usr/share/zoneinfo";
    std::map<std::string, std::string> nameByRules;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(database)) {
        if (!entry.is_regular_file())
            continue;
        const std::string name = entry.path().lexically_relative(database).string();
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string rules(std::istreambuf_iterator<char>(file), {});
        if (rules.rfind("TZif", 0) != 0 || name.rfind("right/", 0) == 0 || name.rfind("posix/", 0) == 0)
            continue;
        std::string& known = nameByRules[rules];
        if (known.empty() || name < known)
            known = name;
    }
    std::vector<std::string> zones;
    for (const auto& [rules, name] : nameByRules)
        zones.push_back(name);
    std::sort(zones.begin(), zones.end());
    EXPECT_GT(zones.size(), 300U) << "no zone database";
    return zones;
}

/// What the C library says of a time in the process's zone; call tzset first.
inline std::tm CLocalTime(std::time_t utcSeconds) {
    std::tm fields{};
    localtime_r(&utcSeconds, &fields);
    return fields;
}

/// The first seconds after each change of the zone's offset between two times; shorter periods than two weeks may be missed.
inline std::vector<std::time_t> ClockChanges(std::time_t from, std::time_t to) {
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
