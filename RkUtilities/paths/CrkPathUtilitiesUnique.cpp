#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/paths/CrkPathUtilities.h"
#include "RkUtilities/paths/detail/PathNames.h"
#include "RkUtilities/platform/files/Files.h"
#include "RkUtilities/platform/files/FreeNames.h"
#include "RkUtilities/platform/files/PathBytes.h"

namespace {

using rk::platform::BytesOfPath;
using rk::platform::TakenBy;

CString FreeName(const CString& folder, const CString& start, const CString& end, TakenBy takenBy)
{
    // A name "~" in a folder is no home folder. All parts meet at ASCII characters, so that their bytes may be joined.
    const std::int64_t number = FirstFreeNumber(rk::NativePath(folder), BytesOfPath(start), BytesOfPath(end), takenBy);
    return start + CString(rk::platform::NumberedName("", number, "")) + end;
}

}  // namespace

CString CrkPathUtilities::GetUniqueFilename(const CString& path)
{
    if (!rk::platform::KindOf(rk::NativePath(path)))
        return path;
    CString folder = rk::FolderOf(path);
    AssureTrailingSlash(&folder);
    return folder + MakeNameUnique(folder, rk::BaseNameOf(path), rk::ExtensionOf(path));
}

CString CrkPathUtilities::MakeNameUnique(const CString& folder, const CString& baseName, const CString& extension)
{
    if (folder.IsEmpty() || baseName.IsEmpty())
        return {};
    CString name = baseName;
    RemoveInvalidCharsFromFilename(name, 0);
    if (rk::ExtensionOf(name) == extension.View())
        name = CString(rk::BaseNameOf(name));
    return FreeName(folder, name, extension.IsEmpty() ? CString() : u'.' + extension, TakenBy::Anything);
}

CString CrkPathUtilities::MakeFolderNameUnique(const CString& folder, const CString& name)
{
    CString clean = name;
    RemoveInvalidCharsFromFolderName(clean);
    return FreeName(folder, clean, CString(), TakenBy::Folders);
}
