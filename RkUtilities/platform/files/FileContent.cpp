#include "RkUtilities/platform/files/FileContent.h"

#include "RkUtilities/platform/files/FileCalls.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <unistd.h>

namespace rk::platform {
namespace {

constexpr std::int64_t kToTheEnd = std::numeric_limits<std::int64_t>::max();
constexpr std::size_t kBufferBytes = 65536;

struct Range {
    off_t start;
    off_t end;
};

std::error_code WriteAt(int to, const char* bytes, std::size_t byteCount, off_t position) {
    while (byteCount > 0) {
        const ssize_t count = Uninterrupted([&] { return pwrite(to, bytes, byteCount, position); });
        if (count <= 0)
            return count < 0 ? LastError() : ErrorOf(EIO);
        bytes += count;
        byteCount -= static_cast<std::size_t>(count);
        position += count;
    }
    return {};
}

std::error_code CopyThroughBuffer(int from, int to, Range range) {
    const auto buffer = std::make_unique_for_overwrite<char[]>(kBufferBytes);
    while (range.start < range.end) {
        const auto wanted = static_cast<std::size_t>(std::min<off_t>(range.end - range.start, kBufferBytes));
        const ssize_t count = Uninterrupted([&] { return pread(from, buffer.get(), wanted, range.start); });
        if (count <= 0)
            return count < 0 ? LastError() : std::error_code();
        if (const std::error_code error = WriteAt(to, buffer.get(), static_cast<std::size_t>(count), range.start))
            return error;
        range.start += count;
    }
    return {};
}

bool IsFailureOfTheDisk(int errorNumber) noexcept {
    return errorNumber == ENOSPC || errorNumber == EDQUOT || errorNumber == EFBIG || errorNumber == EIO;
}

std::error_code CopyRange(int from, int to, Range range) {
    while (range.start < range.end) {
        off_t source = range.start;
        off_t target = range.start;
        const auto wanted = static_cast<std::size_t>(range.end - range.start);
        const ssize_t count = Uninterrupted([&] { return copy_file_range(from, &source, to, &target, wanted, 0); });
        if (count < 0 && IsFailureOfTheDisk(errno))
            return LastError();
        // Between some file systems the kernel does not copy, and of some files it says too early that they end.
        if (count <= 0)
            return CopyThroughBuffer(from, to, range);
        range.start += count;
    }
    return {};
}

std::error_code CopyDataBetweenHoles(int from, int to, off_t length) {
    off_t position = 0;
    while (position < length) {
        const off_t data = lseek(from, position, SEEK_DATA);
        if (data < 0 && errno == ENXIO)
            break;  // only a hole is left
        const off_t hole = data < 0 ? -1 : lseek(from, data, SEEK_HOLE);
        if (hole < 0)
            return CopyRange(from, to, {position, length});  // this file system does not tell
        if (const std::error_code error = CopyRange(from, to, {data, std::min(hole, length)}))
            return error;
        position = hole;
    }
    return Outcome(ftruncate(to, length));
}

}  // namespace

std::error_code CopyContent(int from, int to, const ContentExtent& extent) {
    if (extent.byteCount == 0)
        return CopyThroughBuffer(from, to, {0, kToTheEnd});
    return extent.hasHoles ? CopyDataBetweenHoles(from, to, extent.byteCount)
                           : CopyRange(from, to, {0, extent.byteCount});
}

}  // namespace rk::platform
