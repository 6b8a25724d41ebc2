#include "RkUtilities/platform/Unicode.h"

#include "RkUtilities/platform/Modules.h"
#include "RkUtilities/platform/icu/IcuServices.h"

#include <algorithm>

namespace rk::platform {

CaseTable::CaseTable(std::int32_t (*mapping)(std::int32_t codePoint))
{
    for (unsigned unit = 0; unit < m_mapped.size(); ++unit) {
        const std::int32_t mapped = mapping(static_cast<std::int32_t>(unit));
        m_mapped[unit] =
            static_cast<char16_t>(mapped > 0xFFFF ? unit : static_cast<unsigned>(mapped));  // one unit stays one
        if (m_mapped[unit] != unit)
            m_changed.emplace_back(m_mapped[unit], static_cast<char16_t>(unit));
    }
    std::sort(m_changed.begin(), m_changed.end());
}

CaseSources CaseTable::SourcesOf(char16_t mapped) const noexcept
{
    CaseSources sources;
    if ((*this)[mapped] == mapped)
        sources.units[sources.count++] = mapped;
    const auto first = std::lower_bound(m_changed.begin(), m_changed.end(), std::pair(mapped, char16_t{0}));
    for (auto it = first; it != m_changed.end() && it->first == mapped && sources.count < CaseSources::kMost; ++it)
        sources.units[sources.count++] = it->second;
    return sources;
}

// The module is asked for before the guard of a table is held. Tables are never destroyed: a static object's destructor
// may still ask.

const CaseTable& UpperCase()
{
    const IcuServices& icu = Icu();
    static const auto& table = *new CaseTable(icu.upperCase);
    return table;
}

const CaseTable& LowerCase()
{
    const IcuServices& icu = Icu();
    static const auto& table = *new CaseTable(icu.lowerCase);
    return table;
}

const CaseTable& FoldedCase()
{
    const IcuServices& icu = Icu();
    static const auto& table = *new CaseTable(icu.foldedCase);
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
