#include "RkUtilities/strings/CrkStringUtilities.h"

#include "RkUtilities/foundation/detail/KeyOrder.h"
#include "RkUtilities/foundation/detail/TextBuilder.h"
#include "RkUtilities/platform/locale/Unicode.h"

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

namespace {

/// Keys that compare byte by byte as CompareNoCase compares the texts: the folded units, the higher byte first.
rk::platform::TextRow<char> FoldedKeysOf(const CAtlList<CString>& texts) {
    const rk::platform::CaseTable& folded = rk::platform::FoldedCase();
    rk::platform::TextRow<char> keys;
    keys.ends.reserve(texts.GetCount());
    for (const CString& text : texts) {
        for (const char16_t unit : text) {
            const char16_t key = folded[unit];
            keys.units += static_cast<char>(key >> 8U);
            keys.units += static_cast<char>(key & 0xFFU);
        }
        keys.ends.push_back(keys.units.size());
    }
    return keys;
}

}  // namespace

CString CrkStringUtilities::Combine(const CString& separator, CString const* parts, unsigned long count,
                                    bool skipEmptyParts) {
    if (parts == nullptr || count == 0)
        return {};
    std::size_t length = 0;
    for (unsigned long i = 0; i < count; ++i)
        length += parts[i].View().size() + (i > 0 ? separator.View().size() : 0);
    rk::TextBuilder result(length);
    result.Append(parts[0].View());
    for (unsigned long i = 1; i < count; ++i) {
        if (!skipEmptyParts || (result.Length() > 0 && !parts[i].IsEmpty()))
            result.Append(separator.View());
        result.Append(parts[i].View());
    }
    return result.Take();
}

CString CrkStringUtilities::Combine(const CString& separator, const CString& first, const CString& second,
                                    bool skipEmptyParts) {
    const CString parts[] = {first, second};
    return Combine(separator, parts, std::size(parts), skipEmptyParts);
}

CString CrkStringUtilities::Combine(const CString& separator, const CString& first, const CString& second,
                                    const CString& third, bool skipEmptyParts) {
    const CString parts[] = {first, second, third};
    return Combine(separator, parts, std::size(parts), skipEmptyParts);
}

CString CrkStringUtilities::Combine(const CString& separator, const CString& first, const CString& second,
                                    const CString& third, const CString& fourth, bool skipEmptyParts) {
    const CString parts[] = {first, second, third, fourth};
    return Combine(separator, parts, std::size(parts), skipEmptyParts);
}

void CrkStringUtilities::SortStringList(CAtlList<CString>& list, bool ascending) {
    std::vector<std::size_t> order = rk::OrderedByKeys(FoldedKeysOf(list), std::less<>());
    if (!ascending)
        std::reverse(order.begin(), order.end());
    std::vector<CString> texts(list.begin(), list.end());
    std::ranges::transform(order, list.begin(), [&](std::size_t index) { return std::move(texts[index]); });
}
