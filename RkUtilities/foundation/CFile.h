#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/CFileException.h"
#include "RkUtilities/foundation/CFileStatus.h"
#include "RkUtilities/foundation/CString.h"

#include <cstddef>
#include <span>
#include <string>
#include <system_error>

namespace rk::platform {
class NewFile;
}

/// An open file, and what can be done to a file by its path.
///
/// - Paths are native paths in UTF-16, absolute or relative to the current folder; a leading "~/" is the home folder. A
///   text with U+0000 names no file: it counts as not found.
/// - Positions and lengths are bytes from 0, of 64 bits.
/// - Failures of `Open` come back as false, those of all other members are thrown as a `CFileException*`, which the
///   catcher disposes of with `Delete()`. Exhausted memory throws `std::bad_alloc`.
/// - A call that a signal interrupts goes on. A descriptor is never handed to programs that the process starts.
/// - Links are followed, except by `Remove` and `Rename`, which act on the link itself.
/// - Saving safely is `OpenNew`, `Write` and `CommitOver`, or `ReplaceFile` for a file that was written elsewhere. An
///   application that writes over an existing document may lose both versions to a full disk or a power cut.
/// - An object is used by one thread at a time; the static members are safe from any thread.
class RK_EXPORT CFile {
public:
    /// Flags of `Open`: `modeRead` or `modeReadWrite`; at most one flag for sharing, else `shareDenyNone` holds; and
    /// the last two if wanted.
    enum OpenFlags : unsigned int {
        modeRead = 0x0000,
        modeReadWrite = 0x0002,
        /// Others may read but not write. Linux keeps no program away by force, so this is an agreement among the
        /// openers that ask for it (an advisory lock, `flock`): any number of openers may read a file, or a single
        /// opener may read and write it; another opener that asks is refused at once with `sharingViolation`. On a file
        /// system without such locks it has no effect.
        shareDenyWrite = 0x0020,
        shareDenyNone = 0x0040,  ///< No restriction.
        /// Makes the file when it is missing (readable and writable for whom the process's umask allows). Careful: **an
        /// existing file keeps its content**, unlike in other libraries. A shorter text leaves the end of the old text
        /// behind it, unless `modeTruncate` or `SetLength` cuts that.
        modeCreate = 0x1000,
        /// Drops the content of an existing file once no `shareDenyWrite` refuses it. Only with `modeReadWrite`.
        modeTruncate = 0x0100,
    };

    CFile() noexcept;  ///< A closed file.
    /// Opens a file as `Open` does; a failure is thrown as a `CFileException*`.
    CFile(const CString& path, unsigned int flags);
    /// Closes an open file. A failure to write back what was written goes unnoticed here: call `Close` to learn of it.
    ~CFile();
    CFile(CFile&& other) noexcept;             ///< Takes the open file over; `other` is closed.
    CFile& operator=(CFile&& other) noexcept;  ///< Closes this file and takes the other file over.

    // --- An open file

    /// Opens an ordinary file or a device at position 0; a file that this object has open is closed first.
    /// Folders (`accessDenied`), pipes and sockets (`invalidFile`) are refused, without waiting for a pipe's other
    /// end. Flags beyond those above are refused too (`genericException`, EINVAL).
    /// @param[out] error  may be null; on failure cause, error number and path, untouched on success.
    bool Open(const CString& path, unsigned int flags, CFileException* error = nullptr);

    /// Opens a new, empty file for reading and writing that has no name before `CommitAs` or `CommitOver`. It lies on
    /// the file system of the folder in which `path` will stand. Closed without a commit, or by a kill of the process,
    /// it is gone. On a file system that knows only files with names (FAT, some network file systems), and after a
    /// failed `CommitOver`, a killed process leaves a hidden folder ".rk-new-0", "-1" ..., which the next commit or
    /// copy in that folder removes. Results and `error` as with `Open`.
    bool OpenNew(const CString& path, CFileException* error = nullptr);
    /// Gives the file of `OpenNew` (another: `invalidFile`) its name and closes it. A name that is taken fails with
    /// `accessDenied` (EEXIST) and is never replaced; the file stays open then, to be given another name. The content
    /// is on the disk before the name is, and the name before this returns: after a power cut there is the whole file
    /// or no file. A failure of the disk after the naming is thrown too.
    void CommitAs(const CString& path) { Commit(path, /*isReplacing=*/false); }
    /// The same, in the place of the file that has the name: other programs and a power cut see the whole old file or
    /// the whole new file, which takes over the old permissions. A link is followed; a link that leads nowhere fails
    /// with `fileNotFound`. A read-only file is replaced too, since the folder's permission decides.
    void CommitOver(const CString& path) { Commit(path, /*isReplacing=*/true); }

