#pragma once

#include <cstddef>
#include <cstring>

/// Four floats worked on at once, for the few loops and records where that pays. Not part of the documented interface.
namespace rk {

using FloatLanes [[gnu::vector_size(16)]] = float;

/// The first four floats from `record` on.
template <class Record>
inline FloatLanes LoadLanes(const Record* record) noexcept
{
    FloatLanes lanes;
    std::memcpy(&lanes, static_cast<const void*>(record), sizeof lanes);
    return lanes;
}

/// Two floats from each of two records, from their float `offset` on.
template <class Record>
inline FloatLanes LoadLanes(const Record* first, const Record* second, std::size_t offset = 0) noexcept
{
    double halves[2];
    std::memcpy(&halves[0], reinterpret_cast<const char*>(first) + offset * sizeof(float), sizeof(double));
    std::memcpy(&halves[1], reinterpret_cast<const char*>(second) + offset * sizeof(float), sizeof(double));
    return LoadLanes(halves);
}

/// The smaller or larger in each lane; `a` where both are equal or one is not a number, as "b replaces a" reads.
inline FloatLanes Smaller(FloatLanes a, FloatLanes b) noexcept
{
    return b < a ? b : a;
}

inline FloatLanes Larger(FloatLanes a, FloatLanes b) noexcept
{
    return b > a ? b : a;
}

/// Lanes 2 and 3 twice. Moved as integers, which takes one instruction instead of two.
inline FloatLanes UpperLanes(FloatLanes lanes) noexcept
{
    using IntegerLanes [[gnu::vector_size(16)]] = int;
    const auto bits = reinterpret_cast<IntegerLanes>(lanes);
    return reinterpret_cast<FloatLanes>(__builtin_shufflevector(bits, bits, 2, 3, 2, 3));
}

// What a comparison gives has all bits of a lane set where it holds.

template <class LaneMask>
inline bool HoldsInLanes0And1(LaneMask mask) noexcept
{
    long long bits = 0;
    std::memcpy(&bits, &mask, sizeof bits);
    return bits == -1;
}

template <class LaneMask>
inline bool HoldsInAnyLane(LaneMask mask) noexcept
{
    long long halves[2];
    std::memcpy(halves, &mask, sizeof halves);
    return (halves[0] | halves[1]) != 0;
}

}  // namespace rk
