#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/logging/CrkLogWriter.h"
#include "RkUtilities/logging/detail/LogTroubles.h"
#include "RkUtilities/platform/files/CopyTree.h"
#include "RkUtilities/platform/files/FileNames.h"
#include "RkUtilities/platform/files/FolderList.h"
#include "RkUtilities/platform/files/MoveTree.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace {

// Moves a file over whatever file has the name. After a failure both are as they were.
std::error_code MoveOver(const std::string& from, const std::string& to)
{
    std::error_code error;
    std::filesystem::rename(from, to, error);
    if (error != std::errc::cross_device_link)
        return error;
    constexpr rk::platform::CopyRules kReplaceWhateverFileIsThere{.replaceReadOnly = true};
    rk::platform::CopyOutcome outcome{};
    error = rk::platform::CopyTree(from, to, kReplaceWhateverFileIsThere, outcome);
    return error ? error : rk::platform::RemoveFile(from);
}

// --- Backups that are counted ----------------------------------------------------------------------------------------

constexpr std::string_view kEnding = ".xml";
constexpr std::string_view kMomentShape = "0000-00-00T00-00-00.000000Z";  // sorts by age

std::string MomentText(std::chrono::system_clock::time_point time)
{
    using namespace std::chrono;
    const auto day = floor<days>(time);
    const year_month_day date(day);
    const hh_mm_ss clock(floor<microseconds>(time - day));
    std::array<char, 64> text;
    const int length = std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02ld-%02ld-%02ld.%06ldZ",
                                     static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                                     static_cast<unsigned>(date.day()), clock.hours().count(), clock.minutes().count(),
                                     clock.seconds().count(), clock.subseconds().count());
    return {text.data(), static_cast<std::size_t>(length)};
}

bool IsCountedBackup(std::string_view name, std::string_view start)
{
    if (!name.starts_with(start) || !name.ends_with(kEnding) ||
        name.size() != start.size() + kMomentShape.size() + kEnding.size())
        return false;
    const std::string_view moment = name.substr(start.size(), kMomentShape.size());
    return std::equal(moment.begin(), moment.end(), kMomentShape.begin(), [](char character, char shape) {
        return shape == '0' ? character >= '0' && character <= '9' : character == shape;
    });
}

// A name of the past microseconds may be taken; the next one then.
std::error_code MoveToFreeName(const std::string& active, const std::string& start)
{
    constexpr int kMostNames = 1000;
    auto time = std::chrono::system_clock::now();
    std::error_code error;
    for (int i = 0; i < kMostNames; ++i, time += std::chrono::microseconds(1)) {
        error = rk::platform::MoveTree(active, std::string(start).append(MomentText(time)).append(kEnding));
        if (error != std::errc::file_exists)
            break;
    }
    return error;
}

std::error_code RemoveOldBackups(const std::string& start, std::size_t keptCount)
{
    using namespace rk::platform;
    const std::string folder = start.substr(0, start.rfind('/') + 1);
    const std::string nameStart = start.substr(folder.size());
    std::vector<std::string> names;
    std::error_code error = VisitFolder(folder.empty() ? "." : folder, [&](std::string_view name, FileKind) {
        if (IsCountedBackup(name, nameStart))
            names.emplace_back(name);
        return Visit::Continue;
    });
    std::sort(names.begin(), names.end(), std::greater<>());
    for (std::size_t i = keptCount; i < names.size(); ++i) {
        const std::error_code failure = RemoveFile(folder + names[i]);
        if (failure && failure != std::errc::no_such_file_or_directory)  // another process may have been there before
            error = failure;
    }
    return error;
}

std::error_code RollOver()
{
    const CString& name = CrkLogWriter::m_activeFileName;
    const std::string active = rk::NativePath(CrkLogWriter::m_path + name);
    if (CrkLogWriter::m_maxBackupCount <= 0) {
        CString backupName = CrkLogWriter::CurrentTimeString(kCFDateFormatterShortStyle);
        backupName.Replace(u"/", u"-");
        backupName.Replace(u":", u"-");
        return MoveOver(active, rk::NativePath(CrkLogWriter::m_path + backupName + u".xml"));
    }
    const int point = name.ReverseFind(u'.');
    const CString stem = point < 0 ? name : name.Left(point);
    const std::string start = rk::NativePath(CrkLogWriter::m_path + stem + u" ");
    const std::error_code error = MoveToFreeName(active, start);
    return error ? error : RemoveOldBackups(start, static_cast<std::size_t>(CrkLogWriter::m_maxBackupCount));
}

}  // namespace

void CrkLogWriter::Bak()
{
    std::error_code error;
    try {
        error = RollOver();
    } catch (const std::exception&) {  // no memory for a name
        error = std::make_error_code(std::errc::not_enough_memory);
    }
    if (error)
        rk::LogTroubles::Note(rk::LogStep::RollOver, error);
}
