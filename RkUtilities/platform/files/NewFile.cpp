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
bool HasWayToNames()
{
    static const bool hasWay = access("/proc/self/fd", X_OK) == 0;
    return hasWay;
}

/// Follows a link to the path that will be replaced.
std::error_code ResolveTarget(std::string& target)
{
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
std::error_code Complete(int descriptor, const std::string& target)
{
    struct stat replaced{};
    if (stat(SystemPath(target), &replaced) == 0 && S_ISREG(replaced.st_mode))
        (void)fchmod(descriptor, replaced.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO));
    return Outcome(fsync(descriptor));
}

std::error_code PutFolderOnDisk(const std::string& target)
{
    const std::string folder = FolderPart(target);
    const FileHandle handle(
        Uninterrupted([&] { return open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (!handle)
        return errno == EACCES ? std::error_code() : LastError();  // a folder that may be written to, not read
    return fsync(handle.Descriptor()) == 0 || errno == EINVAL ? std::error_code() : LastError();
}

}  // namespace

std::error_code PutInPlace(Place item, Place target, Taken taken)
{
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

std::error_code NewFile::Make(Place target, mode_t permissions)
{
    const std::string folder = FolderPart(target.name);
    if (HasWayToNames())
        m_file = FileHandle(Uninterrupted([&] {
            return openat(target.folder, folder.empty() ? "." : folder.c_str(), O_RDWR | O_TMPFILE | O_CLOEXEC,
                          permissions);
        }));
    if (m_file || (HasWayToNames() && errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL))
        return m_file ? std::error_code() : LastError();
    if (const std::error_code error = m_work.Make(target))
        return error;
    m_file = FileHandle(Uninterrupted([&] {
        return openat(m_work.Item().folder, m_work.Item().name, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                      permissions);
    }));
    return m_file ? std::error_code() : LastError();
}

std::error_code NewFile::Make(const std::string& target)
{
    const std::string itself = WithoutClosingSlashes(target);
    return *SystemPath(itself) == '\0' ? ErrorOf(ENOENT) : Make({AT_FDCWD, itself.c_str()}, 0666);
}

std::error_code NewFile::Publish(Place target, Taken taken)
{
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

std::error_code PublishForGood(NewFile& file, const std::string& target, Taken taken)
{
    std::string place = target;
    std::error_code error;
    if (taken == Taken::IsReplaced)
        error = ResolveTarget(place);
    if (!error)
        error = Complete(file.Descriptor(), place);
    if (!error)
        error = file.Publish({AT_FDCWD, SystemPath(place)}, taken);
    return error ? error : PutFolderOnDisk(place);
}

std::error_code ReplaceForGood(const std::string& temporary, const std::string& target)
{
    std::string place = target;
    const FileHandle file(Uninterrupted(
        [&] { return open(SystemPath(temporary), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    struct stat status{};
    if (!file || fstat(file.Descriptor(), &status) != 0)
        return LastError();
    std::error_code error = S_ISREG(status.st_mode) ? ResolveTarget(place) : ErrorOf(EINVAL);
    if (!error)
        error = Complete(file.Descriptor(), place);
    if (!error)
        error = Outcome(rename(SystemPath(temporary), SystemPath(place)));
    return error ? error : PutFolderOnDisk(place);
}

}  // namespace rk::platform
