#include "RkUtilities/foundation/CElementTraits.h"

#include "RkUtilities/platform/process/Random.h"

#include <array>
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
    // A polynomial over the field of kPrime elements: two texts of up to n units have the same value at n places at most.
    static const std::uint64_t place = Draw() % (kPrime - 1) + 1;
    std::uint64_t hash = 0;
    for (const char16_t unit : text)
        hash = (hash + unit + 1) * place % kPrime;
    return static_cast<std::uint32_t>(hash);
}

}  // namespace rk
