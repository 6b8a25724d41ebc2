#include "RkUtilities/foundation/CFile.h"

#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/foundation/detail/FileAttributes.h"
#include "RkUtilities/platform/files/FileFacts.h"
#include "RkUtilities/platform/files/FileNames.h"
#include "RkUtilities/platform/files/Files.h"
#include "RkUtilities/platform/files/MoveTree.h"
#include "RkUtilities/platform/files/NewFile.h"
#include "RkUtilities/platform/process/Environment.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

namespace platform = rk::platform;

namespace {

constexpr double kUnixSecondsOf2001 = 978307200;

// --- Failures

/// The system says "not found" of a file and of its folder alike.
int CauseOf(const std::error_code& error, const std::string& nativePath) {
    const int cause = CFileException::ErrnoToException(error.value());
    return cause == CFileException::fileNotFound && !platform::HasExistingFolder(nativePath) ? CFileException::badPath
                                                                                             : cause;
}

void ThrowIfSet(const std::error_code& error, int cause, const CString& path) {
    if (error)
        throw new CFileException(cause, error.value(), path);
}

void ThrowIfSet(const std::error_code& error, const CString& path) {
    if (error)
        ThrowIfSet(error, CFileException::ErrnoToException(error.value()), path);
}

void ThrowIfSet(const std::error_code& error, const CString& path, const std::string& nativePath) {
    if (error)
        ThrowIfSet(error, CauseOf(error, nativePath), path);
}

// --- Status

CTime TimeOf(const platform::FileTime& time) {
    return CTime::FromCFAbsoluteTime(static_cast<double>(time.unixSeconds) - kUnixSecondsOf2001 +
                                     static_cast<double>(time.nanoseconds) * 1e-9);
}

/// The time to set in the file; nothing when the wanted time is null or the present time.
std::optional<platform::FileTime> NewTime(const CTime& wanted, const platform::FileTime& present) {
    if (wanted == CTime() || wanted == TimeOf(present))
        return std::nullopt;
    const double seconds = std::floor(wanted.GetCFAbsoluteTime());
    const double nanoseconds = std::round((wanted.GetCFAbsoluteTime() - seconds) * 1e9);
    constexpr double kMostNanoseconds = 999'999'999;
    return platform::FileTime{static_cast<std::int64_t>(seconds + kUnixSecondsOf2001),
                              static_cast<std::int32_t>(std::fmin(nanoseconds, kMostNanoseconds))};
}

std::string_view LastElement(std::string_view nativePath) {
    nativePath = nativePath.substr(0, nativePath.find_last_not_of('/') + 1);
    return nativePath.substr(nativePath.find_last_of('/') + 1);
}

CString FullName(const CString& path, const std::string& nativePath) {
    if (path.GetAt(0) == u'/')
        return path;
    if (nativePath.starts_with('/'))
        return rk::PathText(nativePath);
    const std::string folder = platform::CurrentFolder();
    return rk::PathText(folder.empty() || folder.back() == '/' ? folder + nativePath : folder + '/' + nativePath);
}

}  // namespace

// --- An open file

CFile::CFile() noexcept = default;

CFile::CFile(const CString& path, unsigned int flags) {
    CFileException failure;
    if (!Open(path, flags, &failure))
        throw new CFileException(failure.m_cause, static_cast<int>(failure.m_lOsError), path);
}

CFile::~CFile() {
    if (IsOpen() && !m_new)
        static_cast<void>(platform::CloseFile(m_hFile));
    delete m_new;
}

CFile::CFile(CFile&& other) noexcept
    : m_hFile(std::exchange(other.m_hFile, -1)), m_new(std::exchange(other.m_new, nullptr)),
      m_path(std::move(other.m_path)) {}

CFile& CFile::operator=(CFile&& other) noexcept {
    CFile taken(std::move(other));
    std::swap(m_hFile, taken.m_hFile);
    std::swap(m_new, taken.m_new);
    swap(m_path, taken.m_path);
    return *this;
}

