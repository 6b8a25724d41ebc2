#include "RkUtilities/platform/files/FileNames.h"

#include "RkUtilities/platform/files/FileCalls.h"

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace rk::platform {
std::error_code MakeFolder(const std::string& path) {
    return Outcome(mkdir(SystemPath(path), S_IRWXU | S_IRWXG | S_IRWXO));
}

std::error_code MakeFolders(const std::string& path) {
    std::error_code error = MakeFolder(path);
    if (error != std::errc::no_such_file_or_directory || path.empty())
        return error;
    std::vector<std::string> folders;  // the path and all above it
    for (std::string folder = path; !folder.empty(); folder = FolderPart(folder))
        folders.push_back(folder);
    // Up in growing steps to a folder that can be made or is there, then down. Others may make a folder meanwhile.
    std::size_t at = 0;
    for (std::size_t step = 1; at + 1 < folders.size() && error == std::errc::no_such_file_or_directory; step *= 2)
        error = MakeFolder(folders[at = std::min(at + step, folders.size() - 1)]);
    while (at > 0 && (!error || error == std::errc::file_exists))
        error = MakeFolder(folders[--at]);
    return error;
}

std::error_code RemoveFile(const std::string& path) { return Outcome(unlink(SystemPath(path))); }

std::error_code Rename(const std::string& from, const std::string& to) { return Rename(PlaceOf(from), PlaceOf(to)); }

std::error_code RenameOver(const std::string& from, const std::string& to) {
    return Outcome(rename(SystemPath(from), SystemPath(to)));
}

std::error_code Rename(Place from, Place to) noexcept {
    if (renameat2(from.folder, from.name, to.folder, to.name, RENAME_NOREPLACE) == 0)
        return {};
    // EINVAL: not on this file system. ENOSYS, EPERM: not in this kernel or sandbox.
    if (errno != EINVAL && errno != ENOSYS && errno != EPERM)
        return LastError();
    struct stat status{};
    if (fstatat(to.folder, to.name, &status, AT_SYMLINK_NOFOLLOW) == 0)
        return ErrorOf(EEXIST);
    return errno == ENOENT ? Outcome(renameat(from.folder, from.name, to.folder, to.name)) : LastError();
}

}  // namespace rk::platform
