#include "RkUtilities/platform/locale/Unicode.h"

#include "RkUtilities/platform/process/Threads.h"

#include <algorithm>
#include <mutex>
#include <unicode/uchar.h>

namespace rk::platform {

namespace {

std::int32_t SimpleFolding(std::int32_t codePoint) { return u_foldCase(codePoint, U_FOLD_CASE_DEFAULT); }

constinit CaseTable upperCase(&u_toupper);
constinit CaseTable lowerCase(&u_tolower);
constinit CaseTable foldedCase(&SimpleFolding);

/// Ideographs; syllables of Hangul, surrogates and the private use area: blocks of Unicode that never have case.
constexpr bool IsCaseless(unsigned unit) {
    return (unit >= 0x3400 && unit < 0xA000) || (unit >= 0xAC00 && unit < 0xF900);
}

}  // namespace

const CaseTable& CaseTable::Made() noexcept {
    if (!m_isMade.load(std::memory_order_acquire)) {
        const std::lock_guard lock(MutexOf(Lock::CaseTables));
        if (!m_isMade.load(std::memory_order_relaxed))
            Make();
        m_isMade.store(true, std::memory_order_release);
    }
    return *this;
}

void CaseTable::Make() noexcept {
    std::uint8_t block = 0;  // the last block that changes something
    for (unsigned unit = 0; unit < 0x10000; ++unit) {
        if (IsCaseless(unit))
            continue;
        const std::int32_t mapped = m_mapping(static_cast<std::int32_t>(unit));
        if (mapped > 0xFFFF || mapped == static_cast<std::int32_t>(unit))  // a unit stays a unit
            continue;
        std::uint8_t& place = m_blocks[unit / kBlockUnits];
        if (place == 0)
            place = ++block;
        m_offsets[place][unit % kBlockUnits] = static_cast<char16_t>(static_cast<unsigned>(mapped) - unit);
        if (m_changedCount < kMostChanged)
            m_changed[m_changedCount++] = {static_cast<char16_t>(mapped), static_cast<char16_t>(unit)};
    }
    std::sort(
        m_changed.begin(), m_changed.begin() + static_cast<std::ptrdiff_t>(m_changedCount),
        [](const Change& a, const Change& b) { return a.mapped != b.mapped ? a.mapped < b.mapped : a.unit < b.unit; });
}

CaseSources CaseTable::SourcesOf(char16_t mapped) const noexcept {
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

const CaseTable& UpperCase() noexcept { return upperCase.Made(); }

const CaseTable& LowerCase() noexcept { return lowerCase.Made(); }

const CaseTable& FoldedCase() noexcept { return foldedCase.Made(); }

bool IsAlphaNumeric(char16_t unit) noexcept { return (U_GET_GC_MASK(unit) & (U_GC_L_MASK | U_GC_ND_MASK)) != 0; }

}  // namespace rk::platform
