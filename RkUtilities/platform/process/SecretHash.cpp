#include "RkUtilities/platform/process/SecretHash.h"

#include "RkUtilities/platform/process/Random.h"

#include <array>
#include <atomic>
#include <bit>
#include <chrono>
#include <cstddef>
#include <system_error>

namespace rk::platform {

namespace {

__extension__ using Wide = unsigned __int128;

constexpr int kPrimeBits = 61;
constexpr std::uint64_t kPrime = (std::uint64_t{1} << kPrimeBits) - 1;

std::uint64_t Draw() noexcept {
    try {
        return std::bit_cast<std::array<std::uint64_t, 2>>(RandomBytes())[0];
    } catch (const std::system_error&) {  // a sandbox without random bytes: the time is harder to know than a constant
        return static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    }
}

}  // namespace

std::uint32_t SecretHash(std::u16string_view text) noexcept {
    // A polynomial over the field of kPrime elements, with the length as its first coefficient and three units in most
    // others: two texts of up to n units are alike in 32 bits at n times 2^30 of the 2^61 places at most.
    static constinit std::atomic<std::uint64_t> drawn = 0;  // without a lock, which a fork could keep in its child
    std::uint64_t place = drawn.load(std::memory_order_relaxed);
    if (place == 0) {
        const std::uint64_t mine = Draw() % (kPrime - 1) + 1;
        if (drawn.compare_exchange_strong(place, mine))
            place = mine;
    }
    std::uint64_t hash = text.size();
    const auto take = [&](std::uint64_t piece) {
        const Wide product = Wide{hash + piece} * place;
        hash = (static_cast<std::uint64_t>(product) & kPrime) + static_cast<std::uint64_t>(product >> kPrimeBits);
        hash = (hash & kPrime) + (hash >> kPrimeBits);
    };
    std::size_t at = 0;
    for (; at + 3 <= text.size(); at += 3)
        take(std::uint64_t{text[at]} << 32 | std::uint64_t{text[at + 1]} << 16 | text[at + 2]);
    for (; at < text.size(); ++at)
        take(text[at]);
    return static_cast<std::uint32_t>(hash);
}

}  // namespace rk::platform
