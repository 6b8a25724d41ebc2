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

inline UnitBlock LoadBlock(const char16_t* units) noexcept
{
    UnitBlock block;
    std::memcpy(&block, units, sizeof block);
    return block;
}

inline void StoreBlock(char16_t* units, UnitBlock block) noexcept
{
    std::memcpy(units, &block, sizeof block);
}

inline UnitBlock FilledBlock(char16_t unit) noexcept
{
    const auto u = static_cast<std::uint16_t>(unit);
    return UnitBlock{u, u, u, u, u, u, u, u};
}

template <class Block>
bool AnyLane(Block block) noexcept
{
    std::uint64_t halves[2];
    std::memcpy(halves, &block, sizeof halves);
    return (halves[0] | halves[1]) != 0;
}

/// The first lane of a mask that is set; kBlockUnits when none is.
inline std::size_t FirstLane(UnitMask mask) noexcept
{
    std::uint64_t halves[2];
    std::memcpy(halves, &mask, sizeof halves);
    const auto lanesBefore = [](std::uint64_t half) {
        const int bits = std::endian::native == std::endian::little ? std::countr_zero(half) : std::countl_zero(half);
        return static_cast<std::size_t>(bits) / 16;
    };
    return halves[0] != 0 ? lanesBefore(halves[0]) : 4 + lanesBefore(halves[1]);
}

/// Whether all eight units are ASCII.
inline bool IsAsciiBlock(UnitBlock block) noexcept
{
    return !AnyLane(block & FilledBlock(0xFF80));
}

}  // namespace rk
