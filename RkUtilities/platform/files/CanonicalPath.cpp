#include "RkUtilities/platform/files/CanonicalPath.h"

#include "RkUtilities/platform/files/FileCalls.h"

#include <fcntl.h>
#include <filesystem>
#include <system_error>

namespace rk::platform {
std::optional<std::string> CanonicalPathOfReadable(const std::string& path) {
    const FileHandle file(
        Uninterrupted([&] { return open(SystemPath(path), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); }));
    struct stat opened{};
    if (!file || fstat(file.Descriptor(), &opened) != 0)
        return std::nullopt;
    std::error_code error;
    std::string reported = std::filesystem::read_symlink(file.Path(), error).native();
    // A deleted file is reported as "name (deleted)", which may be another file's name: only what leads back to the
    // open one counts.
    struct stat found{};
    if (error || lstat(reported.c_str(), &found) != 0 || !IsSameFile(found, opened))
        return std::nullopt;
    return reported;
}

}  // namespace rk::platform
