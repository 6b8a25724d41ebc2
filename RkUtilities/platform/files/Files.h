#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

/// Open files: read, write, seek, cut.
/// - Paths are native bytes (UTF-8 where they are text); a relative path starts at the current folder. "" and a path
///   with a zero byte name nothing (ENOENT).
/// - Failures are error codes of `std::generic_category()` with the system's number; interrupted calls go on. Results
///   beside an error code have no meaning when it is set.
/// - Descriptors are closed on `exec`. Everything is safe from any thread.
namespace rk::platform {

enum class Access { Read, ReadWrite };
enum class WhenMissing { Fail, Create };
enum class Content { Keep, Drop };
/// Advisory: `DenyWrite` takes a lock, shared for reading, exclusive for writing, or fails at once (EWOULDBLOCK).
enum class Sharing { Free, DenyWrite };

struct Opening {
    Access access = Access::Read;
    WhenMissing whenMissing = WhenMissing::Fail;
    Sharing sharing = Sharing::Free;
    Content content = Content::Keep;  ///< dropped once the file is locked; a device keeps it
};

/// Opens an ordinary file or device; EISDIR for a folder, ENXIO for a pipe or socket. Returns the descriptor.
int OpenFile(const std::string& path, const Opening& opening, std::error_code& error);
/// Closes; the descriptor is gone even after a failure. EINTR is no failure.
[[nodiscard]] std::error_code CloseFile(int descriptor);
/// Reads until `byteCount` bytes are there or the file ends.
std::size_t ReadFile(int descriptor, void* buffer, std::size_t byteCount, std::error_code& error);
/// The content of an ordinary file; "" for a device, and with `error` set.
std::string ContentOfFile(const std::string& path, std::error_code& error);
/// Writes all bytes; a part of them may be written after a failure.
[[nodiscard]] std::error_code WriteFile(int descriptor, std::string_view bytes);

enum class SeekFrom { Start, Position, End };
/// Moves the position and returns it: bytes from the start.
std::int64_t SeekFile(int descriptor, std::int64_t offset, SeekFrom from, std::error_code& error);
std::int64_t LengthOfFile(int descriptor, std::error_code& error);
/// Cuts the file, or lengthens it with zero bytes. The position stays.
[[nodiscard]] std::error_code SetLengthOfFile(int descriptor, std::int64_t byteCount);

}  // namespace rk::platform
