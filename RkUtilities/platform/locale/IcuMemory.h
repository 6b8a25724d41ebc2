#pragma once

#include <cstdint>
#include <new>

/// ICU's memory. ICU keeps objects that it made while memory was short, with parts left out, and does not tell. So
/// ICU's memory comes from the system, or from a reserve of 4 MB where the system has no memory.
namespace rk::platform {

/// How often the system had no memory for ICU.
std::uint64_t IcuShortageCount() noexcept;

/// What `make` gives: a value, or a pointer to an object of ICU. Throws `std::bad_alloc` for null, and when the system
/// had no memory meanwhile, since the reserve is not for what we keep and may have been used up.
template <class Make> auto MadeWhole(const Make& make) {
    const std::uint64_t before = IcuShortageCount();
    auto made = make();
    bool isWhole = IcuShortageCount() == before;
    if constexpr (requires { *made; })
        isWhole = isWhole && made != nullptr;
    if (!isWhole)
        throw std::bad_alloc();
    return made;
}

}  // namespace rk::platform
