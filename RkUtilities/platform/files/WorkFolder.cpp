#include "RkUtilities/platform/files/WorkFolder.h"

#include "RkUtilities/platform/files/RemoveTree.h"
#include "RkUtilities/platform/process/Random.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rk::platform {
namespace {

constexpr unsigned kKeptNames = 8;  // which the next process looks at

std::string NameOf(const std::string& folder, unsigned number)
{
    std::string name = folder + ".rk-new-";
    if (number < kKeptNames)
        return name += static_cast<char>('0' + number);
    // Somebody else has all the names.
    for (const unsigned byte : RandomBytes())
        name.append({static_cast<char>('a' + byte / 16), static_cast<char>('a' + byte % 16)});
    return name;
}

FileHandle OpenFolderItself(Place place)
{
    constexpr int kFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    return FileHandle(Uninterrupted([&] { return openat(place.folder, place.name, kFlags); }));
}

/// Whether the open folder has the name and nobody else holds its lock, which this takes where there are locks.
bool IsOurs(const FileHandle& folder, Place place, int errorWithoutLocks)
{
    if (flock(folder.Descriptor(), LOCK_EX | LOCK_NB) != 0 && errno != errorWithoutLocks)
        return false;
    struct stat open{};
    struct stat named{};
    return fstat(folder.Descriptor(), &open) == 0 &&
           fstatat(place.folder, place.name, &named, AT_SYMLINK_NOFOLLOW) == 0 && open.st_dev == named.st_dev &&
           open.st_ino == named.st_ino && open.st_uid == geteuid();
}

}  // namespace

std::error_code WorkFolder::Make(Place target)
{
    m_parent = target.folder;
    const std::string parent = FolderPart(target.name);
    for (unsigned number = 0; number < kKeptNames; ++number) {
        m_name = NameOf(parent, number);
        const Place place{m_parent, m_name.c_str()};
        const FileHandle left = OpenFolderItself(place);
        if (left && IsOurs(left, place, 0))
            RemoveTree(place);
    }
    std::error_code error = ErrorOf(EEXIST);
    for (unsigned number = 0; number <= kKeptNames && error == std::errc::file_exists; ++number) {
        m_name = NameOf(parent, number);
        error = Take({m_parent, m_name.c_str()});
    }
    return error;
}

std::error_code WorkFolder::Take(Place place)
{
    if (mkdirat(place.folder, place.name, S_IRWXU) != 0)
        return LastError();
    m_folder = OpenFolderItself(place);
    // Somebody who looked before the lock was taken may have removed the folder as one that was left.
    if (m_folder && IsOurs(m_folder, place, EOPNOTSUPP))
        return {};
    m_folder.Close();
    return ErrorOf(EEXIST);
}

WorkFolder::~WorkFolder()
{
    if (m_folder)
        RemoveTree({m_parent, m_name.c_str()});
}

}  // namespace rk::platform
