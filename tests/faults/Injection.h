#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

/// Lets allocations and system calls of the calling thread fail. Works in the thread that arms it, for one call.
///
/// Allocations are those by malloc, calloc and realloc, by any caller: the library, ICU, SQLite, expat, the C++
/// and the C library; not those that the C library makes for itself inside (stdio's and the locale's are reached, the
/// loader's are not), and not pages from mmap, which are system calls.
///
/// System calls are caught in the kernel, for any caller (Linux's syscall user dispatch, 5.11 and later, x86-64).
/// Calls that the kernel answers without being entered (the time, by the vDSO) are not reached, nor are other threads
/// and children that the call starts; a call that starts a thread or a program, or blocks signals, must not be armed.
namespace faults {

enum class Persistence { Once, FromThenOn };

/// A kind of fault; a point of it is the n-th chance to occur in a call.
struct Fault {
    const char* name;
    int error;  ///< what the system call fails with; 0: it serves half of the bytes; kNoMemory: an allocation fails
    Persistence persistence;
    std::span<const long> calls;  ///< the system calls that may fail in this way
    bool hasAnotherWay = false;   ///< the call on the library succeeds all the same
};
constexpr int kNoMemory = -1;

extern const std::array<Fault, 22> kFaults;
using Counts = std::array<std::size_t, kFaults.size()>;

/// False where the system lets no program catch its calls: nothing but allocations fail then.
bool CatchSystemCalls();

/// From now on the `point`-th chance (from 1) of the fault is taken; 0: only counted.
void Arm(const Fault& fault, std::size_t point);
/// Nothing fails any more; the chances that each kind of fault has had since `Arm`.
Counts Disarm();

/// Blocks that the thread has taken and not given back.
std::ptrdiff_t LivingBlocks();

}  // namespace faults
