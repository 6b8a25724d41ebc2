#include "RkUtilities/platform/files/FreeNames.h"

#include "RkUtilities/platform/files/FileFacts.h"
#include "RkUtilities/platform/files/FolderList.h"
#include "RkUtilities/platform/locale/Utf.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>
#include <vector>

namespace rk::platform {

namespace {

constexpr std::size_t kMostBytes = 255;

/// The number in a name that has a number; 0 in other names.
std::int64_t NumberIn(std::string_view listed, const NumberedName& name) {
    constexpr std::string_view kBefore = " (";
    if (!listed.starts_with(name.start) || !listed.substr(name.start.size()).starts_with(kBefore))
        return 0;
    const std::string_view rest = listed.substr(name.start.size() + kBefore.size());
    std::int64_t number = 0;
    const char* const end = std::from_chars(rest.data(), rest.data() + rest.size(), number).ptr;
    const std::string_view after = rest.substr(static_cast<std::size_t>(end - rest.data()));
    const bool isWritten = !rest.starts_with('0') && after.starts_with(')') && after.substr(1) == name.end;
    return isWritten ? number : 0;
}

/// Which numbers a listing shows as taken. Numbers so large that a free number comes before them are left out, and so
/// is the name without a number, which was asked for before.
std::vector<bool> ListedNumbers(const std::string& folder, const NumberedName& name, TakenBy takenBy) {
    std::vector<std::int64_t> numbers;
    static_cast<void>(VisitFolder(folder, [&](std::string_view listed, FileKind kind) {
        const std::int64_t number = NumberIn(listed, name);
        if (number > 0 && (takenBy == TakenBy::Anything || kind == FileKind::Folder))
            numbers.push_back(number);
        return Visit::Continue;
    }));
    std::vector<bool> isListed(numbers.size() + 2);
    for (const std::int64_t number : numbers) {
        if (const auto index = static_cast<std::size_t>(number); index < isListed.size())
            isListed[index] = true;
    }
    return isListed;
}

}  // namespace

std::string NumberedName::Suffix(std::int64_t number) {
    return number == 1 ? std::string() : " (" + std::to_string(number) + ")";
}

std::size_t NumberedName::StartByteCount(std::int64_t number) const {
    const std::size_t otherBytes = Suffix(number).size() + end.size();
    std::size_t byteCount = std::min(start.size(), kMostBytes - std::min(kMostBytes, otherBytes));
    while (byteCount > 0 && byteCount < start.size() && IsContinuation(static_cast<unsigned char>(start[byteCount])))
        --byteCount;
    return byteCount;
}

std::string NumberedName::WithNumber(std::int64_t number) const {
    return start.substr(0, StartByteCount(number)) + Suffix(number) + end;
}

std::int64_t FirstFreeNumber(const std::string& folder, const NumberedName& name, TakenBy takenBy,
                             std::error_code& error) {
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
    const std::vector<bool> isListed = ListedNumbers(folder, name, takenBy);
    const auto end = static_cast<std::int64_t>(isListed.size());
    while ((number < end && isListed[static_cast<std::size_t>(number)]) || isTaken(number))
        ++number;
    return number;
}

}  // namespace rk::platform
