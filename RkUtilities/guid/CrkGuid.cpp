#include "RkUtilities/guid/CrkGuid.h"

#include "RkUtilities/foundation/detail/TextBuilder.h"
#include "RkUtilities/platform/process/Random.h"

#include <algorithm>
#include <array>
#include <bit>

namespace {

using namespace rk::guid;

/// The two digits of every byte.
constexpr auto kDigitPairs = [] {
    std::array<std::array<char16_t, 2>, 256> pairs = {};
    for (std::size_t byte = 0; byte < pairs.size(); ++byte)
        pairs[byte] = {u"0123456789ABCDEF"[byte >> 4], u"0123456789ABCDEF"[byte & 0xF]};
    return pairs;
}();

void WriteText(const CFUUIDBytes& record, char16_t* text) {
    const auto bytes = std::bit_cast<ByteArray>(record);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        std::copy_n(kDigitPairs[bytes[i]].data(), 2, text + kDigitUnits[i]);
    for (const std::size_t unit : kHyphenUnits)
        text[unit] = u'-';
}

}  // namespace

CFUUIDBytes CrkGuid::CreateGuid() {
    ByteArray bytes = rk::platform::RandomBytes();
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);  // version 4
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);  // the variant of RFC 4122
    return std::bit_cast<CFUUIDBytes>(bytes);
}

CString CrkGuid::GuidToString(const CFUUIDBytes& bytes) {
    return rk::TextBuilder::Written(kTextUnitCount, [&](char16_t* text) { WriteText(bytes, text); });
}

CString CrkGuid::GuidToStringWithBraces(const CFUUIDBytes& bytes) {
    return rk::TextBuilder::Written(kTextUnitCount + 2, [&](char16_t* text) {
        text[0] = u'{';
        WriteText(bytes, text + 1);
        text[kTextUnitCount + 1] = u'}';
    });
}
