#include "RkUtilities/foundation/CString.h"

#include "RkUtilities/foundation/TextBuilder.h"
#include "RkUtilities/foundation/TextSearch.h"
#include "RkUtilities/foundation/UnitBlock.h"
#include "RkUtilities/platform/Unicode.h"

#include <algorithm>
#include <vector>

namespace {

/// A case mapping with the ASCII letters that it changes, so that blocks of ASCII need no table.
struct CaseChange {
    const rk::platform::CaseTable& table;
    char16_t firstAscii;
};

rk::UnitBlock ChangedAscii(rk::UnitBlock block, char16_t firstLetter)
{
    const rk::UnitBlock first = rk::FilledBlock(firstLetter);
    const rk::UnitBlock letters = rk::FilledBlock(26);
    const auto isLetter = reinterpret_cast<rk::UnitBlock>((block - first) < letters);
    return block ^ (isLetter & rk::FilledBlock(0x20));
}

bool Changes(std::u16string_view text, const CaseChange& change)
{
    return std::any_of(text.begin(), text.end(), [&](char16_t unit) { return change.table[unit] != unit; });
}

void ChangeCase(char16_t* units, std::size_t count, const CaseChange& change)
{
    std::size_t i = 0;
    for (; i + rk::kBlockUnits <= count; i += rk::kBlockUnits) {
        const rk::UnitBlock block = rk::LoadBlock(units + i);
        if (rk::IsAsciiBlock(block)) {
            rk::StoreBlock(units + i, ChangedAscii(block, change.firstAscii));
            continue;
        }
        for (std::size_t j = i; j < i + rk::kBlockUnits; ++j)
            units[j] = change.table[units[j]];
    }
    for (; i < count; ++i)
        units[i] = change.table[units[i]];
}

}  // namespace

void CString::SetAt(int index, unsigned short unit)
{
    if (index >= 0 && index < m_length)
        Writable()[index] = unit;
}

int CString::Insert(int index, const CString& text)
{
    const auto at = static_cast<std::size_t>(std::clamp(index, 0, m_length));
    rk::TextBuilder builder(static_cast<std::size_t>(m_length) + text.View().size());
    builder.Append(View().substr(0, at));
    builder.Append(text.View());
    builder.Append(View().substr(at));
    *this = builder.Take();
    return m_length;
}

int CString::Delete(int index, int unitCount)
{
    if (index < 0 || index >= m_length || unitCount <= 0)
        return m_length;
    char16_t* const units = Writable();
    const int end = index + std::min(unitCount, m_length - index);
    std::copy(units + end, units + m_length, units + index);
    Truncate(m_length - (end - index));
    return m_length;
}

int CString::Replace(const CString& before, const CString& after)
{
    const std::u16string_view sought = before.View();
    if (sought.empty())
        return 0;
    rk::TextSearch search(View(), sought, rk::kExactUnits);
    const std::size_t mostKept = View().size() / 8;
    std::vector<int> places;  // no more than a quarter of the text's memory; places beyond it are looked for again
    std::size_t count = 0;
    for (std::size_t at = search.From(0); at != std::u16string_view::npos; at = search.From(at + sought.size())) {
        if (++count <= mostKept)
            places.push_back(static_cast<int>(at));
    }
    if (count == 0)
        return 0;
    rk::TextBuilder builder(View().size() - count * sought.size() + count * after.View().size());
    std::size_t end = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = i < places.size() ? static_cast<std::size_t>(places[i]) : search.From(end);
        builder.Append(View().substr(end, at - end));
        builder.Append(after.View());
        end = at + sought.size();
    }
    builder.Append(View().substr(end));
    *this = builder.Take();
    return static_cast<int>(count);
}

int CString::Remove(unsigned short unit)
{
    const auto count = std::count(begin(), end(), static_cast<char16_t>(unit));
    if (count == 0)
        return 0;
    char16_t* const units = Writable();
    static_cast<void>(std::remove(units, units + m_length, static_cast<char16_t>(unit)));
    Truncate(m_length - static_cast<int>(count));
    return static_cast<int>(count);
}

void CString::RemoveLineFeeds()
{
    Remove(u'\r');
    Remove(u'\n');
}

CString& CString::MakeUpper()
{
    const CaseChange change{rk::platform::UpperCase(), u'a'};
    if (Changes(View(), change))
        ChangeCase(Writable(), static_cast<std::size_t>(m_length), change);
    return *this;
}

CString& CString::MakeLower()
{
    const CaseChange change{rk::platform::LowerCase(), u'A'};
    if (Changes(View(), change))
        ChangeCase(Writable(), static_cast<std::size_t>(m_length), change);
    return *this;
}

CString& CString::Trim()
{
    int first = 0;
    while (first < m_length && rk::platform::IsWhiteSpace(GetAt(first)))
        ++first;
    return (*this = Mid(first)).TrimRight();
}

CString& CString::TrimRight()
{
    int end = m_length;
    while (end > 0 && rk::platform::IsWhiteSpace(GetAt(end - 1)))
        --end;
    Delete(end, m_length - end);
    return *this;
}
