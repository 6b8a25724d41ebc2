#pragma once

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

/// Two floats from each of two records.
template <class Record>
inline FloatLanes LoadLanes(const Record* first, const Record* second) noexcept
{
    static_assert(sizeof(Record) == sizeof(double));
    double halves[2];
    std::memcpy(&halves[0], static_cast<const void*>(first), sizeof(double));
    std::memcpy(&halves[1], static_cast<const void*>(second), sizeof(double));
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
