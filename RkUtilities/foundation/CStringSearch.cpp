#include "RkUtilities/foundation/CString.h"

#include "RkUtilities/foundation/TextSearch.h"
#include "RkUtilities/platform/Unicode.h"

#include <algorithm>

namespace {

std::size_t StartOf(int start)
{
    return static_cast<std::size_t>(std::max(start, 0));
}

int IndexOf(std::size_t position)
{
    return position == std::u16string_view::npos ? -1 : static_cast<int>(position);
}

}  // namespace

int CString::Find(const CString& sought, int start) const
{
    return IndexOf(rk::FindUnits(View(), sought.View(), StartOf(start)));
}

int CString::FindNoCase(const CString& sought, int start) const
{
    return IndexOf(rk::FindMappedUnits(View(), sought.View(), StartOf(start), rk::platform::FoldedCase()));
}

int CString::FindOneOf(const CString& set, int start) const noexcept
{
    const std::u16string_view text = View();
    const rk::UnitSet units(set.View());
    const std::size_t found = units.FirstIn(text, StartOf(start));
    return found < text.size() ? static_cast<int>(found) : -1;
}

int CString::ReverseFind(const CString& sought, int start) const noexcept
{
    return IndexOf(View().rfind(sought.View(), start < 0 ? std::u16string_view::npos : StartOf(start)));
}

CString CString::SpanExcluding(const CString& set) const
{
    const int end = FindOneOf(set);
    return end < 0 ? *this : Left(end);
}

CString CString::Tokenize(const CString& delimiters, int& position) const
{
    const std::u16string_view text = View();
    const rk::UnitSet set(delimiters.View());
    std::size_t begin = position < 0 ? text.size() : StartOf(position);
    while (begin < text.size() && set.Contains(text[begin]))
        ++begin;
    if (begin >= text.size()) {
        position = -1;
        return {};
    }
    const std::size_t end = set.FirstIn(text, begin);
    position = static_cast<int>(std::min(end + 1, text.size()));
    return Mid(static_cast<int>(begin), static_cast<int>(end - begin));
}

int CString::CompareNoCase(const CString& other) const
{
    const std::u16string_view a = View();
    const std::u16string_view b = other.View();
    const std::size_t count = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < count; ++i) {
        if (a[i] == b[i])
            continue;
        const rk::platform::CaseTable& folded = rk::platform::FoldedCase();
        const int difference = folded[a[i]] - folded[b[i]];
        if (difference != 0)
            return difference;
    }
    return m_length < other.m_length ? -1 : static_cast<int>(m_length > other.m_length);
}
