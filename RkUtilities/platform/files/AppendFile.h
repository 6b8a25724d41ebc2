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

/// A file that several processes append to, one at a time.
///
/// While an object is open it holds a lock on the file that keeps the other objects away, of this process and of others.
/// The lock binds only those who ask for it, readers are never kept out, and it has nothing to do with the lock of
/// `Sharing::DenyWrite`. Whoever may read the file can hold that lock too: `Open` waits for it only as long as the caller
/// has patience. Without the lock, as on a file system that has none, an append is still one write at the file's end.
///
/// Paths are native bytes, errors the system's numbers in `std::generic_category()`; interrupted calls go on, the
/// descriptor is closed on `exec`. An object is used by one thread at a time.
class AppendFile {
public:
    /// What a writer remembers of the file that it has appended to. Only of an ordinary file in a
    /// folder that nobody else may write to, in a process without a limit on file sizes.
    struct Left {
        std::string path;
        std::uint64_t byteCount = 0;
    };

    /// Opens the file for reading and writing, and makes it when it is missing, for its owner only.
    ///
    /// A file that others moved away while we waited for the lock is let go, and the one that now has the name is taken: a
    /// file is only looked up again when it has more than `fullAboveByteCount` bytes, below which it is not moved.
    ///
    /// A file of the length that we left is taken as the one that we left. Any other is examined: in a folder that others
    /// may write to, a link (ELOOP), a pipe or device, a file with a second name and a file of another user (EPERM) are
    /// refused.
    [[nodiscard]] std::error_code Open(const std::string& path, std::uint64_t fullAboveByteCount,
                                       const std::optional<Left>& left, Patience& patience);

    /// Whether we have the lock, or the file system has none.
    [[nodiscard]] bool IsLocked() const noexcept { return m_isLocked; }
    /// Whether the file is as we left it.
    [[nodiscard]] bool IsAsLeft() const noexcept { return m_isAsLeft; }
    /// The length as of `Open` and our own appends and cuts since.
    [[nodiscard]] std::uint64_t ByteCount() const noexcept { return m_byteCount; }
    /// What is to be remembered of the file.
    void Remember(std::string&& path, std::optional<Left>& left) const noexcept;

    /// Whether the file of this path is the open one.
    [[nodiscard]] bool StandsAt(const std::string& path) const;

    /// Reads what there is from `offset` on, up to `byteCount` bytes; returns how many.
    std::size_t ReadAt(std::uint64_t offset, char* buffer, std::size_t byteCount, std::error_code& error) const;

    /// Appends all bytes or none: after a failure (a full disk, a limit on file sizes) what was written is cut off, unless
    /// another has appended behind it without the lock. The signal SIGXFSZ is not let through; only a limit that is set
    /// between two appends to a file as we left it, at or below its length, is not seen in time.
    [[nodiscard]] std::error_code Append(std::string_view bytes);

    /// Drops everything behind the first `byteCount` bytes.
    [[nodiscard]] std::error_code CutTo(std::uint64_t byteCount);

    /// Closes the file; it is closed after a failure too.
    [[nodiscard]] std::error_code Close();

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
