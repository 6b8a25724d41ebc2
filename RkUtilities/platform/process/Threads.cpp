#include "RkUtilities/platform/process/Threads.h"

#include "RkUtilities/platform/process/Patience.h"

#include <array>
#include <atomic>
#include <chrono>
#include <pthread.h>

namespace rk::platform {

namespace {

constexpr std::size_t kLockCount = static_cast<std::size_t>(Lock::IcuMemory) + 1;

constinit std::array<std::mutex, kLockCount> mutexes{};
constinit std::atomic<std::mutex*> logMutex = mutexes.data();
constinit std::array<std::mutex*, kLockCount> heldByFork{};  // by the thread that holds the last lock
constinit std::array<ForkCalls, kLockCount> forkCalls{};

void BeforeFork() {
    std::array<std::mutex*, kLockCount> held{};
    for (std::size_t i = 0; i < kLockCount; ++i) {
        std::mutex& mutex = MutexOf(static_cast<Lock>(i));
        held[i] = Patience(std::chrono::seconds(2)).Lock(mutex) ? &mutex : nullptr;
        if (held[i] != nullptr && forkCalls[i].before != nullptr)
            forkCalls[i].before();
    }
    heldByFork = held;
}

void AfterFork() {
    const std::array<std::mutex*, kLockCount> held = heldByFork;
    for (std::mutex* const mutex : held) {
        if (mutex != nullptr)
            mutex->unlock();
    }
}

void AfterForkInChild() {
    for (std::size_t i = 0; i < kLockCount; ++i) {
        if (forkCalls[i].inChild != nullptr)
            forkCalls[i].inChild(heldByFork[i] != nullptr);
    }
    AfterFork();
}

/// Runs when the library is loaded. A program that starts has memory for it; without memory, forks take no lock.
[[gnu::constructor(101)]] void WatchForks() {
    static_cast<void>(pthread_atfork(&BeforeFork, &AfterFork, &AfterForkInChild));
}

}  // namespace

std::uintptr_t CurrentThreadHandle() noexcept {
    static_assert(sizeof(pthread_t) == sizeof(std::uintptr_t));
    return static_cast<std::uintptr_t>(pthread_self());
}

std::mutex& MutexOf(Lock lock) noexcept {
    return lock == Lock::Log ? *logMutex.load(std::memory_order_acquire) : mutexes[static_cast<std::size_t>(lock)];
}

void CallAtForks(Lock lock, const ForkCalls& calls) noexcept { forkCalls[static_cast<std::size_t>(lock)] = calls; }

void HoldAcrossForks(std::mutex& mutex) noexcept { logMutex.store(&mutex, std::memory_order_release); }

}  // namespace rk::platform
