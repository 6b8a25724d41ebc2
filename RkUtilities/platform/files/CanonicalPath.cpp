#include "RkUtilities/platform/files/CanonicalPath.h"

#include "RkUtilities/platform/files/FileCalls.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rk::platform {
namespace {

std::optional<std::string> TargetOfLink(const std::string& link)
{
    for (std::string target(256, '\0');; target.resize(target.size() * 2)) {
        const ssize_t length = readlink(link.c_str(), target.data(), target.size());
        if (length < 0)
            return std::nullopt;
        if (static_cast<std::size_t>(length) < target.size()) {
            target.resize(static_cast<std::size_t>(length));
            return target;
        }
    }
}

}  // namespace

std::optional<std::string> CanonicalPathOfReadable(const std::string& path)
{
    const FileHandle file(
        Uninterrupted([&] { return open(SystemPath(path), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); }));
    struct stat opened{};
    if (!file || fstat(file.Descriptor(), &opened) != 0)
        return std::nullopt;
    std::optional<std::string> reported = TargetOfLink("/proc/self/fd/" + std::to_string(file.Descriptor()));
    // A deleted file is reported as "name (deleted)", which may be another file's name: only what leads back to the
    // open one counts.
    struct stat found{};
    if (!reported || lstat(reported->c_str(), &found) != 0 || found.st_dev != opened.st_dev ||
        found.st_ino != opened.st_ino)
        return std::nullopt;
    return reported;
}

}  // namespace rk::platform
