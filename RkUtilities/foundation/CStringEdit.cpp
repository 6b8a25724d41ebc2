#include "RkUtilities/foundation/CString.h"

#include "RkUtilities/foundation/detail/TextBuilder.h"
#include "RkUtilities/foundation/detail/TextSearch.h"
#include "RkUtilities/foundation/detail/UnitBlock.h"
#include "RkUtilities/platform/locale/Unicode.h"
#include "RkUtilities/platform/locale/Utf.h"

#include <algorithm>
#include <vector>

namespace {

/// The changed text; shares memory when nothing changes. `firstLetter` is the first ASCII letter that changes.
CString InOtherCase(const CString& source, const rk::platform::CaseTable& table, char16_t firstLetter) {
    if (std::all_of(source.begin(), source.end(), [&](char16_t unit) { return table[unit] == unit; }))
        return source;
    const auto changed = [&](char16_t unit) { return table[unit]; };
    return rk::TextBuilder::Written(source.View().size(), [&](char16_t* out) {
        const char16_t* in = source.begin();
        constexpr std::size_t kStep = 2 * rk::kBlockUnits;
        for (; source.end() - in >= std::ptrdiff_t{kStep}; in += kStep, out += kStep) {
            const rk::UnitBlock front = rk::LoadBlock(in);
            const rk::UnitBlock back = rk::LoadBlock(in + rk::kBlockUnits);
            if (rk::IsAsciiBlock(front | back)) {
                rk::StoreBlock(out, rk::WithAsciiCaseChanged(front, firstLetter));
                rk::StoreBlock(out + rk::kBlockUnits, rk::WithAsciiCaseChanged(back, firstLetter));
            } else {
                std::transform(in, in + kStep, out, changed);
            }
        }
        std::transform(in, source.end(), out, changed);
    });
}

}  // namespace

void CString::SetAt(int index, unsigned short unit) {
    if (index >= 0 && index < GetLength())
        m_text.MakeOwn()[index] = unit;
}

int CString::Insert(int index, const CString& text) {
    const auto at = static_cast<std::size_t>(std::clamp(index, 0, GetLength()));
    rk::TextBuilder builder(View().size() + text.View().size());
    builder.Append(View().substr(0, at));
    builder.Append(text.View());
    builder.Append(View().substr(at));
    *this = builder.Take();
    return GetLength();
}

int CString::Delete(int index, int unitCount) {
    if (index < 0 || index >= GetLength() || unitCount <= 0)
        return GetLength();
    char16_t* const units = m_text.MakeOwn();
    const int end = index + std::min(unitCount, GetLength() - index);
    std::copy(units + end, units + GetLength(), units + index);
    m_text.SetLength(View().size() - static_cast<std::size_t>(end - index));
    return GetLength();
}

int CString::Replace(const CString& before, const CString& after) {
    const std::u16string_view sought = before.View();
    if (sought.empty())
        return 0;
    rk::TextSearch search(View(), sought, rk::kExactUnits);
    const std::size_t mostKept = View().size() / 8;
    // The first matches, in a quarter of the text's memory at most; later matches are sought again.
    std::vector<int> places;
    std::size_t count = 0;
    for (std::size_t at = search.From(0); at != std::u16string_view::npos; at = search.From(at + sought.size())) {
        if (++count <= mostKept)
            places.push_back(static_cast<int>(at));
    }
    if (count == 0)
        return 0;
    const std::u16string_view text = View();
    const std::u16string_view inserted = after.View();
    const std::size_t length = text.size() - count * sought.size() + count * inserted.size();
    rk::TextBuilder builder(length);
    char16_t* to = builder.Extend(length);
    std::size_t end = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = i < places.size() ? static_cast<std::size_t>(places[i]) : search.From(end);
        rk::CopyUnits(text.data() + end, at - end, to);
        rk::CopyUnits(inserted.data(), inserted.size(), to + (at - end));
        to += at - end + inserted.size();
        end = at + sought.size();
    }
    rk::CopyUnits(text.data() + end, text.size() - end, to);
    *this = builder.Take();
    return static_cast<int>(count);
}

int CString::Remove(unsigned short unit) {
    const auto removed = static_cast<char16_t>(unit);
    const auto count = static_cast<std::size_t>(std::count(begin(), end(), removed));
    if (count == 0)
        return 0;
    char16_t* const units = m_text.MakeOwn();
    m_text.SetLength(static_cast<std::size_t>(std::remove(units, units + GetLength(), removed) - units));
    return static_cast<int>(count);
}

void CString::RemoveLineFeeds() {
    Remove(u'\r');
    Remove(u'\n');
}

CString& CString::MakeUpper() { return *this = InOtherCase(*this, rk::platform::UpperCase(), u'a'); }

CString& CString::MakeLower() { return *this = InOtherCase(*this, rk::platform::LowerCase(), u'A'); }

CString& CString::MakeReverse() {
    char16_t* const units = m_text.MakeOwn();
    std::reverse(units, units + GetLength());
    for (int i = 1; i < GetLength(); ++i) {
        if (rk::platform::IsLowSurrogate(units[i - 1]) && rk::platform::IsHighSurrogate(units[i])) {
            std::swap(units[i - 1], units[i]);
            ++i;
        }
    }
    return *this;
}

// The second half of `Trim`, the cutting at the end, takes no memory: the first half has made the text its own.

CString& CString::TrimLeft() {
    return *this = Mid(static_cast<int>(std::find_if_not(begin(), end(), rk::platform::IsWhiteSpace) - begin()));
}

CString& CString::TrimRight() {
    int last = GetLength();
    while (last > 0 && rk::platform::IsWhiteSpace(GetAt(last - 1)))
        --last;
    Delete(last, GetLength() - last);
    return *this;
}

CString& CString::TrimLeft(const CString& set) { return *this = Mid(SpanIncluding(set).GetLength()); }

CString& CString::TrimRight(const CString& set) {
    const auto last = static_cast<int>(View().find_last_not_of(set.View()) + 1);  // npos + 1 is 0
    Delete(last, GetLength() - last);
    return *this;
}

char16_t* CString::GetBuffer(int unitCount) {
    const std::size_t length = View().size();
    const std::size_t room = std::max(length, static_cast<std::size_t>(std::max(unitCount, 0)));
    if (!m_text.IsOwn() || m_text.Capacity() < room) {
        rk::TextStorage::CheckLength(room);
        char16_t* const units = rk::SharedUnits::Allocate(std::max(room, rk::TextStorage::kInlineUnits));
        rk::CopyUnits(View().data(), length, units);
        m_text = rk::TextStorage::Adopting(units, length);
    }
    char16_t* const units = m_text.OwnUnits();
    std::fill(units + length, units + m_text.Capacity() + 1, char16_t{0});
    return units;
}

void CString::ReleaseBuffer(int unitCount) {
    const char16_t* const units = m_text.MakeOwn();
    const char16_t* const roomEnd = units + m_text.Capacity();
    const auto length = unitCount >= 0 ? std::min(static_cast<std::size_t>(unitCount), m_text.Capacity())
                                       : static_cast<std::size_t>(std::find(units, roomEnd, u'\0') - units);
    m_text.SetLength(length);
}
