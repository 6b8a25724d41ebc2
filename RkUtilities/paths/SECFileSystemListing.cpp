#include "RkUtilities/foundation/FileAttributes.h"
#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/paths/SECFileSystem.h"
#include "RkUtilities/platform/Collation.h"
#include "RkUtilities/platform/FileTrees.h"
#include "RkUtilities/platform/Files.h"

#include <algorithm>
#include <cstdint>
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

/// An entry for sorting: most orders are decided by the first bytes of the key, held as a number.
struct Rank {
    std::uint64_t head = 0;
    const Entry* entry;

    explicit Rank(const Entry& ranked) : entry(&ranked)
    {
        for (std::size_t i = 0; i < sizeof head; ++i)
            head = head << 8 | (i < ranked.key.size() ? static_cast<unsigned char>(ranked.key[i]) : 0U);
    }
    bool operator<(const Rank& other) const
    {
        if (head != other.head)
            return head < other.head;
        const int order = entry->key.compare(other.entry->key);
        return order != 0 ? order < 0 : entry->name < other.entry->name;
    }
};

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
    std::vector<Rank> ranks(entries.begin(), entries.end());
    std::sort(ranks.begin(), ranks.end());
    for (const Rank& rank : ranks) {
        const CString& name = rank.entry->name;
        list->AddTail(folder.IsEmpty() && name == u"~" ? CString(u"./~") : folder + name);
    }
    return list.release();
}
