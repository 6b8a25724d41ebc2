#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/paths/CrkPathUtilities.h"
#include "RkUtilities/paths/detail/PathNames.h"
#include "RkUtilities/platform/files/FileFacts.h"
#include "RkUtilities/platform/files/FreeNames.h"
#include "RkUtilities/platform/files/PathBytes.h"

namespace {

using rk::platform::BytesOfPath;
using rk::platform::TakenBy;

/// "" when no name is free.
CString FreeName(const CString& folder, const CString& start, const CString& end, TakenBy takenBy) {
    // A name "~" in a folder is no home folder. All parts meet at ASCII characters, so that their bytes may be joined.
    const rk::platform::NumberedName name{BytesOfPath(start), BytesOfPath(end)};
    std::error_code error;
    const std::int64_t number = FirstFreeNumber(rk::NativePath(folder), name, takenBy, error);
    if (error)
        return {};
    const std::size_t startUnits = rk::PathText(name.start.substr(0, name.StartByteCount(number))).View().size();
    return start.Left(static_cast<int>(startUnits)) + rk::platform::NumberedName::Suffix(number) + end;
}

}  // namespace

CString CrkPathUtilities::GetUniqueFilename(const CString& path) {
    std::error_code error;
    if (!rk::platform::KindOf(rk::NativePath(path), error) && !error)
        return path;
    if (error && error != std::errc::filename_too_long)
        return {};
    CString folder = rk::FolderOf(path);
    AssureTrailingSlash(&folder);
    const CString base = rk::BaseNameOf(path), name = MakeNameUnique(folder, base, rk::ExtensionOf(path));
    return name.IsEmpty() && !base.IsEmpty() ? CString() : folder + name;
}

CString CrkPathUtilities::MakeNameUnique(const CString& folder, const CString& baseName, const CString& extension) {
    if (folder.IsEmpty() || baseName.IsEmpty())
        return {};
    CString name = baseName;
    RemoveInvalidCharsFromFilename(name, 0);
    if (rk::ExtensionOf(name) == extension.View())
        name = CString(rk::BaseNameOf(name));
    return FreeName(folder, name, extension.IsEmpty() ? CString() : u'.' + extension, TakenBy::Anything);
}

CString CrkPathUtilities::MakeFolderNameUnique(const CString& folder, const CString& name) {
    CString clean = name;
    RemoveInvalidCharsFromFolderName(clean);
    return FreeName(folder, clean, CString(), TakenBy::Folders);
}
