#include "RkUtilities/platform/AppendFile.h"

#include <array>
#include <atomic>
#include <ctime>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace rk::platform {

namespace {

// A file that is moved away again and again just before we lock it is taken as it is in the end.
constexpr int kMostReopenings = 100;

// Waits for a lock that belongs to the open file (not to the process, whose other descriptors would release it).
// Where the file system has none we go on without.
void Lock(int descriptor)
{
    struct flock wholeFile {};
    wholeFile.l_type = F_WRLCK;
    wholeFile.l_whence = SEEK_SET;
    static_cast<void>(Uninterrupted([&] { return fcntl(descriptor, F_OFD_SETLKW, &wholeFile); }));
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

std::error_code AppendFile::Open(const std::string& path, std::uint64_t fullAboveByteCount, const Tail& expected)
{
    for (int reopenings = 0;; ++reopenings) {
        if (!OpenOnce(path))
            return LastError();
        m_endsAsExpected = expected.byteCount <= fullAboveByteCount && EndsAs(expected);
        if (m_endsAsExpected) {
            m_byteCount = expected.byteCount;
            return {};
        }
        struct stat facts {};
        if (fstat(m_file.Descriptor(), &facts) != 0)
            return LastError();
        m_byteCount = static_cast<std::uint64_t>(facts.st_size);
        const bool mayBeGone = facts.st_nlink == 0 || m_byteCount > fullAboveByteCount;
        if (!mayBeGone || StandsAt(path) || reopenings == kMostReopenings)
            return {};
    }
}

bool AppendFile::OpenOnce(const std::string& path)
{
    m_file = FileHandle();  // closes a file that was moved away; nothing of ours was written to it
    // O_NONBLOCK: a pipe of that name must not stop the program when nobody reads it.
    constexpr int kFlags = O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    constexpr mode_t kForWhomTheUmaskAllows = 0666;
    m_file = FileHandle(Uninterrupted([&] { return open(SystemPath(path), kFlags, kForWhomTheUmaskAllows); }));
    if (m_file)
        Lock(m_file.Descriptor());
    return static_cast<bool>(m_file);
}

// Asks for one byte more than there should be: one call tells the length and the bytes, and is cheaper than fstat.
bool AppendFile::EndsAs(const Tail& expected) const
{
    std::array<char, kMostTailBytes + 1> bytes;
    const std::size_t byteCount = expected.bytes.size();
    if (byteCount > kMostTailBytes || byteCount > expected.byteCount)
        return false;
    const auto at = static_cast<off_t>(expected.byteCount - byteCount);
    const ssize_t readCount =
        Uninterrupted([&] { return pread(m_file.Descriptor(), bytes.data(), byteCount + 1, at); });
    return readCount >= 0 && expected.bytes == std::string_view(bytes.data(), static_cast<std::size_t>(readCount));
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
    if (!AppendAll(bytes)) {
        const std::error_code error = LastError();
        static_cast<void>(CutTo(m_byteCount));
        return error;
    }
    m_byteCount += bytes.size();
    return {};
}

bool AppendFile::AppendAll(std::string_view bytes) const
{
    LimitGuard guard;
    for (;;) {
        const ssize_t piece = Uninterrupted([&] { return write(m_file.Descriptor(), bytes.data(), bytes.size()); });
        if (piece < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(piece));
        if (bytes.empty())
            return true;
        guard.Look();  // a limit cuts a write short first and sends the signal for the next one
    }
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
