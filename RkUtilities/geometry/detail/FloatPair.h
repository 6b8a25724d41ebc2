#pragma once

#include <bit>
#include <cstring>

/// Two floats that are calculated with at once: the x and y of a point, or the width and height of a size.
namespace rk {

using FloatPair [[gnu::vector_size(8)]] = float;

inline FloatPair LoadPair(const float* first) noexcept {
    FloatPair pair;
    std::memcpy(&pair, first, sizeof pair);
    return pair;
}

/// The smaller or larger of each two numbers; that of `a` where both are equal or either is not a number.
template <class Pair> inline Pair Smaller(Pair a, Pair b) noexcept { return b < a ? b : a; }
template <class Pair> inline Pair Larger(Pair a, Pair b) noexcept { return b > a ? b : a; }

/// Whether a comparison of pairs holds for at least one of its halves, or for both halves.
template <class Comparison> inline bool HoldsForEither(Comparison comparison) noexcept {
    return std::bit_cast<long long>(comparison) != 0;  // all bits of a half are set where the comparison holds
}
template <class Comparison> inline bool HoldsForBoth(Comparison comparison) noexcept {
    return !HoldsForEither(~comparison);
}

}  // namespace rk
