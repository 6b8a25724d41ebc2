#pragma once

#include <chrono>
#include <mutex>
#include <optional>

namespace rk::platform {

/// How long one call may still wait for locks: a time in all, counted from its first wait.
class Patience {
public:
    explicit Patience(std::chrono::milliseconds total) noexcept : m_total(total) {}

    [[nodiscard]] bool Lock(std::mutex& mutex);  ///< Locks the mutex, unless that takes longer than there is time.
    /// Sleeps for a moment before the next try of something that cannot be waited for; false when the time is up.
    [[nodiscard]] bool Sleep();

private:
    using Clock = std::chrono::steady_clock;
    [[nodiscard]] Clock::time_point Deadline();

    std::chrono::milliseconds m_total;
    std::chrono::microseconds m_nap{50};  // grows, so that a long wait takes next to no processor time
    std::optional<Clock::time_point> m_deadline;
};

}  // namespace rk::platform
