#pragma once

#include "RkUtilities/platform/files/FileCalls.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

namespace rk::platform {

/// A file that several processes append to, one at a time.
///
/// While an object is open it holds a lock on the file that keeps the other objects away, of this process and of
/// others: `Open` waits for it, `Close` lets go. The lock binds only those who ask for it, readers are never kept
/// out, and it has nothing to do with the lock of `Sharing::DenyWrite`. On a file system without such locks an append
/// is still one write at the file's end.
///
/// Paths are native bytes, errors the system's numbers in `std::generic_category()`; interrupted calls go on, the
/// descriptor is closed on `exec`. An object is used by one thread at a time.
class AppendFile {
public:
    /// Opens the file for reading and writing, making it when it is missing, and waits until it is ours alone.
    ///
    /// Who held the lock before may have moved the file away or removed it meanwhile: then the one that now has the
    /// name is taken. One that is exactly as long as we left it, `leftByteCount` (0 when we did not), is taken as not
    /// moved: nobody has written to it since, and who moves files writes before. Of the others a removed one is always
    /// noticed, one of more than `fullAboveByteCount` bytes is looked up in its folder, and a shorter one is taken as not
    /// moved.
    [[nodiscard]] std::error_code Open(const std::string& path, std::uint64_t fullAboveByteCount,
                                       std::uint64_t leftByteCount);

    /// Whether the file has the length with which we left it. May be false for one that has when another had it locked,
    /// or when it has more than `fullAboveByteCount` bytes. An entry that another appended in the instant before we had
    /// the lock may have been missed; it is kept all the same.
    [[nodiscard]] bool IsAsLeft() const noexcept { return m_isAsLeft; }
    /// The length as of `Open` and our own appends and cuts since.
    [[nodiscard]] std::uint64_t ByteCount() const noexcept { return m_byteCount; }

    /// Whether the file of this path is the open one.
    [[nodiscard]] bool StandsAt(const std::string& path) const;

    /// Reads what there is from `offset` on, up to `byteCount` bytes; returns how many.
    std::size_t ReadAt(std::uint64_t offset, char* buffer, std::size_t byteCount, std::error_code& error) const;

    /// Appends all bytes or none: after a failure (a full disk, a limit on file sizes) the file is cut back to what
    /// it was. The signal SIGXFSZ is not let through; only a limit that was set within the last second, at or below
    /// the length that the file has already, may not have been seen yet.
    [[nodiscard]] std::error_code Append(std::string_view bytes);

    /// Drops everything behind the first `byteCount` bytes.
    [[nodiscard]] std::error_code CutTo(std::uint64_t byteCount);

    /// Closes the file; it is closed after a failure too.
    [[nodiscard]] std::error_code Close();

private:
    // False leaves the reason in errno.
    [[nodiscard]] bool OpenUnlocked(const std::string& path);
    [[nodiscard]] bool AppendAll(std::string_view bytes, std::size_t& writtenCount) const;
    void TakeBack(std::size_t writtenCount) const;

    FileHandle m_file;
    bool m_isAsLeft = false;
    std::uint64_t m_byteCount = 0;
};

}  // namespace rk::platform
