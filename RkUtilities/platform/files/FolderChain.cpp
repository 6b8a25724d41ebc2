#include "RkUtilities/platform/files/FolderChain.h"

#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

namespace rk::platform {
namespace {

FileKind KindOfEntry(unsigned char type) noexcept
{
    switch (type) {
    case DT_REG:
        return FileKind::File;
    case DT_DIR:
        return FileKind::Folder;
    case DT_LNK:
        return FileKind::Link;
    case DT_UNKNOWN:
        return FileKind::Unknown;
    default:
        return FileKind::Other;
    }
}

/// Calls `visit` with a name and a kind. Reads larger pieces than `readdir` does, without its lock for each name and its
/// looks at the descriptor.
template <class Visitor>
std::error_code VisitOpenFolder(int descriptor, const Visitor& visit)
{
    constexpr std::size_t kPieceByteCount = 65536;
    const auto piece = std::make_unique_for_overwrite<char[]>(kPieceByteCount);
    for (;;) {
        const ssize_t byteCount = getdents64(descriptor, piece.get(), kPieceByteCount);
        if (byteCount <= 0)
            return byteCount == 0 || errno == ENOENT ? std::error_code() : LastError();  // ENOENT: removed meanwhile
        for (ssize_t position = 0; position < byteCount;) {
            const auto* const entry = reinterpret_cast<const dirent64*>(piece.get() + position);
            position += entry->d_reclen;
            const std::string_view name = entry->d_name;
            if (name != "." && name != ".." && visit(name, KindOfEntry(entry->d_type)) == Visit::Stop)
                return {};
        }
    }
}

FileHandle OpenFolder(int from, const char* name, int flags)
{
    return FileHandle(Uninterrupted([&] { return openat(from, name, flags | O_DIRECTORY | O_CLOEXEC | O_NOCTTY); }));
}

}  // namespace

std::error_code VisitFolder(const std::string& path,
                            const std::function<Visit(std::string_view name, FileKind kind)>& visit)
{
    const FileHandle folder = OpenFolder(AT_FDCWD, SystemPath(path), O_RDONLY);
    if (!folder)
        return LastError();
    return VisitOpenFolder(folder.Descriptor(), visit);
}

std::error_code IdentityOf(int descriptor, FileIdentity& identity)
{
    struct stat status {};
    if (fstat(descriptor, &status) != 0)
        return LastError();
    identity = {status.st_dev, status.st_ino};
    return {};
}

std::error_code EntryList::Read(int folderDescriptor)
{
    return VisitOpenFolder(folderDescriptor, [this](std::string_view name, FileKind kind) {
        m_items.push_back({m_names.size(), kind});
        m_names.insert(m_names.end(), name.begin(), name.end());
        m_names.push_back('\0');
        return Visit::Continue;
    });
}

EntryList::Entry EntryList::Next() noexcept
{
    if (m_next == m_items.size())
        return {nullptr, FileKind::Unknown};
    const Item& item = m_items[m_next++];
    return {m_names.data() + item.nameStart, item.kind};
}

std::error_code FolderChain::Start(const std::string& path, Links links, Use use)
{
    return Open(AT_FDCWD, SystemPath(path), links, use);
}

std::error_code FolderChain::Enter(const char* name, Links links, Use use)
{
    const std::error_code error = Open(Current(), name, links, use);
    return error ? error : CloseFarLevel();
}

std::error_code FolderChain::Open(int from, const char* name, Links links, Use use)
{
    const int flags = use == Use::List ? O_RDONLY : O_PATH;
    FileHandle folder = OpenFolder(from, name, flags | O_NOFOLLOW);
    const bool throughLink = !folder && links == Links::Follow && (errno == ELOOP || errno == ENOTDIR);
    if (throughLink)
        folder = OpenFolder(from, name, flags);
    if (!folder)
        return LastError();
    m_levels.push_back({std::move(folder), flags, throughLink, {}});
    return {};
}

std::error_code FolderChain::CloseFarLevel()
{
    if (m_levels.size() <= kOpenLevels)
        return {};
    const std::size_t far = m_levels.size() - 1 - kOpenLevels;
    Level& level = m_levels[far];
    if (m_levels[far + 1].throughLink)
        return {};
    const std::error_code error = IdentityOf(level.folder.Descriptor(), level.identity);
    level.folder.Close();
    return error;
}

std::error_code FolderChain::Leave()
{
    const Level left = std::move(m_levels.back());
    m_levels.pop_back();
    if (m_levels.empty() || m_levels.back().folder)
        return {};
    Level& level = m_levels.back();
    level.folder = OpenFolder(left.folder.Descriptor(), "..", level.flags);
    if (!level.folder)
        return LastError();
    FileIdentity found;
    const std::error_code error = IdentityOf(level.folder.Descriptor(), found);
    return error || found == level.identity ? error : ErrorOf(ESTALE);
}

}  // namespace rk::platform
