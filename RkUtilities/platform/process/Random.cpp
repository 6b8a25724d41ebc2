#include "RkUtilities/platform/process/Random.h"

#include <sys/mman.h>
#include <sys/random.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <new>
#include <pthread.h>
#include <span>
#include <system_error>

namespace rk::platform {
namespace {

using Draw = std::array<std::uint8_t, 16>;

void FillFromSystem(std::span<std::byte> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = getrandom(bytes.data(), bytes.size(), 0);
        if (count >= 0)
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        else if (errno != EINTR)
            throw std::system_error(errno, std::generic_category(), "getrandom");
    }
}

/// A number that a fork sets to 0, in a page for the process's life; null where the kernel cannot wipe pages.
std::atomic<std::uint32_t>* MapForkMark() noexcept {
    constexpr std::size_t kByteCount = sizeof(std::atomic<std::uint32_t>);  // rounded up to a page by the kernel
    void* const page = mmap(nullptr, kByteCount, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (page == MAP_FAILED)
        return nullptr;
    if (madvise(page, kByteCount, MADV_WIPEONFORK) != 0) {
        munmap(page, kByteCount);
        return nullptr;
    }
    return ::new (page) std::atomic<std::uint32_t>(0);
}

constinit std::atomic<std::uint32_t>* forkMark = nullptr;

/// When the library is loaded. The second sign of a fork is for kernels that claim to wipe pages and do not.
[[gnu::constructor(101)]] void WatchForForks() {
    forkMark = MapForkMark();
    const auto inChild = [] {
        if (forkMark != nullptr)
            forkMark->store(0, std::memory_order_relaxed);
    };
    static_cast<void>(pthread_atfork(nullptr, nullptr, inChild));
}

/// The number of the process among its forefathers, from 1; 0 means that no stock may be kept.
/// Two threads of a new process may count at once: it then gets two numbers, and the stock of the first number is lost.
std::uint32_t ProcessGeneration() noexcept {
    static constinit std::atomic<std::uint32_t> lastGeneration = 0;  // a fork leaves it as it is
    if (!forkMark)
        return 0;
    std::uint32_t generation = forkMark->load(std::memory_order_relaxed);
    if (generation == 0) {
        generation = ++lastGeneration;
        forkMark->store(generation, std::memory_order_relaxed);
    }
    return generation;
}

struct Stock {
    std::array<Draw, 256> draws;
    std::size_t used;          ///< the first `used` draws are given out
    std::uint32_t generation;  ///< of the process that filled the stock; 0 before that
};
constinit thread_local Stock stock = {};

}  // namespace

std::array<std::uint8_t, 16> RandomBytes() {
    const std::uint32_t generation = ProcessGeneration();
    if (generation == 0) {
        Draw draw;
        FillFromSystem(std::as_writable_bytes(std::span(draw)));
        return draw;
    }
    if (stock.generation != generation || stock.used == stock.draws.size()) {
        stock.generation = 0;  // nothing half filled is given out after a failure
        FillFromSystem(std::as_writable_bytes(std::span(stock.draws)));
        stock.used = 0;
        stock.generation = generation;
    }
    return stock.draws[stock.used++];
}

}  // namespace rk::platform
