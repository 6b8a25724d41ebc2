#pragma once

#include <cstddef>
#include <new>

namespace rk::platform {

/// What `make` gives: a value, or a pointer to an object of ICU. ICU leaves parts out of what it makes while memory is
/// short, and does not tell: what is made twice alike, with memory left, is whole. Throws `std::bad_alloc` otherwise.
template <class Make>
auto MadeWhole(const Make& make)
{
    constexpr std::size_t kMemoryLeft = std::size_t{16} * 1024;
    auto made = make();
    const auto again = make();
    ::operator delete(::operator new(kMemoryLeft));
    bool isWhole = false;
    // Clang 14 finds `==` between ICU's formats ambiguous in C++20: the operator is called by its name.
    if constexpr (requires { *made; })
        isWhole = made != nullptr && again != nullptr && made->operator==(*again);
    else
        isWhole = made == again;
    if (!isWhole)
        throw std::bad_alloc();
    return made;
}

}  // namespace rk::platform
