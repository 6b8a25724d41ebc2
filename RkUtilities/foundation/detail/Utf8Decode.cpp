#include "RkUtilities/foundation/detail/UnitBlock.h"
#include "RkUtilities/foundation/detail/Utf8.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

namespace rk {

namespace {

constexpr char16_t kReplacement = 0xFFFD;
constexpr std::size_t kLongText = 1024;  // from here on a look at a quarter decides how much memory is taken

constexpr std::size_t kWindowBytes = 64;    // bytes decoded at a time, a bit of a mask for each
constexpr std::size_t kWindowLooksAt = 66;  // the last sequence that a window decodes begins two bytes before its end
constexpr std::size_t kFewBytes = 16;       // so few of a window that are not ASCII are better decoded one by one

using ByteBlock [[gnu::vector_size(16)]] = std::uint8_t;
constexpr std::size_t kBlockBytes = sizeof(ByteBlock);
constexpr std::uint64_t kHighBits = 0x8080808080808080U;

ByteBlock LoadBytes(const unsigned char* bytes) noexcept
{
    ByteBlock block;
    std::memcpy(&block, bytes, sizeof block);
    return block;
}

std::uint64_t EightBytes(const unsigned char* bytes) noexcept
{
    std::uint64_t eight = 0;
    std::memcpy(&eight, bytes, sizeof eight);
    return eight;
}

/// How many of the eight bytes in memory come before the first that is not ASCII.
std::size_t AsciiBytesBefore(std::uint64_t eight) noexcept
{
    const std::uint64_t others = eight & kHighBits;
    const int bits = std::endian::native == std::endian::little ? std::countr_zero(others) : std::countl_zero(others);
    return static_cast<std::size_t>(bits) / 8;
}

bool IsAsciiWindow(const unsigned char* bytes) noexcept
{
    const ByteBlock all = LoadBytes(bytes) | LoadBytes(bytes + kBlockBytes) | LoadBytes(bytes + 2 * kBlockBytes) |
                          LoadBytes(bytes + 3 * kBlockBytes);
    std::uint64_t halves[2];
    std::memcpy(halves, &all, sizeof halves);
    return ((halves[0] | halves[1]) & kHighBits) == 0;
}

/// Whether the first quarter of a long text is ASCII, but for less than 64 bytes of it.
bool BeginsAscii(std::string_view utf8) noexcept
{
    const auto* const bytes = reinterpret_cast<const unsigned char*>(utf8.data());
    std::size_t i = 0;
    while (i < utf8.size() / 4 && IsAsciiWindow(bytes + i))
        i += kWindowBytes;
    return i >= utf8.size() / 4;
}

/// Eight bytes as units.
UnitBlock WidenedBlock(const unsigned char* bytes) noexcept
{
    using LongBlock [[gnu::vector_size(16)]] = std::uint64_t;
    const auto eight = reinterpret_cast<ByteBlock>(LongBlock{EightBytes(bytes), 0});
    const ByteBlock wide =
        __builtin_shufflevector(eight, ByteBlock{}, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
    return InByteOrder(reinterpret_cast<UnitBlock>(wide));
}

void WidenBytes(ByteBlock block, char16_t* units) noexcept
{
    const ByteBlock front =
        __builtin_shufflevector(block, ByteBlock{}, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
    const ByteBlock back =
        __builtin_shufflevector(block, ByteBlock{}, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31);
    StoreBlock(units, InByteOrder(reinterpret_cast<UnitBlock>(front)));
    StoreBlock(units + kBlockUnits, InByteOrder(reinterpret_cast<UnitBlock>(back)));
}

/// Widens from the front while 64 bytes at a time are ASCII; moves both pointers.
void WidenAscii(const unsigned char*& in, const unsigned char* stop, char16_t*& out) noexcept
{
    for (; stop - in >= static_cast<std::ptrdiff_t>(kWindowBytes) && IsAsciiWindow(in); in += kWindowBytes) {
        for (std::size_t i = 0; i < kWindowBytes; i += kBlockBytes)
            WidenBytes(LoadBytes(in + i), out + i);
        out += kWindowBytes;
    }
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

/// Decodes what begins before `stop`; moves both pointers.
void DecodeOneByOne(const unsigned char*& in, const unsigned char* stop, const unsigned char* end,
                    char16_t*& out) noexcept
{
    while (in < stop) {
        if (*in >= 0x80) {
            if (!DecodeShortSequence(in, end, out))
                DecodeSequence(in, end, out);
        } else if (stop - in >= 8) {
            StoreBlock(out, WidenedBlock(in));  // what follows the ASCII ones is overwritten
            const std::size_t count = AsciiBytesBefore(EightBytes(in));
            in += count;
            out += count;
        } else {
            *out++ = *in++;
        }
    }
}

/// Whether most of the 64 bytes are ASCII.
bool IsMostlyAscii(const unsigned char* bytes) noexcept
{
    std::uint64_t counts = 0;
    for (std::size_t i = 0; i < kWindowBytes; i += 8)
        counts += EightBytes(bytes + i) >> 7 & 0x0101010101010101U;
    return (counts * 0x0101010101010101U) >> 56 <= kFewBytes;  // the product adds the counts in its top byte
}

/// Which of the 64 bytes begin a sequence: all but continuation bytes.
std::uint64_t BeginningsIn(const unsigned char* bytes) noexcept
{
    std::uint64_t beginnings = 0;
    for (unsigned i = 0; i < kWindowBytes; i += 8) {
        const std::uint64_t stored = EightBytes(bytes + i);
        const std::uint64_t eight = std::endian::native == std::endian::little ? stored : __builtin_bswap64(stored);
        const std::uint64_t marks = (~eight >> 7 | eight >> 6) & 0x0101010101010101U;
        beginnings |= (marks * 0x0102040810204080U) >> 56 << i;  // the product gathers the marks in its top byte
    }
    return beginnings;
}

/// What each byte of a window gives if a sequence begins there.
struct Window {
    std::array<char16_t, kWindowBytes> units;
    std::array<std::uint16_t, kWindowBytes> lengths;  // 0: four bytes or an error, to be looked at alone

    explicit Window(const unsigned char* bytes) noexcept
    {
        for (std::size_t i = 0; i < kWindowBytes; i += kBlockUnits)
            DecodeBlock(bytes + i, i);
    }

    void DecodeBlock(const unsigned char* bytes, std::size_t at) noexcept
    {
        // The lead and the second byte's six bits in one number tell everything but the third byte.
        const UnitBlock second = WidenedBlock(bytes + 1) & FilledBlock(0x3F);
        const UnitBlock third = WidenedBlock(bytes + 2) & FilledBlock(0x3F);
        const UnitBlock first = WidenedBlock(bytes);
        const UnitBlock key = first << 6 | second;
        const UnitMask isLead = IsAtLeast(key, 0xC0 << 6);
        const UnitMask isLeadOfThree = IsAtLeast(key, 0xE0 << 6);
        const UnitMask isLeadOfFour = IsAtLeast(key, 0xF0 << 6);
        StoreBlock(units.data() + at, isLeadOfThree ? key << 6 | third : isLead ? key & FilledBlock(0x7FF) : first);
        const UnitBlock range = key & FilledBlock(0xFFE0);
        const UnitMask isOverlong =
            (range == FilledBlock(0xE0 << 6)) | ((key & FilledBlock(0xFF80)) == FilledBlock(0xC0 << 6));
        const UnitMask isSurrogate = range == FilledBlock(0xED << 6 | 0x20);
        const UnitMask length = ~(isLeadOfFour | isOverlong | isSurrogate) & (1 - isLead - isLeadOfThree);
        std::memcpy(lengths.data() + at, &length, sizeof length);
    }

    /// The same for numbers below 0x8000 as for others, but quicker.
    static UnitMask IsAtLeast(UnitBlock block, std::int16_t least) noexcept
    {
        return reinterpret_cast<UnitMask>(block) > static_cast<std::int16_t>(least - 1);
    }
};

/// Decodes all sequences of the 64 bytes but the last, which may go on behind them, without a branch for the kind of each.
/// False and nothing moved where the bytes are not well-formed or nothing but continuation bytes follows the first.
bool DecodeWindow(const unsigned char*& in, char16_t*& out) noexcept
{
    const Window window(in);
    std::uint64_t beginnings = BeginningsIn(in);
    std::size_t expected = 0;
    char16_t* end = out;
    for (; (beginnings & (beginnings - 1)) != 0; beginnings &= beginnings - 1) {
        const auto at = static_cast<std::size_t>(std::countr_zero(beginnings));
        if (at != expected)
            return false;
        if (window.lengths[at] == 0) [[unlikely]] {
            const unsigned char* next = in + at;
            char16_t* last = end;  // a copy, so that `end` may stay in a register
            DecodeSequence(next, in + kWindowLooksAt, last);
            end = last;
            expected = static_cast<std::size_t>(next - in);
        } else {
            *end++ = window.units[at];
            expected = at + window.lengths[at];
        }
    }
    if (expected == 0 || expected != static_cast<std::size_t>(std::countr_zero(beginnings)))
        return false;
    in += expected;
    out = end;
    return true;
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
    const auto* const begin = reinterpret_cast<const unsigned char*>(utf8.data());
    const unsigned char* in = begin;
    const unsigned char* const end = in + utf8.size();
    const unsigned char* const stop = in + std::min(byteCount, utf8.size());
    char16_t* out = units;
    while (in < stop) {
        WidenAscii(in, stop, out);
        if (static_cast<std::size_t>(stop - in) < kWindowLooksAt || IsMostlyAscii(in) || !DecodeWindow(in, out))
            DecodeOneByOne(in, in + std::min<std::size_t>(kWindowBytes, static_cast<std::size_t>(stop - in)), end, out);
    }
    utf8.remove_prefix(static_cast<std::size_t>(in - begin));
    return static_cast<std::size_t>(out - units);
}

}  // namespace rk
