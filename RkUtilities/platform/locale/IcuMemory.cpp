#include "RkUtilities/platform/locale/IcuMemory.h"

#include "RkUtilities/platform/process/Threads.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <malloc.h>
#include <mutex>
#include <unicode/uclean.h>

namespace rk::platform {

namespace {

/// The first texts of ICU 72 need less than 1 MB, those of ICU 76 less than 2.
constexpr std::size_t kReserveByteCount = std::size_t{4} << 20;

/// A part of the reserve; the next part begins behind its bytes.
struct alignas(16) Block {
    std::size_t byteCount;  // with this head
    bool isTaken;

    [[nodiscard]] std::byte* Begin() noexcept { return reinterpret_cast<std::byte*>(this); }
    [[nodiscard]] Block* Next() noexcept { return reinterpret_cast<Block*>(Begin() + byteCount); }
};

/// Guarded by `Lock::IcuMemory`. Its pages take memory when they are first written to.
alignas(Block) constinit std::byte reserve[kReserveByteCount]{};
constinit std::atomic<std::uint64_t> shortageCount = 0;

bool IsInReserve(const void* memory) noexcept {
    return !std::less<>()(memory, static_cast<void*>(reserve)) &&
           std::less<>()(memory, static_cast<void*>(reserve + kReserveByteCount));
}

/// The first free part that is long enough; null when there is no such part.
void* TakeFromReserve(std::size_t byteCount) noexcept {
    ++shortageCount;
    if (byteCount > kReserveByteCount)
        return nullptr;
    const std::size_t wanted = (byteCount + 2 * sizeof(Block) - 1) / sizeof(Block) * sizeof(Block);
    const std::lock_guard lock(MutexOf(Lock::IcuMemory));
    auto* block = reinterpret_cast<Block*>(reserve);
    if (block->byteCount == 0)
        block->byteCount = kReserveByteCount;
    const auto isInside = [](Block* one) { return one->Begin() < reserve + kReserveByteCount; };
    for (; isInside(block); block = block->Next()) {
        while (!block->isTaken && isInside(block->Next()) && !block->Next()->isTaken)
            block->byteCount += block->Next()->byteCount;
        if (block->isTaken || block->byteCount < wanted)
            continue;
        if (block->byteCount > wanted) {
            *reinterpret_cast<Block*>(block->Begin() + wanted) = {block->byteCount - wanted, false};
            block->byteCount = wanted;
        }
        block->isTaken = true;
        return block + 1;
    }
    return nullptr;
}

// NOLINTBEGIN(cppcoreguidelines-no-malloc): what ICU took before, by itself, has to be given back in the same way

void* Allocate(const void*, std::size_t byteCount) {
    void* const memory = std::malloc(byteCount);
    return memory != nullptr ? memory : TakeFromReserve(byteCount);
}

void Free(const void*, void* memory) {
    if (!IsInReserve(memory))
        return std::free(memory);
    const std::lock_guard lock(MutexOf(Lock::IcuMemory));
    (static_cast<Block*>(memory) - 1)->isTaken = false;
}

void* Reallocate(const void*, void* memory, std::size_t byteCount) {
    const bool isInReserve = IsInReserve(memory);
    if (void* const moved = isInReserve ? nullptr : std::realloc(memory, byteCount); moved != nullptr)
        return moved;
    void* const copy = isInReserve ? Allocate(nullptr, byteCount) : TakeFromReserve(byteCount);
    if (copy == nullptr)
        return nullptr;
    const std::size_t before =
        isInReserve ? (static_cast<Block*>(memory) - 1)->byteCount - sizeof(Block) : malloc_usable_size(memory);
    if (memory != nullptr)
        std::memcpy(copy, memory, std::min(before, byteCount));
    Free(nullptr, memory);
    return copy;
}

// NOLINTEND(cppcoreguidelines-no-malloc)

/// Runs when the library is loaded, before any use of ICU, also before a use by the application's initialisers.
[[gnu::constructor(101)]] void ServeIcu() {
    UErrorCode ignored = U_ZERO_ERROR;
    u_setMemoryFunctions(nullptr, &Allocate, &Reallocate, &Free, &ignored);
}

}  // namespace

std::uint64_t IcuShortageCount() noexcept { return shortageCount.load(std::memory_order_relaxed); }

}  // namespace rk::platform
