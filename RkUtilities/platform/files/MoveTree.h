#pragma once

#include <string>
#include <system_error>

namespace rk::platform {

/// Gives anything a new name that is free (else EEXIST). Across file systems it is copied beside its new place, written
/// to the disk, put in its place and removed at the old one. After a failure before that last step, also for lack of
/// memory, `from` is whole and there is no `to`; a failure of the last step leaves `to` complete. A process that is
/// killed leaves one of both whole, or both.
[[nodiscard]] std::error_code MoveTree(const std::string& from, const std::string& to);

}  // namespace rk::platform
