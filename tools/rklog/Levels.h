#pragma once

#include <RkUtilities/logging/ErkLogLevel.h>

#include <optional>
#include <string_view>

namespace rklog {

/// How many levels there are; their numbers begin at 0.
constexpr int kLevelCount = rk::LogDebug + 1;

/// The level of a severity as an entry holds it: "Warning".
[[nodiscard]] std::optional<rk::ErkLogLevel> LevelOf(std::string_view severity);
/// The level that a person names: "Warning", "warning", "LogWarning" or "3".
[[nodiscard]] std::optional<rk::ErkLogLevel> LevelOfArgument(std::string_view name);
/// "Warning"; "" for no level.
[[nodiscard]] std::string_view NameOf(std::optional<rk::ErkLogLevel> level);

}  // namespace rklog
