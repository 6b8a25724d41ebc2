#include "RkUtilities/platform/files/FileFacts.h"

#include "RkUtilities/platform/files/FileCalls.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <utility>

namespace rk::platform {
namespace {

constexpr unsigned kAllFacts = STATX_BASIC_STATS | STATX_BTIME;

FileTime TimeOf(const struct statx_timestamp& time) noexcept {
    return {time.tv_sec, static_cast<std::int32_t>(time.tv_nsec)};
}

FileFacts FactsOf(const struct statx& status) noexcept {
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

bool Status(const char* path, Links links, unsigned mask, struct statx& status) noexcept {
    if (links == Links::Follow && statx(AT_FDCWD, path, 0, mask, &status) == 0)
        return true;
    return statx(AT_FDCWD, path, AT_SYMLINK_NOFOLLOW, mask, &status) == 0 &&
           (links == Links::DoNotFollow || S_ISLNK(status.stx_mode));
}

std::error_code SetOwnerWrite(const FileHandle& held, bool mayWrite) {
    struct stat status{};
    if (fstat(held.Descriptor(), &status) != 0)
        return LastError();
    if (((status.st_mode & S_IWUSR) != 0) == mayWrite)
        return {};
    // fchmod refuses a descriptor that only names a file; the link to the same descriptor does not.
    return Outcome(chmod(held.Path().c_str(), (status.st_mode & 07777) ^ S_IWUSR));
}

timespec TimeToSet(const std::optional<FileTime>& time) noexcept {
    return time ? timespec{time->unixSeconds, time->nanoseconds} : timespec{0, UTIME_OMIT};
}

}  // namespace

FileKind KindOfMode(unsigned mode) noexcept {
    if (S_ISLNK(mode))
        return FileKind::Link;
    return S_ISREG(mode) ? FileKind::File : S_ISDIR(mode) ? FileKind::Folder : FileKind::Other;
}

std::optional<FileFacts> Inspect(const std::string& path, Links links) {
    struct statx status{};
    return Status(SystemPath(path), links, kAllFacts, status) ? std::optional(FactsOf(status)) : std::nullopt;
}

std::optional<FileKind> KindOf(const std::string& path, std::error_code& error) {
    error.clear();
    struct statx status{};
    if (Status(SystemPath(path), Links::Follow, STATX_TYPE, status))
        return KindOfMode(status.stx_mode);
    if (errno != ENOENT && errno != ENOTDIR)
        error = LastError();
    return std::nullopt;
}

std::optional<FileKind> KindOf(const std::string& path) {
    std::error_code ignored;
    return KindOf(path, ignored);
}

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

bool HasExistingFolder(const std::string& path) { return KindOf(FolderHolding(path)) == FileKind::Folder; }

FileHandle Held(Place place, Links links) noexcept {
    return OpenAt(place, O_PATH | (links == Links::Follow ? 0 : O_NOFOLLOW));
}

std::error_code Change(const std::string& path,
                       const std::function<FileChanges(const FileFacts& present)>& changesFor) {
    const FileHandle held = Held(PlaceOf(path), Links::Follow);
    struct statx status{};
    if (!held || statx(held.Descriptor(), "", AT_EMPTY_PATH, kAllFacts, &status) != 0)
        return LastError();
    const FileChanges changes = changesFor(FactsOf(status));
    const timespec times[] = {TimeToSet(changes.accessed), TimeToSet(changes.modified)};
    if ((changes.accessed || changes.modified) && utimensat(AT_FDCWD, held.Path().c_str(), times, 0) != 0)
        return LastError();
    return changes.ownerMayWrite ? SetOwnerWrite(held, *changes.ownerMayWrite) : std::error_code();
}

bool ChangeOwnerWrite(const std::string& path, OwnerWrite wanted, std::error_code& error) {
    return ChangeOwnerWrite(Held(PlaceOf(path), Links::DoNotFollow), wanted, error);
}

bool ChangeOwnerWrite(const FileHandle& held, OwnerWrite wanted, std::error_code& error) {
    error.clear();
    const bool mayWrite = wanted == OwnerWrite::Allow;
    struct stat status{};
    const auto isAsWanted = [&] {
        return fstat(held.Descriptor(), &status) != 0 || S_ISLNK(status.st_mode) ||
               ((status.st_mode & S_IWUSR) != 0) == mayWrite;
    };
    if (!held || isAsWanted())
        return false;
    error = SetOwnerWrite(held, mayWrite);
    return !error && isAsWanted();
}

}  // namespace rk::platform
