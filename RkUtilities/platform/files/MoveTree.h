#pragma once

#include <string>
#include <system_error>

namespace rk::platform {

/// Gives anything a new name that is free (else EEXIST). Across file systems it is copied beside its new place, written
/// to the disk, put in its place and removed at the old place. A failure before the removal, also for lack of memory,
/// leaves `from` whole and no `to`; a failure of the removal leaves `to` complete. A killed process leaves `from` or
/// `to` whole, or both.
[[nodiscard]] std::error_code MoveTree(const std::string& from, const std::string& to);

}  // namespace rk::platform
