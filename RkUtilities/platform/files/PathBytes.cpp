#include "RkUtilities/platform/files/PathBytes.h"

#include "RkUtilities/platform/locale/Utf.h"

namespace rk::platform {
namespace {

/// A byte 0x80 to 0xFF that is no UTF-8 stands in text as kEscape plus the byte. The way back is exact: decoding takes
/// every well-formed sequence, so that no run of escapes spells a sequence, and a low surrogate right after a pair is
/// lone.
constexpr char16_t kEscape = 0xDC00;

constexpr bool IsEscapedByte(char16_t unit) { return unit >= kEscape + 0x80 && unit <= kEscape + 0xFF; }

}  // namespace

std::string BytesOfPath(std::u16string_view path) {
    std::string bytes;
    bytes.resize(path.size() * 3);  // no unit takes more: a pair has four bytes
    char* out = bytes.data();
    const char16_t* const end = path.data() + path.size();
    for (const char16_t* in = path.data(); in != end;) {
        if (*in < 0x80)
            *out++ = static_cast<char>(*in++);
        else if (IsEscapedByte(*in))
            *out++ = static_cast<char>(*in++ - kEscape);
        else
            out = WriteUtf8(TakeCodePoint(in, end), out);
    }
    bytes.resize(static_cast<std::size_t>(out - bytes.data()));
    return bytes;
}

std::u16string PathOfBytes(std::string_view bytes) {
    std::u16string path;
    path.resize(bytes.size());  // no byte becomes more than one unit
    char16_t* out = path.data();
    const auto* in = reinterpret_cast<const unsigned char*>(bytes.data());
    for (const unsigned char* const end = in + bytes.size(); in != end;) {
        const unsigned char* next = in;
        const char32_t codePoint = TakeUtf8(next, end);
        if (codePoint != kNoCodePoint) {
            out = WriteUtf16(codePoint, out);
            in = next;
        } else {
            *out++ = static_cast<char16_t>(kEscape + *in++);  // a wrong part of several bytes is several escapes
        }
    }
    path.resize(static_cast<std::size_t>(out - path.data()));
    return path;
}

}  // namespace rk::platform
