#include "RkUtilities/logging/detail/LogFileTail.h"

#include "RkUtilities/logging/detail/LogEntryText.h"
#include "RkUtilities/platform/files/AppendFile.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <system_error>

namespace rk {

namespace {

std::optional<std::string> Read(const platform::AppendFile& file, std::uint64_t offset, std::size_t byteCount) {
    std::string bytes(byteCount, '\0');
    std::error_code error;
    bytes.resize(file.ReadAt(offset, bytes.data(), byteCount, error));
    return error ? std::nullopt : std::optional(std::move(bytes));
}

/// Where the last whole entry ends; 0 in a file without a whole entry, nullopt when the entry lies too far from the
/// end. The search goes from the end, block by block; blocks overlap so far that no footer is cut in two.
std::optional<std::uint64_t> EndOfLastEntry(const platform::AppendFile& file) {
    constexpr std::uint64_t kBlockByteCount = std::uint64_t{64} << 10;
    constexpr std::uint64_t kFarthest = std::uint64_t{64} << 20;
    for (std::uint64_t end = file.ByteCount();;) {
        const std::uint64_t begin = end - std::min(end, kBlockByteCount);
        const std::optional<std::string> block = Read(file, begin, static_cast<std::size_t>(end - begin));
        if (!block || file.ByteCount() - begin > kFarthest)
            return std::nullopt;
        if (const std::size_t footer = block->rfind(kEntryFooter); footer != std::string::npos)
            return begin + footer + kEntryFooter.size();
        if (begin == 0)
            return 0;
        end = begin + kEntryFooter.size() - 1;
    }
}

}  // namespace

void MendTail(platform::AppendFile& file) {
    const std::size_t footerByteCount = std::min<std::uint64_t>(file.ByteCount(), kEntryFooter.size());
    if (Read(file, file.ByteCount() - footerByteCount, footerByteCount) == kEntryFooter)
        return;
    // A failure here leaves the end as it is.
    if (const std::optional<std::uint64_t> end = EndOfLastEntry(file)) {
        const std::optional<std::string> rest = Read(file, *end, kEntryStart.size());
        if (rest && !rest->empty() && kEntryStart.starts_with(*rest))
            static_cast<void>(file.CutTo(*end));
    }
    if (file.ByteCount() > 0 && Read(file, file.ByteCount() - 1, 1) != "\n")
        static_cast<void>(file.Append("\n"));
}

}  // namespace rk
