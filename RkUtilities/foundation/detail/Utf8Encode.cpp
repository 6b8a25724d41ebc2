#include "RkUtilities/foundation/detail/UnitBlock.h"
#include "RkUtilities/foundation/detail/Utf8.h"
#include "RkUtilities/platform/locale/Utf.h"

#include <algorithm>
#include <array>
#include <utility>

namespace rk {

namespace {

constexpr std::size_t kAsciiStep = 8 * kBlockUnits;  // units narrowed at a time
constexpr std::size_t kShortText = 2 * kAsciiStep;   // a text up to this length is encoded without being counted

using ByteBlock [[gnu::vector_size(16)]] = std::uint8_t;

template <class To, class Block> void Store(To* to, const Block& block) noexcept {
    std::memcpy(to, &block, sizeof block);
}

/// The low bytes of both blocks' units.
ByteBlock Narrowed(UnitBlock front, UnitBlock back) noexcept {
    return __builtin_shufflevector(reinterpret_cast<ByteBlock>(InByteOrder(front)),
                                   reinterpret_cast<ByteBlock>(InByteOrder(back)), 0, 2, 4, 6, 8, 10, 12, 14, 16, 18,
                                   20, 22, 24, 26, 28, 30);
}

/// Narrows from the front while 64 units at a time are ASCII; returns how many units that were.
std::size_t NarrowAscii(std::u16string_view units, char* bytes) noexcept {
    std::size_t i = 0;
    for (; i + kAsciiStep <= units.size(); i += kAsciiStep) {
        UnitBlock blocks[kAsciiStep / kBlockUnits];
        UnitBlock all{};
        for (std::size_t k = 0; k < std::size(blocks); ++k) {
            blocks[k] = LoadBlock(units.data() + i + k * kBlockUnits);
            all |= blocks[k];
        }
        if (!IsAsciiBlock(all))
            break;
        for (std::size_t k = 0; k < std::size(blocks); k += 2)
            Store(bytes + i + k * kBlockUnits, Narrowed(blocks[k], blocks[k + 1]));
    }
    return i;
}

/// Which units of a block begin a pair; `following` holds the unit behind each of them.
UnitMask PairsIn(UnitBlock block, UnitBlock following) noexcept {
    const UnitBlock kind = FilledBlock(0xFC00);
    return ((block & kind) == FilledBlock(0xD800)) & ((following & kind) == FilledBlock(0xDC00));
}

/// Encodes what begins at `in`, which moves behind it: a unit, or both of a pair.
char* EncodeNext(const char16_t*& in, const char16_t* end, char* out) noexcept {
    return platform::WriteUtf8(platform::TakeCodePoint(in, end), out);
}

constexpr std::size_t kStoredBytes = 4;  // for each unit; the bytes of the next unit overwrite the surplus

/// A block's units as UTF-8, as if no unit belonged to a pair: four bytes a unit, of which the first `lengths` count.
struct EncodedBlock {
    std::array<char, kStoredBytes * kBlockUnits> bytes;
    std::array<std::uint16_t, kBlockUnits> lengths;

