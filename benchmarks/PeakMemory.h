#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <malloc.h>
#include <new>

/// Counts the bytes that an operation holds. It replaces the global allocation functions, so exactly one source of a
/// program includes it; outside `MemoryOf` they cost a branch more.
namespace memory {

inline struct Count {
    bool isOn = false;
    std::ptrdiff_t held = 0, most = 0;
} count;

inline void Add(void* block, std::ptrdiff_t sign) noexcept {
    if (!count.isOn || block == nullptr)
        return;
    count.held += sign * static_cast<std::ptrdiff_t>(malloc_usable_size(block));
    count.most = std::max(count.most, count.held);
}

struct Use {
    double result, peak;  // bytes: of the result alone, and at the worst moment with it
};

/// What an operation needs beyond what its caller held before. One thread at a time.
template <class Operation> Use MemoryOf(const Operation& operation) {
    count = {true, 0, 0};
    [[maybe_unused]] const auto result = operation();
    count.isOn = false;
    return {static_cast<double>(count.held), static_cast<double>(count.most)};
}

}  // namespace memory

[[gnu::noinline]] void* operator new(std::size_t byteCount) {
    void* const block = std::malloc(byteCount);
    if (block == nullptr)
        throw std::bad_alloc();
    memory::Add(block, 1);
    return block;
}
[[gnu::noinline]] void operator delete(void* block) noexcept {
    memory::Add(block, -1);
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept { operator delete(block); }
