#include "RkUtilities/platform/files/NewFile.h"

#include "RkUtilities/platform/files/FileFacts.h"
#include "RkUtilities/platform/files/FileNames.h"
#include "RkUtilities/platform/files/FolderList.h"

#include <atomic>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace rk::platform {
namespace {

/// Whether a file without a name can be given a name: the way leads through /proc.
bool HasWayToNames() {
    static constinit std::atomic<int> result = 1;  // 1: not asked yet; no lock, which a fork could keep in its child
    if (result > 0)
        result = access("/proc/self/fd", X_OK);
    return result == 0;
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

/// Opens the target's folder before the target changes, so that only the disk can fail afterwards. A folder that may
/// not be read stays closed.
std::error_code OpenFolderOf(const std::string& target, FileHandle& handle) {
    handle = OpenFolder(PlaceOf(FolderHolding(target)), O_RDONLY);
    return handle || errno == EACCES ? std::error_code() : LastError();
}

std::error_code PutOnDisk(const FileHandle& folder) {
    return !folder || fsync(folder.Descriptor()) == 0 || errno == EINVAL ? std::error_code() : LastError();
}

/// Lets `put` give a file its name, and waits until the file and the name are on the disk.
template <class Put> std::error_code PutForGood(int descriptor, const std::string& place, const Put& put) {
    FileHandle folder;
    struct stat before{};
    if (fstat(descriptor, &before) != 0)
        return LastError();
    const std::error_code error =
        FirstFailure([&] { return Complete(descriptor, place); }, [&] { return OpenFolderOf(place, folder); }, put);
    if (error)  // under another name it has its own permissions
        static_cast<void>(fchmod(descriptor, before.st_mode));
    return error ? error : PutOnDisk(folder);
}

}  // namespace

std::error_code PutInPlace(Place item, Place target, Taken taken) {
    const auto put = [&] {
        return taken == Taken::Stays ? Rename(item, target)
                                     : Outcome(renameat(item.folder, item.name, target.folder, target.name));
    };
    std::error_code error = put(), ignored;
    // The system moves no read-only folder out of its folder, so the folder is made writable meanwhile.
    const FileHandle held = error == std::errc::permission_denied ? Held(item, Links::DoNotFollow) : FileHandle();
    if (!ChangeOwnerWrite(held, OwnerWrite::Allow, ignored))
        return error;
    error = put();
    ChangeOwnerWrite(held, OwnerWrite::Deny, ignored);
    return error;
}

std::error_code NewFile::Make(const std::string& target) {
    constexpr mode_t kPermissions = 0666;
    const std::string itself = WithoutClosingSlashes(target);
    if (*SystemPath(itself) == '\0')
        return ErrorOf(ENOENT);
    if (HasWayToNames()) {
        m_file = OpenAt(PlaceOf(FolderHolding(itself)), O_RDWR | O_TMPFILE, kPermissions);
        if (m_file || (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL))
            return m_file ? std::error_code() : LastError();
    }
    if (const std::error_code error = m_work.Make(PlaceOf(itself)))
        return error;
    m_file = OpenAt(m_work.Item(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW, kPermissions);
    return m_file ? std::error_code() : LastError();
}

std::error_code NewFile::Publish(Place target, Taken taken) {
    if (m_work)
        return PutInPlace(m_work.Item(), target, taken);
    const auto linkTo = [path = m_file.Path()](Place place) {
        return Outcome(linkat(AT_FDCWD, path.c_str(), place.folder, place.name, AT_SYMLINK_FOLLOW));
    };
    if (const std::error_code error = linkTo(target); error != std::errc::file_exists || taken == Taken::Stays)
        return error;
    WorkFolder work;  // only a file with a name can take the place of another file
    if (const auto error = FirstFailure([&] { return work.Make(target); }, [&] { return linkTo(work.Item()); }))
        return error;
    const std::error_code error = PutInPlace(work.Item(), target, taken);
    if (error)
        m_work = std::move(work);  // the system gives no second name to a file that lost its only name
    return error;
}

std::error_code PublishForGood(NewFile& file, const std::string& target, Taken taken) {
    std::string place = target;
    if (const auto error = taken == Taken::IsReplaced ? ResolveTarget(place) : std::error_code())
        return error;
    return PutForGood(file.Descriptor(), place, [&] { return file.Publish(PlaceOf(place), taken); });
}

std::error_code ReplaceForGood(const std::string& temporary, const std::string& target) {
    std::string place = target;
    const FileHandle file = OpenAt(PlaceOf(temporary), O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    struct stat status{};
    if (!file || fstat(file.Descriptor(), &status) != 0)
        return LastError();
    if (const auto error = S_ISREG(status.st_mode) ? ResolveTarget(place) : ErrorOf(EINVAL))
        return error;
    return PutForGood(file.Descriptor(), place, [&] { return RenameOver(temporary, place); });
}

}  // namespace rk::platform
