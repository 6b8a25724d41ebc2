#pragma once

#include <array>
#include <cstdint>

namespace rk {

/// What a code unit is, a bit each. The last three sum up where it may stand, so that asking for a name is one test.
enum XmlCharacterClass : std::uint8_t {
    XmlBaseChar = 1,
    XmlIdeographic = 2,
    XmlCombiningChar = 4,
    XmlDigit = 8,
    XmlExtender = 16,
    XmlNcNameStart = 32,  // a letter or "_"
    XmlNcNameChar = 64,
    XmlNameChar = 128,  // an NCNameChar or ":"
};

/// The classes of all code units. Flat: a text touches only the lines of its own script.
extern const std::array<std::uint8_t, 0x10000> kXmlClasses;

}  // namespace rk
