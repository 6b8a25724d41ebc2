#include "RkUtilities/platform/locale/Unicode.h"

#include "RkUtilities/platform/locale/IcuServices.h"

#include <algorithm>

namespace rk::platform {

CaseTable::CaseTable(std::int32_t (*mapping)(std::int32_t codePoint)) noexcept
{
    for (unsigned unit = 0; unit < m_mapped.size(); ++unit) {
        const std::int32_t mapped = mapping(static_cast<std::int32_t>(unit));
        m_mapped[unit] =
            static_cast<char16_t>(mapped > 0xFFFF ? unit : static_cast<unsigned>(mapped));  // one unit stays one
        if (m_mapped[unit] != unit && m_changedCount < kMostChanged)
            m_changed[m_changedCount++] = {m_mapped[unit], static_cast<char16_t>(unit)};
    }
    std::sort(
        m_changed.begin(), m_changed.begin() + static_cast<std::ptrdiff_t>(m_changedCount),
        [](const Change& a, const Change& b) { return a.mapped != b.mapped ? a.mapped < b.mapped : a.unit < b.unit; });
}

CaseSources CaseTable::SourcesOf(char16_t mapped) const noexcept
{
    CaseSources sources;
    if ((*this)[mapped] == mapped)
        sources.units[sources.count++] = mapped;
    const Change* const end = m_changed.data() + m_changedCount;
    const Change* change = std::lower_bound(m_changed.data(), end, mapped,
                                            [](const Change& one, char16_t sought) { return one.mapped < sought; });
    for (; change != end && change->mapped == mapped && sources.count < CaseSources::kMost; ++change)
        sources.units[sources.count++] = change->unit;
    return sources;
}

// The module is asked for before the guard of a table is held. A table has no destructor: a static object's one may
// still ask.

const CaseTable& UpperCase()
{
    const IcuServices& icu = Icu();
    static const CaseTable table(icu.upperCase);
    return table;
}

const CaseTable& LowerCase()
{
    const IcuServices& icu = Icu();
    static const CaseTable table(icu.lowerCase);
    return table;
}

const CaseTable& FoldedCase()
{
    const IcuServices& icu = Icu();
    static const CaseTable table(icu.foldedCase);
    return table;
}

bool IsAlphaNumeric(char16_t unit)
{
    return Icu().isAlphaNumeric(unit);
}

bool IsWhiteSpaceBeyondAscii(char16_t unit)
{
    return Icu().isWhiteSpace(unit);
}

}  // namespace rk::platform
