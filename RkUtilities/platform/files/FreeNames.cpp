#include "RkUtilities/platform/files/FreeNames.h"

#include "RkUtilities/platform/files/FileTrees.h"

#include <charconv>
#include <optional>
#include <string_view>
#include <vector>

namespace rk::platform {
namespace {

// The number of a name with one, written as NumberedName writes it.
std::optional<std::uint64_t> NumberOf(std::string_view name, std::string_view start, std::string_view end)
{
    constexpr std::string_view kOpening = " (", kClosing = ")";
    const auto take = [&name](std::string_view part) {
        const bool isThere = name.starts_with(part);
        name.remove_prefix(isThere ? part.size() : 0);
        return isThere;
    };
    std::uint64_t number = 0;
    if (!take(start) || !take(kOpening) || name.starts_with('0'))
        return std::nullopt;
    const auto [digitsEnd, error] = std::from_chars(name.data(), name.data() + name.size(), number);
    if (error != std::errc())
        return std::nullopt;
    name.remove_prefix(static_cast<std::size_t>(digitsEnd - name.data()));
    return take(kClosing) && name == end ? std::optional(number) : std::nullopt;
}

// Which numbers a listing shows as taken. One past those listed is always among them, as free.
std::vector<bool> ListedNumbers(const std::string& folder, const std::string& start, const std::string& end,
                                TakenBy takenBy)
{
    std::vector<std::uint64_t> numbers;
    // What a listing could not tell is asked for later, one by one.
    static_cast<void>(VisitFolder(folder, [&](std::string_view name, FileKind kind) {
        const std::optional<std::uint64_t> number = NumberOf(name, start, end);
        if (number && (takenBy == TakenBy::Anything || kind == FileKind::Folder))
            numbers.push_back(*number);
        return Visit::Continue;
    }));
    std::vector<bool> taken(numbers.size() + 3);
    for (const std::uint64_t number : numbers) {
        if (number < taken.size())
            taken[number] = true;
    }
    return taken;
}

}  // namespace

std::string NumberedName(const std::string& start, std::int64_t number, const std::string& end)
{
    return number == 1 ? start + end : start + " (" + std::to_string(number) + ")" + end;
}

std::int64_t FirstFreeNumber(const std::string& folder, const std::string& start, const std::string& end,
                             TakenBy takenBy)
{
    const std::string pathStart = folder + '/' + start;
    const auto isTaken = [&](std::int64_t number) {
        const std::string path = NumberedName(pathStart, number, end);
        return takenBy == TakenBy::Anything ? Inspect(path, Links::DoNotFollow).has_value()
                                            : KindOf(path) == FileKind::Folder;
    };
    constexpr std::int64_t kAskedFirst = 8;  // before the folder is listed, which may hold much else
    std::int64_t number = 1;
    for (; number <= kAskedFirst; ++number) {
        if (!isTaken(number))
            return number;
    }
    const std::vector<bool> listed = ListedNumbers(folder, start, end, takenBy);
    const auto isListed = [&](std::int64_t candidate) {
        return static_cast<std::size_t>(candidate) < listed.size() && listed[static_cast<std::size_t>(candidate)];
    };
    while (isListed(number) || isTaken(number))
        ++number;
    return number;
}

}  // namespace rk::platform
