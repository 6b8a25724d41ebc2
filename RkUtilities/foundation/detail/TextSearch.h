#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/detail/UnitBlock.h"
#include "RkUtilities/platform/locale/Unicode.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

/// Searching in code units, in linear time.
namespace rk {

/// How searches go through long texts: with vectors of 16 bytes, which every processor has, or with the longest ones
/// that this one has. The results are the same.
enum class SearchPath { Plain, Fastest };
/// Chooses the path of all searches from now on, so that each can be tested; `Fastest` is taken otherwise.
RK_EXPORT void ChooseSearchPath(SearchPath path) noexcept;

/// How units compare: as they are.
struct ExactUnits {
    char16_t operator[](char16_t unit) const noexcept { return unit; }
    [[nodiscard]] platform::CaseSources SourcesOf(char16_t unit) const noexcept { return {{unit}, 1}; }
};
inline constexpr ExactUnits kExactUnits;

/// Units that may stand for one unit of the text sought: those that are equal to it but for the bits in which the units
/// with its key differ. For the two cases of nearly all letters these are no others, and the test takes one comparison.
class UnitPattern {
public:
    UnitPattern() = default;
    explicit UnitPattern(const platform::CaseSources& sources) noexcept
    {
        for (std::size_t i = 1; i < sources.count; ++i)
            m_anyBits = static_cast<char16_t>(m_anyBits | (sources.units[0] ^ sources.units[i]));
        m_value = static_cast<char16_t>(sources.units[0] | m_anyBits);
    }
    [[nodiscard]] char16_t AnyBits() const noexcept { return m_anyBits; }
    /// The unit with those bits set.
    [[nodiscard]] char16_t Value() const noexcept { return m_value; }
    [[nodiscard]] bool Fits(char16_t unit) const noexcept { return (unit | m_anyBits) == m_value; }

private:
    char16_t m_anyBits = 0;
    char16_t m_value = 0;
};

/// The places of a text where a match may begin, judged by its first and its last unit.
struct SearchPlaces {
    const char16_t* units = nullptr;
    std::size_t end = 0;
    std::size_t lastOffset = 0;
    UnitPattern first;
    UnitPattern last;
};

/// Finds a text in another from any start, again and again, units compared through `Map`: a unit's key, and the units
/// that have a key. Refers to both texts and to the map. Linear in both texts together, as long as starts only grow.
template <class Map>
class TextSearch {
public:
    TextSearch(std::u16string_view text, std::u16string_view sought, const Map& map) noexcept;
    /// Index of the first occurrence at or after `start`, or npos; an empty text is found at any start up to the end.
    std::size_t From(std::size_t start);

private:
    static constexpr std::size_t kFreeUnits = 4096;

    /// Places side by side and those of them where a match may begin, kept for the next start.
    struct Group {
        std::size_t begin = 0;
        std::size_t count = 0;
        std::uint64_t candidates = 0;  // the first place is the lowest bit
    };

    /// Whether a candidate is a match.
    bool MatchesAt(std::size_t at);
    std::size_t Among(std::size_t begin);
    [[nodiscard]] std::size_t FindLinear(std::size_t start) const;

    std::u16string_view m_text;
    std::u16string_view m_sought;
    const Map& m_map;
    SearchPlaces m_places;
    Group m_group;
    std::size_t m_origin = std::u16string_view::npos;  // the first start
    std::size_t m_compared = 0;                        // units looked at in vain
};

extern template class TextSearch<ExactUnits>;
extern template class TextSearch<platform::CaseTable>;

/// Index of the first occurrence of `sought` at or after `start`, or npos; an empty text is found at any start up to
/// the end.
std::size_t FindUnits(std::u16string_view text, std::u16string_view sought, std::size_t start);

/// The same with units compared through a case table.
std::size_t FindMappedUnits(std::u16string_view text, std::u16string_view sought, std::size_t start,
                            const platform::CaseTable& table);

/// Index of the first unit at or after `start` that is one of `Count` units; the text's length when none is.
template <std::size_t Count>
std::size_t FirstOf(const char16_t* units, std::u16string_view text, std::size_t start) noexcept
{
    UnitBlock blocks[Count];
    for (std::size_t i = 0; i < Count; ++i)
        blocks[i] = FilledBlock(units[i]);
    std::size_t at = start;
    for (; at + kBlockUnits <= text.size(); at += kBlockUnits) {
        const UnitBlock block = LoadBlock(text.data() + at);
        UnitMask members = block == blocks[0];
        for (std::size_t i = 1; i < Count; ++i)
            members |= block == blocks[i];
        if (const std::size_t lane = FirstLane(members); lane < kBlockUnits)
            return at + lane;
    }
    while (at < text.size() && std::find(units, units + Count, text[at]) == units + Count)
        ++at;
    return at;
}

/// The units of a text as a set. Few are compared one by one; of more there is a bit for each ASCII unit and a search among
/// the others. Refers to the text.
class UnitSet {
public:
    explicit UnitSet(std::u16string_view units) noexcept : m_units(units)
    {
        for (std::size_t i = 0; !IsSmall() && i < units.size(); ++i) {
            if (units[i] < 0x80)
                m_ascii[units[i] >> 6] |= std::uint64_t{1} << (units[i] & 63);
            else
                m_hasOthers = true;
        }
    }
    [[nodiscard]] bool Contains(char16_t unit) const noexcept
    {
        if (!IsSmall() && unit < 0x80)
            return (m_ascii[unit >> 6] >> (unit & 63) & 1) != 0;
        return (IsSmall() || m_hasOthers) && std::find(m_units.begin(), m_units.end(), unit) != m_units.end();
    }
    /// Index of the first unit at or after `start` that is in the set; the text's length when none is.
    [[nodiscard]] std::size_t FirstIn(std::u16string_view text, std::size_t start) const noexcept
    {
        switch (m_units.size()) {
        case 1:
            return FirstOf<1>(m_units.data(), text, start);
        case 2:
            return FirstOf<2>(m_units.data(), text, start);
        case 3:
            return FirstOf<3>(m_units.data(), text, start);
        case 4:
            return FirstOf<4>(m_units.data(), text, start);
        default:
            break;
        }
        std::size_t at = start;
        while (at < text.size() && !Contains(text[at]))
            ++at;
        return at;
    }

private:
    [[nodiscard]] bool IsSmall() const noexcept { return m_units.size() <= 4; }

    std::u16string_view m_units;
    std::uint64_t m_ascii[2] = {0, 0};
    bool m_hasOthers = false;
};

}  // namespace rk
