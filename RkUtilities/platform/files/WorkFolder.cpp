#include "RkUtilities/platform/files/WorkFolder.h"

#include "RkUtilities/platform/files/FolderList.h"
#include "RkUtilities/platform/files/RemoveTree.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rk::platform {
namespace {

constexpr unsigned kKeptNames = 8;  // the next process looks at as many names in any case

std::string NameOf(const std::string& folder, unsigned number) { return folder + ".rk-new-" + std::to_string(number); }

enum class WithoutLocks { IsOurs, IsNotOurs };

/// Whether the open folder still has the name, and its lock can be taken; the call takes the lock.
bool IsOurs(const FileHandle& folder, Place place, WithoutLocks withoutLocks) {
    if (flock(folder.Descriptor(), LOCK_EX | LOCK_NB) != 0 &&
        (errno == EWOULDBLOCK || withoutLocks == WithoutLocks::IsNotOurs))
        return false;
    struct stat named{};
    return fstatat(place.folder, place.name, &named, AT_SYMLINK_NOFOLLOW) == 0 && named.st_uid == geteuid() &&
           IdentityOf(folder.Descriptor()) == IdentityOf(named);
}

}  // namespace

std::error_code WorkFolder::Make(Place target) {
    const std::string parent = FolderPart(target.name);
    FileHandle left;
    for (unsigned number = 0; number < kKeptNames || left; ++number) {
        const std::string name = NameOf(parent, number);
        const Place place{target.folder, name.c_str()};
        left = OpenFolder(place, O_RDONLY | O_NOFOLLOW);
        if (left && IsOurs(left, place, WithoutLocks::IsNotOurs))
            RemoveTree(place);
    }
    // Neighbours may have any number of the names. A new folder that is lost to a cleaning process again and again
    // shows that no folder can be ours.
    std::error_code error;
    for (unsigned number = 0, lostCount = 0; lostCount < kKeptNames; ++number) {
        m_name = NameOf("../", number);
        error = Take({target.folder, NameOf(parent, number).c_str()});
        if (error == std::errc::resource_unavailable_try_again)
            ++lostCount;
        else if (error != std::errc::file_exists)
            break;
    }
    return error;
}

std::error_code WorkFolder::Take(Place place) {
    if (mkdirat(place.folder, place.name, S_IRWXU) != 0)
        return LastError();
    m_folder = OpenFolder(place, O_RDONLY | O_NOFOLLOW);
    if (!m_folder) {
        const std::error_code error = LastError();
        unlinkat(place.folder, place.name, AT_REMOVEDIR);
        return error == std::errc::no_such_file_or_directory ? ErrorOf(EAGAIN) : error;
    }
    static_cast<void>(fchmod(m_folder.Descriptor(), S_IRWXU));  // whatever the process's umask
    // A process that looked before the lock was taken may have removed the folder, as left by a killed process.
    if (IsOurs(m_folder, place, WithoutLocks::IsOurs))
        return {};
    m_folder.Close();
    return ErrorOf(EAGAIN);
}

WorkFolder::~WorkFolder() {
    const Place place{m_folder.Descriptor(), m_name.c_str()};
    if (m_folder && RemoveTree(place) && unlinkat(Item().folder, Item().name, 0) == 0)  // no descriptor for the tree
        RemoveTree(place);
}

}  // namespace rk::platform
