#include "rklog/Levels.h"

#include <array>
#include <cctype>
#include <string>

namespace rklog {

namespace {

/// As CrkLogWriter::Severity gives them, by level.
constexpr std::array<std::string_view, kLevelCount> kNames = {"Emergency", "Critical", "Error", "Warning",
                                                              "Notice",    "Info",     "Debug"};

}  // namespace

std::optional<rk::ErkLogLevel> LevelOf(std::string_view severity) {
    for (int level = 0; level < kLevelCount; ++level) {
        if (kNames[static_cast<std::size_t>(level)] == severity)
            return static_cast<rk::ErkLogLevel>(level);
    }
    return {};
}

std::optional<rk::ErkLogLevel> LevelOfArgument(std::string_view name) {
    if (name.size() == 1 && name[0] >= '0' && name[0] < '0' + kLevelCount)
        return static_cast<rk::ErkLogLevel>(name[0] - '0');
    std::string lower;
    for (const char c : name)
        lower += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (lower.starts_with("log"))
        lower.erase(0, 3);
    if (!lower.empty())
        lower[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(lower[0])));
    return LevelOf(lower);
}

std::string_view NameOf(std::optional<rk::ErkLogLevel> level) {
    return level ? kNames[static_cast<std::size_t>(*level)] : std::string_view();
}

}  // namespace rklog
