#pragma once

#include "RkUtilities/platform/files/FileCalls.h"
#include "RkUtilities/platform/files/FileFacts.h"

#include <dirent.h>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

/// What a folder holds. The rules of Files.h hold.
namespace rk::platform {

enum class Visit { Continue, Stop };
/// Calls `visit` with each entry but "." and "..", in no order. The name is valid during the call.
[[nodiscard]] std::error_code VisitFolder(const std::string& path,
                                          const std::function<Visit(std::string_view name, FileKind kind)>& visit);

/// The entries of one folder as they were when it was read, so that changing the folder does not disturb the walk.
struct FolderEntry {
    std::string name;
    FileKind kind;
};
std::error_code ReadFolder(int folderDescriptor, std::vector<FolderEntry>& entries);

FileHandle OpenFolder(Place place, int flags) noexcept;

FileKind KindOfEntry(unsigned char type) noexcept;

/// `VisitFolder` for an open folder, from its position on. Reads into `piece`, without what `readdir` adds: its own
/// memory, a lock for each name and looks at the descriptor.
template <class Visitor> std::error_code VisitEntries(int folder, std::span<char> piece, const Visitor& visit) {
    for (;;) {
        const ssize_t byteCount = getdents64(folder, piece.data(), piece.size());
        if (byteCount <= 0)
            return byteCount == 0 || errno == ENOENT ? std::error_code() : LastError();  // ENOENT: removed meanwhile
        for (ssize_t position = 0; position < byteCount;) {
            const auto* const entry = reinterpret_cast<const dirent64*>(piece.data() + position);
            position += entry->d_reclen;
            const std::string_view name = entry->d_name;
            if (name != "." && name != ".." && visit(entry->d_name, KindOfEntry(entry->d_type)) == Visit::Stop)
                return {};
        }
    }
}

}  // namespace rk::platform
