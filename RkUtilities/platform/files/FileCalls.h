#pragma once

#include <cerrno>
#include <csignal>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <utility>

/// What the sources of this room share around system calls.
namespace rk::platform {

/// The path for a system call. A path with a zero byte would be cut there, so it becomes "", which every call refuses
/// (ENOENT).
inline const char* SystemPath(const std::string& path) noexcept {
    return path.find('\0') == std::string::npos ? path.c_str() : "";
}

inline std::error_code ErrorOf(int errorNumber) noexcept { return {errorNumber, std::generic_category()}; }
inline std::error_code LastError() noexcept { return ErrorOf(errno); }
/// The outcome of a call that returns 0 or -1.
inline std::error_code Outcome(int result) noexcept { return result == 0 ? std::error_code() : LastError(); }

/// Takes the steps in order up to the first that fails; returns its failure: an error code, or a number other than 0.
template <class Step, class... Steps> auto FirstFailure(const Step& first, const Steps&... others) {
    auto failure = first();
    static_cast<void>((static_cast<bool>(failure) || ... || static_cast<bool>((failure = others()))));
    return failure;
}

/// Makes a system call again for as long as signals interrupt it.
template <class Call> auto Uninterrupted(Call call) {
    for (;;) {
        const auto result = call();
        if (result != -1 || errno != EINTR)
            return result;
    }
}

/// A name as system calls take it: relative to an open folder, or a path when that is AT_FDCWD.
struct Place {
    int folder;
    const char* name;
};
/// The place of a path, which must outlive it.
Place PlaceOf(const std::string& path) noexcept;

/// The device and the number by which a file is told from every other.
using FileIdentity = std::pair<dev_t, ino_t>;
inline FileIdentity IdentityOf(const struct stat& status) noexcept { return {status.st_dev, status.st_ino}; }
/// The identity of an open file; nullopt with `errno` when it cannot be told.
std::optional<FileIdentity> IdentityOf(int descriptor) noexcept;
/// The identity of what a path leads to; nullopt with `errno` where it leads nowhere.
std::optional<FileIdentity> IdentityAt(const std::string& path) noexcept;

/// Owns a descriptor.
class FileHandle {
public:
    FileHandle() noexcept = default;
    explicit FileHandle(int descriptor) noexcept : m_descriptor(descriptor) {}
    ~FileHandle() {
        if (m_descriptor >= 0)
            Close();
    }
    FileHandle(FileHandle&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    FileHandle& operator=(FileHandle&& other) noexcept {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }
    explicit operator bool() const noexcept { return m_descriptor >= 0; }
    [[nodiscard]] int Descriptor() const noexcept { return m_descriptor; }
    /// A path that leads to the file, wherever its name is by now. Needs /proc.
    [[nodiscard]] std::string Path() const { return "/proc/self/fd/" + std::to_string(m_descriptor); }
    [[nodiscard]] int Release() noexcept { return std::exchange(m_descriptor, -1); }
    std::error_code Close() noexcept;

private:
    int m_descriptor = -1;
};

/// Makes a write beyond the process's limit on file sizes fail (EFBIG) instead of ending the process: while it lives,
/// the signal that the limit sends to the writing thread is held back and then taken away. Costs a cheap call where
/// there is no limit.
class FileSizeSignalGuard {
public:
    FileSizeSignalGuard() noexcept;
    ~FileSizeSignalGuard();
    FileSizeSignalGuard& operator=(FileSizeSignalGuard&&) = delete;

    [[nodiscard]] bool FoundLimit() const noexcept { return m_foundLimit; }

private:
    bool m_foundLimit = false;
    bool m_holding = false;
    sigset_t m_previousMask{};
};

/// Opens what stands at a place; the descriptor is closed on `exec`. No handle, and `errno`, after a failure.
FileHandle OpenAt(Place place, int flags, mode_t permissions = 0) noexcept;

/// The path that a link holds.
std::error_code LinkTarget(Place link, std::string& target);

/// A path without its closing slashes: with them a link would be followed.
std::string WithoutClosingSlashes(const std::string& path);
/// The part of a path up to the last slash before its last element; "" for a path without a slash there.
std::string FolderPart(const std::string& path);
/// The folder that holds a path's last element: `FolderPart`, or "." where that is "".
std::string FolderHolding(const std::string& path);

}  // namespace rk::platform
