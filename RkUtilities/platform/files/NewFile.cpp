#include "RkUtilities/platform/files/NewFile.h"

#include "RkUtilities/platform/files/FileFacts.h"
#include "RkUtilities/platform/files/FileNames.h"

#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace rk::platform {
namespace {

/// Whether a file without a name can be given a name: the way leads through /proc.
bool HasWayToNames() {
    static const bool hasWay = access("/proc/self/fd", X_OK) == 0;
    return hasWay;
}

/// Follows a link to the path that will be replaced.
std::error_code ResolveTarget(std::string& target) {
    struct stat status{};
    if (lstat(SystemPath(target), &status) != 0 || !S_ISLNK(status.st_mode))
        return {};
    const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(target.c_str(), nullptr), &std::free);
    if (!resolved)
        return LastError();
    target = resolved.get();
    return {};
}

/// Makes content and permissions ready to stand at the target.
std::error_code Complete(int descriptor, const std::string& target) {
    struct stat replaced{};
    if (stat(SystemPath(target), &replaced) == 0 && S_ISREG(replaced.st_mode))
        static_cast<void>(fchmod(descriptor, replaced.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO)));
    return Outcome(fsync(descriptor));
}

/// Opens the folder of the target before the target changes, so that nothing but the disk can fail afterwards. A folder
/// that may be written to, not read, stays closed.
std::error_code OpenFolderOf(const std::string& target, FileHandle& handle) {
    const std::string folder = FolderPart(target);
    handle = FileHandle(
        Uninterrupted([&] { return open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    return handle || errno == EACCES ? std::error_code() : LastError();
}

std::error_code PutOnDisk(const FileHandle& folder) {
    return !folder || fsync(folder.Descriptor()) == 0 || errno == EINVAL ? std::error_code() : LastError();
}

}  // namespace

std::error_code PutInPlace(Place item, Place target, Taken taken) {
    const auto put = [&] {
        return taken == Taken::Stays ? Rename(item.folder, item.name, target.folder, target.name)
                                     : Outcome(renameat(item.folder, item.name, target.folder, target.name));
    };
    std::error_code error = put(), ignored;
    // The system moves no read-only folder out of its folder, so the folder is made writable meanwhile.
    if (error != std::errc::permission_denied || !ChangeOwnerWrite(item.folder, item.name, OwnerWrite::Allow, ignored))
        return error;
    error = put();
    const Place moved = error ? item : target;
    ChangeOwnerWrite(moved.folder, moved.name, OwnerWrite::Deny, ignored);
    return error;
}

std::error_code NewFile::Make(const std::string& target) {
    constexpr int kNew = O_RDWR | O_CLOEXEC;
    constexpr mode_t kPermissions = 0666;
    const std::string itself = WithoutClosingSlashes(target), folder = FolderPart(itself);
    if (*SystemPath(itself) == '\0')
        return ErrorOf(ENOENT);
    if (HasWayToNames()) {
        const char* const path = folder.empty() ? "." : folder.c_str();
        m_file = FileHandle(Uninterrupted([&] { return open(path, kNew | O_TMPFILE, kPermissions); }));
        if (m_file || (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL))
            return m_file ? std::error_code() : LastError();
    }
    if (const std::error_code error = m_work.Make({AT_FDCWD, itself.c_str()}))
        return error;
    const Place item = m_work.Item();
    constexpr int kNamed = kNew | O_CREAT | O_EXCL | O_NOFOLLOW;
    m_file = FileHandle(Uninterrupted([&] { return openat(item.folder, item.name, kNamed, kPermissions); }));
    return m_file ? std::error_code() : LastError();
}

std::error_code NewFile::Publish(Place target, Taken taken) {
    if (m_work)
        return PutInPlace(m_work.Item(), target, taken);
    const std::string path = m_file.Path();
    const auto linkTo = [&path](Place place) {
        return Outcome(linkat(AT_FDCWD, path.c_str(), place.folder, place.name, AT_SYMLINK_FOLLOW));
    };
    std::error_code error = linkTo(target);
    if (error != std::errc::file_exists || taken == Taken::Stays)
        return error;
    // Only a file with a name can take the place of another file.
    WorkFolder work;
    error = work.Make(target);
    if (!error)
        error = linkTo(work.Item());
    return error ? error : PutInPlace(work.Item(), target, taken);
}

std::error_code PublishForGood(NewFile& file, const std::string& target, Taken taken) {
    std::string place = target;
    FileHandle folder;
    std::error_code error;
    if (taken == Taken::IsReplaced)
        error = ResolveTarget(place);
    if (!error)
        error = Complete(file.Descriptor(), place);
    if (!error)
        error = OpenFolderOf(place, folder);
    if (!error)
        error = file.Publish({AT_FDCWD, SystemPath(place)}, taken);
    return error ? error : PutOnDisk(folder);
}

std::error_code ReplaceForGood(const std::string& temporary, const std::string& target) {
    std::string place = target;
    const FileHandle file(Uninterrupted(
        [&] { return open(SystemPath(temporary), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    struct stat status{};
    if (!file || fstat(file.Descriptor(), &status) != 0)
        return LastError();
    std::error_code error = S_ISREG(status.st_mode) ? ResolveTarget(place) : ErrorOf(EINVAL);
    FileHandle folder;
    if (!error)
        error = Complete(file.Descriptor(), place);
    if (!error)
        error = OpenFolderOf(place, folder);
    if (!error)
        error = Outcome(rename(SystemPath(temporary), SystemPath(place)));
    return error ? error : PutOnDisk(folder);
}

}  // namespace rk::platform
