#include "RkUtilities/platform/files/AppendFile.h"

#include <atomic>
#include <ctime>
#include <fcntl.h>
#include <limits>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace rk::platform {

namespace {

// A file that is moved away again and again just before we lock it is taken as it is in the end.
constexpr int kMostReopenings = 100;

// The lock belongs to the open file, not to the process, whose other descriptors would release it.
int Lock(int descriptor, int command, off_t start, off_t byteCount, short whence)
{
    struct flock region {};
    region.l_type = F_WRLCK;
    region.l_whence = whence;
    region.l_start = start;
    region.l_len = byteCount;
    return Uninterrupted([&] { return fcntl(descriptor, command, &region); });
}

// Where the file system has no locks we go on without.
void WaitForLock(int descriptor)
{
    constexpr off_t kToTheLastByte = 0;
    static_cast<void>(Lock(descriptor, F_OFD_SETLKW, 0, kToTheLastByte, SEEK_SET));
}

// Takes the lock when it is free and the file has this length, and compares both in one call: a region that begins at
// the file's end plus `kMost - byteCount` would overflow in a longer file (EOVERFLOW), and the bytes before it would
// reach below 0 in a shorter one (EINVAL, both by POSIX). In one of this length they are all bytes but the last that
// an offset can name. The length is looked at first: whoever holds the lock in between and lets go of it again, within
// that instant, is not noticed.
bool LockIfAsLong(int descriptor, std::uint64_t byteCount)
{
    constexpr auto kMost = std::numeric_limits<off_t>::max();
    return byteCount <= static_cast<std::uint64_t>(kMost) &&
           Lock(descriptor, F_OFD_SETLK, kMost - static_cast<off_t>(byteCount), -kMost, SEEK_END) == 0;
}

/// Holds back the signal of a limit on file sizes. A look at the limit is a system call, an eighth of what an entry of
/// a log takes, so when there is none, that holds for the rest of the second.
class LimitGuard {
public:
    LimitGuard()
    {
        timespec now{};
        clock_gettime(CLOCK_MONOTONIC_COARSE, &now);  // no system call
        if (secondWithoutLimit.load(std::memory_order_relaxed) != now.tv_sec && !Look().FoundLimit())
            secondWithoutLimit.store(now.tv_sec, std::memory_order_relaxed);
    }
    /// Looks now, if it has not yet.
    const FileSizeSignalGuard& Look() { return m_guard ? *m_guard : m_guard.emplace(); }

private:
    static constinit std::atomic<std::time_t> secondWithoutLimit;
    std::optional<FileSizeSignalGuard> m_guard;
};
constinit std::atomic<std::time_t> LimitGuard::secondWithoutLimit = -1;

}  // namespace

std::error_code AppendFile::Open(const std::string& path, std::uint64_t fullAboveByteCount, std::uint64_t leftByteCount)
{
    for (int reopenings = 0;; ++reopenings) {
        if (!OpenUnlocked(path))
            return LastError();
        const int descriptor = m_file.Descriptor();
        const bool mayBeAsLeft = leftByteCount > 0 && leftByteCount <= fullAboveByteCount;
        m_isAsLeft = mayBeAsLeft && LockIfAsLong(descriptor, leftByteCount);
        if (m_isAsLeft) {
            m_byteCount = leftByteCount;
            return {};
        }
        WaitForLock(descriptor);
        struct stat facts {};
        if (fstat(descriptor, &facts) != 0)
            return LastError();
        m_byteCount = static_cast<std::uint64_t>(facts.st_size);
        const bool mayBeGone = facts.st_nlink == 0 || m_byteCount > fullAboveByteCount;
        if (!mayBeGone || StandsAt(path) || reopenings == kMostReopenings)
            return {};
    }
}

bool AppendFile::OpenUnlocked(const std::string& path)
{
    m_file = FileHandle();  // closes a file that was moved away; nothing of ours was written to it
    // O_NONBLOCK: a pipe of that name must not stop the program when nobody reads it.
    constexpr int kFlags = O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    constexpr mode_t kForWhomTheUmaskAllows = 0666;
    m_file = FileHandle(Uninterrupted([&] { return open(SystemPath(path), kFlags, kForWhomTheUmaskAllows); }));
    return static_cast<bool>(m_file);
}

bool AppendFile::StandsAt(const std::string& path) const
{
    struct stat ours {};
    struct stat named {};
    return fstat(m_file.Descriptor(), &ours) == 0 && stat(SystemPath(path), &named) == 0 &&
           ours.st_dev == named.st_dev && ours.st_ino == named.st_ino;
}

std::size_t AppendFile::ReadAt(std::uint64_t offset, char* buffer, std::size_t byteCount, std::error_code& error) const
{
    std::size_t readCount = 0;
    error.clear();
    while (readCount < byteCount) {
        const auto at = static_cast<off_t>(offset + readCount);
        const ssize_t piece =
            Uninterrupted([&] { return pread(m_file.Descriptor(), buffer + readCount, byteCount - readCount, at); });
        if (piece < 0)
            error = LastError();
        if (piece <= 0)
            break;
        readCount += static_cast<std::size_t>(piece);
    }
    return readCount;
}

std::error_code AppendFile::Append(std::string_view bytes)
{
    std::size_t writtenCount = 0;
    if (!AppendAll(bytes, writtenCount)) {
        const std::error_code error = LastError();
        TakeBack(writtenCount);
        return error;
    }
    m_byteCount += writtenCount;
    return {};
}

bool AppendFile::AppendAll(std::string_view bytes, std::size_t& writtenCount) const
{
    LimitGuard guard;
    for (;;) {
        const std::string_view rest = bytes.substr(writtenCount);
        const ssize_t piece = Uninterrupted([&] { return write(m_file.Descriptor(), rest.data(), rest.size()); });
        if (piece < 0)
            return false;
        writtenCount += static_cast<std::size_t>(piece);
        if (writtenCount == bytes.size())
            return true;
        guard.Look();  // a limit cuts a write short first and sends the signal for the next one
    }
}

// Asks for the length: ours may lack what another appended just before we had the lock.
void AppendFile::TakeBack(std::size_t writtenCount) const
{
    struct stat facts {};
    if (writtenCount > 0 && fstat(m_file.Descriptor(), &facts) == 0)
        static_cast<void>(Uninterrupted(
            [&] { return ftruncate(m_file.Descriptor(), facts.st_size - static_cast<off_t>(writtenCount)); }));
}

std::error_code AppendFile::CutTo(std::uint64_t byteCount)
{
    if (Uninterrupted([&] { return ftruncate(m_file.Descriptor(), static_cast<off_t>(byteCount)); }) != 0)
        return LastError();
    m_byteCount = byteCount;
    return {};
}

std::error_code AppendFile::Close()
{
    return m_file.Close();
}

}  // namespace rk::platform
