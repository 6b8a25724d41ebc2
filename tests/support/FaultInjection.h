#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>

/// Counts the allocations of the thread and lets the 1st, 2nd, 3rd ... of them fail. It replaces the global allocation
/// functions, so exactly one source of a test program includes it.
namespace test {

struct FaultPlan {
    std::size_t stepCount = 0;       ///< allocations, and whatever else a test counts with Step
    std::size_t failingStep = 0;     ///< the step that fails; 0: none
    std::ptrdiff_t livingCount = 0;  ///< allocations less deallocations
};
inline thread_local FaultPlan plan;

/// True when this step is to fail.
inline bool Step() noexcept
{
    return ++plan.stepCount == plan.failingStep;
}

inline void Arm(std::size_t failingStep) noexcept
{
    plan.stepCount = 0;
    plan.failingStep = failingStep;
}

}  // namespace test

// Not inlined: where only one of the pair is, g++ sees a new that is freed with free().
[[gnu::noinline]] void* operator new(std::size_t byteCount)
{
    void* const memory = test::Step() ? nullptr : std::malloc(byteCount);  // NOLINT(cppcoreguidelines-no-malloc)
    if (!memory)
        throw std::bad_alloc();
    ++test::plan.livingCount;
    return memory;
}

[[gnu::noinline]] void operator delete(void* memory) noexcept
{
    if (memory)
        --test::plan.livingCount;
    std::free(memory);  // NOLINT(cppcoreguidelines-no-malloc)
}
void operator delete(void* memory, std::size_t) noexcept
{
    operator delete(memory);
}
