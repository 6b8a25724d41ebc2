#include "RkUtilities/platform/files/RemoveTree.h"

#include "RkUtilities/platform/files/FileNames.h"
#include "RkUtilities/platform/files/FolderList.h"

#include <charconv>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rk::platform {
namespace {

enum class Removed { Yes, NotEmpty, Failed };

Removed RemoveEntry(int folder, const char* name, FileKind kind) noexcept {
    if (kind != FileKind::Folder) {
        if (unlinkat(folder, name, 0) == 0 || errno == ENOENT)
            return Removed::Yes;
        if (errno != EISDIR)
            return Removed::Failed;
    }
    if (unlinkat(folder, name, AT_REMOVEDIR) == 0 || errno == ENOENT)
        return Removed::Yes;
    return errno == ENOTEMPTY || errno == EEXIST ? Removed::NotEmpty : Removed::Failed;
}

class TreeRemover {
public:
    std::error_code Remove(Place item, FileKind kind, int depth) noexcept {
        if (const Removed removed = RemoveEntry(item.folder, item.name, kind); removed != Removed::NotEmpty)
            return removed == Removed::Yes ? std::error_code() : LastError();
        if (depth > kMostDepth)
            return MoveUp(item);
        const FileHandle folder = OpenFolder(item, O_RDONLY | O_NOFOLLOW);
        if (!folder)
            return LastError();
        if (depth == 0)
            m_top = folder.Descriptor();
        const std::error_code error = Empty(folder.Descriptor(), depth + 1);
        return error ? error : Outcome(unlinkat(item.folder, item.name, AT_REMOVEDIR));
    }

private:
    static constexpr int kMostDepth = 16;
    static constexpr std::size_t kPieceByteCount = 2048;  // on the stack, once for each level

    /// Reads the folder again until it has nothing more to remove: some file systems pass over entries while others are
    /// removed, and folders may have been moved up into this folder.
    std::error_code Empty(int folder, int depth) noexcept {
        std::error_code error;
        for (bool foundSome = true; foundSome && !error;) {
            foundSome = false;
            if (lseek(folder, 0, SEEK_SET) != 0)
                return LastError();
            alignas(dirent64) char piece[kPieceByteCount];
            const std::error_code unread = VisitEntries(folder, piece, [&](const char* name, FileKind kind) {
                foundSome = true;
                error = Remove({folder, name}, kind, depth);
                return error ? Visit::Stop : Visit::Continue;
            });
            if (unread)
                return unread;
        }
        return error;
    }

    std::error_code MoveUp(Place item) noexcept {
        for (;;) {
            char name[32] = ".rk-deep-";
            *std::to_chars(name + 9, name + sizeof name - 1, m_movedUp++).ptr = '\0';
            if (renameat(item.folder, item.name, m_top, name) == 0)
                return {};
            if (errno != EEXIST && errno != ENOTEMPTY && errno != ENOTDIR)
                return LastError();
        }
    }

    int m_top = -1;
    unsigned m_movedUp = 0;
};

bool NamesFolderFromInside(const std::string& path) {
    const std::string name = path.substr(path.find_last_of('/') + 1);
    return name.empty() || name == "." || name == "..";
}

}  // namespace

std::error_code RemoveTree(const std::string& path) {
    const std::string item = WithoutClosingSlashes(path);
    return NamesFolderFromInside(item) ? ErrorOf(EINVAL) : RemoveTree(PlaceOf(item));
}

std::error_code RemoveTree(Place item) noexcept {
    struct stat status{};
    if (fstatat(item.folder, item.name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return LastError();
    return TreeRemover().Remove(item, KindOfMode(status.st_mode), 0);
}

std::error_code RemoveEmptyFolder(const std::string& path) {
    const std::string item = WithoutClosingSlashes(path);
    struct stat status{};
    if (lstat(SystemPath(item), &status) != 0)
        return LastError();
    return S_ISLNK(status.st_mode) ? RemoveFile(item) : Outcome(rmdir(item.c_str()));
}

}  // namespace rk::platform
