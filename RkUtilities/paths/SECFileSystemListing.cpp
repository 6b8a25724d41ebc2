#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/foundation/detail/FileAttributes.h"
#include "RkUtilities/foundation/detail/KeyOrder.h"
#include "RkUtilities/paths/SECFileSystem.h"
#include "RkUtilities/paths/detail/PathNames.h"
#include "RkUtilities/platform/files/FileFacts.h"
#include "RkUtilities/platform/files/FolderList.h"
#include "RkUtilities/platform/files/PathBytes.h"

#include <memory>
#include <string>
#include <string_view>

namespace platform = rk::platform;

namespace {

/// Which names a pattern takes: each part is equal or "*". The pattern must outlive it.
class NamePattern {
public:
    explicit NamePattern(const CString& pattern)
        : m_base(rk::BaseNameOf(pattern)), m_extension(rk::ExtensionOf(pattern)) {}
    bool Takes(std::u16string_view name) const {
        return (m_base == u"*" || m_base == rk::BaseNameOf(name)) &&
               (m_extension == u"*" || m_extension == rk::ExtensionOf(name));
    }

private:
    std::u16string_view m_base;
    std::u16string_view m_extension;
};

/// Whether an entry's attribute byte meets the mask. Most entries need no status: their kind says enough.
bool MeetsMask(const std::string& nativeFolder, std::string_view name, platform::FileKind kind,
               unsigned long attributeMask) {
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

}  // namespace

CAtlList<CString>* SECFileSystem::GetFileList(const CString& pattern, unsigned long attributeMask) const {
    auto list = std::make_unique<CAtlList<CString>>(10U);
    const CString folder = GetPath(pattern, 1);
    const std::string nativeFolder = folder.IsEmpty() ? "./" : rk::NativePath(folder);
    const NamePattern wanted(pattern);
    platform::TextRow<char16_t> names;
    const std::error_code error =
        platform::VisitFolder(nativeFolder, [&](std::string_view nativeName, platform::FileKind kind) {
            const std::u16string name = platform::PathOfBytes(nativeName);
            if (wanted.Takes(name) && MeetsMask(nativeFolder, nativeName, kind, attributeMask))
                names.Add(name);
            return platform::Visit::Continue;
        });
    if (error)
        return list.release();
    const auto comesBefore = [&](std::size_t a, std::size_t b) { return names[a] < names[b]; };
    for (const std::size_t index : rk::OrderedByKeys(platform::CollationKeysOf(names), comesBefore))
        list->AddTail(folder.IsEmpty() && names[index] == u"~" ? CString(u"./~") : folder + names[index]);
    return list.release();
}
