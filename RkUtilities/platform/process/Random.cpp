#include "RkUtilities/platform/process/Random.h"

#include <sys/mman.h>
#include <sys/random.h>

#include <atomic>
#include <bit>
#include <cerrno>
#include <chrono>
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
    constexpr std::size_t kPageByteCount = sizeof(std::atomic<std::uint32_t>);  // rounded up to a page by the kernel
    void* const page = mmap(nullptr, kPageByteCount, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (page == MAP_FAILED)
        return nullptr;
    if (madvise(page, kPageByteCount, MADV_WIPEONFORK) != 0) {
        munmap(page, kPageByteCount);
        return nullptr;
    }
    return ::new (page) std::atomic<std::uint32_t>(0);
}

constinit std::atomic<std::uint32_t>* forkMark = nullptr;

/// Runs when the library is loaded. The handler marks a fork where a kernel claims to wipe pages and does not.
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

__extension__ using Wide = unsigned __int128;

constexpr int kPrimeBits = 61;
constexpr std::uint64_t kPrime = (std::uint64_t{1} << kPrimeBits) - 1;

std::uint64_t SecretNumber() noexcept {
    try {
        return std::bit_cast<std::array<std::uint64_t, 2>>(RandomBytes())[0];
    } catch (const std::system_error&) {  // a sandbox without random bytes: the time is harder to know than a constant
        return static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    }
}

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

std::uint32_t SecretHash(std::u16string_view text) noexcept {
    // A polynomial over the field of kPrime elements, with the length as its first coefficient and three units in most
    // others: two texts of up to n units are alike in 32 bits at n times 2^30 of the 2^61 places at most.
    static constinit std::atomic<std::uint64_t> drawn = 0;  // without a lock, which a fork could keep in its child
    std::uint64_t place = drawn.load(std::memory_order_relaxed);
    if (place == 0) {
        const std::uint64_t mine = SecretNumber() % (kPrime - 1) + 1;
        if (drawn.compare_exchange_strong(place, mine))
            place = mine;
    }
    std::uint64_t hash = text.size();
    const auto take = [&](std::uint64_t piece) {
        const Wide product = Wide{hash + piece} * place;
        hash = (static_cast<std::uint64_t>(product) & kPrime) + static_cast<std::uint64_t>(product >> kPrimeBits);
        hash = (hash & kPrime) + (hash >> kPrimeBits);
    };
    std::size_t at = 0;
    for (; at + 3 <= text.size(); at += 3)
        take(std::uint64_t{text[at]} << 32 | std::uint64_t{text[at + 1]} << 16 | text[at + 2]);
    for (; at < text.size(); ++at)
        take(text[at]);
    return static_cast<std::uint32_t>(hash);
}

}  // namespace rk::platform
