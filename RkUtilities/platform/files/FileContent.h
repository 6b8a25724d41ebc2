#pragma once

#include <cstdint>
#include <system_error>

namespace rk::platform {

/// How much of a file there is: its length in bytes, and whether parts of it are holes.
struct ContentExtent {
    std::int64_t byteCount = 0;
    bool hasHoles = false;
};

/// Copies a file's content from its start into an empty file, inside the kernel where that can do it; holes stay holes.
/// `extent` is the source's at the call: bytes that are appended meanwhile are left out, so that the copy of a growing
/// file ends. A file of length 0, which the kernel may have made up, is read to its end. The caller holds a
/// `FileSizeSignalGuard`.
std::error_code CopyContent(int from, int to, const ContentExtent& extent);

}  // namespace rk::platform
