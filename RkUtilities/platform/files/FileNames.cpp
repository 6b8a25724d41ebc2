#include "RkUtilities/platform/files/FileNames.h"

#include "RkUtilities/platform/files/FileCalls.h"

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace rk::platform {
namespace {

constexpr mode_t kNewFolder = S_IRWXU | S_IRWXG | S_IRWXO;  // less the umask

/// Where each element of a path ends; none for one that no system call takes.
std::vector<std::size_t> ElementEnds(const std::string& path)
{
    std::vector<std::size_t> ends;
    if (*SystemPath(path) == '\0')
        return ends;
    for (std::size_t i = 1; i <= path.size(); ++i) {
        if (path[i - 1] != '/' && (i == path.size() || path[i] == '/'))
            ends.push_back(i);
    }
    return ends;
}

}  // namespace

std::error_code MakeFolder(const std::string& path)
{
    return Outcome(mkdir(SystemPath(path), kNewFolder));
}

std::error_code MakeFolders(const std::string& path)
{
    std::error_code error = MakeFolder(path);
    const std::vector<std::size_t> ends = ElementEnds(path);
    if (error != std::errc::no_such_file_or_directory || ends.empty())
        return error;
    std::string start = path;
    const auto makeUpTo = [&](std::size_t element) {
        char& end = start.data()[ends[element]];
        const char kept = std::exchange(end, '\0');
        error = Outcome(mkdir(start.c_str(), kNewFolder));
        end = kept;
    };
    // Up in growing steps to one that can be made or is there, then down one by one. Somebody else may make one meanwhile.
    std::size_t element = ends.size() - 1;
    for (std::size_t step = 1; element > 0 && error == std::errc::no_such_file_or_directory; step *= 2)
        makeUpTo(element -= std::min(step, element));
    while (element + 1 < ends.size() && (!error || error == std::errc::file_exists))
        makeUpTo(++element);
    return error;
}

std::error_code RemoveFile(const std::string& path)
{
    return Outcome(unlink(SystemPath(path)));
}

std::error_code Rename(const std::string& from, const std::string& to)
{
    return Rename(AT_FDCWD, SystemPath(from), AT_FDCWD, SystemPath(to));
}

std::error_code Rename(int fromFolder, const char* from, int toFolder, const char* to) noexcept
{
    if (renameat2(fromFolder, from, toFolder, to, RENAME_NOREPLACE) == 0)
        return {};
    // EINVAL: not on this file system. ENOSYS, EPERM: not in this kernel or sandbox.
    if (errno != EINVAL && errno != ENOSYS && errno != EPERM)
        return LastError();
    struct stat status{};
    if (fstatat(toFolder, to, &status, AT_SYMLINK_NOFOLLOW) == 0)
        return ErrorOf(EEXIST);
    return errno == ENOENT ? Outcome(renameat(fromFolder, from, toFolder, to)) : LastError();
}

}  // namespace rk::platform
