#include "RkUtilities/platform/process/Threads.h"

#include <pthread.h>
#include <system_error>

namespace rk::platform {

namespace {

std::mutex* heldAcrossForks = nullptr;
std::once_flag isRegistered;

void BeforeFork()
{
    heldAcrossForks->lock();
}

void AfterFork()
{
    heldAcrossForks->unlock();
}

}  // namespace

std::uintptr_t CurrentThreadHandle() noexcept
{
    static_assert(sizeof(pthread_t) == sizeof(std::uintptr_t));
    return static_cast<std::uintptr_t>(pthread_self());
}

void HoldAcrossForks(std::mutex& mutex)
{
    std::call_once(isRegistered, [&mutex] {
        heldAcrossForks = &mutex;
        if (const int error = pthread_atfork(&BeforeFork, &AfterFork, &AfterFork); error != 0)
            throw std::system_error(error, std::generic_category());
    });
}

}  // namespace rk::platform