bool CFile::Open(const CString& path, unsigned int flags, CFileException* error) {
    *this = CFile();
    const std::string nativePath = rk::NativePath(path);
    constexpr unsigned int kAllFlags = modeReadWrite | shareDenyWrite | shareDenyNone | modeCreate | modeTruncate;
    constexpr unsigned int kSharing = shareDenyWrite | shareDenyNone;
    constexpr unsigned int kTruncating = modeTruncate | modeReadWrite;
    const auto has = [flags](unsigned int flag) { return (flags & flag) != 0; };
    std::error_code failure;
    if (has(~kAllFlags) || (flags & kSharing) == kSharing || (flags & kTruncating) == modeTruncate)
        failure = std::make_error_code(std::errc::invalid_argument);
    else
        m_hFile = platform::OpenFile(
            nativePath,
            {.access = has(modeReadWrite) ? platform::Access::ReadWrite : platform::Access::Read,
             .whenMissing = has(modeCreate) ? platform::WhenMissing::Create : platform::WhenMissing::Fail,
             .sharing = has(shareDenyWrite) ? platform::Sharing::DenyWrite : platform::Sharing::Free,
             .content = has(modeTruncate) ? platform::Content::Drop : platform::Content::Keep},
            failure);
    return Opened(path, nativePath, failure, error);
}

bool CFile::OpenNew(const CString& path, CFileException* error) {
    *this = CFile();
    const std::string nativePath = rk::NativePath(path);
    auto file = std::make_unique<platform::NewFile>();
    const std::error_code failure = file->Make(nativePath);
    if (!failure) {
        m_hFile = file->Descriptor();
        m_new = file.release();
    }
    return Opened(path, nativePath, failure, error);
}

bool CFile::Opened(const CString& path, const std::string& nativePath, const std::error_code& failure,
                   CFileException* error) {
    if (!failure)
        m_path = path;
    else if (error != nullptr)
        *error = CFileException(CauseOf(failure, nativePath), failure.value(), path);
    return !failure;
}

void CFile::Commit(const CString& path, bool isReplacing) {
    if (!m_new)
        ThrowIfSet(std::make_error_code(std::errc::bad_file_descriptor), path);
    const std::string nativePath = rk::NativePath(path);
    const auto taken = isReplacing ? platform::Taken::IsReplaced : platform::Taken::Stays;
    ThrowIfSet(platform::PublishForGood(*m_new, nativePath, taken), path, nativePath);
    *this = CFile();
}

unsigned int CFile::Read(void* buffer, unsigned int byteCount) {
    return static_cast<unsigned int>(Read(std::span(static_cast<std::byte*>(buffer), byteCount)).size());
}

std::span<std::byte> CFile::Read(std::span<std::byte> bytes) {
    std::error_code error;
    const std::size_t count = platform::ReadFile(m_hFile, bytes.data(), bytes.size(), error);
    ThrowIfSet(error, m_path);
    return bytes.first(count);
}

std::string CFile::ReadAll() {
    std::string bytes;
    std::size_t count = 0;
    do {
        bytes.resize(std::max<std::size_t>(1024, 2 * bytes.size()));
        count += Read(std::as_writable_bytes(std::span(bytes).subspan(count))).size();
    } while (count == bytes.size());
    bytes.resize(count);
    return bytes;
}

void CFile::Write(const void* bytes, unsigned int byteCount) {
    Write(std::span(static_cast<const std::byte*>(bytes), byteCount));
}

void CFile::Write(std::span<const std::byte> bytes) {
    ThrowIfSet(platform::WriteFile(m_hFile, {reinterpret_cast<const char*>(bytes.data()), bytes.size()}), m_path);
}

void CFile::WriteString(const CString& text) { ThrowIfSet(platform::WriteFile(m_hFile, text.ToUtf8()), m_path); }

