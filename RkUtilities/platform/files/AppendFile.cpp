#include "RkUtilities/platform/files/AppendFile.h"

#include "RkUtilities/platform/files/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rk::platform {

namespace {

/// After this number of files that were moved away just before the lock, a file is used wherever it stands.
constexpr int kMostReopenings = 100;

FileHandle OpenToAppend(const std::string& path, int furtherFlags) {
    // O_NONBLOCK: a pipe of that name must not stop the program when no process reads it.
    return OpenAt(PlaceOf(path), O_RDWR | O_CREAT | O_APPEND | O_NONBLOCK | furtherFlags, S_IRUSR | S_IWUSR);
}

/// Whether other users may put a file or link of their own in the place of this path's last element.
bool IsInSharedFolder(const std::string& path) {
    struct stat facts{};
    return stat(SystemPath(FolderHolding(path)), &facts) != 0 || (facts.st_mode & (S_IWGRP | S_IWOTH)) != 0 ||
           (facts.st_uid != geteuid() && facts.st_uid != 0);
}

}  // namespace

std::error_code AppendFile::Open(const std::string& path, std::uint64_t fullAboveByteCount,
                                 const std::optional<Left>& left, Patience& patience) {
    for (int reopenings = 0;; ++reopenings) {
        if (const std::error_code error = OpenUnlocked(path))
            return error;
        Lock(patience);
        const off_t end = lseek(m_file.Descriptor(), 0, SEEK_END);
        if (end < 0)  // a length that cannot be read is not 0: the content would be cut off as a torn entry
            return LastError();
        m_byteCount = static_cast<std::uint64_t>(end);
        if (m_byteCount > fullAboveByteCount && !StandsAt(path) && reopenings < kMostReopenings)
            continue;
        m_isAsLeft = m_isLocked && left && m_byteCount == left->byteCount && path == left->path;
        return m_isAsLeft ? std::error_code() : Examine(path);
    }
}

std::error_code AppendFile::OpenUnlocked(const std::string& path) {
    m_file = FileHandle();  // closes a file that was moved away; nothing of ours was written to it
    m_file = OpenToAppend(path, O_NOFOLLOW);
    if (!m_file && errno == ELOOP && !IsInSharedFolder(path))
        m_file = OpenToAppend(path, 0);
    return m_file ? std::error_code() : LastError();
}

/// A lock of the open file: a lock of the process would end with any of its descriptors. A file system without locks
/// counts as locked.
void AppendFile::Lock(Patience& patience) {
    struct flock wholeFile{};
    wholeFile.l_type = F_WRLCK;
    wholeFile.l_whence = SEEK_SET;
    do {
        const int result = Uninterrupted([&] { return fcntl(m_file.Descriptor(), F_OFD_SETLK, &wholeFile); });
        m_isLocked = result == 0 || (errno != EAGAIN && errno != EACCES);
    } while (!m_isLocked && patience.Sleep());
}

std::error_code AppendFile::Examine(const std::string& path) {
    m_sizeGuard.emplace();
    m_isShared = IsInSharedFolder(path);
    struct stat facts{};
    if (fstat(m_file.Descriptor(), &facts) != 0)
        return LastError();
    const bool isOurs = S_ISREG(facts.st_mode) && facts.st_nlink <= 1 && facts.st_uid == geteuid();
    return m_isShared && !isOurs ? ErrorOf(EPERM) : std::error_code();
}

void AppendFile::Remember(std::string&& path, std::optional<Left>& left) const noexcept {
    if (m_isAsLeft)
        left->byteCount = m_byteCount;
    else if (m_isLocked && !m_isShared && m_sizeGuard && !m_sizeGuard->FoundLimit())
        left = Left{.path = std::move(path), .byteCount = m_byteCount};
    else
        left.reset();
}

bool AppendFile::StandsAt(const std::string& path) const {
    const std::optional<FileIdentity> ours = IdentityOf(m_file.Descriptor());
    return ours && ours == IdentityAt(path);
}

std::size_t AppendFile::ReadAt(std::uint64_t offset, char* buffer, std::size_t byteCount,
                               std::error_code& error) const {
    // An append goes to the end wherever the position is.
    SeekFile(m_file.Descriptor(), static_cast<std::int64_t>(offset), SeekFrom::Start, error);
    return error ? 0 : ReadFile(m_file.Descriptor(), buffer, byteCount, error);
}

std::error_code AppendFile::Append(std::string_view bytes) {
    std::size_t writtenCount = 0;
    for (;;) {
        const std::string_view rest = bytes.substr(writtenCount);
        const ssize_t piece = Uninterrupted([&] { return write(m_file.Descriptor(), rest.data(), rest.size()); });
        if (piece < 0) {
            const std::error_code error = LastError();
            TakeBack(writtenCount);
            return error;
        }
        writtenCount += static_cast<std::size_t>(piece);
        if (writtenCount == bytes.size())
            break;
        if (!m_sizeGuard)  // a limit cuts a write short first and sends the signal for the next write
            m_sizeGuard.emplace();
    }
    m_byteCount += writtenCount;
    return {};
}

void AppendFile::TakeBack(std::size_t writtenCount) const {
    const int descriptor = m_file.Descriptor();
    const off_t endOfOurs = writtenCount > 0 ? lseek(descriptor, 0, SEEK_CUR) : -1;
    struct stat facts{};
    if (endOfOurs > 0 && fstat(descriptor, &facts) == 0 && facts.st_size == endOfOurs)
        static_cast<void>(
            Uninterrupted([&] { return ftruncate(descriptor, endOfOurs - static_cast<off_t>(writtenCount)); }));
}

std::error_code AppendFile::CutTo(std::uint64_t byteCount) {
    if (Uninterrupted([&] { return ftruncate(m_file.Descriptor(), static_cast<off_t>(byteCount)); }) != 0)
        return LastError();
    m_byteCount = byteCount;
    return {};
}

std::error_code AppendFile::Close() { return m_file.Close(); }

}  // namespace rk::platform
