#include "RkUtilities/platform/files/FileNames.h"

#include "RkUtilities/platform/files/FileCalls.h"

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rk::platform {
std::error_code MakeFolder(const std::string& path)
{
    return Outcome(mkdir(SystemPath(path), S_IRWXU | S_IRWXG | S_IRWXO));
}

std::error_code MakeFolders(const std::string& path)
{
    const std::error_code error = MakeFolder(path);
    const std::string parent = FolderPart(path);
    if (error != std::errc::no_such_file_or_directory || parent.empty())
        return error;
    // Not deeper than a path can be for the system. Another process may make the parent meanwhile.
    const std::error_code unmade = MakeFolders(parent);
    return unmade && unmade != std::errc::file_exists ? unmade : MakeFolder(path);
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
