#include "RkUtilities/guid/CrkGuid.h"

#include "RkUtilities/foundation/detail/TextBuilder.h"
#include "RkUtilities/platform/process/Random.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <string_view>

namespace {

using ByteArray = std::array<std::uint8_t, 16>;

constexpr std::size_t kTextUnitCount = 36;
constexpr std::array<std::size_t, 4> kHyphenUnits = {8, 13, 18, 23};
/// Where the two digits of each byte stand in the text. The first three groups are numbers, stored least significant
/// byte first.
constexpr std::array<std::size_t, 16> kDigitUnits = {6, 4, 2, 0, 11, 9, 16, 14, 19, 21, 24, 26, 28, 30, 32, 34};

constexpr std::uint8_t kNoDigit = 0xFF;
constexpr auto kDigitValues = [] {
    std::array<std::uint8_t, 256> values = {};
    values.fill(kNoDigit);
    for (std::uint8_t value = 0; value < 16; ++value)
        values[static_cast<unsigned char>("0123456789ABCDEF"[value])] =
            values[static_cast<unsigned char>("0123456789abcdef"[value])] = value;
    return values;
}();

/// The two digits of every byte.
constexpr auto kDigitPairs = [] {
    std::array<std::array<char16_t, 2>, 256> pairs = {};
    for (std::size_t byte = 0; byte < pairs.size(); ++byte)
        pairs[byte] = {u"0123456789ABCDEF"[byte >> 4], u"0123456789ABCDEF"[byte & 0xF]};
    return pairs;
}();

void WriteText(const CFUUIDBytes& record, char16_t* text)
{
    const auto bytes = std::bit_cast<ByteArray>(record);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        std::copy_n(kDigitPairs[bytes[i]].data(), 2, text + kDigitUnits[i]);
    for (const std::size_t unit : kHyphenUnits)
        text[unit] = u'-';
}

}  // namespace

CFUUIDBytes CrkGuid::CreateGuid()
{
    ByteArray bytes = rk::platform::RandomBytes();
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);  // version 4
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);  // the variant of RFC 4122
    return std::bit_cast<CFUUIDBytes>(bytes);
}

CFUUIDBytes CrkGuid::StringToGuid(const CString& text) noexcept
{
    std::u16string_view units = text.View();
    if (units.size() >= 2 && units.front() == u'{')
        units = units.substr(1, units.size() - 2);
    if (units.size() != kTextUnitCount)
        return c_nullGuid;

    // Faults are collected and judged once: a wrong digit sets bits above the low four, a unit beyond Latin-1 sets bits
    // above the low eight.
    unsigned int faults = 0;
    for (const std::size_t unit : kHyphenUnits)
        faults |= static_cast<unsigned int>(units[unit] ^ u'-') << 4;
    ByteArray bytes;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char16_t highUnit = units[kDigitUnits[i]];
        const char16_t lowUnit = units[kDigitUnits[i] + 1];
        const unsigned int high = kDigitValues[highUnit & 0xFF];
        const unsigned int low = kDigitValues[lowUnit & 0xFF];
        faults |= high | low | ((highUnit | lowUnit) & 0xFF00u);
        bytes[i] = static_cast<std::uint8_t>(high << 4 | low);
    }
    return faults > 0xF ? c_nullGuid : std::bit_cast<CFUUIDBytes>(bytes);
}

CString CrkGuid::GuidToString(const CFUUIDBytes& bytes)
{
    return rk::TextBuilder::Written(kTextUnitCount, [&](char16_t* text) { WriteText(bytes, text); });
}

CString CrkGuid::GuidToStringWithBraces(const CFUUIDBytes& bytes)
{
    return rk::TextBuilder::Written(kTextUnitCount + 2, [&](char16_t* text) {
        text[0] = u'{';
        WriteText(bytes, text + 1);
        text[kTextUnitCount + 1] = u'}';
    });
}
