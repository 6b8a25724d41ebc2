#include "RkUtilities/platform/files/FreeNames.h"

#include "RkUtilities/platform/files/FileFacts.h"
#include "RkUtilities/platform/files/FolderList.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>
#include <vector>

namespace rk::platform {
namespace {

constexpr std::size_t kMostBytes = 255;

std::string Suffix(std::int64_t number)
{
    return number == 1 ? std::string() : " (" + std::to_string(number) + ")";
}

/// The number that a listed name has.
std::optional<std::int64_t> NumberOf(std::string_view listed, const NumberedName& name)
{
    constexpr std::string_view kOpening = " (", kClosing = ")";
    const std::size_t opening = listed.rfind(kOpening);
    if (opening == std::string_view::npos)
        return std::nullopt;
    const std::string_view start = listed.substr(0, opening);
    std::string_view rest = listed.substr(opening + kOpening.size());
    const bool isPlain = !rest.starts_with('0');
    std::int64_t number = 0;
    const char* const end = std::from_chars(rest.data(), rest.data() + rest.size(), number).ptr;
    rest.remove_prefix(static_cast<std::size_t>(end - rest.data()));
    const bool isOurs = isPlain && number > 1 && rest.starts_with(kClosing) && rest.substr(1) == name.end &&
                        start == std::string_view(name.start).substr(0, name.StartByteCount(number));
    return isOurs ? std::optional(number) : std::nullopt;
}

/// Which numbers a listing shows as taken. One past those listed is always among them, as free.
std::vector<bool> ListedNumbers(const std::string& folder, const NumberedName& name, TakenBy takenBy)
{
    std::vector<std::int64_t> numbers;
    // What a listing could not tell is asked for later, one by one.
    (void)VisitFolder(folder, [&](std::string_view listed, FileKind kind) {
        const std::optional<std::int64_t> number = NumberOf(listed, name);
        if (number && (takenBy == TakenBy::Anything || kind == FileKind::Folder))
            numbers.push_back(*number);
        return Visit::Continue;
    });
    std::vector<bool> taken(numbers.size() + 3);
    for (const std::int64_t number : numbers) {
        if (static_cast<std::size_t>(number) < taken.size())
            taken[static_cast<std::size_t>(number)] = true;
    }
    return taken;
}

}  // namespace

std::size_t NumberedName::StartByteCount(std::int64_t number) const
{
    const std::size_t otherBytes = Suffix(number).size() + end.size();
    std::size_t byteCount = std::min(start.size(), kMostBytes - std::min(kMostBytes, otherBytes));
    const auto isWithinCharacter = [&] {
        return byteCount < start.size() && (static_cast<unsigned char>(start[byteCount]) & 0xC0U) == 0x80;
    };
    while (byteCount > 0 && isWithinCharacter())
        --byteCount;
    return byteCount;
}

std::string NumberedName::WithNumber(std::int64_t number) const
{
    return start.substr(0, StartByteCount(number)) + Suffix(number) + end;
}

std::int64_t FirstFreeNumber(const std::string& folder, const NumberedName& name, TakenBy takenBy,
                             std::error_code& error)
{
    error.clear();
    const auto isTaken = [&](std::int64_t number) {
        if (name.StartByteCount(number) == 0 && !name.start.empty())
            error = std::make_error_code(std::errc::filename_too_long);
        const std::optional<FileKind> kind =
            error ? std::nullopt : KindOf(folder + '/' + name.WithNumber(number), error);
        return kind && (takenBy == TakenBy::Anything || kind == FileKind::Folder);
    };
    constexpr std::int64_t kAskedFirst = 8;  // before the folder is listed, which may hold much else
    std::int64_t number = 1;
    for (; number <= kAskedFirst; ++number) {
        if (!isTaken(number))
            return number;
    }
    const std::vector<bool> listed = ListedNumbers(folder, name, takenBy);
    const auto isListed = [&](std::int64_t candidate) {
        return static_cast<std::size_t>(candidate) < listed.size() && listed[static_cast<std::size_t>(candidate)];
    };
    while (isListed(number) || isTaken(number))
        ++number;
    return number;
}

}  // namespace rk::platform
