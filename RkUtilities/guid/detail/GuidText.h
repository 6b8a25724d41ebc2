#pragma once

#include "RkUtilities/foundation/CFUUIDBytes.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

/// The text form of an identifier.
namespace rk::guid {

using ByteArray = std::array<std::uint8_t, 16>;

inline constexpr std::size_t kTextUnitCount = 36;
inline constexpr std::array<std::size_t, 4> kHyphenUnits = {8, 13, 18, 23};
/// Where the two digits of each byte stand in the text. The first three groups are numbers, stored least significant
/// byte first.
inline constexpr std::array<std::size_t, 16> kDigitUnits = {6, 4, 2, 0, 11, 9, 16, 14, 19, 21, 24, 26, 28, 30, 32, 34};

inline constexpr std::uint8_t kNoDigit = 0xFF;
inline constexpr auto kDigitValues = [] {
    std::array<std::uint8_t, 256> values = {};
    values.fill(kNoDigit);
    for (std::uint8_t value = 0; value < 16; ++value)
        values[static_cast<unsigned char>("0123456789ABCDEF"[value])] =
            values[static_cast<unsigned char>("0123456789abcdef"[value])] = value;
    return values;
}();

/// The first three groups reversed, so that `CrkGuid::GuidToString` shows the bytes in their order, as RFC 4122 does.
constexpr CFUUIDBytes WithGroupsReversed(CFUUIDBytes id) noexcept {
    std::swap(id.byte0, id.byte3);
    std::swap(id.byte1, id.byte2);
    std::swap(id.byte4, id.byte5);
    std::swap(id.byte6, id.byte7);
    return id;
}

/// As `CrkGuid::StringToGuid`.
constexpr CFUUIDBytes Read(std::u16string_view units) noexcept {
    if (units.size() >= 2 && units.front() == u'{')
        units = units.substr(1, units.size() - 2);
    if (units.size() != kTextUnitCount)
        return {};

    // Faults are collected and judged once: a wrong digit sets bits above the low four, a unit beyond Latin-1 sets bits
    // above the low eight.
    unsigned int faults = 0;
    for (const std::size_t unit : kHyphenUnits)
        faults |= static_cast<unsigned int>(units[unit] ^ u'-') << 4;
    ByteArray bytes = {};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char16_t highUnit = units[kDigitUnits[i]];
        const char16_t lowUnit = units[kDigitUnits[i] + 1];
        const unsigned int high = kDigitValues[highUnit & 0xFF];
        const unsigned int low = kDigitValues[lowUnit & 0xFF];
        faults |= high | low | ((highUnit | lowUnit) & 0xFF00u);
        bytes[i] = static_cast<std::uint8_t>(high << 4 | low);
    }
    return faults > 0xF ? CFUUIDBytes{} : std::bit_cast<CFUUIDBytes>(bytes);
}

}  // namespace rk::guid
