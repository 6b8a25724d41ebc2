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

/// The element that starts at `start`, up to the next "/" or the end.
std::u16string_view ElementAt(std::u16string_view path, std::size_t start) {
    return path.substr(start, path.find(u'/', start) - start);
}

// In these functions a clean path is "" for the root, else a "/" before each element: no element is empty, "." or "..".

/// nullopt for "" and for a relative path without a current folder.
std::optional<std::u16string> CleanPath(const CString& path) {
    if (path.IsEmpty())
        return std::nullopt;
    CString absolute = path;
    if (path == u"~" || path.View().starts_with(u"~/"))
        absolute = rk::PathText(rk::NativePath(u"~")) + path.View().substr(1);
    if (!absolute.View().starts_with(u'/'))
        absolute = rk::AbsolutePath(absolute.View().starts_with(u'~') ? CString(u"./") + absolute : absolute);
    const std::u16string_view text = absolute;
    if (!text.starts_with(u'/'))
        return std::nullopt;

    std::u16string clean;
    clean.reserve(text.size());
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

/// How far two clean paths lead through the same folders: what follows is "" or begins with "/".
struct CommonPart {
    std::size_t ofTarget;
    std::size_t ofBase;
};

CommonPart FindCommonPart(std::u16string_view target, std::u16string_view base) {
    CommonPart part{0, 0};
    while (part.ofTarget < target.size() && part.ofBase < base.size()) {
        const std::u16string_view targetElement = ElementAt(target, part.ofTarget + 1);
        const std::u16string_view baseElement = ElementAt(base, part.ofBase + 1);
        if (targetElement != baseElement && !IsSameName(targetElement, baseElement))
            break;
        part.ofTarget += 1 + targetElement.size();
        part.ofBase += 1 + baseElement.size();
    }
    return part;
}

}  // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): callers know it so
CString CrkPathUtilities::CalcRelativePathname(CString target, CString baseFolder) {
    const std::optional<std::u16string> cleanTarget = CleanPath(target);
    const std::optional<std::u16string> cleanBase = CleanPath(baseFolder);
    if (!cleanTarget || !cleanBase)
        return {};
    const CommonPart common = FindCommonPart(*cleanTarget, *cleanBase);
    const std::u16string_view down = std::u16string_view(*cleanTarget).substr(common.ofTarget);
    const std::u16string_view left = std::u16string_view(*cleanBase).substr(common.ofBase);
    const auto upCount = static_cast<std::size_t>(std::count(left.begin(), left.end(), u'/'));

    const std::size_t upUnits = upCount == 0 ? 1 : 3 * upCount - 1;
    return rk::TextBuilder::Written(upUnits + down.size(), [&](char16_t* units) {
        char16_t* end = units;
        for (std::size_t i = 0; i < upCount; ++i)
            end = std::copy_n(u"../", 3, end);
        units[upUnits - 1] = u'.';  // for a way without a step up
        std::copy(down.begin(), down.end(), units + upUnits);
    });
}
