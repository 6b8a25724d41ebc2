#pragma once

#include "RkUtilities/RkExport.h"

#include <array>
#include <bit>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <string_view>  // for std::hash, which <functional> would add much to
#include <type_traits>

/// The 16 bytes of a UUID, and nothing else. Their order is the owner's matter: CrkGuid says which it uses.
struct CFUUIDBytes {
    /// The first eight bytes.
    std::uint8_t byte0, byte1, byte2, byte3, byte4, byte5, byte6, byte7;
    /// The last eight bytes.
    std::uint8_t byte8, byte9, byte10, byte11, byte12, byte13, byte14, byte15;

    /// Whether all 16 bytes are equal.
    friend constexpr bool operator==(const CFUUIDBytes&, const CFUUIDBytes&) = default;
    friend constexpr auto operator<=>(const CFUUIDBytes&, const CFUUIDBytes&) = default;  ///< Byte by byte.
};
static_assert(sizeof(CFUUIDBytes) == 16 && std::is_trivially_copyable_v<CFUUIDBytes>);

/// By all 16 bytes.
template <> struct std::hash<CFUUIDBytes> {
    /// By all 16 bytes.
    std::size_t operator()(const CFUUIDBytes& bytes) const noexcept {
        // Half of the bytes may be the same in all ids of a family, so both halves count.
        const auto halves = std::bit_cast<std::array<std::uint64_t, 2>>(bytes);
        return static_cast<std::size_t>(halves[0] ^ (halves[1] * 0x9E3779B97F4A7C15u));
    }
};
