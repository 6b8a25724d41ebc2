#pragma once

#include "RkUtilities/platform/files/FileCalls.h"
#include "RkUtilities/platform/process/Patience.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace rk::platform {

/// A file that several processes append to, one at a time. An open object holds a lock on the file, which keeps the
/// objects of this and of other processes away, but no reader; it is not the lock of `Sharing::DenyWrite`. Any process
/// that may read the file can hold the lock, so `Open` waits for it only as long as the caller has patience. Without
/// the lock an append is still a single write at the file's end. Paths are native bytes, errors the system's numbers in
/// `std::generic_category()`; interrupted calls go on, the descriptor is closed on `exec`. An object is used by one
/// thread at a time.
class AppendFile {
public:
    /// What a writer remembers of the file that it has appended to. A writer remembers only an ordinary file, in a
    /// folder that no other user may write to, in a process without a limit on file sizes.
    struct Left {
        std::string path;
        std::uint64_t byteCount = 0;
    };

    /// Opens the file for reading and writing, and makes it when it is missing, for its owner only. A file that was
    /// moved away during the wait for the lock is closed, and the file that has the name by then is opened. This is
    /// looked at for files of more than `fullAboveByteCount` bytes: a shorter file is not moved. A file with the length
    /// that `left` tells is taken as the file that was left. Any other file is examined: in a folder that other users
    /// may write to, a link (ELOOP), a pipe or device, a file with a second name and a file of another user (EPERM) are
    /// refused.
    [[nodiscard]] std::error_code Open(const std::string& path, std::uint64_t fullAboveByteCount,
                                       const std::optional<Left>& left, Patience& patience);

    /// Whether this object has the lock, or the file system has no locks.
    [[nodiscard]] bool IsLocked() const noexcept { return m_isLocked; }
    [[nodiscard]] bool IsAsLeft() const noexcept { return m_isAsLeft; }  ///< Whether the file is as it was left.
    /// The length as of `Open` and our own appends and cuts since.
    [[nodiscard]] std::uint64_t ByteCount() const noexcept { return m_byteCount; }
    /// Stores what is to be remembered of the file.
    void Remember(std::string&& path, std::optional<Left>& left) const noexcept;

    [[nodiscard]] bool StandsAt(const std::string& path) const;  ///< Whether the path leads to the open file.

    /// Reads from `offset` on, up to `byteCount` bytes; returns the number of bytes that were there.
    std::size_t ReadAt(std::uint64_t offset, char* buffer, std::size_t byteCount, std::error_code& error) const;

    /// Appends all bytes or no byte: after a failure (a full disk, a limit on file sizes) the written bytes are cut
    /// off, unless another process has appended behind them without the lock. The signal SIGXFSZ is held back. Only
    /// a limit at or below the length of a file that is as it was left, set since the last append, is seen too late.
    [[nodiscard]] std::error_code Append(std::string_view bytes);

    /// Drops everything behind the first `byteCount` bytes.
    [[nodiscard]] std::error_code CutTo(std::uint64_t byteCount);

    [[nodiscard]] std::error_code Close();  ///< Closes the file; it is closed after a failure too.

private:
    [[nodiscard]] std::error_code OpenUnlocked(const std::string& path);
    void Lock(Patience& patience);
    [[nodiscard]] std::error_code Examine(const std::string& path);
    void TakeBack(std::size_t writtenCount) const;

    FileHandle m_file;
    bool m_isLocked = false;
    bool m_isAsLeft = false;
    bool m_isShared = false;  // others may put another file in its place
    std::uint64_t m_byteCount = 0;
    std::optional<FileSizeSignalGuard> m_sizeGuard;
};

}  // namespace rk::platform
