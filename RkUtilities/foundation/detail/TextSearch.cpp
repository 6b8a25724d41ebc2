#include "RkUtilities/foundation/detail/TextSearch.h"

#include <bit>
#include <cstring>
#include <type_traits>
#include <vector>

namespace rk {

namespace {

constexpr std::size_t kNotFound = std::u16string_view::npos;
constexpr std::size_t kGroupUnits = 64;  // looked at together

/// Goes from `at` over groups of places while no place may begin a match. Returns the first place of the group that
/// stopped it, or of the rest that is no whole group. Inlined: each caller's processor decides how vectors are made.
[[gnu::always_inline]] inline std::size_t SkipGroups(const SearchPlaces& places, std::size_t at) {
    using Units [[gnu::vector_size(32)]] = std::uint16_t;
    using Words [[gnu::vector_size(32)]] = std::uint64_t;
    constexpr std::size_t kUnits = sizeof(Units) / sizeof(char16_t);

    const Units firstAnyBits = Units{} + places.first.AnyBits();
    const Units firstValue = Units{} + places.first.Value();
    const Units lastAnyBits = Units{} + places.last.AnyBits();
    const Units lastValue = Units{} + places.last.Value();
    for (; at + kGroupUnits <= places.end; at += kGroupUnits) {
        Words candidates{};
        for (std::size_t i = 0; i < kGroupUnits; i += kUnits) {
            Units firsts;
            Units lasts;
            std::memcpy(&firsts, places.units + at + i, sizeof firsts);
            std::memcpy(&lasts, places.units + at + i + places.lastOffset, sizeof lasts);
            candidates |=
                reinterpret_cast<Words>(((firsts | firstAnyBits) == firstValue) & ((lasts | lastAnyBits) == lastValue));
        }
        if ((candidates[0] | candidates[1] | candidates[2] | candidates[3]) != 0)
            break;
    }
    return at;
}

std::size_t SkipPlain(const SearchPlaces& places, std::size_t at) { return SkipGroups(places, at); }

#if defined(__x86_64__)
[[gnu::target("avx2")]] std::size_t SkipAvx2(const SearchPlaces& places, std::size_t at) {
    return SkipGroups(places, at);
}

std::size_t Skip(const SearchPlaces& places, std::size_t at) {
    return __builtin_cpu_supports("avx2") != 0 ? SkipAvx2(places, at) : SkipPlain(places, at);
}
#else
constexpr auto& Skip = SkipPlain;
#endif

/// The bits of eight rows of eight, the first row lowest, as columns.
std::uint64_t Transposed(std::uint64_t bits) {
    const auto swap = [&](unsigned distance, std::uint64_t mask) {
        const std::uint64_t changed = (bits ^ (bits >> distance)) & mask;
        bits ^= changed ^ (changed << distance);
    };
    swap(7, 0x00AA00AA00AA00AA);
    swap(14, 0x0000CCCC0000CCCC);
    swap(28, 0x00000000F0F0F0F0);
    return bits;
}

/// A bit for each place of up to eight blocks, set where a match may begin; the first place is the lowest bit.
template <class Keys>
[[gnu::always_inline]] inline std::uint64_t CandidatesIn(const SearchPlaces& places, std::size_t at,
                                                         std::size_t blockCount) {
    UnitBlock blockBit = FilledBlock(1);
    UnitBlock found{};  // a lane for each place of a block, a bit for each block
    for (std::size_t i = 0; i < blockCount; ++i) {
        const char16_t* const units = places.units + at + i * kBlockUnits;
        const UnitMask candidates = places.first.Fitting<Keys>(LoadBlock(units)) &
                                    places.last.Fitting<Keys>(LoadBlock(units + places.lastOffset));
        found |= reinterpret_cast<UnitBlock>(candidates) & blockBit;
        blockBit += blockBit;
    }
    return Transposed(LaneBytes(found));
}

/// The same for eight blocks, a number that the compiler knows.
template <class Keys> std::uint64_t AllCandidatesIn(const SearchPlaces& places, std::size_t at) {
    return CandidatesIn<Keys>(places, at, kBlockUnits);
}

}  // namespace

template <class Keys>
TextSearch<Keys>::TextSearch(std::u16string_view text, std::u16string_view sought, const Keys& keys) noexcept
    : m_text(text), m_sought(sought), m_keys(keys) {
    if (sought.empty())
        return;
    m_places = {text.data(), text.size() < sought.size() ? 0 : text.size() - sought.size() + 1, sought.size() - 1,
                UnitPattern(keys.SourcesOf(keys[sought.front()])), UnitPattern(keys.SourcesOf(keys[sought.back()]))};
}

template <class Keys> std::size_t TextSearch<Keys>::From(std::size_t start) {
    if (m_sought.empty())
        return start <= m_text.size() ? start : kNotFound;
    if (start >= m_places.end)
        return kNotFound;
    m_origin = std::min(m_origin, start);
    for (std::size_t at = start;;) {
        if (at - m_group.begin >= m_group.count) {  // before the group, too
            const std::size_t blockCount = std::min((m_places.end - at) / kBlockUnits, kBlockUnits);
            if (blockCount == 0)
                return Among(at);
            m_group = {at, blockCount * kBlockUnits,
                       blockCount == kBlockUnits ? AllCandidatesIn<Keys>(m_places, at)
                                                 : CandidatesIn<Keys>(m_places, at, blockCount)};
        }
        for (std::uint64_t candidates = m_group.candidates >> (at - m_group.begin) << (at - m_group.begin);
             candidates != 0; candidates &= candidates - 1) {
            const std::size_t place = m_group.begin + static_cast<std::size_t>(std::countr_zero(candidates));
            if (MatchesAt(place))
                return place;
            if (m_compared > 8 * (place - m_origin) + kFreeUnits)
                return FindLinear(place + 1);
        }
        at = m_group.begin + m_group.count;
        if (m_group.candidates == 0)  // else the next place is likely to be near
            at = Skip(m_places, at);
    }
}

template <class Keys> std::size_t TextSearch<Keys>::Among(std::size_t begin) {
    for (std::size_t at = begin; at < m_places.end; ++at) {
        if (m_places.first.Fits(m_text[at]) && m_places.last.Fits(m_text[at + m_places.lastOffset]) && MatchesAt(at))
            return at;
    }
    return kNotFound;
}

template <class Keys> bool TextSearch<Keys>::MatchesAt(std::size_t at) {
    // The pattern of an exact unit fits that unit alone: the first and the last unit are compared already.
    constexpr std::size_t kEnds = std::is_same_v<Keys, ExactUnits> ? 1 : 0;
    for (std::size_t i = kEnds; i + kEnds < m_sought.size(); ++i) {
        if (m_keys[m_text[at + i]] != m_keys[m_sought[i]]) {
            m_compared += i + 1;
            return false;
        }
    }
    return true;
}

/// Knuth, Morris and Pratt: linear for every text, used where candidates turn out to be many and false.
template <class Keys> std::size_t TextSearch<Keys>::FindLinear(std::size_t start) const {
    // At i: the length of the longest part, shorter than i, that both begins and ends the first i units.
    std::vector<std::size_t> border(m_sought.size() + 1, 0);
    for (std::size_t i = 1, length = 0; i < m_sought.size(); ++i) {
        while (length > 0 && m_keys[m_sought[i]] != m_keys[m_sought[length]])
            length = border[length];
        if (m_keys[m_sought[i]] == m_keys[m_sought[length]])
            ++length;
        border[i + 1] = length;
    }
    for (std::size_t i = start, matched = 0; i < m_text.size(); ++i) {
        const char16_t unit = m_keys[m_text[i]];
        while (matched > 0 && unit != m_keys[m_sought[matched]])
            matched = border[matched];
        if (unit == m_keys[m_sought[matched]])
            ++matched;
        if (matched == m_sought.size())
            return i + 1 - matched;
    }
    return kNotFound;
}

template class TextSearch<ExactUnits>;
template class TextSearch<platform::CaseTable>;

std::size_t FindUnits(std::u16string_view text, std::u16string_view sought, std::size_t start) {
    return TextSearch(text, sought, kExactUnits).From(start);
}

std::size_t FindUnitsByKey(std::u16string_view text, std::u16string_view sought, std::size_t start,
                           const platform::CaseTable& table) {
    return TextSearch(text, sought, table).From(start);
}

}  // namespace rk
