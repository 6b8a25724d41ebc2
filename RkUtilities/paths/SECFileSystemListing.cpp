#include "RkUtilities/foundation/FileAttributes.h"
#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/paths/SECFileSystem.h"
#include "RkUtilities/platform/Collation.h"
#include "RkUtilities/platform/FileTrees.h"
#include "RkUtilities/platform/Files.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace platform = rk::platform;

namespace {

/// Which names a pattern takes: each part is equal or "*".
class NamePattern {
public:
    NamePattern(const SECFileSystem& files, const CString& pattern)
        : m_files(files), m_base(files.GetBaseFileName(pattern)), m_extension(files.GetExtension(pattern))
    {}
    bool Takes(const CString& name) const
    {
        return (m_base == u"*" || m_base == m_files.GetBaseFileName(name)) &&
               (m_extension == u"*" || m_extension == m_files.GetExtension(name));
    }

private:
    const SECFileSystem& m_files;
    CString m_base;
    CString m_extension;
};

/// Whether an entry's attribute byte meets the mask. Most entries need no status: their kind says enough.
bool MeetsMask(const std::string& nativeFolder, std::string_view name, platform::FileKind kind,
               unsigned long attributeMask)
{
    const bool kindTells = kind != platform::FileKind::Link && kind != platform::FileKind::Unknown;
    unsigned char attributes = rk::AttributesOf(name, kind);
    if (kindTells && (attributes & attributeMask) != 0)
        return true;
    if (kindTells && (CFileStatus::readOnly & attributeMask) == 0)
        return false;
    if (const auto facts = platform::Inspect(nativeFolder + std::string(name)))
        attributes = rk::AttributesOf(name, *facts);
    return (attributes & attributeMask) != 0;
}

struct Entry {
    std::string key;
    CString name;
};

bool ComesBefore(const Entry& a, const Entry& b)
{
    const int order = a.key.compare(b.key);
    return order != 0 ? order < 0 : a.name < b.name;
}

}  // namespace

CAtlList<CString>* SECFileSystem::GetFileList(const CString& pattern, unsigned long attributeMask) const
{
    auto list = std::make_unique<CAtlList<CString>>(10U);
    const CString folder = GetPath(pattern, 1);
    const std::string nativeFolder = folder.IsEmpty() ? "./" : rk::NativePath(folder);
    const NamePattern wanted(*this, pattern);
    std::vector<Entry> entries;
    const std::error_code error =
        platform::VisitFolder(nativeFolder, [&](std::string_view nativeName, platform::FileKind kind) {
            CString name = rk::PathText(nativeName);
            if (wanted.Takes(name) && MeetsMask(nativeFolder, nativeName, kind, attributeMask))
                entries.push_back({platform::CollationKey(name), std::move(name)});
            return platform::Visit::Continue;
        });
    if (error)
        return list.release();
    std::sort(entries.begin(), entries.end(), ComesBefore);
    for (const Entry& entry : entries)
        list->AddTail(folder.IsEmpty() && entry.name == u"~" ? CString(u"./~") : folder + entry.name);
    return list.release();
}
