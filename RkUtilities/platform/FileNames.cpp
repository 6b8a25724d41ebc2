#include "RkUtilities/platform/FileCalls.h"
#include "RkUtilities/platform/Files.h"

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rk::platform {

std::error_code MakeFolder(const std::string& path)
{
    return Outcome(mkdir(SystemPath(path), 0777));
}

std::error_code MakeFolders(const std::string& path)
{
    std::error_code error = MakeFolder(path);
    if (error != std::errc::no_such_file_or_directory)
        return error;
    // Up to the first folder that can be made or is there, then down again. Somebody else may make one of them
    // meanwhile.
    const std::string parent = WithoutClosingSlashes(FolderPart(path));
    if (parent.empty())
        return error;
    error = MakeFolders(parent);
    return error && error != std::errc::file_exists ? error : MakeFolder(path);
}

std::error_code RemoveFile(const std::string& path)
{
    return Outcome(unlink(SystemPath(path)));
}

std::error_code Rename(const std::string& from, const std::string& to)
{
    const char* oldName = SystemPath(from);
    const char* newName = SystemPath(to);
    if (renameat2(AT_FDCWD, oldName, AT_FDCWD, newName, RENAME_NOREPLACE) == 0)
        return {};
    if (errno != EINVAL && errno != ENOSYS)
        return LastError();
    // This file system has no renaming that leaves a taken name alone.
    struct stat status {};
    if (lstat(newName, &status) == 0)
        return ErrorOf(EEXIST);
    return Outcome(rename(oldName, newName));
}

}  // namespace rk::platform
