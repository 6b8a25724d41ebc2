#pragma once

#include <cstdint>
#include <string>

namespace rk::platform {

enum class TakenBy { Anything, Folders };

/// Looks for a name that nothing, or no folder, has: `start` + `end`, then `start` + " (2)" + `end`, " (3)" and so on.
/// Returns the number, 1 for the name without one. Links are followed for folders; a link that leads nowhere is
/// something.
///
/// The least free number is found, in time linear in the entries of the folder. Numbers count as free in a folder that
/// cannot be entered, and when the name is too long for the file system.
std::int64_t FirstFreeNumber(const std::string& folder, const std::string& start, const std::string& end,
                             TakenBy takenBy);

/// The name for a number.
std::string NumberedName(const std::string& start, std::int64_t number, const std::string& end);

}  // namespace rk::platform
