#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/logging/CrkLogWriter.h"
#include "RkUtilities/logging/detail/LogTroubles.h"
#include "RkUtilities/platform/files/CopyTree.h"
#include "RkUtilities/platform/files/FileNames.h"
#include "RkUtilities/platform/files/FolderList.h"
#include "RkUtilities/platform/files/MoveTree.h"
#include "RkUtilities/platform/locale/ReadInteger.h"

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <system_error>

namespace {

/// Moves a file to a name, over the file that has it. After a failure both are as they were.
std::error_code MoveOver(const std::string& from, const std::string& to) {
    using namespace rk::platform;
    if (const std::error_code error = RenameOver(from, to); error != std::errc::cross_device_link)
        return error;
    CopyOutcome outcome{};
    const std::error_code error = CopyTree(from, to, CopyRules{.replaceReadOnly = true}, outcome);
    return error ? error : RemoveFile(from);
}

/// Moves the file to the next number, and removes the backups with lower numbers than are to be kept.
std::error_code MoveToNextNumber(const std::string& from, const std::string& start, std::uint64_t keptCount) {
    using namespace rk::platform;
    constexpr std::string_view kEnd = ".xml";
    const std::string folder = start.substr(0, start.rfind('/') + 1);
    const std::string nameStart = start.substr(folder.size());
    std::set<std::uint64_t> numbers;
    const std::error_code listing = VisitFolder(folder.empty() ? "." : folder, [&](std::string_view name, FileKind) {
        if (name.starts_with(nameStart) && name.ends_with(kEnd) && name.size() > nameStart.size() + kEnd.size()) {
            const std::string_view digits = name.substr(nameStart.size(), name.size() - nameStart.size() - kEnd.size());
            if (const auto number = ReadInteger<std::uint64_t>(digits))
                numbers.insert(*number);
        }
        return Visit::Continue;
    });
    if (listing)
        return listing;
    const auto path = [&](std::uint64_t number) { return start + std::to_string(number).append(kEnd); };
    const std::uint64_t next = numbers.empty() ? 1 : *numbers.rbegin() + 1;
    if (const std::error_code error = MoveTree(from, path(next)))
        return error;
    std::error_code error;
    for (const std::uint64_t number : numbers) {
        const bool isKept = number + keptCount > next;
        const std::error_code removal = isKept ? std::error_code() : RemoveFile(path(number));
        if (removal && removal != std::errc::no_such_file_or_directory)
            error = removal;
    }
    return error;
}

std::error_code RollOver() {
    const CString& name = CrkLogWriter::m_activeFileName;
    const std::string active = rk::NativePath(CrkLogWriter::m_path + name);
    if (CrkLogWriter::m_maxBackupCount > 0) {
        const int point = name.ReverseFind(u'.');
        const CString start = CrkLogWriter::m_path + (point < 0 ? name : name.Left(point)) + u".";
        return MoveToNextNumber(active, rk::NativePath(start), static_cast<unsigned>(CrkLogWriter::m_maxBackupCount));
    }
    CString backupName = CrkLogWriter::CurrentTimeString(kCFDateFormatterShortStyle);
    backupName.Replace(u"/", u"-");
    backupName.Replace(u":", u"-");
    return MoveOver(active, rk::NativePath(CrkLogWriter::m_path + backupName + u".xml"));
}

}  // namespace

void CrkLogWriter::Bak() {
    std::error_code error;
    try {
        error = RollOver();
    } catch (const std::exception&) {  // no memory for a name
        error = std::make_error_code(std::errc::not_enough_memory);
    }
    if (error)
        rk::LogTroubles::Note(rk::LogStep::RollOver, error);
}
