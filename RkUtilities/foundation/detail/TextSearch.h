#pragma once

#include "RkUtilities/foundation/detail/UnitBlock.h"
#include "RkUtilities/platform/locale/Unicode.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

/// Searching in code units, in linear time.
namespace rk {

/// How units compare: as they are.
struct ExactUnits {
    char16_t operator[](char16_t unit) const noexcept { return unit; }
    [[nodiscard]] platform::CaseSources SourcesOf(char16_t unit) const noexcept { return {{unit}, 1}; }
};
inline constexpr ExactUnits kExactUnits;

/// The units that may stand for a unit of the text sought. Units with the same key (the cases of a letter) differ in
/// some bits; a unit passes when all its other bits are those of the key's units. For nearly all letters only the two
/// cases pass, and the test takes one comparison.
class UnitPattern {
public:
    UnitPattern() = default;
    explicit UnitPattern(const platform::CaseSources& sources) noexcept {
        char16_t anyBits = 0;
        for (std::size_t i = 1; i < sources.count; ++i)
            anyBits = static_cast<char16_t>(anyBits | (sources.units[0] ^ sources.units[i]));
        m_anyBits = FilledBlock(anyBits);
        m_value = FilledBlock(static_cast<char16_t>(sources.units[0] | anyBits));
    }
    [[nodiscard]] std::uint16_t AnyBits() const noexcept { return m_anyBits[0]; }
    [[nodiscard]] std::uint16_t Value() const noexcept { return m_value[0]; }  ///< The unit with these bits set.
    [[nodiscard]] bool Fits(char16_t unit) const noexcept { return (unit | AnyBits()) == Value(); }
    /// Exact units differ in no bits, which saves a step for each block.
    template <class Keys> [[nodiscard]] UnitMask Fitting(UnitBlock block) const noexcept {
        return (std::is_same_v<Keys, ExactUnits> ? block : block | m_anyBits) == m_value;
    }

private:
    UnitBlock m_anyBits{};
    UnitBlock m_value{};
};

/// The places of a text where a match may begin, judged by its first and its last unit.
struct SearchPlaces {
    const char16_t* units = nullptr;
    std::size_t end = 0;
    std::size_t lastOffset = 0;
    UnitPattern first;
    UnitPattern last;
};

/// Finds a text in another text, from one start after another. Units with the same key are alike; `Keys` tells a unit's
/// key and the units that have a key. Refers to both texts and to the keys. Linear in both texts while starts grow.
template <class Keys> class TextSearch {
public:
    TextSearch(std::u16string_view text, std::u16string_view sought, const Keys& keys) noexcept;
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

    bool MatchesAt(std::size_t at);  ///< Whether a candidate is a match.
    std::size_t Among(std::size_t begin);
    [[nodiscard]] std::size_t FindLinear(std::size_t start) const;

    std::u16string_view m_text;
    std::u16string_view m_sought;
    const Keys& m_keys;
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

/// The same with units compared by a case table.
std::size_t FindUnitsByKey(std::u16string_view text, std::u16string_view sought, std::size_t start,
                           const platform::CaseTable& table);

/// Index of the first unit at or after `start` that fits; the text's length when no unit does. Of a block, `fitting`
/// gives the mask of the units that fit.
template <class Fitting>
std::size_t FirstFitting(std::u16string_view text, std::size_t start, const Fitting& fitting) noexcept {
    std::size_t at = start;
    for (; at + kBlockUnits <= text.size(); at += kBlockUnits) {
        if (const std::size_t lane = FirstLane(fitting(LoadBlock(text.data() + at))); lane < kBlockUnits)
            return at + lane;
    }
    while (at < text.size() && FirstLane(fitting(FilledBlock(text[at]))) != 0)
        ++at;
    return at;
}

/// Units from the first to the last of a range, both included.
struct UnitRange {
    char16_t first;
    char16_t last;
};

/// Index of the first unit at or after `start` that lies in one of the ranges; else the text's length.
template <const auto& kRanges> std::size_t FirstInRanges(std::u16string_view text, std::size_t start) noexcept {
    return FirstFitting(text, start, [](UnitBlock block) {
        UnitMask isIn{};
        for (const UnitRange& range : kRanges)
            isIn |= block - FilledBlock(range.first) <= FilledBlock(static_cast<char16_t>(range.last - range.first));
        return isIn;
    });
}

/// The units of a text as a set. A few units are compared in blocks. A larger set has a bit for each ASCII unit, and is
/// searched for any other unit. Refers to the text.
class UnitSet {
public:
    explicit UnitSet(std::u16string_view units) noexcept : m_units(units) {
        if (IsSmall()) {
            std::fill_n(m_few, kFew, FilledBlock(units.empty() ? u'\0' : units.front()));
            for (std::size_t i = 1; i < units.size(); ++i)
                m_few[i] = FilledBlock(units[i]);
            return;
        }
        for (const char16_t unit : units) {
            if (unit < 0x80)
                m_ascii[unit >> 6] |= std::uint64_t{1} << (unit & 63);
            else
                m_hasOthers = true;
        }
    }
    [[nodiscard]] bool Contains(char16_t unit) const noexcept {
        if (!IsSmall() && unit < 0x80)
            return (m_ascii[unit >> 6] >> (unit & 63) & 1) != 0;
        return (IsSmall() || m_hasOthers) && std::find(m_units.begin(), m_units.end(), unit) != m_units.end();
    }
    /// Index of the first unit at or after `start` that is in the set; the text's length when no unit is.
    [[nodiscard]] std::size_t FirstIn(std::u16string_view text, std::size_t start) const noexcept {
        if (m_units.empty())
            return text.size();
        if (IsSmall())
            return FirstFitting(text, start, [this](UnitBlock block) {
                return (block == m_few[0]) | (block == m_few[1]) | (block == m_few[2]) | (block == m_few[3]);
            });
        std::size_t at = start;
        while (at < text.size() && !Contains(text[at]))
            ++at;
        return at;
    }

private:
    static constexpr std::size_t kFew = 4;

    [[nodiscard]] bool IsSmall() const noexcept { return m_units.size() <= kFew; }

    std::u16string_view m_units;
    UnitBlock m_few[kFew];  // beyond the last unit of a small set: its first again
    std::uint64_t m_ascii[2] = {0, 0};
    bool m_hasOthers = false;
};

}  // namespace rk
