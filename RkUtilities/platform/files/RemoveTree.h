#pragma once

#include "RkUtilities/platform/files/FileCalls.h"

#include <string>
#include <system_error>

namespace rk::platform {

/// Removes a file, a link itself, or a folder with all it holds. Stops at the first failure. "", the root folder, and
/// paths that end in "." or ".." are refused (EINVAL). An entry that vanishes meanwhile counts as removed. No link is
/// followed on the way down, each step is taken relative to the folder reached, and a tree may have any depth. A folder
/// that lies deep is moved up before it is emptied; after a failure it may stand in the tree's own folder.
std::error_code RemoveTree(const std::string& path);
/// The same for a name that was looked at before. It needs no memory.
std::error_code RemoveTree(Place item) noexcept;

/// Removes an empty folder, or a link itself; ENOTEMPTY, ENOTDIR otherwise.
[[nodiscard]] std::error_code RemoveEmptyFolder(const std::string& path);

}  // namespace rk::platform
