#include "tests/faults/Injection.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void __libc_free(void*);
}

namespace faults {
namespace {

constexpr long kReading[] = {SYS_read,     SYS_pread64,  SYS_write, SYS_pwrite64, SYS_copy_file_range,
                             SYS_sendfile, SYS_getrandom};
constexpr long kWriting[] = {SYS_write,     SYS_pwrite64, SYS_copy_file_range, SYS_sendfile, SYS_ftruncate,
                             SYS_fallocate, SYS_fsync,    SYS_mkdir,           SYS_mkdirat,  SYS_linkat,
                             SYS_rename,    SYS_renameat, SYS_renameat2,       SYS_mknodat,  SYS_symlinkat,
                             SYS_open,      SYS_openat,   SYS_close,           SYS_fdatasync};
constexpr long kOpening[] = {SYS_open, SYS_openat};
constexpr long kLimited[] = {SYS_open,  SYS_openat, SYS_mmap, SYS_mremap, SYS_brk,    SYS_stat,      SYS_lstat,
                             SYS_mkdir, SYS_rename, SYS_link, SYS_unlink, SYS_getcwd, SYS_newfstatat};
constexpr long kSlow[] = {SYS_read,      SYS_pread64,   SYS_write,     SYS_pwrite64, SYS_open,
                          SYS_openat,    SYS_close,     SYS_flock,     SYS_fcntl,    SYS_fsync,
                          SYS_ftruncate, SYS_fallocate, SYS_fdatasync, SYS_getrandom};
constexpr long kFiles[] = {
    SYS_read,       SYS_pread64,   SYS_write,     SYS_pwrite64,   SYS_open,       SYS_openat,   SYS_close,
    SYS_stat,       SYS_fstat,     SYS_lstat,     SYS_newfstatat, SYS_statx,      SYS_access,   SYS_faccessat,
    SYS_faccessat2, SYS_fsync,     SYS_fdatasync, SYS_ftruncate,  SYS_fallocate,  SYS_flock,    SYS_fcntl,
    SYS_mkdir,      SYS_mkdirat,   SYS_rmdir,     SYS_unlink,     SYS_unlinkat,   SYS_link,     SYS_linkat,
    SYS_symlink,    SYS_symlinkat, SYS_rename,    SYS_renameat,   SYS_renameat2,  SYS_readlink, SYS_readlinkat,
    SYS_chmod,      SYS_fchmod,    SYS_fchmodat,  SYS_utimensat,  SYS_getdents64, SYS_statfs,   SYS_copy_file_range,
    SYS_sendfile,   SYS_getrandom, SYS_mknodat,   SYS_pipe2,      SYS_lseek,      SYS_mmap};
/// What the filters of sandboxes refuse although the kernel knows it.
constexpr long kRefused[] = {SYS_renameat2, SYS_copy_file_range, SYS_getrandom, SYS_statx,
                             SYS_linkat,    SYS_fallocate,       SYS_flock};
/// What some kernels and file systems do not have.
constexpr long kReplaceable[] = {SYS_renameat2, SYS_copy_file_range};
constexpr long kCopying[] = {SYS_copy_file_range};

/// Plain data: the thread's own, without a constructor or destructor.
struct Plan {
    bool isArmed;
    const Fault* fault;
    std::size_t point;
    Counts counts;
    std::ptrdiff_t living;
};
constinit thread_local Plan plan{};
constinit volatile char selector = 0;  // read by the kernel: 1 when calls are caught

/// Counts a chance of all faults that could occur here; whether the planned fault occurs.
template <class IsChance> const Fault* Occurring(const IsChance& isChance) noexcept {
    const Fault* occurring = nullptr;
    for (std::size_t i = 0; plan.isArmed && i < kFaults.size(); ++i) {
        if (!isChance(kFaults[i]))
            continue;
        const std::size_t count = ++plan.counts[i];
        if (&kFaults[i] == plan.fault && plan.point != 0 &&
            (count == plan.point || (count > plan.point && plan.fault->persistence == Persistence::FromThenOn)))
            occurring = plan.fault;
    }
    return occurring;
}

template <class Take> void* Allocated(const Take& take) noexcept {
    if (Occurring([](const Fault& fault) { return fault.error == kNoMemory; }) != nullptr) {
        errno = ENOMEM;
        return nullptr;
    }
    void* const memory = take();
    plan.living += memory != nullptr ? 1 : 0;
    return memory;
}

/// The only places from which the kernel takes calls while `selector` is 1.
extern "C" const char rkGateBegin[], rkGateEnd[];
extern "C" long rkSystemCall(long number, long, long, long, long, long, long);
extern "C" void rkReturnFromSignal();
asm(R"(
    .pushsection .text
rkGateBegin:
rkSystemCall:
    mov %rdi, %rax
    mov %rsi, %rdi
    mov %rdx, %rsi
    mov %rcx, %rdx
    mov %r8, %r10
    mov %r9, %r8
    mov 8(%rsp), %r9
    syscall
    ret
rkReturnFromSignal:
    mov $15, %eax
    syscall
    hlt  # the kernel looks at the address behind the call
rkGateEnd:
    .popsection
)");

/// The register of the argument that counts bytes.
int ByteCountRegister(long number) noexcept {
    return number == SYS_copy_file_range ? REG_R8
           : number == SYS_sendfile      ? REG_R10
           : number == SYS_getrandom     ? REG_RSI
                                         : REG_RDX;
}

/// No file system refuses to take a lock back.
bool IsUnlocking(long number, const greg_t* registers) noexcept {
    return (number == SYS_flock && (registers[REG_RSI] & LOCK_UN) != 0) ||
           (number == SYS_fcntl && registers[REG_RSI] == F_SETLK &&
            reinterpret_cast<const struct flock*>(registers[REG_RDX])->l_type == F_UNLCK);
}

void OnSystemCall(int, siginfo_t* info, void* contextOfCall) noexcept {
    auto& registers = static_cast<ucontext_t*>(contextOfCall)->uc_mcontext.gregs;
    const long number = info->si_syscall;
    const Fault* const fault = Occurring([&](const Fault& candidate) {
        return std::ranges::count(candidate.calls, number) != 0 && !IsUnlocking(number, registers);
    });
    if (fault != nullptr && fault->error == 0) {
        auto& byteCount = registers[ByteCountRegister(number)];
        byteCount = byteCount / 2 + byteCount % 2;
    }
    long result = 0;
    if (fault == nullptr || fault->error == 0 || number == SYS_close)  // what fails to close is closed all the same
        result = rkSystemCall(number, registers[REG_RDI], registers[REG_RSI], registers[REG_RDX], registers[REG_R10],
                              registers[REG_R8], registers[REG_R9]);
    else if (number == SYS_brk)  // which tells of a failure by where the end of the data stays
        return static_cast<void>(registers[REG_RAX] = rkSystemCall(SYS_brk, 0, 0, 0, 0, 0, 0));
    registers[REG_RAX] = fault != nullptr && fault->error > 0 ? -fault->error : result;
}

}  // namespace

bool CatchSystemCalls() {
    struct {
        void (*handler)(int, siginfo_t*, void*);
        unsigned long flags;
        void (*restorer)();
        std::uint64_t mask;
    } const action{&OnSystemCall, SA_SIGINFO | SA_NODEFER | 0x04000000UL, &rkReturnFromSignal, 0};
    constexpr int kSetSyscallUserDispatch = 59, kOn = 1;
    return syscall(SYS_rt_sigaction, SIGSYS, &action, nullptr, sizeof action.mask) == 0 &&
           prctl(kSetSyscallUserDispatch, kOn, rkGateBegin, rkGateEnd - rkGateBegin, &selector) == 0;
}

constexpr std::array<Fault, 22> kFaults = {{
    {"no memory", kNoMemory, Persistence::Once, {}},
    {"no memory on", kNoMemory, Persistence::FromThenOn, {}},
    {"EIO", EIO, Persistence::Once, kFiles},
    {"EIO on", EIO, Persistence::FromThenOn, kFiles},
    {"ENOSPC", ENOSPC, Persistence::Once, kWriting},
    {"ENOSPC on", ENOSPC, Persistence::FromThenOn, kWriting},
    {"EMFILE", EMFILE, Persistence::Once, kOpening},
    {"EMFILE on", EMFILE, Persistence::FromThenOn, kOpening},
    {"ENOMEM", ENOMEM, Persistence::Once, kLimited},
    {"ENOMEM on", ENOMEM, Persistence::FromThenOn, kLimited},
    {"EACCES", EACCES, Persistence::Once, kOpening},
    {"EPERM", EPERM, Persistence::Once, kRefused},
    {"EPERM on", EPERM, Persistence::FromThenOn, kRefused},
    {"ENOSYS on", ENOSYS, Persistence::FromThenOn, kRefused},
    {"EPERM, another way", EPERM, Persistence::FromThenOn, kReplaceable, /*hasAnotherWay=*/true},
    {"EINVAL, another way", EINVAL, Persistence::FromThenOn, kReplaceable, /*hasAnotherWay=*/true},
    {"ENOSYS, another way", ENOSYS, Persistence::FromThenOn, kReplaceable, /*hasAnotherWay=*/true},
    {"EXDEV, another way", EXDEV, Persistence::FromThenOn, kCopying, /*hasAnotherWay=*/true},
    {"EINTR, another way", EINTR, Persistence::Once, kCopying, /*hasAnotherWay=*/true},
    {"EINTR", EINTR, Persistence::Once, kSlow},
    {"short", 0, Persistence::Once, kReading},
    {"short on", 0, Persistence::FromThenOn, kReading},
}};

void Arm(const Fault& fault, std::size_t point) {
    plan.fault = &fault;
    plan.point = point;
    plan.counts = {};
    plan.isArmed = true;
    selector = 1;
}

Counts Disarm() {
    selector = 0;
    plan.isArmed = false;
    return plan.counts;
}

std::ptrdiff_t LivingBlocks() { return plan.living; }

}  // namespace faults

// --- The C library's own, with a look at the plan before. Visible to all that is loaded.

#pragma GCC visibility push(default)
extern "C" {
void* malloc(std::size_t byteCount) noexcept {
    return faults::Allocated([=] { return __libc_malloc(byteCount); });
}
void* calloc(std::size_t count, std::size_t byteCount) noexcept {
    return faults::Allocated([=] { return __libc_calloc(count, byteCount); });
}
void* realloc(void* memory, std::size_t byteCount) noexcept {
    void* const moved = faults::Allocated([=] { return __libc_realloc(memory, byteCount); });
    faults::plan.living -= memory != nullptr && (moved != nullptr || byteCount == 0) ? 1 : 0;
    return moved;
}
void free(void* memory) noexcept {
    faults::plan.living -= memory != nullptr ? 1 : 0;
    __libc_free(memory);
}
}
#pragma GCC visibility pop
