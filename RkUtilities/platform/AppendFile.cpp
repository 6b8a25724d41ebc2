#include "RkUtilities/platform/AppendFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rk::platform {

namespace {

// A file that is moved away again and again just before we lock it is taken as it is in the end.
constexpr int kMostReopenings = 100;

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

}  // namespace

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
    m_file = FileHandle();  // closes a file that was moved away; nothing of ours was written to it
    // O_NONBLOCK: a pipe of that name must not stop the program when nobody reads it.
    constexpr int kFlags = O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    constexpr mode_t kForWhomTheUmaskAllows = 0666;
    m_file = FileHandle(Uninterrupted([&] { return open(SystemPath(path), kFlags, kForWhomTheUmaskAllows); }));
    if (!m_file)
        return LastError();
    Lock(m_file.Descriptor());

    struct stat facts {};
    if (fstat(m_file.Descriptor(), &facts) != 0)
        return LastError();
    m_isRemoved = facts.st_nlink == 0;
    m_identity = IdentityOf(facts);
    m_byteCount = static_cast<std::uint64_t>(facts.st_size);
    return {};
}

bool AppendFile::StandsAt(const std::string& path) const
{
    struct stat facts {};
    return stat(SystemPath(path), &facts) == 0 && IdentityOf(facts) == m_identity;
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
    const std::error_code error = AppendAll(bytes);
    if (error)
        static_cast<void>(CutTo(m_byteCount));
    else
        m_byteCount += bytes.size();
    return error;
}

std::error_code AppendFile::AppendAll(std::string_view bytes) const
{
    const FileSizeSignalGuard guard;
    while (!bytes.empty()) {
        const ssize_t piece = Uninterrupted([&] { return write(m_file.Descriptor(), bytes.data(), bytes.size()); });
        if (piece < 0)
            return LastError();
        bytes.remove_prefix(static_cast<std::size_t>(piece));
    }
    return {};
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
