#include "RkUtilities/platform/process/PerThread.h"

#include <array>
#include <cstddef>
#include <new>
#include <pthread.h>

namespace rk::platform {

namespace {

constexpr std::size_t kMostObjects = 8;  // of different types

constinit thread_local std::array<void (*)() noexcept, kMostObjects> ends{};
constinit thread_local std::size_t endCount = 0;

constinit pthread_key_t key = 0;
constinit bool hasKey = false;

void EndThread(void* /*unused*/) {
    while (endCount > 0)
        ends[--endCount]();
}

/// Runs when the library is loaded: later, threads would need a lock to agree on a key.
[[gnu::constructor(101)]] void MakeKey() { hasKey = pthread_key_create(&key, &EndThread) == 0; }

}  // namespace

void AtThreadEnd(void (*end)() noexcept) {
    if (!hasKey || endCount == kMostObjects || pthread_setspecific(key, &ends) != 0)
        throw std::bad_alloc();
    ends[endCount++] = end;
}

}  // namespace rk::platform
