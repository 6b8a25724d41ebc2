#include "RkUtilities/foundation/Utf8.h"

#include "RkUtilities/foundation/UnitBlock.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace rk {

namespace {

constexpr char16_t kReplacement = 0xFFFD;

constexpr std::size_t kBlockBytes = 16;
constexpr std::uint64_t kHighBits = 0x8080808080808080U;
constexpr std::size_t kLongText = 1024;  // from here on a look at a quarter decides how much memory is taken

constexpr bool IsHighSurrogate(unsigned unit)
{
    return (unit & 0xFC00U) == 0xD800U;
}
constexpr bool IsLowSurrogate(unsigned unit)
{
    return (unit & 0xFC00U) == 0xDC00U;
}

std::uint64_t EightBytes(const unsigned char* bytes) noexcept
{
    std::uint64_t eight = 0;
    std::memcpy(&eight, bytes, sizeof eight);
    return eight;
}

bool AreEightAscii(const unsigned char* bytes) noexcept
{
    return (EightBytes(bytes) & kHighBits) == 0;
}

bool AreTwoBlocksAscii(const unsigned char* bytes) noexcept
{
    const std::uint64_t all =
        EightBytes(bytes) | EightBytes(bytes + 8) | EightBytes(bytes + 16) | EightBytes(bytes + 24);
    return (all & kHighBits) == 0;
}

bool AreFourBlocksAscii(const char16_t* units) noexcept
{
    return IsAsciiBlock(LoadBlock(units) | LoadBlock(units + kBlockUnits) | LoadBlock(units + 2 * kBlockUnits) |
                        LoadBlock(units + 3 * kBlockUnits));
}

/// Whether the first quarter of a long text is ASCII, but for less than 32 bytes or units of it.
bool BeginsAscii(std::string_view utf8) noexcept
{
    const auto* const bytes = reinterpret_cast<const unsigned char*>(utf8.data());
    std::size_t i = 0;
    while (i < utf8.size() / 4 && AreTwoBlocksAscii(bytes + i))
        i += 2 * kBlockBytes;
    return i >= utf8.size() / 4;
}

bool BeginsAscii(std::u16string_view units) noexcept
{
    std::size_t i = 0;
    while (i < units.size() / 4 && AreFourBlocksAscii(units.data() + i))
        i += 4 * kBlockUnits;
    return i >= units.size() / 4;
}

void WidenBlock(const unsigned char* bytes, char16_t* units) noexcept
{
    std::array<unsigned char, kBlockBytes> block;  // a copy, so that the compiler knows the memory apart
    std::memcpy(block.data(), bytes, sizeof block);
    std::copy(block.begin(), block.end(), units);
}

void NarrowTwoBlocks(const char16_t* units, char* bytes) noexcept
{
    std::array<char16_t, 2 * kBlockUnits> blocks;
    std::memcpy(blocks.data(), units, sizeof blocks);
    std::transform(blocks.begin(), blocks.end(), bytes, [](char16_t unit) { return static_cast<char>(unit); });
}

/// Widens from the front while 32 bytes at a time are ASCII; returns how many bytes that were.
std::size_t WidenAscii(const unsigned char* bytes, std::size_t count, char16_t* units) noexcept
{
    std::size_t i = 0;
    for (; i + 2 * kBlockBytes <= count && AreTwoBlocksAscii(bytes + i); i += 2 * kBlockBytes) {
        WidenBlock(bytes + i, units + i);
        WidenBlock(bytes + i + kBlockBytes, units + i + kBlockBytes);
    }
    return i;
}

/// Narrows from the front while 32 units at a time are ASCII; returns how many units that were.
std::size_t NarrowAscii(const char16_t* units, std::size_t count, char* bytes) noexcept
{
    std::size_t i = 0;
    for (; i + 4 * kBlockUnits <= count && AreFourBlocksAscii(units + i); i += 4 * kBlockUnits) {
        NarrowTwoBlocks(units + i, bytes + i);
        NarrowTwoBlocks(units + i + 2 * kBlockUnits, bytes + i + 2 * kBlockUnits);
    }
    return i;
}

/// How many units of a block begin a pair, what follows each unit being the other block's.
UnitMask PairsIn(UnitBlock block, UnitBlock following) noexcept
{
    const UnitBlock kind = FilledBlock(0xFC00);
    return ((block & kind) == FilledBlock(0xD800)) & ((following & kind) == FilledBlock(0xDC00));
}

bool IsContinuation(unsigned byte) noexcept
{
    return (byte & 0xC0U) == 0x80U;
}

std::uint8_t UnitsBegunBy(char byte) noexcept
{
    const auto value = static_cast<unsigned char>(byte);
    return static_cast<std::uint8_t>((IsContinuation(value) ? 0 : 1) + (value >= 0xF0 ? 1 : 0));
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

/// Decodes a well-formed sequence of two or three bytes, the common ones; false and nothing moved for any other.
bool DecodeShortSequence(const unsigned char*& in, const unsigned char* end, char16_t*& out) noexcept
{
    if (end - in < 3 || !IsContinuation(in[1]))
        return false;
    const unsigned first = in[0];
    if (first >= 0xC2 && first <= 0xDF) {
        *out++ = static_cast<char16_t>((first & 0x1FU) << 6 | (in[1] & 0x3FU));
        in += 2;
        return true;
    }
    const unsigned unit = (first & 0xFU) << 12 | (in[1] & 0x3FU) << 6 | (in[2] & 0x3FU);
    if ((first & 0xF0U) != 0xE0 || !IsContinuation(in[2]) || unit < 0x800 || (unit & 0xF800U) == 0xD800)
        return false;
    *out++ = static_cast<char16_t>(unit);
    in += 3;
    return true;
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

/// Encodes what begins at `in`, which moves behind it: a unit, or both of a pair.
char* EncodeNext(const char16_t*& in, const char16_t* end, char* out) noexcept
{
    const char32_t unit = *in++;
    const auto tail = [](char32_t bits) { return static_cast<char>(0x80U | (bits & 0x3FU)); };
    if (unit < 0x80) {
        *out++ = static_cast<char>(unit);
    } else if (unit < 0x800) {
        *out++ = static_cast<char>(0xC0U | unit >> 6);
        *out++ = tail(unit);
    } else if (IsHighSurrogate(unit) && in != end && IsLowSurrogate(*in)) {
        const char32_t codePoint = 0x10000U + ((unit & 0x3FFU) << 10 | (*in++ & 0x3FFU));
        *out++ = static_cast<char>(0xF0U | codePoint >> 18);
        *out++ = tail(codePoint >> 12);
        *out++ = tail(codePoint >> 6);
        *out++ = tail(codePoint);
    } else {
        const char32_t whole = (unit & 0xF800U) == 0xD800U ? kReplacement : unit;
        *out++ = static_cast<char>(0xE0U | whole >> 12);
        *out++ = tail(whole >> 6);
        *out++ = tail(whole);
    }
    return out;
}

}  // namespace

std::size_t LikelyDecodedUnits(std::string_view utf8) noexcept
{
    if (utf8.size() >= kLongText && BeginsAscii(utf8))
        return utf8.size();
    constexpr std::size_t kChunk = 64;  // its sum fits eight bits, so that sixteen bytes are added at once
    std::size_t count = 0;
    std::size_t i = 0;
    for (; i + kChunk <= utf8.size(); i += kChunk) {
        std::uint8_t inChunk = 0;
        for (std::size_t j = i; j < i + kChunk; ++j)
            inChunk = static_cast<std::uint8_t>(inChunk + UnitsBegunBy(utf8[j]));
        count += inChunk;
    }
    for (; i < utf8.size(); ++i)
        count += UnitsBegunBy(utf8[i]);
    return std::min(count, utf8.size());
}

std::size_t DecodeUtf8(std::string_view& utf8, std::size_t byteCount, char16_t* units) noexcept
{
    const auto* in = reinterpret_cast<const unsigned char*>(utf8.data());
    const unsigned char* const end = in + utf8.size();
    const unsigned char* const stop = in + std::min(byteCount, utf8.size());
    char16_t* out = units;
    while (in < stop) {
        if (*in >= 0x80) {
            if (!DecodeShortSequence(in, end, out))
                DecodeSequence(in, end, out);
            continue;
        }
        if (stop - in >= 8 && AreEightAscii(in)) {
            const std::size_t count = WidenAscii(in, static_cast<std::size_t>(stop - in), out);
            in += count;
            out += count;
        }
        while (in < stop && *in < 0x80)
            *out++ = *in++;
    }
    const auto* const begin = reinterpret_cast<const unsigned char*>(utf8.data());
    utf8.remove_prefix(static_cast<std::size_t>(in - begin));
    return static_cast<std::size_t>(out - units);
}

std::size_t CountEncodedBytes(std::u16string_view units) noexcept
{
    constexpr std::size_t kMostBlocks = 0x3000;  // a lane adds up to 2 a block and must fit 16 bits
    std::size_t count = units.size();
    std::size_t i = 0;
    while (i + kBlockUnits < units.size()) {
        UnitMask surplus{};  // of the bytes over the units; a set lane of a mask is -1
        const std::size_t stop = std::min(units.size(), i + kMostBlocks * kBlockUnits);
        for (; i + kBlockUnits < stop; i += kBlockUnits) {
            const UnitBlock block = LoadBlock(units.data() + i);
            const UnitMask pairs = PairsIn(block, LoadBlock(units.data() + i + 1));
            surplus += pairs + pairs - (block >= FilledBlock(0x80)) - (block >= FilledBlock(0x800));
        }
        for (std::size_t lane = 0; lane < kBlockUnits; ++lane)
            count += static_cast<std::size_t>(static_cast<std::ptrdiff_t>(surplus[lane]));
    }
    for (; i < units.size(); ++i) {
        const bool isPair = IsHighSurrogate(units[i]) && i + 1 < units.size() && IsLowSurrogate(units[i + 1]);
        count += (units[i] >= 0x80 ? 1U : 0U) + (units[i] >= 0x800 ? 1U : 0U) - (isPair ? 2U : 0U);
    }
    return count;
}

std::size_t LikelyEncodedBytes(std::u16string_view units) noexcept
{
    return units.size() >= kLongText && BeginsAscii(units) ? units.size() : CountEncodedBytes(units);
}

char* EncodeUtf8(std::u16string_view units, char* bytes) noexcept
{
    const char16_t* in = units.data();
    const char16_t* const end = in + units.size();
    while (in != end) {
        const std::size_t count = NarrowAscii(in, static_cast<std::size_t>(end - in), bytes);
        in += count;
        bytes += count;
        const char16_t* const stop = in + std::min<std::size_t>(4 * kBlockUnits, static_cast<std::size_t>(end - in));
        while (in < stop)
            bytes = EncodeNext(in, end, bytes);
    }
    return bytes;
}

}  // namespace rk
