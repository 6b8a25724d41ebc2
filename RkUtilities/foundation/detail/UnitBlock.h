#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// Eight code units at a time, through the vector types that both compilers offer on every processor.
namespace rk {

using UnitBlock [[gnu::vector_size(16)]] = std::uint16_t;
using UnitMask [[gnu::vector_size(16)]] = std::int16_t;  // a lane is 0 or -1
constexpr std::size_t kBlockUnits = sizeof(UnitBlock) / sizeof(std::uint16_t);

inline UnitBlock LoadBlock(const char16_t* units) noexcept {
    UnitBlock block;
    std::memcpy(&block, units, sizeof block);
    return block;
}

inline void StoreBlock(char16_t* units, UnitBlock block) noexcept { std::memcpy(units, &block, sizeof block); }

/// Copies units between places that do not overlap, few of them without a call.
inline void CopyUnits(const char16_t* from, std::size_t count, char16_t* to) noexcept {
    constexpr std::size_t kMostWithoutCall = 8 * kBlockUnits;
    if (count > kMostWithoutCall) {
        std::memcpy(to, from, count * sizeof(char16_t));
    } else if (count >= kBlockUnits) {
        for (std::size_t i = 0; i + kBlockUnits < count; i += kBlockUnits)
            StoreBlock(to + i, LoadBlock(from + i));
        StoreBlock(to + count - kBlockUnits, LoadBlock(from + count - kBlockUnits));
    } else if (count >= kBlockUnits / 2) {
        std::memcpy(to, from, sizeof(UnitBlock) / 2);
        std::memcpy(to + count - kBlockUnits / 2, from + count - kBlockUnits / 2, sizeof(UnitBlock) / 2);
    } else {
        for (std::size_t i = 0; i < count; ++i)
            to[i] = from[i];
    }
}

inline UnitBlock FilledBlock(char16_t unit) noexcept {
    const auto u = static_cast<std::uint16_t>(unit);
    return UnitBlock{u, u, u, u, u, u, u, u};
}

/// The units so that each lies in memory with its low byte first.
inline UnitBlock InByteOrder(UnitBlock block) noexcept {
    return std::endian::native == std::endian::little ? block : block << 8 | block >> 8;
}

template <class Block> bool AnyLane(Block block) noexcept {
    std::uint64_t halves[2];
    std::memcpy(halves, &block, sizeof halves);
    return (halves[0] | halves[1]) != 0;
}

/// The low bytes of the lanes, the first lane's lowest.
inline std::uint64_t LaneBytes(UnitBlock block) noexcept {
    using Bytes [[gnu::vector_size(8)]] = std::uint8_t;
    const Bytes bytes = __builtin_convertvector(block, Bytes);
    std::uint64_t result = 0;
    std::memcpy(&result, &bytes, sizeof result);
    return std::endian::native == std::endian::little ? result : __builtin_bswap64(result);
}

/// The first lane of a mask that is set; kBlockUnits when no lane is.
inline std::size_t FirstLane(UnitMask mask) noexcept {
    return static_cast<std::size_t>(std::countr_zero(LaneBytes(reinterpret_cast<UnitBlock>(mask)))) / 8;
}

/// Whether all eight units are ASCII.
inline bool IsAsciiBlock(UnitBlock block) noexcept { return !AnyLane(block & FilledBlock(0xFF80)); }

/// The block with the ASCII letters of one case in the other; `firstLetter` is u'a' or u'A'.
inline UnitBlock WithAsciiCaseChanged(UnitBlock block, char16_t firstLetter) noexcept {
    const auto isLetter = reinterpret_cast<UnitBlock>((block - FilledBlock(firstLetter)) < FilledBlock(26));
    return block ^ (isLetter & FilledBlock(0x20));
}

}  // namespace rk
