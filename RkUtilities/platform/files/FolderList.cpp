#include "RkUtilities/platform/files/FolderList.h"

#include <fcntl.h>
#include <memory>

namespace rk::platform {
namespace {

constexpr std::size_t kPieceByteCount = 65536;

template <class Visitor>
std::error_code VisitAll(int folder, const Visitor& visit)
{
    const auto piece = std::make_unique_for_overwrite<char[]>(kPieceByteCount);
    return VisitEntries(folder, {piece.get(), kPieceByteCount}, visit);
}

}  // namespace

FileHandle OpenFolder(Place place, int flags) noexcept
{
    constexpr int kFolder = O_DIRECTORY | O_CLOEXEC | O_NOCTTY;
    return FileHandle(Uninterrupted([&] { return openat(place.folder, place.name, flags | kFolder); }));
}

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

std::error_code VisitFolder(const std::string& path,
                            const std::function<Visit(std::string_view name, FileKind kind)>& visit)
{
    const FileHandle folder = OpenFolder({AT_FDCWD, SystemPath(path)}, O_RDONLY);
    return folder ? VisitAll(folder.Descriptor(), visit) : LastError();
}

std::error_code EntryList::Read(int folderDescriptor)
{
    return VisitAll(folderDescriptor, [this](std::string_view name, FileKind kind) {
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

}  // namespace rk::platform
