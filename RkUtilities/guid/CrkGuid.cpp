#include "RkUtilities/guid/CrkGuid.h"

#include "RkUtilities/foundation/detail/TextBuilder.h"
#include "RkUtilities/foundation/detail/UnitBlock.h"
#include "RkUtilities/platform/process/Random.h"

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

// Signed, since processors compare signed bytes best.
using ByteBlock [[gnu::vector_size(16)]] = std::int8_t;

ByteBlock InterleavedFront(ByteBlock a, ByteBlock b)
{
    return __builtin_shufflevector(a, b, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
}
ByteBlock InterleavedBack(ByteBlock a, ByteBlock b)
{
    return __builtin_shufflevector(a, b, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31);
}

/// The digits of bytes below 16.
ByteBlock DigitsOf(rk::UnitBlock values)
{
    const auto bytes = reinterpret_cast<ByteBlock>(values);
    return bytes + '0' + ((bytes > 9) & ('A' - '0' - 10));
}

constexpr bool kLowByteFirst = std::endian::native == std::endian::little;

/// The first eight of sixteen ASCII characters as units, and the last eight.
rk::UnitBlock FrontUnits(ByteBlock ascii)
{
    const ByteBlock none{};
    return reinterpret_cast<rk::UnitBlock>(kLowByteFirst ? InterleavedFront(ascii, none)
                                                         : InterleavedFront(none, ascii));
}
rk::UnitBlock BackUnits(ByteBlock ascii)
{
    const ByteBlock none{};
    return reinterpret_cast<rk::UnitBlock>(kLowByteFirst ? InterleavedBack(ascii, none) : InterleavedBack(none, ascii));
}

/// Writes four units, leaves one out and writes the other four; the four that follow are overwritten.
void StoreSplit(rk::UnitBlock units, char16_t* text)
{
    rk::StoreBlock(text, units);
    rk::StoreBlock(text + 5, __builtin_shufflevector(units, units, 4, 5, 6, 7, 4, 5, 6, 7));
}

void WriteText(const CFUUIDBytes& record, char16_t* text)
{
    // The first three groups are numbers, stored least significant byte first. Here are the bytes in the text's order:
    const auto stored = std::bit_cast<rk::UnitBlock>(record);
    const rk::UnitBlock swapped = stored << 8 | stored >> 8;
    const rk::UnitBlock bytes = __builtin_shufflevector(swapped, stored, 1, 0, 2, 3, 12, 13, 14, 15);

    const ByteBlock high = DigitsOf(bytes >> 4 & rk::FilledBlock(0x0F0F));
    const ByteBlock low = DigitsOf(bytes & rk::FilledBlock(0x0F0F));
    const ByteBlock front = InterleavedFront(high, low);
    const ByteBlock back = InterleavedBack(high, low);
    rk::StoreBlock(text, FrontUnits(front));
    StoreSplit(BackUnits(front), text + 9);
    StoreSplit(FrontUnits(back), text + 19);
    rk::StoreBlock(text + 28, BackUnits(back));
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

    // Faults are collected and judged once: a wrong digit sets bits above the low four, a unit beyond Latin-1 those
    // above eight.
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
