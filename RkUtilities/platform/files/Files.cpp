#include "RkUtilities/platform/files/Files.h"

#include "RkUtilities/platform/files/FileCalls.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rk::platform {
namespace {

/// Refuses folders, pipes and sockets, and undoes for devices what kept the opening from waiting.
std::error_code Accept(int descriptor, int openFlags) {
    struct stat status{};
    if (fstat(descriptor, &status) != 0)
        return LastError();
    if (S_ISREG(status.st_mode))
        return {};
    if (S_ISDIR(status.st_mode))
        return ErrorOf(EISDIR);
    if (S_ISCHR(status.st_mode) || S_ISBLK(status.st_mode))
        return Outcome(fcntl(descriptor, F_SETFL, openFlags & ~O_NONBLOCK));
    return ErrorOf(ENXIO);
}

bool IsDevice(int descriptor) {
    struct stat status{};
    return fstat(descriptor, &status) == 0 && !S_ISREG(status.st_mode);
}

std::error_code LockFile(int descriptor, Access access) {
    const int operation = (access == Access::Read ? LOCK_SH : LOCK_EX) | LOCK_NB;
    if (Uninterrupted([&] { return flock(descriptor, operation); }) == 0 || errno != EWOULDBLOCK)
        return {};  // without locks on this file system any opener may have the file
    return LastError();
}

}  // namespace

int OpenFile(const std::string& path, const Opening& opening, std::error_code& error) {
    // A pipe would make the opening wait for its other end, were it not for O_NONBLOCK.
    const int flags = (opening.access == Access::Read ? O_RDONLY : O_RDWR) | O_NONBLOCK |
                      (opening.whenMissing == WhenMissing::Create ? O_CREAT : 0);
    FileHandle file = OpenAt(PlaceOf(path), flags, 0666);
    error = file ? Accept(file.Descriptor(), flags) : LastError();
    if (!error && opening.sharing == Sharing::DenyWrite)
        error = LockFile(file.Descriptor(), opening.access);
    // Not with O_TRUNC: a file that another opener has locked keeps its content.
    if (!error && opening.content == Content::Drop && ftruncate(file.Descriptor(), 0) != 0 &&
        !IsDevice(file.Descriptor()))
        error = LastError();
    return error ? -1 : file.Release();
}

std::error_code CloseFile(int descriptor) { return FileHandle(descriptor).Close(); }

std::size_t ReadFile(int descriptor, void* buffer, std::size_t byteCount, std::error_code& error) {
    error.clear();
    std::size_t done = 0;
    while (done < byteCount) {
        const ssize_t count =
            Uninterrupted([&] { return read(descriptor, static_cast<char*>(buffer) + done, byteCount - done); });
        if (count < 0)
            error = LastError();
        if (count <= 0)
            break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

std::string ContentOfFile(const std::string& path, std::error_code& error) {
    std::string content;
    const FileHandle file(OpenFile(path, {}, error));
    if (!error)
        content.resize(static_cast<std::size_t>(LengthOfFile(file.Descriptor(), error)));
    if (!error)
        content.resize(ReadFile(file.Descriptor(), content.data(), content.size(), error));
    return error ? std::string() : content;
}

std::error_code WriteFile(int descriptor, std::string_view bytes) {
    const FileSizeSignalGuard guard;
    while (!bytes.empty()) {
        const ssize_t count = Uninterrupted([&] { return write(descriptor, bytes.data(), bytes.size()); });
        if (count <= 0)
            return count < 0 ? LastError() : ErrorOf(EIO);
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return {};
}

std::int64_t SeekFile(int descriptor, std::int64_t offset, SeekFrom from, std::error_code& error) {
    constexpr int kWhence[] = {SEEK_SET, SEEK_CUR, SEEK_END};
    const off_t position = lseek(descriptor, offset, kWhence[static_cast<int>(from)]);
    error = position < 0 ? LastError() : std::error_code();
    return position;
}

std::int64_t LengthOfFile(int descriptor, std::error_code& error) {
    struct stat status{};
    error = Outcome(fstat(descriptor, &status));
    return status.st_size;
}

std::error_code SetLengthOfFile(int descriptor, std::int64_t byteCount) {
    const FileSizeSignalGuard guard;
    return Outcome(Uninterrupted([&] { return ftruncate(descriptor, byteCount); }));
}

}  // namespace rk::platform
