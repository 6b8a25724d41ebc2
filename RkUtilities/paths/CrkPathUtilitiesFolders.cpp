#include "RkUtilities/foundation/CFileException.h"
#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/paths/CrkPathUtilities.h"
#include "RkUtilities/platform/files/FileFacts.h"
#include "RkUtilities/platform/files/FileNames.h"
#include "RkUtilities/platform/files/TemporaryFolder.h"
#include "RkUtilities/platform/files/UserFolders.h"
#include "RkUtilities/platform/process/MadeOnce.h"

#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace {

using rk::platform::BaseFolder;
using rk::platform::ConfiguredFolder;
using rk::platform::FileKind;
using rk::platform::OwnerWrite;

struct SpecialFolder {
    int code;
    std::string (*find)(const std::string& name, std::string_view inHome);
    const char* name;
    const char* inHome;
};

constexpr SpecialFolder kSpecialFolders[] = {
    {CrkPathUtilities::DesktopFolder, &ConfiguredFolder, "XDG_DESKTOP_DIR", "Desktop"},
    {CrkPathUtilities::DocumentsFolder, &ConfiguredFolder, "XDG_DOCUMENTS_DIR", "Documents"},
    {CrkPathUtilities::DownloadsFolder, &ConfiguredFolder, "XDG_DOWNLOAD_DIR", "Downloads"},
    {CrkPathUtilities::PicturesFolder, &ConfiguredFolder, "XDG_PICTURES_DIR", "Pictures"},
    {CrkPathUtilities::MusicFolder, &ConfiguredFolder, "XDG_MUSIC_DIR", "Music"},
    {CrkPathUtilities::MoviesFolder, &ConfiguredFolder, "XDG_VIDEOS_DIR", "Videos"},
    {CrkPathUtilities::PublicFolder, &ConfiguredFolder, "XDG_PUBLICSHARE_DIR", "Public"},
    {CrkPathUtilities::PreferencesFolder, &BaseFolder, "XDG_CONFIG_HOME", ".config"},
    {CrkPathUtilities::ApplicationSupportFolder, &BaseFolder, "XDG_DATA_HOME", ".local/share"},
    {CrkPathUtilities::CachesFolder, &BaseFolder, "XDG_CACHE_HOME", ".cache"},
};

std::string SpecialFolderPath(int code) {
    if (code == CrkPathUtilities::HomeFolder)
        return rk::platform::HomeFolder();
    if (code == CrkPathUtilities::TemporaryItemsFolder)
        return rk::platform::FindTemporaryFolder();
    for (const SpecialFolder& folder : kSpecialFolders) {
        if (folder.code == code)
            return folder.find(folder.name, folder.inHome);
    }
    return {};
}

bool IsFolder(const std::string& nativePath) { return rk::platform::KindOf(nativePath) == FileKind::Folder; }

bool ChangeOwnerWrite(const CString& path, OwnerWrite wanted) {
    std::error_code error;
    const bool changed = rk::platform::ChangeOwnerWrite(rk::NativePath(path), wanted, error);
    if (error)
        throw new CFileException(CFileException::ErrnoToException(error.value()), error.value(), path);
    return changed;
}

}  // namespace

// --- Comparing on disk

bool CrkPathUtilities::ComparePaths(const CString& first, const CString& second) {
    using rk::platform::CanonicalPathOfReadable;
    const std::optional<std::string> firstPath = CanonicalPathOfReadable(rk::NativePath(first));
    if (!firstPath)
        return false;
    const std::optional<std::string> secondPath = CanonicalPathOfReadable(rk::NativePath(second));
    return secondPath && AreFilenamesEqual(rk::PathText(*firstPath), rk::PathText(*secondPath));
}

bool CrkPathUtilities::IsSubFolder(const CString& folder, const CString& candidate) {
    return candidate.View().starts_with(folder.View()) && IsFolder(rk::NativePath(folder)) &&
           IsFolder(rk::NativePath(candidate));
}

// --- On disk

CString CrkPathUtilities::GetSpecialFolderPath(int code) {
    const std::string path = SpecialFolderPath(code);
    return IsFolder(path) ? rk::PathText(path) : CString();
}

bool CrkPathUtilities::IsFileReadOnly(const CString& path) {
    const std::optional<rk::platform::FileFacts> facts = rk::platform::Inspect(rk::NativePath(path));
    return facts && !facts->ownerMayWrite;
}

bool CrkPathUtilities::MakeFileReadOnly(const CString& path) { return ChangeOwnerWrite(path, OwnerWrite::Deny); }

bool CrkPathUtilities::MakeFileReadWrite(const CString& path) { return ChangeOwnerWrite(path, OwnerWrite::Allow); }

bool CrkPathUtilities::FileNotDirectoryExists(const CString& path) {
    const std::optional<FileKind> kind = rk::platform::KindOf(rk::NativePath(path));
    return kind && kind != FileKind::Folder;
}

bool CrkPathUtilities::AssurePathExists(const CString& path) {
    const std::string folder = rk::NativePath(NormalizedPath(path, KeepTrailingChar));
    if (IsFolder(folder) || !rk::platform::MakeFolders(folder))
        return true;
    return IsFolder(folder);  // another process may have made it meanwhile
}

// --- Temporary files

CString CrkPathUtilities::GetTempFolder() {
    static constinit std::atomic<const CString*> folder = nullptr;
    return rk::platform::MadeOnce(folder, [] {
        return GetAbsolutePath(NormalizedPath(rk::PathText(rk::platform::MakeTemporaryFolder()), StripTrailingChar));
    });
}

CString CrkPathUtilities::GetTempFilename(const CString& prefix) {
    const CString path = GetTempFolder() + u'/' + prefix;
    std::error_code error;
    const std::string file = rk::platform::MakeTemporaryFile(rk::NativePath(path), error);
    return error ? path + u"XXXXXXXX" : rk::PathText(file);
}