unsigned long long CFile::Seek(long long offset, unsigned int from) {
    std::error_code error = std::make_error_code(std::errc::invalid_argument);
    std::int64_t position = 0;
    if (from <= static_cast<unsigned int>(platform::SeekFrom::End))
        position = platform::SeekFile(m_hFile, offset, static_cast<platform::SeekFrom>(from), error);
    const int cause = CFileException::ErrnoToException(error.value());
    ThrowIfSet(error, cause == CFileException::genericException ? CFileException::badSeek : cause, m_path);
    return static_cast<unsigned long long>(position);
}

unsigned long long CFile::GetPosition() const {
    std::error_code error;
    const std::int64_t position = platform::SeekFile(m_hFile, 0, platform::SeekFrom::Position, error);
    ThrowIfSet(error, m_path);
    return static_cast<unsigned long long>(position);
}

unsigned long long CFile::GetLength() const {
    std::error_code error;
    const std::int64_t length = platform::LengthOfFile(m_hFile, error);
    ThrowIfSet(error, m_path);
    return static_cast<unsigned long long>(length);
}

void CFile::SetLength(unsigned long long byteCount) {
    constexpr unsigned long long kMost = std::numeric_limits<std::int64_t>::max();
    ThrowIfSet(byteCount <= kMost ? platform::SetLengthOfFile(m_hFile, static_cast<std::int64_t>(byteCount))
                                  : std::make_error_code(std::errc::file_too_large),
               m_path);
}

void CFile::Flush() {
    if (!IsOpen())
        ThrowIfSet(std::make_error_code(std::errc::bad_file_descriptor), m_path);
}

void CFile::Close() {
    if (m_new)
        *this = CFile();
    if (IsOpen())
        ThrowIfSet(platform::CloseFile(std::exchange(m_hFile, -1)), m_path);
}

// --- By path

bool CFile::GetStatus(const CString& path, CFileStatus& status) {
    const std::string nativePath = rk::NativePath(path);
    const auto facts = platform::Inspect(nativePath);
    if (!facts)
        return false;
    CString fullName = FullName(path, nativePath);
    status.m_ctime = TimeOf(facts->created);
    status.m_mtime = TimeOf(facts->modified);
    status.m_atime = TimeOf(facts->accessed);
    status.m_size = facts->size;
    status.m_attribute = rk::AttributesOf(LastElement(nativePath), *facts);
    status.m_szFullName = std::move(fullName);
    return true;
}

void CFile::SetStatus(const CString& path, const CFileStatus& status) {
    const std::string nativePath = rk::NativePath(path);
    const auto changesFor = [&status](const platform::FileFacts& present) {
        return platform::FileChanges{.ownerMayWrite = (status.m_attribute & CFileStatus::readOnly) == 0,
                                     .modified = NewTime(status.m_mtime, present.modified),
                                     .accessed = NewTime(status.m_atime, present.accessed)};
    };
    ThrowIfSet(platform::Change(nativePath, changesFor), path, nativePath);
}

void CFile::Remove(const CString& path) {
    const std::string nativePath = rk::NativePath(path);
    ThrowIfSet(platform::RemoveFile(nativePath), path, nativePath);
}

void CFile::Rename(const CString& oldPath, const CString& newPath) {
    const std::string from = rk::NativePath(oldPath);
    const std::string to = rk::NativePath(newPath);
    const std::error_code error = platform::MoveTree(from, to);
    const int cause = CauseOf(error, from);
    ThrowIfSet(error, cause == CFileException::fileNotFound ? CauseOf(error, to) : cause, oldPath);
}

void CFile::ReplaceFile(const CString& temporary, const CString& target) {
    const std::string from = rk::NativePath(temporary);
    const std::string to = rk::NativePath(target);
    const std::error_code error = platform::ReplaceForGood(from, to);
    const bool isTemporaryMissing = error && !platform::KindOf(from);
    ThrowIfSet(error, isTemporaryMissing ? temporary : target, isTemporaryMissing ? from : to);
}
