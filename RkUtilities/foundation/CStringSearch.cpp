#include "RkUtilities/foundation/CString.h"

#include "RkUtilities/foundation/detail/TextSearch.h"
#include "RkUtilities/foundation/detail/UnitBlock.h"
#include "RkUtilities/platform/locale/Unicode.h"

#include <algorithm>

namespace {

std::size_t StartOf(int start) { return static_cast<std::size_t>(std::max(start, 0)); }

int IndexOf(std::size_t position) { return position == std::u16string_view::npos ? -1 : static_cast<int>(position); }

/// A unit's case folding; ASCII needs no table.
char16_t Folded(char16_t unit) {
    if (unit >= 0x80)
        return rk::platform::FoldedCase()[unit];
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit | 0x20) : unit;
}

/// The first of `count` units whose case foldings differ; `count` when all are alike.
std::size_t FirstFoldedDifference(const char16_t* a, const char16_t* b, std::size_t count) {
    std::size_t i = 0;
    while (i < count && Folded(a[i]) == Folded(b[i]))
        ++i;
    return i;
}

/// The same in one block.
std::size_t FirstFoldedDifferenceInBlock(const char16_t* a, const char16_t* b) {
    const rk::UnitBlock blockA = rk::LoadBlock(a);
    const rk::UnitBlock blockB = rk::LoadBlock(b);
    if (rk::IsAsciiBlock(blockA | blockB))
        return rk::FirstLane(rk::WithAsciiCaseChanged(blockA, u'A') != rk::WithAsciiCaseChanged(blockB, u'A'));
    const std::size_t first = rk::FirstLane(blockA != blockB);
    return first + FirstFoldedDifference(a + first, b + first, rk::kBlockUnits - first);
}

/// The last occurrence, in linear time.
int FindFromEnd(std::u16string_view text, std::u16string_view sought) {
    const std::size_t found =
        rk::FindUnits(std::u16string(text.rbegin(), text.rend()), std::u16string(sought.rbegin(), sought.rend()), 0);
    return found == std::u16string_view::npos ? -1 : static_cast<int>(text.size() - sought.size() - found);
}

}  // namespace

int CString::Find(const CString& sought, int start) const {
    return IndexOf(rk::FindUnits(View(), sought.View(), StartOf(start)));
}

int CString::FindNoCase(const CString& sought, int start) const {
    return IndexOf(rk::FindUnitsByKey(View(), sought.View(), StartOf(start), rk::platform::FoldedCase()));
}

int CString::FindOneOf(const CString& set, int start) const noexcept {
    const std::u16string_view text = View();
    const rk::UnitSet units(set.View());
    const std::size_t found = units.FirstIn(text, StartOf(start));
    return found < text.size() ? static_cast<int>(found) : -1;
}

int CString::ReverseFind(const CString& sought, int start) const {
    constexpr std::size_t kFreeUnits = 4096;
    const std::u16string_view units = sought.View();
    if (units.size() > View().size())
        return -1;
    const std::size_t most = View().size() - units.size();
    const std::size_t last = start < 0 ? most : std::min(most, StartOf(start));
    std::size_t compared = 0;
    for (std::size_t at = last + 1; at-- > 0;) {
        const auto same = std::mismatch(units.begin(), units.end(), begin() + at).first - units.begin();
        if (static_cast<std::size_t>(same) == units.size())
            return static_cast<int>(at);
        compared += static_cast<std::size_t>(same);
        if (compared > 8 * (last - at) + kFreeUnits)  // many places match in large parts
            return FindFromEnd(View().substr(0, at + units.size()), units);
    }
    return -1;
}

CString CString::SpanIncluding(const CString& set) const {
    return Left(static_cast<int>(std::min(View().find_first_not_of(set.View()), View().size())));
}

CString CString::SpanExcluding(const CString& set) const {
    const int end = FindOneOf(set);
    return end < 0 ? *this : Left(end);
}

CString CString::Tokenize(const CString& delimiters, int& position) const {
    const std::u16string_view text = View();
    const rk::UnitSet set(delimiters.View());
    std::size_t begin = position < 0 ? text.size() : StartOf(position);
    std::size_t end = begin;
    while (begin < text.size() && (end = set.FirstIn(text, begin)) == begin)
        ++begin;
    if (begin >= text.size()) {
        position = -1;
        return {};
    }
    position = static_cast<int>(std::min(end + 1, text.size()));
    return Part(begin, end - begin);
}

int CString::CompareNoCase(const CString& other) const {
    const char16_t* const a = Units();
    const char16_t* const b = other.Units();
    const auto count = static_cast<std::size_t>(std::min(GetLength(), other.GetLength()));
    std::size_t i = 0;
    if (count < rk::kBlockUnits) {
        i = FirstFoldedDifference(a, b, count);
    } else {
        while (i < count) {
            const std::size_t begin = std::min(i, count - rk::kBlockUnits);  // the last block may look twice at a unit
            const std::size_t first = FirstFoldedDifferenceInBlock(a + begin, b + begin);
            i = begin + first;
            if (first < rk::kBlockUnits)
                break;
        }
    }
    if (i < count)
        return Folded(a[i]) - Folded(b[i]);
    return GetLength() < other.GetLength() ? -1 : static_cast<int>(GetLength() > other.GetLength());
}
