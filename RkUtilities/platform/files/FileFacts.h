#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <system_error>

/// What stands at a path, and changing that. The rules of Files.h hold.
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

struct FileFacts {
    FileKind kind = FileKind::Unknown;  ///< `Link` only when links were not followed or the link leads nowhere
    bool ownerMayWrite = false;         ///< the owner's permission bit, also for other users
    std::int64_t size = 0;              ///< bytes
    FileTime created;                   ///< birth where the file system knows it, else the oldest of the file's times
    FileTime modified;
    FileTime accessed;
};

enum class Links { Follow, DoNotFollow };
class FileHandle;
struct Place;

FileKind KindOfMode(unsigned mode) noexcept;

/// The facts of what stands at a path. A link that leads nowhere is described itself, also with `Links::Follow`.
std::optional<FileFacts> Inspect(const std::string& path, Links links = Links::Follow);

/// The kind alone, links followed as above. No kind with `error` clear: nothing is there. No kind with `error` set:
/// looking failed, so something may be there.
std::optional<FileKind> KindOf(const std::string& path, std::error_code& error);
/// The same where a failure means that nothing is there.
std::optional<FileKind> KindOf(const std::string& path);

/// The absolute path, links resolved, of a file, folder, pipe or device that can be opened for reading at `path`. Never
/// waits for a pipe's other end, and reads nothing. nullopt where nothing can be opened (a socket), and for a file that
/// was deleted or renamed meanwhile.
std::optional<std::string> CanonicalPathOfReadable(const std::string& path);

/// True when the folder that holds the path's last element exists.
bool HasExistingFolder(const std::string& path);

/// The new state of a file; a field that is not given stays as it is.
struct FileChanges {
    std::optional<bool> ownerMayWrite;
    std::optional<FileTime> modified;
    std::optional<FileTime> accessed;
};

// The calls below look at a file and change it through one descriptor, so that a file that is moved to the path
// meanwhile is never changed. They need /proc.

/// Changes what stands at a path, links followed, as `changesFor` says of its facts.
[[nodiscard]] std::error_code Change(const std::string& path,
                                     const std::function<FileChanges(const FileFacts& present)>& changesFor);

/// Holds what stands at a place, whatever is moved there later. Needs no permission and has no effect.
FileHandle Held(Place place, Links links) noexcept;

enum class OwnerWrite { Allow, Deny };
/// Gives or takes the owner's permission to write. Other permissions, times and content stay, and so does a link with
/// what it leads to.
/// @return true when this call changed it. False with `error` set: the change failed. False with `error` clear: the
/// permission was as wanted, the path leads to nothing or is a link, or the file system ignored the change.
bool ChangeOwnerWrite(const std::string& path, OwnerWrite wanted, std::error_code& error);
bool ChangeOwnerWrite(const FileHandle& held, OwnerWrite wanted, std::error_code& error);

}  // namespace rk::platform
