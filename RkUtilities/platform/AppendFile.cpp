#include "RkUtilities/platform/AppendFile.h"

#include <cerrno>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace rk::platform {

namespace {

// A file that is moved away again and again just before we lock it is taken as it is in the end.
constexpr int kMostReopenings = 100;

std::error_code LastError()
{
    return {errno, std::generic_category()};
}

template <class Call>
auto Uninterrupted(const Call& call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

AppendFile::Identity IdentityOf(const struct stat& facts)
{
    return {.device = facts.st_dev, .inode = facts.st_ino};
}

// Waits for a lock that belongs to the open file (not to the process, whose other descriptors would release it).
// Where the file system has none we go on without.
void Lock(int descriptor)
{
    struct flock wholeFile {};
    wholeFile.l_type = F_WRLCK;
    wholeFile.l_whence = SEEK_SET;
    static_cast<void>(Uninterrupted([&] { return fcntl(descriptor, F_OFD_SETLKW, &wholeFile); }));
}

bool HasFileSizeLimit()
{
    rlimit limit{};
    return getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY;
}

// Keeps SIGXFSZ from this thread while a write may exceed the file-size limit, where its default is to end the process.
class FileSizeSignalHeldBack {
public:
    FileSizeSignalHeldBack()
    {
        sigemptyset(&m_signal);
        sigaddset(&m_signal, SIGXFSZ);
        sigset_t pending;
        sigpending(&pending);
        m_wasPending = sigismember(&pending, SIGXFSZ) == 1;
        pthread_sigmask(SIG_BLOCK, &m_signal, &m_maskBefore);
    }
    ~FileSizeSignalHeldBack()
    {
        const timespec atOnce{};
        if (!m_wasPending)
            static_cast<void>(Uninterrupted([&] { return sigtimedwait(&m_signal, nullptr, &atOnce); }));
        pthread_sigmask(SIG_SETMASK, &m_maskBefore, nullptr);
    }
    FileSizeSignalHeldBack(const FileSizeSignalHeldBack&) = delete;
    FileSizeSignalHeldBack& operator=(const FileSizeSignalHeldBack&) = delete;

private:
    sigset_t m_signal;
    sigset_t m_maskBefore;
    bool m_wasPending;
};

}  // namespace

AppendFile::~AppendFile()
{
    static_cast<void>(Close());
}

std::error_code AppendFile::Open(const std::string& path, std::uint64_t fullAboveByteCount)
{
    for (int reopenings = 0;; ++reopenings) {
        if (const std::error_code error = OpenOnce(path))
            return error;
        const bool mayBeGone = m_isRemoved || m_byteCount > fullAboveByteCount;
        if (!mayBeGone || StandsAt(path) || reopenings == kMostReopenings)
            return {};
    }
}

std::error_code AppendFile::OpenOnce(const std::string& path)
{
    static_cast<void>(Close());  // a file that was moved away; nothing of ours was written to it
    if (path.find('\0') != std::string::npos)
        return {ENOENT, std::generic_category()};
    // O_NONBLOCK: a pipe of that name must not stop the program when nobody reads it.
    constexpr int kFlags = O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    constexpr mode_t kForWhomTheUmaskAllows = 0666;
    m_descriptor = Uninterrupted([&] { return open(path.c_str(), kFlags, kForWhomTheUmaskAllows); });
    if (m_descriptor < 0)
        return LastError();
    Lock(m_descriptor);

    struct stat facts {};
    if (fstat(m_descriptor, &facts) != 0)
        return LastError();
    m_isRemoved = facts.st_nlink == 0;
    m_identity = IdentityOf(facts);
    m_byteCount = static_cast<std::uint64_t>(facts.st_size);
    return {};
}

bool AppendFile::StandsAt(const std::string& path) const
{
    struct stat facts {};
    return stat(path.c_str(), &facts) == 0 && IdentityOf(facts) == m_identity;
}

std::size_t AppendFile::ReadAt(std::uint64_t offset, char* buffer, std::size_t byteCount, std::error_code& error) const
{
    std::size_t readCount = 0;
    error.clear();
    while (readCount < byteCount) {
        const auto at = static_cast<off_t>(offset + readCount);
        const ssize_t piece =
            Uninterrupted([&] { return pread(m_descriptor, buffer + readCount, byteCount - readCount, at); });
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
    std::error_code error;
    if (HasFileSizeLimit()) {
        const FileSizeSignalHeldBack heldBack;
        error = AppendAll(bytes);
    } else {
        error = AppendAll(bytes);
    }
    if (error)
        static_cast<void>(CutTo(m_byteCount));
    else
        m_byteCount += bytes.size();
    return error;
}

std::error_code AppendFile::AppendAll(std::string_view bytes) const
{
    while (!bytes.empty()) {
        const ssize_t piece = Uninterrupted([&] { return write(m_descriptor, bytes.data(), bytes.size()); });
        if (piece < 0)
            return LastError();
        bytes.remove_prefix(static_cast<std::size_t>(piece));
    }
    return {};
}

std::error_code AppendFile::CutTo(std::uint64_t byteCount)
{
    if (Uninterrupted([&] { return ftruncate(m_descriptor, static_cast<off_t>(byteCount)); }) != 0)
        return LastError();
    m_byteCount = byteCount;
    return {};
}

std::error_code AppendFile::Close()
{
    const int descriptor = std::exchange(m_descriptor, -1);
    // EINTR: the descriptor is gone all the same, and another thread's may have its number by now.
    if (descriptor >= 0 && close(descriptor) != 0 && errno != EINTR)
        return LastError();
    return {};
}

}  // namespace rk::platform
