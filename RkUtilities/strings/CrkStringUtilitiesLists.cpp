#include "RkUtilities/strings/CrkStringUtilities.h"

#include "RkUtilities/foundation/TextBuilder.h"
#include "RkUtilities/platform/Unicode.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace {

/// A text with its first four units folded into one number: most comparisons end there.
struct SortEntry {
    std::uint64_t head;
    CString text;
};

std::uint64_t HeadOf(const CString& text)
{
    const rk::platform::CaseTable& folded = rk::platform::FoldedCase();
    std::uint64_t head = 0;
    for (int i = 0; i < 4; ++i)
        head = head << 16U | folded[static_cast<char16_t>(text.GetAt(i))];
    return head;
}

bool ComesBefore(const SortEntry& a, const SortEntry& b)
{
    return a.head != b.head ? a.head < b.head : a.text.CompareNoCase(b.text) < 0;
}

}  // namespace

CString CrkStringUtilities::Combine(const CString& separator, CString const* parts, unsigned long count,
                                    bool skipEmptyParts)
{
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
                                    bool skipEmptyParts)
{
    const CString parts[] = {first, second};
    return Combine(separator, parts, std::size(parts), skipEmptyParts);
}

CString CrkStringUtilities::Combine(const CString& separator, const CString& first, const CString& second,
                                    const CString& third, bool skipEmptyParts)
{
    const CString parts[] = {first, second, third};
    return Combine(separator, parts, std::size(parts), skipEmptyParts);
}

CString CrkStringUtilities::Combine(const CString& separator, const CString& first, const CString& second,
                                    const CString& third, const CString& fourth, bool skipEmptyParts)
{
    const CString parts[] = {first, second, third, fourth};
    return Combine(separator, parts, std::size(parts), skipEmptyParts);
}

void CrkStringUtilities::SortStringList(CAtlList<CString>& list, bool ascending)
{
    std::vector<SortEntry> entries;
    entries.reserve(list.GetCount());
    for (const CString& text : list)
        entries.push_back({HeadOf(text), text});
    std::stable_sort(entries.begin(), entries.end(), ComesBefore);
    if (!ascending)
        std::reverse(entries.begin(), entries.end());
    CAtlList<CString> sorted;
    for (SortEntry& entry : entries)
        sorted.AddTail(std::move(entry.text));
    list = std::move(sorted);
}
