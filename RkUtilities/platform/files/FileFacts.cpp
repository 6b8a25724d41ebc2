#include "RkUtilities/platform/files/FileCalls.h"
#include "RkUtilities/platform/files/Files.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>

namespace rk::platform {
namespace {

FileKind KindOfMode(unsigned mode) noexcept
{
    switch (mode & S_IFMT) {
    case S_IFREG:
        return FileKind::File;
    case S_IFDIR:
        return FileKind::Folder;
    case S_IFLNK:
        return FileKind::Link;
    default:
        return FileKind::Other;
    }
}

FileTime TimeOf(const struct statx_timestamp& time) noexcept
{
    return {time.tv_sec, static_cast<std::int32_t>(time.tv_nsec)};
}

FileFacts FactsOf(const struct statx& status) noexcept
{
    FileFacts facts;
    facts.kind = KindOfMode(status.stx_mode);
    facts.ownerMayWrite = (status.stx_mode & S_IWUSR) != 0;
    facts.size = static_cast<std::int64_t>(status.stx_size);
    facts.modified = TimeOf(status.stx_mtime);
    facts.accessed = TimeOf(status.stx_atime);
    facts.created = (status.stx_mask & STATX_BTIME) != 0
                        ? TimeOf(status.stx_btime)
                        : std::min({facts.modified, facts.accessed, TimeOf(status.stx_ctime)});
    return facts;
}

bool Status(const char* path, Links links, unsigned mask, struct statx& status) noexcept
{
    if (links == Links::Follow && statx(AT_FDCWD, path, 0, mask, &status) == 0)
        return true;
    return statx(AT_FDCWD, path, AT_SYMLINK_NOFOLLOW, mask, &status) == 0 &&
           (links == Links::DoNotFollow || S_ISLNK(status.stx_mode));
}

timespec TimeToSet(const std::optional<FileTime>& time) noexcept
{
    if (!time)
        return {0, UTIME_OMIT};
    return {time->unixSeconds, time->nanoseconds};
}

}  // namespace

std::optional<FileFacts> Inspect(const std::string& path, Links links)
{
    struct statx status {};
    if (!Status(SystemPath(path), links, STATX_BASIC_STATS | STATX_BTIME, status))
        return std::nullopt;
    return FactsOf(status);
}

std::optional<FileKind> KindOf(const std::string& path)
{
    struct statx status {};
    if (!Status(SystemPath(path), Links::Follow, STATX_TYPE, status))
        return std::nullopt;
    return KindOfMode(status.stx_mode);
}

bool HasExistingFolder(const std::string& path)
{
    const std::string folder = FolderPart(path);
    return KindOf(folder.empty() ? "." : folder) == FileKind::Folder;
}

std::error_code Change(const std::string& path, const FileChanges& changes)
{
    const char* systemPath = SystemPath(path);
    struct stat status {};
    if (stat(systemPath, &status) != 0)
        return LastError();
    const timespec times[] = {TimeToSet(changes.accessed), TimeToSet(changes.modified)};
    if ((changes.accessed || changes.modified) && utimensat(AT_FDCWD, systemPath, times, 0) != 0)
        return LastError();
    const bool mayWrite = (status.st_mode & S_IWUSR) != 0;
    if (changes.ownerMayWrite.value_or(mayWrite) == mayWrite)
        return {};
    return Outcome(chmod(systemPath, (status.st_mode ^ S_IWUSR) & 07777));
}

}  // namespace rk::platform