    [[nodiscard]] bool IsOpen() const noexcept { return m_hFile >= 0; }  ///< Whether a file is open.

    /// Reads up to `byteCount` bytes at the position and returns their number: fewer only where the file ends.
    unsigned int Read(void* buffer, unsigned int byteCount);
    /// Writes all bytes at the position. After a failure a part of them may stand in the file.
    void Write(const void* bytes, unsigned int byteCount);
    /// Fills the bytes from the position on; returns the part that was filled, shorter only where the file ends.
    std::span<std::byte> Read(std::span<std::byte> bytes);
    void Write(std::span<const std::byte> bytes);  ///< Writes all bytes at the position, as the other `Write`.
    /// All bytes from the position to the end of the file, also of a file that does not know its length.
    [[nodiscard]] std::string ReadAll();
    /// Writes the text at the position in UTF-8, without a byte-order mark; a lone surrogate becomes U+FFFD. As
    /// `Write`.
    void WriteString(const CString& text);

    /// Moves the position; `from` is 0 for the start, 1 for the position, 2 for the end. A position past the end is
    /// legal, a position before the start and another `from` fail with `badSeek`. Returns the new position.
    unsigned long long Seek(long long offset, unsigned int from);
    unsigned long long SeekToEnd() { return Seek(0, 2); }  ///< Moves the position to the end; returns the length.
    [[nodiscard]] unsigned long long GetPosition() const;  ///< The position in bytes from the start.
    [[nodiscard]] unsigned long long GetLength() const;    ///< The length in bytes.
    /// Cuts the file to a length in bytes, or lengthens it with zero bytes. The position stays.
    void SetLength(unsigned long long byteCount);

    /// Fails for a closed file, and does nothing else: what `Write` has written is with the system already, where every
    /// program sees it. Does not wait until the bytes would survive a power cut.
    void Flush();
    /// Closes an open file, which is closed after a failure too (a full disk that a network file system notices late).
    void Close();

    // --- By path

    /// Reads what is known of the file or folder; true when it could be read, else `status` is untouched.
    /// A link that leads nowhere is described itself. Never throws a `CFileException`.
    static bool GetStatus(const CString& path, CFileStatus& status);

    /// Writes what may be changed of a status: the read-only bit and the times of the last change and access.
    /// - Read-only is the owner's write permission; the other permissions stay. The other bits are not looked at.
    /// - A file that is moved to the path between looking and changing is not touched.
    /// - A time that equals the file's as `CTime` tells times apart, or the null time, leaves the file's time
    ///   alone, to the nanosecond: a status just read and written back moves no time.
    /// - The time a file was made, its size and its name are not looked at.
    static void SetStatus(const CString& path, const CFileStatus& status);

    /// Removes a file or a link (never what it leads to); a folder fails with `accessDenied`.
    static void Remove(const CString& path);

    /// Gives a file, folder or link another name. A name that is taken, also meanwhile, fails with `accessDenied`
    /// (EEXIST); a file system that cannot promise this is asked just before. Across file systems it is copied, written
    /// to the disk, given its name and then removed at the old place. A failure before the removal, also for lack of
    /// memory, leaves the old tree whole and no new tree; a failure of the removal leaves a complete new tree.
    static void Rename(const CString& oldPath, const CString& newPath);

    /// Puts a complete file in the place of another, or of nothing, as `CommitOver` does: whole, durable, with the old
    /// permissions, links of `target` followed. `temporary` is gone afterwards, unless both are one file. Both have to
    /// be on one file system (else `genericException`, EXDEV), so write the temporary file beside the target. A
    /// `temporary` that is no ordinary file is refused (`genericException`, EINVAL; a link: `badPath`, ELOOP), so is a
    /// folder as `target` (`accessDenied`). After a failure the target is the whole old file, unless the disk failed
    /// after the replacing.
    static void ReplaceFile(const CString& temporary, const CString& target);

private:
    bool Opened(const CString& path, const std::string& nativePath, const std::error_code& failure,
                CFileException* error);
    void Commit(const CString& path, bool isReplacing);

    int m_hFile = -1;
    rk::platform::NewFile* m_new = nullptr;  // owned; of OpenNew, and it owns the descriptor then
    CString m_path;                          // as given to Open: failures name it
};
