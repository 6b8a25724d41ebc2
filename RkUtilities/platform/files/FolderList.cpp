#include "RkUtilities/platform/files/FolderList.h"

#include <fcntl.h>
#include <memory>

namespace rk::platform {
namespace {

constexpr std::size_t kPieceByteCount = 65536;

template <class Visitor> std::error_code VisitAll(int folder, const Visitor& visit) {
    const auto piece = std::make_unique_for_overwrite<char[]>(kPieceByteCount);
    return VisitEntries(folder, {piece.get(), kPieceByteCount}, visit);
}

}  // namespace

FileHandle OpenFolder(Place place, int flags) noexcept { return OpenAt(place, flags | O_DIRECTORY); }

FileKind KindOfEntry(unsigned char type) noexcept {
    return type == DT_UNKNOWN ? FileKind::Unknown : KindOfMode(DTTOIF(mode_t{type}));
}

std::error_code VisitFolder(const std::string& path,
                            const std::function<Visit(std::string_view name, FileKind kind)>& visit) {
    const FileHandle folder = OpenFolder(PlaceOf(path), O_RDONLY);
    return folder ? VisitAll(folder.Descriptor(), visit) : LastError();
}

std::error_code ReadFolder(int folderDescriptor, std::vector<FolderEntry>& entries) {
    return VisitAll(folderDescriptor, [&entries](std::string_view name, FileKind kind) {
        entries.push_back({std::string(name), kind});
        return Visit::Continue;
    });
}

}  // namespace rk::platform
