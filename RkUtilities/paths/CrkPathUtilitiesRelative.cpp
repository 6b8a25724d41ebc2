#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/foundation/detail/TextBuilder.h"
#include "RkUtilities/paths/CrkPathUtilities.h"
#include "RkUtilities/paths/detail/PathNames.h"
#include "RkUtilities/platform/locale/NameCompare.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

namespace {

using rk::platform::IsSameName;

// The element that starts at `start`, up to the next "/" or the end.
std::u16string_view ElementAt(std::u16string_view path, std::size_t start)
{
    return path.substr(start, path.find(u'/', start) - start);
}

// In these functions a clean path is "" for the root, else a "/" before each element: no element is empty, "." or "..".

// The part of `path` that is its clean form, if it has one as it stands: one "/" at the end is left out.
std::optional<std::u16string_view> CleanAsItStands(std::u16string_view path)
{
    if (!path.starts_with(u'/'))
        return std::nullopt;
    if (path.ends_with(u'/'))
        path.remove_suffix(1);
    for (std::size_t slash = 0; slash < path.size(); slash = std::min(path.find(u'/', slash + 1), path.size())) {
        const char16_t next = slash + 1 < path.size() ? path[slash + 1] : u'/';
        if (next != u'/' && next != u'.')
            continue;
        const std::u16string_view element = ElementAt(path, slash + 1);
        if (element.empty() || element == u"." || element == u"..")
            return std::nullopt;
    }
    return path;
}

std::optional<std::u16string> MadeClean(const CString& path)
{
    CString absolute = path;
    if (path == u"~" || path.View().starts_with(u"~/"))
        absolute = rk::PathText(rk::NativePath(u"~")) + path.View().substr(1);
    if (!absolute.View().starts_with(u'/'))
        absolute = rk::AbsolutePath(absolute.View().starts_with(u'~') ? CString(u"./") + absolute : absolute);
    const std::u16string_view text = absolute;
    if (!text.starts_with(u'/'))
        return std::nullopt;

    std::u16string clean;
    for (std::size_t start = 1; start <= text.size();) {
        const std::u16string_view element = ElementAt(text, start);
        start += element.size() + 1;
        if (element == u"..")
            clean.resize(clean.empty() ? 0 : clean.rfind(u'/'));
        else if (!element.empty() && element != u".")
            clean.append(1, u'/').append(element);
    }
    return clean;
}

// A path in its clean form, which is a part of the path itself where possible.
class CleanPath {
public:
    explicit CleanPath(const CString& path) : m_view(CleanAsItStands(path))
    {
        if (m_view || path.IsEmpty())
            return;
        m_made = MadeClean(path);
        if (m_made)
            m_view = *m_made;
    }
    CleanPath(const CleanPath&) = delete;
    CleanPath& operator=(const CleanPath&) = delete;

    [[nodiscard]] const std::optional<std::u16string_view>& View() const { return m_view; }

private:
    std::optional<std::u16string> m_made;
    std::optional<std::u16string_view> m_view;
};

// How far two clean paths lead through the same folders: what follows is "" or begins with "/".
struct CommonPart {
    std::size_t ofTarget;
    std::size_t ofBase;
};

CommonPart FindCommonPart(std::u16string_view target, std::u16string_view base)
{
    const auto firstDifference = std::mismatch(target.begin(), target.end(), base.begin(), base.end()).first;
    auto common = static_cast<std::size_t>(firstDifference - target.begin());
    const auto elementEndsAt = [common](std::u16string_view path) {
        return common == path.size() || path[common] == u'/';
    };
    if (!elementEndsAt(target) || !elementEndsAt(base))
        common = target.rfind(u'/', common - 1);  // both begin with "/", so what they have in common does

    CommonPart part{common, common};
    while (part.ofTarget < target.size() && part.ofBase < base.size()) {
        const char16_t targetUnit = target[part.ofTarget + 1];  // elements are not empty
        const char16_t baseUnit = base[part.ofBase + 1];
        const bool bothAscii = (targetUnit | baseUnit) < 0x80;
        if (bothAscii && ((targetUnit ^ baseUnit) & ~0x20) != 0)
            break;  // more than the case tells their first letters apart
        const std::u16string_view targetElement = ElementAt(target, part.ofTarget + 1);
        const std::u16string_view baseElement = ElementAt(base, part.ofBase + 1);
        if (!IsSameName(targetElement, baseElement))
            break;
        part.ofTarget += 1 + targetElement.size();
        part.ofBase += 1 + baseElement.size();
    }
    return part;
}

}  // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): callers know it so
CString CrkPathUtilities::CalcRelativePathname(CString target, CString baseFolder)
{
    const CleanPath cleanTarget(target);
    const CleanPath cleanBase(baseFolder);
    if (!cleanTarget.View() || !cleanBase.View())
        return {};
    const CommonPart common = FindCommonPart(*cleanTarget.View(), *cleanBase.View());
    const std::u16string_view down = cleanTarget.View()->substr(common.ofTarget);
    const std::u16string_view left = cleanBase.View()->substr(common.ofBase);
    const auto upCount = static_cast<std::size_t>(std::count(left.begin(), left.end(), u'/'));

    const std::size_t upUnits = upCount == 0 ? 1 : 3 * upCount - 1;
    return rk::TextBuilder::Written(upUnits + down.size(), [&](char16_t* units) {
        char16_t* end = units;
        for (std::size_t i = 0; i < upCount; ++i)
            end = std::copy_n(u"../", 3, end);
        units[upUnits - 1] = u'.';  // where there is no step up
        std::copy(down.begin(), down.end(), units + upUnits);
    });
}
