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
/// `extent` is the source's at the call: what is appended meanwhile is left out, so that the copy ends even of a file
/// that grows all the time; less is copied of one that shrinks. A length of 0 may be a lie (files made up by the
/// kernel) and is read to the end. The caller holds a `FileSizeSignalGuard`.
std::error_code CopyContent(int from, int to, const ContentExtent& extent);

}  // namespace rk::platform
