#include "RkUtilities/platform/process/Patience.h"

#include <algorithm>
#include <ctime>
#include <pthread.h>
#include <thread>

namespace rk::platform {

bool Patience::Lock(std::mutex& mutex) {
    if (mutex.try_lock())
        return true;
    using namespace std::chrono;
    // By the wall's clock, since thread sanitizers do not know a wait by the steady clock.
    const auto until = (system_clock::now() + (Deadline() - Clock::now())).time_since_epoch();
    const auto whole = floor<seconds>(until);
    const timespec deadline{.tv_sec = whole.count(), .tv_nsec = nanoseconds(until - whole).count()};
    return pthread_mutex_timedlock(mutex.native_handle(), &deadline) == 0;
}

bool Patience::Sleep() {
    constexpr std::chrono::microseconds kLongestNap{10'000};
    const Clock::duration left = Deadline() - Clock::now();
    if (left <= Clock::duration::zero())
        return false;
    std::this_thread::sleep_for(std::min<Clock::duration>(m_nap, left));
    m_nap = std::min(m_nap * 2, kLongestNap);
    return true;
}

Patience::Clock::time_point Patience::Deadline() {
    if (!m_deadline)
        m_deadline = Clock::now() + m_total;
    return *m_deadline;
}

}  // namespace rk::platform
