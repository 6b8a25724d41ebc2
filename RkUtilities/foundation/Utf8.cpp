#include "RkUtilities/foundation/Utf8.h"

#include "RkUtilities/foundation/UnitBlock.h"

#include <algorithm>
#include <cstdint>

namespace rk {

namespace {

constexpr char16_t kReplacement = 0xFFFD;

using ByteBlock [[gnu::vector_size(8)]] = std::uint8_t;
constexpr std::size_t kBlockBytes = sizeof(ByteBlock);

constexpr bool IsHighSurrogate(unsigned unit)
{
    return (unit & 0xFC00U) == 0xD800U;
}
constexpr bool IsLowSurrogate(unsigned unit)
{
    return (unit & 0xFC00U) == 0xDC00U;
}

bool IsAscii(const unsigned char* bytes) noexcept
{
    std::uint64_t eight = 0;
    std::memcpy(&eight, bytes, sizeof eight);
    return (eight & 0x8080808080808080U) == 0;
}

void WidenBlock(const unsigned char* bytes, char16_t* units) noexcept
{
    ByteBlock block;
    std::memcpy(&block, bytes, sizeof block);
    StoreBlock(units, __builtin_convertvector(block, UnitBlock));
}

void NarrowBlock(UnitBlock block, char* bytes) noexcept
{
    const ByteBlock narrow = __builtin_convertvector(block, ByteBlock);
    std::memcpy(bytes, &narrow, sizeof narrow);
}

bool IsContinuation(unsigned byte) noexcept
{
    return (byte & 0xC0U) == 0x80U;
}

/// What a lead byte asks of the second byte, after Unicode's table of well-formed sequences; length 0 is no lead byte.
struct Lead {
    unsigned length;
    unsigned secondLow;
    unsigned secondHigh;
};

constexpr Lead LeadOf(unsigned byte)
{
    if (byte >= 0xC2 && byte <= 0xDF)
        return {2, 0x80, 0xBF};
    if (byte >= 0xE0 && byte <= 0xEF)
        return {3, byte == 0xE0 ? 0xA0U : 0x80U, byte == 0xED ? 0x9FU : 0xBFU};
    if (byte >= 0xF0 && byte <= 0xF4)
        return {4, byte == 0xF0 ? 0x90U : 0x80U, byte == 0xF4 ? 0x8FU : 0xBFU};
    return {0, 0, 0};
}

/// Decodes one sequence that does not begin with ASCII; moves both pointers.
void DecodeSequence(const unsigned char*& in, const unsigned char* end, char16_t*& out) noexcept
{
    const unsigned first = *in++;
    const Lead lead = LeadOf(first);
    if (lead.length == 0 || in == end || *in < lead.secondLow || *in > lead.secondHigh) {
        *out++ = kReplacement;
        return;
    }
    char32_t codePoint = (first & (0x7FU >> lead.length)) << 6 | (*in++ & 0x3FU);
    for (unsigned i = 2; i < lead.length; ++i) {
        if (in == end || !IsContinuation(*in)) {
            *out++ = kReplacement;
            return;
        }
        codePoint = codePoint << 6 | (*in++ & 0x3FU);
    }
    if (codePoint > 0xFFFF) {
        *out++ = static_cast<char16_t>(0xD7C0U + (codePoint >> 10));
        *out++ = static_cast<char16_t>(0xDC00U | (codePoint & 0x3FFU));
    } else {
        *out++ = static_cast<char16_t>(codePoint);
    }
}

char* EncodeCodePoint(char32_t codePoint, char* out) noexcept
{
    const auto tail = [codePoint](unsigned shift) { return static_cast<char>(0x80U | (codePoint >> shift & 0x3FU)); };
    if (codePoint < 0x80) {
        *out++ = static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        *out++ = static_cast<char>(0xC0U | codePoint >> 6);
        *out++ = tail(0);
    } else if (codePoint < 0x10000) {
        *out++ = static_cast<char>(0xE0U | codePoint >> 12);
        *out++ = tail(6);
        *out++ = tail(0);
    } else {
        *out++ = static_cast<char>(0xF0U | codePoint >> 18);
        *out++ = tail(12);
        *out++ = tail(6);
        *out++ = tail(0);
    }
    return out;
}

/// The code point that begins at `in`, which moves behind it.
char32_t NextCodePoint(const char16_t*& in, const char16_t* end) noexcept
{
    const char32_t unit = *in++;
    if ((unit & 0xF800U) != 0xD800U)
        return unit;
    if (IsHighSurrogate(unit) && in != end && IsLowSurrogate(*in))
        return 0x10000U + ((unit & 0x3FFU) << 10 | (*in++ & 0x3FFU));
    return kReplacement;
}

}  // namespace

std::size_t GuessDecodedUnits(std::string_view utf8) noexcept
{
    std::size_t count = 0;
    for (const char c : utf8) {
        const auto byte = static_cast<signed char>(c);
        count += static_cast<std::size_t>(byte > -65) + static_cast<std::size_t>(static_cast<unsigned char>(c) >= 0xF0);
    }
    return std::min(count, utf8.size());
}

std::size_t DecodeUtf8(std::string_view& utf8, std::size_t byteCount, char16_t* units) noexcept
{
    const auto* in = reinterpret_cast<const unsigned char*>(utf8.data());
    const unsigned char* const end = in + utf8.size();
    const unsigned char* const stop = in + std::min(byteCount, utf8.size());
    char16_t* out = units;
    while (in < stop) {
        while (static_cast<std::size_t>(stop - in) >= kBlockBytes && IsAscii(in)) {
            WidenBlock(in, out);
            in += kBlockBytes;
            out += kBlockBytes;
        }
        while (in < stop && *in < 0x80)
            *out++ = *in++;
        while (in < stop && *in >= 0x80)
            DecodeSequence(in, end, out);
    }
    const auto* const begin = reinterpret_cast<const unsigned char*>(utf8.data());
    utf8.remove_prefix(static_cast<std::size_t>(in - begin));
    return static_cast<std::size_t>(out - units);
}

std::size_t CountEncodedBytes(std::u16string_view units) noexcept
{
    const char16_t* in = units.data();
    const char16_t* const end = in + units.size();
    std::size_t count = units.size();
    while (in != end) {
        while (static_cast<std::size_t>(end - in) >= kBlockUnits && IsAsciiBlock(LoadBlock(in)))
            in += kBlockUnits;
        const char16_t* const stop = in + std::min<std::size_t>(kBlockUnits, static_cast<std::size_t>(end - in));
        for (; in < stop; ++in) {
            const unsigned unit = *in;
            count += static_cast<std::size_t>(unit >= 0x80) + static_cast<std::size_t>(unit >= 0x800);
            if (IsHighSurrogate(unit) && in + 1 != end && IsLowSurrogate(in[1])) {
                ++in;  // the pair's four bytes: two units and two more
            }
        }
    }
    return count;
}

char* EncodeUtf8(std::u16string_view units, char* bytes) noexcept
{
    const char16_t* in = units.data();
    const char16_t* const end = in + units.size();
    while (in != end) {
        while (static_cast<std::size_t>(end - in) >= kBlockUnits) {
            const UnitBlock block = LoadBlock(in);
            if (!IsAsciiBlock(block))
                break;
            NarrowBlock(block, bytes);
            in += kBlockUnits;
            bytes += kBlockUnits;
        }
        const char16_t* const stop = in + std::min<std::size_t>(kBlockUnits, static_cast<std::size_t>(end - in));
        while (in < stop)
            bytes = EncodeCodePoint(NextCodePoint(in, end), bytes);
    }
    return bytes;
}

}  // namespace rk
