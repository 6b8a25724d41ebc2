#pragma once

#include <cstdint>
#include <mutex>

namespace rk::platform {

/// The system's handle of the calling thread, as a number.
std::uintptr_t CurrentThreadHandle() noexcept;

/// From now on the mutex is held by whoever forks while it does, so that a child never inherits it locked by a thread
/// that the child does not have, nor what is guarded by it half done. For one mutex in the process, which must
/// outlive all forks; later calls change nothing. Throws `std::system_error` without memory. Safe from any thread.
void HoldAcrossForks(std::mutex& mutex);

}  // namespace rk::platform
