#include "RkUtilities/platform/files/CanonicalPath.h"

#include "RkUtilities/platform/files/FileCalls.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <utility>

namespace rk::platform {
std::optional<std::string> CanonicalPathOfReadable(const std::string& path) {
    const FileHandle file = OpenAt(PlaceOf(path), O_RDONLY | O_NONBLOCK);
    const std::optional<FileIdentity> opened = file ? IdentityOf(file.Descriptor()) : std::nullopt;
    std::string reported;
    if (!opened || LinkTarget(PlaceOf(file.Path()), reported))
        return std::nullopt;
    // A deleted file is reported as "name (deleted)", which may be another file's name.
    struct stat found{};
    const bool leadsBack = lstat(reported.c_str(), &found) == 0 && IdentityOf(found) == opened;
    return leadsBack ? std::optional(std::move(reported)) : std::nullopt;
}

}  // namespace rk::platform
