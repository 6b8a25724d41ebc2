#pragma once

#include <cstddef>
#include <cstdint>

namespace rk {

/// The classes of a code unit, a bit each.
enum XmlCharacterClass : std::uint8_t {
    XmlBaseChar = 1,
    XmlIdeographic = 2,
    XmlCombiningChar = 4,
    XmlDigit = 8,
    XmlExtender = 16,
    XmlNcNamePunctuation = 32,  // ".", "-", "_"
    XmlColon = 64,
    XmlLetter = XmlBaseChar | XmlIdeographic,
    XmlNcNameChar = XmlLetter | XmlCombiningChar | XmlDigit | XmlExtender | XmlNcNamePunctuation,
    XmlNameChar = XmlNcNameChar | XmlColon,
};

/// The classes of all code units, in two stages: equal blocks stand once, so that about 10 KB serve 65,536 units.
struct XmlCharacterTable {
    static constexpr unsigned kBlockBits = 7;
    static constexpr std::size_t kBlockUnits = std::size_t{1} << kBlockBits;
    static constexpr std::size_t kMostDifferentBlocks = 80;

    std::uint8_t blocks[0x10000 / kBlockUnits]{};  // which block of classes a unit's high bits name
    std::uint8_t classes[kMostDifferentBlocks * kBlockUnits]{};

    [[nodiscard]] constexpr unsigned ClassesOf(unsigned short unit) const noexcept
    {
        const std::size_t block = blocks[unit >> kBlockBits];
        return classes[block * kBlockUnits + unit % kBlockUnits];
    }
};

extern const XmlCharacterTable kXmlCharacters;

}  // namespace rk
