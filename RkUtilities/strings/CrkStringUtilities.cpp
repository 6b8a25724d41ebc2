#include "RkUtilities/strings/CrkStringUtilities.h"

#include "RkUtilities/foundation/CharacterTypes.h"
#include "RkUtilities/foundation/detail/TextSearch.h"
#include "RkUtilities/platform/locale/Unicode.h"

#include <algorithm>

namespace {

constexpr std::size_t kNotFound = std::u16string_view::npos;

/// A search for a text, in upper case when case does not count.
class WordSearch {
public:
    WordSearch(std::u16string_view text, std::u16string_view sought, bool matchCase)
        : m_text(text), m_sought(sought), m_upper(matchCase ? nullptr : &rk::platform::UpperCase()) {}

    [[nodiscard]] std::size_t Next(std::size_t start) const {
        return m_upper != nullptr ? rk::FindUnitsByKey(m_text, m_sought, start, *m_upper)
                                  : rk::FindUnits(m_text, m_sought, start);
    }
    [[nodiscard]] std::size_t NextWord(std::size_t start) const {
        for (std::size_t pass = start;;) {
            const std::size_t match = Next(pass);
            if (match == kNotFound)
                return kNotFound;
            const std::size_t end = match + m_sought.size();
            const bool opens = match == pass || !IsWordUnit(match - 1);
            if (opens && (end >= m_text.size() || !IsWordUnit(end)))
                return match;
            if (end == pass)
                return kNotFound;  // an empty text: the next pass would look at the same place
            pass = end;
        }
    }

private:
    [[nodiscard]] bool IsWordUnit(std::size_t index) const {
        const char16_t unit = m_text[index];
        return IsCharAlphaNumeric(m_upper != nullptr ? (*m_upper)[unit] : unit);
    }

    std::u16string_view m_text;
    std::u16string_view m_sought;
    const rk::platform::CaseTable* m_upper;
};

int FindIn(std::u16string_view text, std::u16string_view sought, bool matchCase, bool wholeWord, int start) {
    const WordSearch search(text, sought, matchCase);
    const auto first = static_cast<std::size_t>(std::max(start, 0));
    const std::size_t match = wholeWord ? search.NextWord(first) : search.Next(first);
    return match == kNotFound ? -1 : static_cast<int>(match);
}

bool IsSame(const CString& a, const CString& b, bool ignoreCase) {
    return ignoreCase ? a.CompareNoCase(b) == 0 : a == b;
}

}  // namespace

int CrkStringUtilities::FindSubstring(rk::TextView text, rk::TextView sought, bool matchCase, bool wholeWord,
                                      int start) {
    return FindIn(text, sought, matchCase, wholeWord, start);
}

bool CrkStringUtilities::FindInString(CString text, CString sought, bool matchCase, bool wholeWord, int start) {
    return FindIn(text.View(), sought.View(), matchCase, wholeWord, start) != -1;
}

int CrkStringUtilities::FindCaseInsensitive(const CString& sought, const CString& text, int start) {
    const std::size_t match = rk::FindUnitsByKey(
        text.View(), sought.View(), static_cast<std::size_t>(std::max(start, 0)), rk::platform::LowerCase());
    return match == kNotFound ? -1 : static_cast<int>(match);
}

POSITION CrkStringUtilities::FindCaseInsensitive(const CString& sought, const CAtlList<CString>* list) {
    POSITION next = list != nullptr ? list->GetHeadPosition() : nullptr;
    while (next != nullptr) {
        const POSITION position = next;
        if (list->GetNext(next).CompareNoCase(sought) == 0)
            return position;
    }
    return nullptr;
}

int CrkStringUtilities::Find(const CString& sought, const CAtlArray<CString>* array) {
    if (array == nullptr)
        return -1;
    const auto match = std::find(array->begin(), array->end(), sought);
    return match == array->end() ? -1 : static_cast<int>(match - array->begin());
}

bool CrkStringUtilities::BeginsWith(const CString& text, const CString& prefix, bool ignoreCase) {
    return text.GetLength() >= prefix.GetLength() && IsSame(text.Left(prefix.GetLength()), prefix, ignoreCase);
}

bool CrkStringUtilities::EndsWith(const CString& text, const CString& suffix, bool ignoreCase) {
    return text.GetLength() >= suffix.GetLength() && IsSame(text.Right(suffix.GetLength()), suffix, ignoreCase);
}

CString CrkStringUtilities::RemovePrefix(const CString& text, const CString& prefix) {
    return text.View().starts_with(prefix.View()) ? text.Mid(prefix.GetLength()) : text;
}

unsigned short CrkStringUtilities::GetFirstChar(CString text, bool trimFirst) {
    if (trimFirst)
        text.Trim();
    return text.GetAt(0);
}

unsigned short CrkStringUtilities::GetLastChar(CString text, bool trimFirst) {
    if (trimFirst)
        text.Trim();
    return text.GetAt(text.GetLength() - 1);
}

int CrkStringUtilities::CountOccurrences(const CString& text, unsigned short unit) {
    return static_cast<int>(std::count(text.begin(), text.end(), static_cast<char16_t>(unit)));
}

int CrkStringUtilities::ReverseFindOneOf(const CString& text, const CString& set) {
    const rk::UnitSet units(set.View());
    for (int i = text.GetLength() - 1; i >= 0; --i) {
        if (units.Contains(static_cast<char16_t>(text.GetAt(i))))
            return i;
    }
    return -1;
}

bool CrkStringUtilities::IsBlank(const CString& text) {
    return std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit <= 0x20; });
}
