#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/foundation/TextBuilder.h"
#include "RkUtilities/paths/CrkPathUtilities.h"
#include "RkUtilities/paths/PathNames.h"
#include "RkUtilities/platform/NameCompare.h"

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
        if (m_view || path.IsEmpty() || !(m_made = MadeClean(path)))
            return;
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
    const auto [targetEnd, baseEnd] = std::mismatch(target.begin(), target.end(), base.begin(), base.end());
    auto common = static_cast<std::size_t>(targetEnd - target.begin());
    const auto elementEndsAt = [common](std::u16string_view path) {
        return common == path.size() || path[common] == u'/';
    };
    if (!elementEndsAt(target) || !elementEndsAt(base))
        common = target.rfind(u'/', common - 1);  // both begin with "/", so what they have in common does

    CommonPart part{common, common};
    while (part.ofTarget < target.size() && part.ofBase < base.size()) {
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

    rk::TextBuilder relative(3 * upCount + 1 + down.size());
    relative.Append(upCount == 0 ? u"." : u"..");
    for (std::size_t i = 1; i < upCount; ++i)
        relative.Append(u"/..");
    relative.Append(down);
    return relative.Take();
}
