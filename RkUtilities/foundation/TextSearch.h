#pragma once

#include "RkUtilities/platform/Unicode.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Searching in code units, in linear time.
namespace rk {

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

private:
    std::u16string_view m_units;
    std::uint64_t m_ascii[2] = {0, 0};
    bool m_hasOthers = false;
};

}  // namespace rk
