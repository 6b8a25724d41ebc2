#pragma once

#include "RkUtilities/foundation/UnitBlock.h"
#include "RkUtilities/platform/Unicode.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Searching in code units, in linear time.
namespace rk {

/// How units compare: as they are.
struct ExactUnits {
    static constexpr std::size_t kMostSources = 1;
    char16_t operator[](char16_t unit) const noexcept { return unit; }
    [[nodiscard]] platform::CaseSources SourcesOf(char16_t unit) const noexcept { return {{unit}, 1}; }
};
inline constexpr ExactUnits kExactUnits;

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

    /// The units that may stand for one unit of the text sought, for eight units of the text at once.
    class Candidates {
    public:
        Candidates() = default;
        explicit Candidates(const platform::CaseSources& sources) noexcept : m_count(sources.count)
        {
            for (std::size_t i = 0; i < m_count; ++i)
                m_blocks[i] = FilledBlock(sources.units[i]);
        }
        [[nodiscard]] UnitMask In(UnitBlock block) const noexcept
        {
            UnitMask mask = block == m_blocks[0];
            for (std::size_t i = 1; i < Map::kMostSources && i < m_count; ++i)
                mask |= block == m_blocks[i];
            return mask;
        }

    private:
        std::size_t m_count = 0;
        UnitBlock m_blocks[Map::kMostSources]{};
    };

    std::size_t AmongLanes(std::size_t at, UnitMask candidates);
    std::size_t Among(std::size_t begin, std::size_t end);
    /// Whether all but the first and the last unit match at a place.
    bool MatchesBetweenEnds(std::size_t at);
    [[nodiscard]] std::size_t FindLinear(std::size_t start) const;

    std::u16string_view m_text;
    std::u16string_view m_sought;
    const Map& m_map;
    Candidates m_first;
    Candidates m_last;
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

/// The units of a text as a set: a bit for each ASCII unit, a search among the others. Refers to the text.
class UnitSet {
public:
    explicit UnitSet(std::u16string_view units) noexcept : m_units(units)
    {
        for (std::size_t i = 0; IsSmall() && i < units.size(); ++i)
            m_blocks[i] = FilledBlock(units[i]);
        for (const char16_t unit : units) {
            if (unit < 0x80)
                m_ascii[unit >> 6] |= std::uint64_t{1} << (unit & 63);
            else
                m_hasOthers = true;
        }
    }
    [[nodiscard]] bool Contains(char16_t unit) const noexcept
    {
        if (unit < 0x80)
            return (m_ascii[unit >> 6] >> (unit & 63) & 1) != 0;
        return m_hasOthers && m_units.find(unit) != std::u16string_view::npos;
    }
    /// Index of the first unit at or after `start` that is in the set; the text's length when none is.
    [[nodiscard]] std::size_t FirstIn(std::u16string_view text, std::size_t start) const noexcept
    {
        std::size_t at = start;
        for (; IsSmall() && at + kBlockUnits <= text.size(); at += kBlockUnits) {
            const std::size_t lane = FirstLane(MembersOf(LoadBlock(text.data() + at)));
            if (lane < kBlockUnits)
                return at + lane;
        }
        while (at < text.size() && !Contains(text[at]))
            ++at;
        return at;
    }

private:
    static constexpr std::size_t kMostBlocks = 4;  // sets of so few units are compared eight units of a text at a time

    [[nodiscard]] bool IsSmall() const noexcept { return m_units.size() <= kMostBlocks; }
    [[nodiscard]] UnitMask MembersOf(UnitBlock block) const noexcept
    {
        UnitMask members{};
        for (std::size_t i = 0; i < m_units.size(); ++i)
            members |= block == m_blocks[i];
        return members;
    }

    std::u16string_view m_units;
    UnitBlock m_blocks[kMostBlocks];
    std::uint64_t m_ascii[2] = {0, 0};
    bool m_hasOthers = false;
};

}  // namespace rk
