#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/foundation/detail/FileAttributes.h"
#include "RkUtilities/paths/SECFileSystem.h"
#include "RkUtilities/paths/detail/PathNames.h"
#include "RkUtilities/platform/files/FileFacts.h"
#include "RkUtilities/platform/files/FolderList.h"
#include "RkUtilities/platform/files/PathBytes.h"
#include "RkUtilities/platform/locale/Collation.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace platform = rk::platform;

namespace {

/// Which names a pattern takes: each part is equal or "*". The pattern must outlive it.
class NamePattern {
public:
    explicit NamePattern(const CString& pattern)
        : m_base(rk::BaseNameOf(pattern)), m_extension(rk::ExtensionOf(pattern))
    {}
    bool Takes(std::u16string_view name) const
    {
        return (m_base == u"*" || m_base == rk::BaseNameOf(name)) &&
               (m_extension == u"*" || m_extension == rk::ExtensionOf(name));
    }

private:
    std::u16string_view m_base;
    std::u16string_view m_extension;
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

/// Names one behind the other.
class Names {
public:
    void Add(std::u16string_view name)
    {
        m_units += name;
        m_ends.push_back(m_units.size());
    }
    /// Views that are valid until another name is added.
    [[nodiscard]] std::vector<std::u16string_view> Views() const
    {
        std::vector<std::u16string_view> views;
        views.reserve(m_ends.size());
        std::size_t start = 0;
        for (const std::size_t end : m_ends) {
            views.push_back(std::u16string_view(m_units).substr(start, end - start));
            start = end;
        }
        return views;
    }

private:
    std::u16string m_units;
    std::vector<std::size_t> m_ends;
};

/// A name for sorting: most orders are decided by the first bytes of the key, held as a number.
struct Rank {
    std::uint64_t head = 0;
    std::size_t index;

    Rank(std::string_view key, std::size_t indexOfName) : index(indexOfName)
    {
        for (std::size_t i = 0; i < sizeof head; ++i)
            head = head << 8 | (i < key.size() ? static_cast<unsigned char>(key[i]) : 0U);
    }
};

/// The names in the user's order; those that are alike in it by their units.
std::vector<Rank> Ranked(const std::vector<std::u16string_view>& names)
{
    const platform::CollationKeys keys = platform::CollationKeysOf(names);
    std::vector<Rank> ranks;
    ranks.reserve(names.size());
    for (std::size_t i = 0; i < names.size(); ++i)
        ranks.emplace_back(keys.Of(i), i);
    std::sort(ranks.begin(), ranks.end(), [&](const Rank& a, const Rank& b) {
        if (a.head != b.head)
            return a.head < b.head;
        const int order = keys.Of(a.index).compare(keys.Of(b.index));
        return order != 0 ? order < 0 : names[a.index] < names[b.index];
    });
    return ranks;
}

}  // namespace

CAtlList<CString>* SECFileSystem::GetFileList(const CString& pattern, unsigned long attributeMask) const
{
    auto list = std::make_unique<CAtlList<CString>>(10U);
    const CString folder = GetPath(pattern, 1);
    const std::string nativeFolder = folder.IsEmpty() ? "./" : rk::NativePath(folder);
    const NamePattern wanted(pattern);
    Names found;
    const std::error_code error =
        platform::VisitFolder(nativeFolder, [&](std::string_view nativeName, platform::FileKind kind) {
            const std::u16string name = platform::PathOfBytes(nativeName);
            if (wanted.Takes(name) && MeetsMask(nativeFolder, nativeName, kind, attributeMask))
                found.Add(name);
            return platform::Visit::Continue;
        });
    if (error)
        return list.release();
    const std::vector<std::u16string_view> names = found.Views();
    for (const Rank& rank : Ranked(names)) {
        const std::u16string_view name = names[rank.index];
        list->AddTail(folder.IsEmpty() && name == u"~" ? CString(u"./~") : folder + name);
    }
    return list.release();
}
