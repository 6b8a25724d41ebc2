#include "RkUtilities/paths/CrkPathUtilities.h"

#include "RkUtilities/foundation/detail/TextBuilder.h"
#include "RkUtilities/paths/detail/PathNames.h"

#include <algorithm>
#include <string_view>

namespace {

bool EndsWithSlash(std::u16string_view path) { return path.ends_with(u'/'); }

}  // namespace

// --- Taking a path apart

CString CrkPathUtilities::FileWithExtensionFromFilename(const CString& path) { return rk::FileNameOf(path); }

CString CrkPathUtilities::PathFromFilename(const CString& path) { return rk::FolderOf(path); }

CString CrkPathUtilities::GetExtensionFromFileName(const CString& path) { return rk::ExtensionOf(path); }

CString CrkPathUtilities::FileWithoutExtensionFromFilename(const CString& path) { return rk::BaseNameOf(path); }

// --- Slashes and spaces

void CrkPathUtilities::AssureTrailingSlash(CString* path) {
    if (path != nullptr && !path->IsEmpty() && !EndsWithSlash(*path))
        *path += u'/';
}

void CrkPathUtilities::StripTrailingSlash(CString* path) {
    if (path != nullptr && EndsWithSlash(*path))
        path->Delete(path->GetLength() - 1);
}

void CrkPathUtilities::AssignDirString(const CString& source, CString& target) {
    target = source;
    AssureTrailingSlash(&target);
}

CString CrkPathUtilities::NormalizedPath(const CString& path, TrailingCharTreatment treatment) {
    CString normalized = path;
    normalized.Replace(u"\\", u"/");
    if (treatment == StripTrailingChar)
        StripTrailingSlash(&normalized);
    else if (treatment == AssureTrailingChar)
        AssureTrailingSlash(&normalized);
    return normalized;
}

void CrkPathUtilities::NormalizePath(CString* path) {
    if (path == nullptr)
        return;
    path->Replace(u"\\", u"/");
    StripLeadingSpace(path);
    StripTrailingSpace(path);
    AssureTrailingSlash(path);
}

void CrkPathUtilities::StripLeadingSpace(CString* path) {
    if (path == nullptr)
        return;
    const std::u16string_view text = *path;
    const std::size_t spaceCount = std::min(text.find_first_not_of(u' '), text.size());
    path->Delete(0, static_cast<int>(spaceCount));
}

void CrkPathUtilities::StripTrailingSpace(CString* path) {
    if (path == nullptr)
        return;
    const std::u16string_view text = *path;
    const std::size_t keptCount = text.find_last_not_of(u' ') + 1;  // npos + 1 is 0
    path->Delete(static_cast<int>(keptCount), static_cast<int>(text.size() - keptCount));
}

// --- Absolute and relative paths; CalcRelativePathname has a file of its own

CString CrkPathUtilities::AppendToPath(const CString& path, const CString& name) {
    const std::u16string_view folder = path;
    rk::TextBuilder appended(folder.size() + 1 + name.View().size());
    appended.Append(folder);
    if (!folder.empty() && !EndsWithSlash(folder))
        appended.Append(u'/');
    appended.Append(name.View());
    return appended.Take();
}

CString CrkPathUtilities::GetAbsolutePath(const CString& path) { return rk::AbsolutePath(path); }

CString CrkPathUtilities::RelativeToAbsoluteFilename(const CString& fileName, const CString& baseFolder) {
    return GetAbsolutePath(IsAbsoluteFilename(fileName) ? fileName : AppendToPath(baseFolder, fileName));
}

CString CrkPathUtilities::AbsoluteToRelativeFilename(const CString& fileName, const CString& baseFolder) {
    std::u16string_view rest = fileName;
    const std::u16string_view base = baseFolder;
    if (base.empty() || !rest.starts_with(base))
        return fileName;
    rest.remove_prefix(base.size());
    return rest.substr(rest.starts_with(u'/') ? 1 : 0);
}

CString CrkPathUtilities::GetLowercaseLongPath(const CString& path) {
    CString lower = path;
    lower.MakeLower();
    return lower;
}

// --- Comparing

bool CrkPathUtilities::AreFilenamesEqual(const CString& first, const CString& second) {
    return rk::AbsolutePath(first).CompareNoCase(rk::AbsolutePath(second)) == 0;
}
