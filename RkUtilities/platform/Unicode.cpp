#include "RkUtilities/platform/Unicode.h"

#include "RkUtilities/platform/Modules.h"
#include "RkUtilities/platform/icu/IcuServices.h"

#include <algorithm>

namespace rk::platform {

CaseTable::CaseTable(std::int32_t (*mapping)(std::int32_t codePoint))
{
    for (unsigned first = 0; first < 0x10000; first += kBlockUnits) {
        std::array<char16_t, kBlockUnits> offsets{};
        for (unsigned i = 0; i < kBlockUnits; ++i) {
            const std::int32_t mapped = mapping(static_cast<std::int32_t>(first + i));
            if (mapped > 0xFFFF)
                continue;  // one unit stays one unit
            offsets[i] = static_cast<char16_t>(static_cast<unsigned>(mapped) - (first + i));
            if (offsets[i] != 0)
                m_changed.emplace_back(static_cast<char16_t>(mapped), static_cast<char16_t>(first + i));
        }
        auto known = m_offsets.begin();
        while (known != m_offsets.end() && !std::equal(offsets.begin(), offsets.end(), known))
            known += kBlockUnits;
        m_blockStarts[first >> kBlockBits] = static_cast<std::uint16_t>(known - m_offsets.begin());
        if (known == m_offsets.end())
            m_offsets.insert(known, offsets.begin(), offsets.end());
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

bool IsWhiteSpace(char16_t unit)
{
    return Icu().isWhiteSpace(unit);
}

}  // namespace rk::platform
