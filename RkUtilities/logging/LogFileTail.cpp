#include "RkUtilities/logging/LogFileTail.h"

#include "RkUtilities/logging/LogEntryText.h"
#include "RkUtilities/platform/AppendFile.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace rk {

namespace {

// Both are ASCII, so their bytes are their units.
template <const std::u16string_view& kText>
constexpr auto kBytesOf = [] {
    std::array<char, kText.size()> bytes{};
    std::transform(kText.begin(), kText.end(), bytes.begin(), [](char16_t unit) { return static_cast<char>(unit); });
    return bytes;
}();
constexpr std::string_view kStart(kBytesOf<kEntryStart>.data(), kBytesOf<kEntryStart>.size());
constexpr std::string_view kFooter(kBytesOf<kEntryFooter>.data(), kBytesOf<kEntryFooter>.size());

std::optional<std::string> Read(const platform::AppendFile& file, std::uint64_t offset, std::size_t byteCount)
{
    std::string bytes(byteCount, '\0');
    std::error_code error;
    bytes.resize(file.ReadAt(offset, bytes.data(), byteCount, error));
    return error ? std::nullopt : std::optional(std::move(bytes));
}

// Where the last whole entry ends; 0 when there is none, nothing when it is not near enough to look for. Searched for
// from the end, block by block; blocks overlap so far that no footer is cut in two.
std::optional<std::uint64_t> EndOfLastEntry(const platform::AppendFile& file)
{
    constexpr std::uint64_t kBlockByteCount = 64 * 1024;
    constexpr std::uint64_t kFarthest = 64 * 1024 * 1024;
    for (std::uint64_t end = file.ByteCount();;) {
        const std::uint64_t begin = end - std::min(end, kBlockByteCount);
        const std::optional<std::string> block = Read(file, begin, static_cast<std::size_t>(end - begin));
        if (!block || file.ByteCount() - begin > kFarthest)
            return std::nullopt;
        if (const std::size_t footer = block->rfind(kFooter); footer != block->npos)
            return begin + footer + kFooter.size();
        if (begin == 0)
            return 0;
        end = begin + kFooter.size() - 1;
    }
}

}  // namespace

void RemoveTornEntry(platform::AppendFile& file)
{
    const std::size_t footerByteCount = std::min<std::uint64_t>(file.ByteCount(), kFooter.size());
    if (Read(file, file.ByteCount() - footerByteCount, footerByteCount) == kFooter)
        return;
    const std::optional<std::uint64_t> end = EndOfLastEntry(file);
    if (!end)
        return;
    const std::optional<std::string> rest = Read(file, *end, kStart.size());
    if (rest && !rest->empty() && kStart.starts_with(*rest))
        static_cast<void>(file.CutTo(*end));  // a failure leaves the rest where it is
}

}  // namespace rk
