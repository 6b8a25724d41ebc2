#include "RkUtilities/foundation/CElementTraits.h"

#include "RkUtilities/platform/process/Random.h"

#include <array>
#include <atomic>
#include <bit>
#include <chrono>
#include <system_error>

namespace rk {

namespace {

constexpr std::uint64_t kPrime = 0x7FFFFFFF;

std::uint64_t Draw() noexcept {
    try {
        return std::bit_cast<std::array<std::uint64_t, 2>>(platform::RandomBytes())[0];
    } catch (const std::system_error&) {  // a sandbox without random bytes: the time is harder to know than a constant
        return static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    }
}

}  // namespace

std::uint32_t SecretHash(std::u16string_view text) noexcept {
    // A polynomial over the field of kPrime elements: two texts of up to n units are equal at n places at most.
    static constinit std::atomic<std::uint64_t> drawn = 0;  // without a lock, which a fork could keep in its child
    std::uint64_t place = drawn.load(std::memory_order_relaxed);
    if (place == 0) {
        const std::uint64_t mine = Draw() % (kPrime - 1) + 1;
        if (drawn.compare_exchange_strong(place, mine))
            place = mine;
    }
    std::uint64_t hash = 0;
    for (const char16_t unit : text)
        hash = (hash + unit + 1) * place % kPrime;
    return static_cast<std::uint32_t>(hash);
}

}  // namespace rk
