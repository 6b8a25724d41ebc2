#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

/// Single files: open, read, write, look at, rename, remove.
///
/// - Paths are native bytes (UTF-8 where they are text), relative ones relative to the current folder. "" and a path
///   with a zero byte name nothing (ENOENT).
/// - Failures are error codes of `std::generic_category()` with the system's number; interrupted calls go on. Results
///   beside an error code have no meaning when it is set.
/// - Descriptors are closed on `exec`. Everything is safe from any thread.
namespace rk::platform {

/// A point in time as file systems keep it: seconds since 1970-01-01 00:00 UTC and 0 to 999,999,999 nanoseconds.
struct FileTime {
    std::int64_t unixSeconds = 0;
    std::int32_t nanoseconds = 0;
    friend auto operator<=>(const FileTime&, const FileTime&) = default;
};

enum class FileKind : unsigned char {
    File,
    Folder,
    Link,
    Other,    ///< a pipe, socket or device
    Unknown,  ///< a listing did not tell
};

/// What stands at a path.
struct FileFacts {
    FileKind kind = FileKind::Unknown;  ///< `Link` only when links were not followed or this one leads nowhere
    bool ownerMayWrite = false;         ///< the owner's permission bit, whoever asks
    std::int64_t size = 0;              ///< bytes
    FileTime created;                   ///< birth where the file system knows it, else the oldest of the others
    FileTime modified;
    FileTime accessed;
};

enum class Links { Follow, DoNotFollow };

/// The facts of what stands at a path. A link that leads nowhere is described itself, also with `Links::Follow`.
std::optional<FileFacts> Inspect(const std::string& path, Links links = Links::Follow);

/// The kind alone, links followed as above; none when nothing is there. Asks for nothing else.
std::optional<FileKind> KindOf(const std::string& path);

/// True when the folder that holds the path's last element exists.
bool HasExistingFolder(const std::string& path);

/// The new state of a file; what is not given stays.
struct FileChanges {
    std::optional<bool> ownerMayWrite;
    std::optional<FileTime> modified;
    std::optional<FileTime> accessed;
};
[[nodiscard]] std::error_code Change(const std::string& path, const FileChanges& changes);

// --- Open files ----------------------------------------------------------------------------------------------------

enum class Access { Read, ReadWrite };
enum class WhenMissing { Fail, Create };
/// Advisory: `DenyWrite` takes a shared lock for reading, an exclusive one for writing, and does not wait
/// (EWOULDBLOCK).
enum class Sharing { Free, DenyWrite };

/// Opens an ordinary file or device; EISDIR for a folder, ENXIO for a pipe or socket. Returns the descriptor.
int OpenFile(const std::string& path, Access access, WhenMissing whenMissing, Sharing sharing, std::error_code& error);
/// Closes; the descriptor is gone even after a failure. EINTR does not count as one.
[[nodiscard]] std::error_code CloseFile(int descriptor);
/// Reads until `byteCount` bytes are there or the file ends.
std::size_t ReadFile(int descriptor, void* buffer, std::size_t byteCount, std::error_code& error);
/// Writes all bytes; a part of them may be written after a failure.
[[nodiscard]] std::error_code WriteFile(int descriptor, std::string_view bytes);

enum class SeekFrom { Start, Position, End };
/// Moves the position and returns it: bytes from the start.
std::int64_t SeekFile(int descriptor, std::int64_t offset, SeekFrom from, std::error_code& error);
std::int64_t LengthOfFile(int descriptor, std::error_code& error);

// --- Names ---------------------------------------------------------------------------------------------------------

/// Makes one folder, readable, writable and searchable for whom the process's umask allows.
[[nodiscard]] std::error_code MakeFolder(const std::string& path);
/// Makes a folder and all missing ones above it. EEXIST when it is there already.
[[nodiscard]] std::error_code MakeFolders(const std::string& path);
/// Removes anything but a folder (EISDIR); a link itself.
[[nodiscard]] std::error_code RemoveFile(const std::string& path);
/// Gives a new name that is free (else EEXIST), within one file system (else EXDEV).
[[nodiscard]] std::error_code Rename(const std::string& from, const std::string& to);

}  // namespace rk::platform
