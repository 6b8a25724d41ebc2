#include "RkUtilities/strings/CrkStringUtilities.h"

#include "RkUtilities/foundation/detail/TextBuilder.h"
#include "RkUtilities/platform/locale/Unicode.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace {

/// The folded units of all texts, the higher byte first, so that bytes compare as units do.
using FoldedBytes = std::vector<unsigned char>;

/// A text to sort. Its first four folded units are one number: most comparisons end there.
struct SortEntry {
    std::uint64_t head;
    std::size_t firstByte;
    std::size_t byteCount;
    CString* text;
};

void AppendFolded(FoldedBytes& bytes, const CString& text)
{
    const rk::platform::CaseTable& folded = rk::platform::FoldedCase();
    for (const char16_t unit : text) {
        const char16_t key = folded[unit];
        bytes.push_back(static_cast<unsigned char>(key >> 8U));
        bytes.push_back(static_cast<unsigned char>(key & 0xFFU));
    }
}

std::uint64_t HeadOf(const unsigned char* bytes, std::size_t byteCount)
{
    std::uint64_t head = 0;
    for (std::size_t i = 0; i < sizeof head; ++i)
        head = head << 8U | (i < byteCount ? bytes[i] : 0U);
    return head;
}

bool ComesBefore(const SortEntry& a, const SortEntry& b, const FoldedBytes& bytes)
{
    if (a.head != b.head)
        return a.head < b.head;
    const std::size_t common = std::min(a.byteCount, b.byteCount);
    const int order = std::memcmp(bytes.data() + a.firstByte, bytes.data() + b.firstByte, common);
    return order != 0 ? order < 0 : a.byteCount < b.byteCount;
}

/// The texts in the order of CompareNoCase; equal ones keep theirs.
std::vector<SortEntry> Sorted(CAtlList<CString>& list)
{
    std::size_t unitCount = 0;
    for (const CString& text : list)
        unitCount += text.View().size();
    FoldedBytes bytes;
    bytes.reserve(2 * unitCount);
    std::vector<SortEntry> entries;
    entries.reserve(list.GetCount());
    for (CString& text : list) {
        const std::size_t firstByte = bytes.size();
        AppendFolded(bytes, text);
        const std::size_t byteCount = bytes.size() - firstByte;
        entries.push_back({HeadOf(bytes.data() + firstByte, byteCount), firstByte, byteCount, &text});
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [&bytes](const SortEntry& a, const SortEntry& b) { return ComesBefore(a, b, bytes); });
    return entries;
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
    std::vector<SortEntry> entries = Sorted(list);
    if (!ascending)
        std::reverse(entries.begin(), entries.end());
    std::vector<CString> texts;
    texts.reserve(entries.size());
    for (const SortEntry& entry : entries)
        texts.push_back(std::move(*entry.text));
    std::move(texts.begin(), texts.end(), list.begin());
}
