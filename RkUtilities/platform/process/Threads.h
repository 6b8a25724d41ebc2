#pragma once

#include <cstdint>
#include <mutex>

namespace rk::platform {

/// The system's handle of the calling thread, as a number.
std::uintptr_t CurrentThreadHandle() noexcept;

/// The library's locks in the order in which they are taken: a thread that holds a lock takes only later locks. A
/// thread that forks holds all locks meanwhile, so that its child inherits no lock of a thread that the child does not
/// have, nor half-done work. It waits two seconds at most for each: a handler of a crash may fork inside a lock.
enum class Lock {
    Log,               ///< the mutex given to `HoldAcrossForks`
    Preferences,       ///< while the preferences are synchronised
    PreferenceValues,  ///< the preferences in memory
    Locale,            ///< the user's locale, and all of ICU that has locks of its own
    Zone,              ///< the C library's time zone, which it locks too
    CaseTables,        ///< while a table of Unicode is made
    IcuMemory,         ///< ICU's reserve of memory
};

/// The mutex of a lock. It may be used before main and after it.
std::mutex& MutexOf(Lock lock) noexcept;

/// What a fork does besides locking: `before` in the parent while the lock is held, `inChild` in the child.
struct ForkCalls {
    void (*before)() noexcept = nullptr;
    void (*inChild)(bool isHeld) noexcept = nullptr;  ///< when not held, a lost thread has the lock
};
/// To be called while the library is loaded.
void CallAtForks(Lock lock, const ForkCalls& calls) noexcept;

/// From now on the mutex is `Lock::Log`; it must outlive all forks. Safe from any thread.
void HoldAcrossForks(std::mutex& mutex) noexcept;

}  // namespace rk::platform
