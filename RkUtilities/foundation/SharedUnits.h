#pragma once

#include <atomic>
#include <cstddef>

namespace rk {

/// The memory of a long text: a head, then the units with their terminating 0. Texts share it until one of them
/// changes.
class SharedUnits {
public:
    /// Room for `capacity` units and the terminator, with one owner. Throws `std::bad_alloc`.
    static char16_t* Allocate(std::size_t capacity);
    static void Retain(const char16_t* units) noexcept { Of(units)->m_owners.fetch_add(1, std::memory_order_relaxed); }
    static void Release(const char16_t* units) noexcept;
    /// Whether one owner has the memory for itself and may write to it.
    static bool IsUnique(const char16_t* units) noexcept
    {
        return Of(units)->m_owners.load(std::memory_order_acquire) == 1;
    }
    static std::size_t Capacity(const char16_t* units) noexcept { return Of(units)->m_capacity; }

private:
    explicit SharedUnits(std::size_t capacity) noexcept : m_owners(1), m_capacity(capacity) {}
    static SharedUnits* Of(const char16_t* units) noexcept
    {
        return reinterpret_cast<SharedUnits*>(const_cast<char16_t*>(units)) - 1;
    }

    std::atomic<std::size_t> m_owners;
    std::size_t m_capacity;
};

}  // namespace rk
