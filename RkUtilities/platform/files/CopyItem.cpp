#include "RkUtilities/platform/files/CopyItem.h"

#include "RkUtilities/platform/files/FileCalls.h"
#include "RkUtilities/platform/files/FileContent.h"

#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace rk::platform {
namespace {

constexpr mode_t kPermissions = S_IRWXU | S_IRWXG | S_IRWXO;

std::error_code CopyFileTo(Place from, Place to, mode_t extraPermissions) {
    // A pipe that took the file's place meanwhile is not waited for, and a link in its place is not followed.
    const FileHandle source = OpenAt(from, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    struct stat status{};
    if (!source || fstat(source.Descriptor(), &status) != 0)
        return LastError();
    if (!S_ISREG(status.st_mode))
        return ErrorOf(EINVAL);
    FileHandle target = OpenAt(to, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, status.st_mode & S_IRWXU);
    if (!target)
        return LastError();
    std::error_code error = CopyContent(source.Descriptor(), target.Descriptor(),
                                        {status.st_size, status.st_blocks < status.st_size / 512});
    if (!error) {
        SetPermissionsAndTimes(target.Descriptor(), status, extraPermissions);
        error = target.Close();
    }
    if (error)
        unlinkat(to.folder, to.name, 0);
    return error;
}

void SetTimes(Place place, const struct stat& source) {
    const timespec times[] = {source.st_atim, source.st_mtim};
    static_cast<void>(utimensat(place.folder, place.name, times, AT_SYMLINK_NOFOLLOW));
}

std::error_code CopyLinkTo(Place from, Place to) {
    std::string target;
    if (const std::error_code error = LinkTarget(from, target))
        return error;
    struct stat status{};
    if (fstatat(from.folder, from.name, &status, AT_SYMLINK_NOFOLLOW) != 0 ||
        symlinkat(target.c_str(), to.folder, to.name) != 0)
        return LastError();
    SetTimes(to, status);
    return {};
}

/// Makes a pipe, socket or device anew, since opening it could wait for ever or have effects.
std::error_code CopyNodeTo(Place from, Place to) {
    struct stat status{};
    if (fstatat(from.folder, from.name, &status, AT_SYMLINK_NOFOLLOW) != 0 ||
        mknodat(to.folder, to.name, status.st_mode & (S_IFMT | kPermissions), status.st_rdev) != 0)
        return LastError();
    SetTimes(to, status);
    return {};
}

}  // namespace

std::error_code KindAt(Place place, FileKind& kind) {
    struct stat status{};
    if (fstatat(place.folder, place.name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return LastError();
    kind = KindOfMode(status.st_mode);
    return {};
}

void SetPermissionsAndTimes(int descriptor, const struct stat& source, mode_t extraPermissions) {
    const timespec times[] = {source.st_atim, source.st_mtim};
    static_cast<void>(fchmod(descriptor, (source.st_mode & kPermissions) | extraPermissions));
    static_cast<void>(futimens(descriptor, times));
}

std::error_code CopyItem(Place from, Place to, FileKind kind, mode_t extraPermissions) {
    if (kind == FileKind::File)
        return CopyFileTo(from, to, extraPermissions);
    return kind == FileKind::Link ? CopyLinkTo(from, to) : CopyNodeTo(from, to);
}

std::error_code Decide(Place to, const CopyRules& rules, Decision& decision) {
    struct stat status{};
    decision = Decision::Free;
    if (fstatat(to.folder, to.name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT ? std::error_code() : LastError();
    if (S_ISLNK(status.st_mode))
        static_cast<void>(fstatat(to.folder, to.name, &status, 0));  // a link that leads nowhere is looked at itself
    const bool isReadOnly = (status.st_mode & S_IWUSR) == 0;
    if (S_ISDIR(status.st_mode))
        decision = isReadOnly && !rules.replaceReadOnly ? Decision::ReadOnlyFolder : Decision::Folder;
    else if (isReadOnly)
        decision = rules.replaceReadOnly ? Decision::Replace : Decision::Stay;
    else
        decision = rules.keepWritable ? Decision::Stay : Decision::Replace;
    std::error_code error;
    if (isReadOnly && rules.replaceReadOnly)
        ChangeOwnerWrite(Held(to, Links::DoNotFollow), OwnerWrite::Allow, error);
    return error;
}

}  // namespace rk::platform
