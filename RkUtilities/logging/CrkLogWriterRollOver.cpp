#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/logging/CrkLogWriter.h"
#include "RkUtilities/platform/files/CopyTree.h"
#include "RkUtilities/platform/files/FileNames.h"

#include <filesystem>
#include <string>
#include <system_error>

namespace {

// Moves a file over whatever file has the name; nobody is told of a failure, after which both are as they were.
void MoveOver(const std::string& from, const std::string& to)
{
    std::error_code error;
    std::filesystem::rename(from, to, error);
    if (error != std::errc::cross_device_link)
        return;
    constexpr rk::platform::CopyRules kReplaceWhateverFileIsThere{.replaceReadOnly = true};
    rk::platform::CopyOutcome outcome{};
    if (!rk::platform::CopyTree(from, to, kReplaceWhateverFileIsThere, outcome))
        static_cast<void>(rk::platform::RemoveFile(from));
}

}  // namespace

void CrkLogWriter::Bak()
{
    CString backupName = CurrentTimeString(kCFDateFormatterShortStyle);
    backupName.Replace(u"/", u"-");
    backupName.Replace(u":", u"-");
    MoveOver(rk::NativePath(m_path + m_activeFileName), rk::NativePath(m_path + backupName + u".xml"));
}
