#include "RkUtilities/platform/files/PathBytes.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

namespace rk::platform {
namespace {

// A byte 0x80 to 0xFF that is no UTF-8 stands in text as kEscape plus the byte. Decoding takes every well-formed
// sequence, so a run of escapes never spells one, and a low surrogate right after a pair is seen as lone: the way back
// is exact.
constexpr char16_t kEscape = 0xDC00;

constexpr bool IsEscapedByte(char16_t unit)
{
    return unit >= kEscape + 0x80 && unit <= kEscape + 0xFF;
}

constexpr char32_t kReplacement = 0xFFFD;

}  // namespace

std::string BytesOfPath(std::u16string_view path)
{
    std::string bytes;
    bytes.resize(path.size() * 3);  // no unit takes more: a pair has four bytes
    auto* out = reinterpret_cast<unsigned char*>(bytes.data());
    std::size_t byteCount = 0;
    for (std::size_t i = 0; i < path.size();) {
        const char16_t unit = path[i++];
        if (U8_IS_SINGLE(unit) && unit < 0x80) {
            out[byteCount++] = static_cast<unsigned char>(unit);
        } else if (IsEscapedByte(unit)) {
            out[byteCount++] = static_cast<unsigned char>(unit - kEscape);
        } else {
            char32_t point = unit;
            if (U16_IS_LEAD(unit) && i < path.size() && U16_IS_TRAIL(path[i]))
                point = static_cast<char32_t>(U16_GET_SUPPLEMENTARY(unit, path[i++]));
            else if (U16_IS_SURROGATE(unit))
                point = kReplacement;
            U8_APPEND_UNSAFE(out, byteCount, point);
        }
    }
    bytes.resize(byteCount);
    return bytes;
}

std::u16string PathOfBytes(std::string_view bytes)
{
    std::u16string path;
    path.resize(bytes.size());  // no byte becomes more than one unit
    const auto* in = reinterpret_cast<const unsigned char*>(bytes.data());
    std::size_t unitCount = 0;
    for (std::size_t i = 0; i < bytes.size();) {
        const std::size_t start = i;
        UChar32 point = 0;
        U8_NEXT(in, i, bytes.size(), point);
        if (point < 0) {
            i = start + 1;  // one byte at a time: a wrong part of several bytes is several escapes
            path[unitCount++] = static_cast<char16_t>(kEscape + in[start]);
        } else {
            U16_APPEND_UNSAFE(path.data(), unitCount, point);
        }
    }
    path.resize(unitCount);
    return path;
}

}  // namespace rk::platform
