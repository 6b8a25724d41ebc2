#pragma once

#include <optional>
#include <string>

namespace rk::platform {

/// The absolute path, links resolved, under which the system knows what can be opened for reading at `path`: a file,
/// folder, pipe or device. Never waits for a pipe's other end, and reads nothing. nullopt for what cannot be opened (a
/// socket) and for what was deleted or renamed meanwhile.
std::optional<std::string> CanonicalPathOfReadable(const std::string& path);

}  // namespace rk::platform
