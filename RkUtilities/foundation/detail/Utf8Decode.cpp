#include "RkUtilities/foundation/detail/UnitBlock.h"
#include "RkUtilities/foundation/detail/Utf8.h"
#include "RkUtilities/platform/locale/Utf.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

namespace rk {

namespace {

constexpr std::size_t kWindowBytes = 64;    // bytes decoded at a time, a bit of a mask for each
constexpr std::size_t kWindowLooksAt = 66;  // two bytes behind each byte of the window are looked at with it
constexpr std::size_t kFewBytes = 16;       // a window with no more bytes beyond ASCII is decoded sequence by sequence

using ByteBlock [[gnu::vector_size(16)]] = std::uint8_t;
constexpr std::size_t kBlockBytes = sizeof(ByteBlock);
constexpr std::uint64_t kHighBits = 0x8080808080808080U;

ByteBlock LoadBytes(const char* bytes) noexcept {
    ByteBlock block;
    std::memcpy(&block, bytes, sizeof block);
    return block;
}

std::uint64_t EightBytes(const unsigned char* bytes) noexcept {
    std::uint64_t eight = 0;
    std::memcpy(&eight, bytes, sizeof eight);
    return eight;
}

/// How many of the eight bytes in memory come before the first that is not ASCII.
std::size_t AsciiBytesBefore(std::uint64_t eight) noexcept {
    const std::uint64_t others = eight & kHighBits;
    const int bits = std::endian::native == std::endian::little ? std::countr_zero(others) : std::countl_zero(others);
    return static_cast<std::size_t>(bits) / 8;
}

bool IsAscii(ByteBlock block) noexcept {
    std::uint64_t halves[2];
    std::memcpy(halves, &block, sizeof halves);
    return ((halves[0] | halves[1]) & kHighBits) == 0;
}

/// Eight bytes as units.
UnitBlock WidenedBlock(const unsigned char* bytes) noexcept {
    using LongBlock [[gnu::vector_size(16)]] = std::uint64_t;
    const auto eight = reinterpret_cast<ByteBlock>(LongBlock{EightBytes(bytes), 0});
    const ByteBlock wide =
        __builtin_shufflevector(eight, ByteBlock{}, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
    return InByteOrder(reinterpret_cast<UnitBlock>(wide));
}

void WidenBytes(ByteBlock block, char16_t* units) noexcept {
    const ByteBlock front =
        __builtin_shufflevector(block, ByteBlock{}, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
    const ByteBlock back =
        __builtin_shufflevector(block, ByteBlock{}, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31);
    StoreBlock(units, InByteOrder(reinterpret_cast<UnitBlock>(front)));
    StoreBlock(units + kBlockUnits, InByteOrder(reinterpret_cast<UnitBlock>(back)));
}

/// Widens from the front while two blocks at a time are ASCII; returns the number of bytes widened. More blocks at a
/// time take longer.
std::size_t WidenAscii(std::string_view bytes, char16_t* units) noexcept {
    constexpr std::size_t kStep = 2 * kBlockBytes;
    std::size_t i = 0;
    for (; i + kStep <= bytes.size(); i += kStep) {
        const ByteBlock front = LoadBytes(bytes.data() + i);
        const ByteBlock back = LoadBytes(bytes.data() + i + kBlockBytes);
        if (!IsAscii(front | back))
            break;
        WidenBytes(front, units + i);
        WidenBytes(back, units + i + kBlockBytes);
    }
    return i;
}

/// Decodes one sequence, or a part that is no UTF-8; moves both pointers.
void DecodeSequence(const unsigned char*& in, const unsigned char* end, char16_t*& out) noexcept {
    const char32_t codePoint = platform::TakeUtf8(in, end);
    out = platform::WriteUtf16(
        codePoint != platform::kNoCodePoint ? codePoint : char32_t{platform::kReplacementCharacter}, out);
}

/// Decodes what begins before `stop`; moves both pointers.
void DecodeOneByOne(const unsigned char*& in, const unsigned char* stop, const unsigned char* end,
                    char16_t*& out) noexcept {
    while (in < stop) {
        if (*in < 0x80 && stop - in >= 8) {
            StoreBlock(out, WidenedBlock(in));  // what follows the ASCII units is overwritten
            const std::size_t count = AsciiBytesBefore(EightBytes(in));
            in += count;
            out += count;
        } else if (*in < 0x80) {
            *out++ = *in++;
        } else {
            DecodeSequence(in, end, out);
        }
    }
}

/// Whether most of the 64 bytes are ASCII.
bool IsMostlyAscii(const unsigned char* bytes) noexcept {
    std::uint64_t counts = 0;
    for (std::size_t i = 0; i < kWindowBytes; i += 8)
        counts += EightBytes(bytes + i) >> 7 & 0x0101010101010101U;
    return (counts * 0x0101010101010101U) >> 56 <= kFewBytes;  // the product adds the counts in its top byte
}

/// Which of the 64 bytes begin a sequence: all but continuation bytes.
std::uint64_t BeginningsIn(const unsigned char* bytes) noexcept {
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

    explicit Window(const unsigned char* bytes) noexcept {
        for (std::size_t i = 0; i < kWindowBytes; i += kBlockUnits)
            DecodeBlock(bytes + i, i);
    }

    void DecodeBlock(const unsigned char* bytes, std::size_t at) noexcept {
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

    /// Compares as numbers with a sign, which is quicker, and right for blocks and limits below 0x8000.
    static UnitMask IsAtLeast(UnitBlock block, std::int16_t least) noexcept {
        return reinterpret_cast<UnitMask>(block) > static_cast<std::int16_t>(least - 1);
    }
};

/// Decodes all sequences of the 64 bytes but the last, which may go on behind them, without a branch for the kind of
/// each. False and nothing moved where the bytes are not well-formed or continuation bytes alone follow the first.
bool DecodeWindow(const unsigned char*& in, char16_t*& out) noexcept {
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

std::size_t DecodeUtf8(std::string_view& utf8, std::size_t byteCount, char16_t* units) noexcept {
    const auto* const begin = reinterpret_cast<const unsigned char*>(utf8.data());
    const unsigned char* in = begin;
    const unsigned char* const end = in + utf8.size();
    const unsigned char* const stop = in + std::min(byteCount, utf8.size());
    char16_t* out = units;
    while (in < stop) {
        const std::size_t count =
            WidenAscii({reinterpret_cast<const char*>(in), static_cast<std::size_t>(stop - in)}, out);
        in += count;
        out += count;
        if (static_cast<std::size_t>(stop - in) < kWindowLooksAt || IsMostlyAscii(in) || !DecodeWindow(in, out))
            DecodeOneByOne(in, in + std::min<std::size_t>(kWindowBytes, static_cast<std::size_t>(stop - in)), end, out);
    }
    utf8.remove_prefix(static_cast<std::size_t>(in - begin));
    return static_cast<std::size_t>(out - units);
}

}  // namespace rk