    explicit EncodedBlock(UnitBlock units) noexcept {
        const UnitMask isAscii = units < FilledBlock(0x80);
        const UnitMask isShort = units < FilledBlock(0x800);
        const UnitBlock tail = units & FilledBlock(0x3F);
        const UnitBlock ofTwo = FilledBlock(0x80C0) | units >> 6 | tail << 8;
        const UnitBlock ofThree = FilledBlock(0x80E0) | units >> 12 | (units << 2 & FilledBlock(0x3F00));
        const UnitBlock front = InByteOrder(isAscii ? units : isShort ? ofTwo : ofThree);
        const UnitBlock back = InByteOrder(FilledBlock(0x80) | tail);
        Store(bytes.data(), __builtin_shufflevector(front, back, 0, 8, 1, 9, 2, 10, 3, 11));
        Store(bytes.data() + bytes.size() / 2, __builtin_shufflevector(front, back, 4, 12, 5, 13, 6, 14, 7, 15));
        Store(lengths.data(), 3 + isShort + isAscii);  // a set lane is -1
    }
};

/// Encodes eight units, or nine where a pair begins with the eighth. The four bytes stored for the last unit may reach
/// past its own bytes, so three more units must follow unless all eight are ASCII.
void EncodeBlock(const char16_t*& in, const char16_t* end, char*& out) noexcept {
    const UnitBlock units = LoadBlock(in);
    if (IsAsciiBlock(units)) {
        const ByteBlock narrowed = Narrowed(units, units);
        std::memcpy(out, &narrowed, kBlockUnits);
        in += kBlockUnits;
        out += kBlockUnits;
        return;
    }
    const char16_t* const stop = in + kBlockUnits;
    if (end - stop < 3 || AnyLane((units & FilledBlock(0xF800)) == FilledBlock(0xD800))) {
        while (in < stop)
            out = EncodeNext(in, end, out);
        return;
    }
    const EncodedBlock block(units);
    for (std::size_t i = 0; i < kBlockUnits; ++i) {
        std::memcpy(out, block.bytes.data() + kStoredBytes * i, kStoredBytes);
        out += block.lengths[i];
    }
    in = stop;
}

/// Makes `bytes` longer by what `write` writes, at most `most` bytes: `write` gets their place, and returns their end.
template <class Write> void AppendWritten(std::string& bytes, std::size_t most, const Write& write) {
    const std::size_t before = bytes.size();
#ifdef __cpp_lib_string_resize_and_overwrite
    bytes.resize_and_overwrite(before + most, [&](char* text, std::size_t) { return write(text + before) - text; });
#else
    bytes.resize(before + most);  // clears what is about to be written
    bytes.resize(static_cast<std::size_t>(write(bytes.data() + before) - bytes.data()));
#endif
}

}  // namespace

std::size_t CountEncodedBytes(std::u16string_view units) noexcept {
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
        const bool isPair =
            platform::IsHighSurrogate(units[i]) && i + 1 < units.size() && platform::IsLowSurrogate(units[i + 1]);
        count += (units[i] >= 0x80 ? 1U : 0U) + (units[i] >= 0x800 ? 1U : 0U) - (isPair ? 2U : 0U);
    }
    return count;
}

char* EncodeUtf8(std::u16string_view units, char* bytes) noexcept {
    const char16_t* in = units.data();
    const char16_t* const end = in + units.size();
    const auto left = [&] { return static_cast<std::size_t>(end - in); };
    while (left() >= kBlockUnits) {
        const std::size_t count = NarrowAscii({in, left()}, bytes);
        in += count;
        bytes += count;
        for (std::size_t i = 0; i < kAsciiStep && left() >= kBlockUnits; i += kBlockUnits)
            EncodeBlock(in, end, bytes);
    }
    while (in != end)
        bytes = EncodeNext(in, end, bytes);
    return bytes;
}

void AppendUtf8(std::u16string_view units, std::string& bytes) {
    if (units.size() <= kShortText) {
        char block[3 * kShortText];
        bytes.append(block, EncodeUtf8(units, block));
        return;
    }
    const bool isWhole = bytes.empty();
    char sample[kShortText];
    if (NarrowAscii(units.substr(0, kShortText), sample) == kShortText) {  // likely all are ASCII and need no counting
        std::size_t count = 0;
        AppendWritten(bytes, units.size(), [&](char* out) {
            count = NarrowAscii(units, out);
            return out + count;
        });
        units.remove_prefix(count);
    }
    const std::size_t restBytes = CountEncodedBytes(units);
    if (isWhole && bytes.size() + restBytes > bytes.capacity()) {
        std::string exact;  // std::string would take twice what it has
        exact.reserve(bytes.size() + restBytes);
        exact += bytes;
        bytes = std::move(exact);
    }
    AppendWritten(bytes, restBytes, [&](char* out) { return EncodeUtf8(units, out); });
}

}  // namespace rk
