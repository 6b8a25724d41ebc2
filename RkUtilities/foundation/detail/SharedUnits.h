#pragma once

#include <cstddef>
#include <new>

namespace rk {

/// The memory of a long text: a head, then the units with their terminating 0. Copies of a text share the memory until
/// a copy changes. The compiler's functions count the owners, since `<atomic>` would make each user of texts wait.
class SharedUnits {
public:
    /// Room for `capacity` units and the terminator, with one owner. Throws `std::bad_alloc`.
    static char16_t* Allocate(std::size_t capacity) {
        void* const memory = ::operator new(sizeof(SharedUnits) + (capacity + 1) * sizeof(char16_t));
        auto* const head = new (memory) SharedUnits(capacity);
        return reinterpret_cast<char16_t*>(head + 1);
    }
    static void Retain(const char16_t* units) noexcept {
        __atomic_fetch_add(&Of(units)->m_owners, 1, __ATOMIC_RELAXED);
    }
    static void Release(const char16_t* units) noexcept {
        SharedUnits* const head = Of(units);
        // A single owner need not count: no other thread can begin to share a text that only this thread has.
        if (!IsUnique(units) && __atomic_fetch_sub(&head->m_owners, 1, __ATOMIC_ACQ_REL) != 1)
            return;
        head->~SharedUnits();
        ::operator delete(head);
    }
    /// Whether one owner has the memory for itself and may write to it.
    static bool IsUnique(const char16_t* units) noexcept {
        return __atomic_load_n(&Of(units)->m_owners, __ATOMIC_ACQUIRE) == 1;
    }
    static std::size_t Capacity(const char16_t* units) noexcept { return Of(units)->m_capacity; }

private:
    explicit SharedUnits(std::size_t capacity) noexcept : m_capacity(capacity) {}
    static SharedUnits* Of(const char16_t* units) noexcept {
        return reinterpret_cast<SharedUnits*>(const_cast<char16_t*>(units)) - 1;
    }

    std::size_t m_owners = 1;
    std::size_t m_capacity;
};

}  // namespace rk
