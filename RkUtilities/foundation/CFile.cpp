#include "RkUtilities/foundation/CFile.h"

#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/foundation/detail/FileAttributes.h"
#include "RkUtilities/platform/files/FileTrees.h"
#include "RkUtilities/platform/files/Files.h"
#include "RkUtilities/platform/process/Environment.h"

#include <cerrno>
#include <cmath>
#include <optional>
#include <utility>

namespace platform = rk::platform;

namespace {

constexpr double kUnixSecondsOf2001 = 978307200;

// --- Failures ------------------------------------------------------------------------------------------------------

/// The system says "not found" of a file and of its folder alike.
int CauseOf(const std::error_code& error, const std::string& nativePath)
{
    const int cause = CFileException::ErrnoToException(error.value());
    return cause == CFileException::fileNotFound && !platform::HasExistingFolder(nativePath) ? CFileException::badPath
                                                                                             : cause;
}

void ThrowIfSet(const std::error_code& error, int cause, const CString& path)
{
    if (error)
        throw new CFileException(cause, error.value(), path);
}

void ThrowIfSet(const std::error_code& error, const CString& path)
{
    if (error)
        ThrowIfSet(error, CFileException::ErrnoToException(error.value()), path);
}

void ThrowIfSet(const std::error_code& error, const CString& path, const std::string& nativePath)
{
    if (error)
        ThrowIfSet(error, CauseOf(error, nativePath), path);
}

// --- Status --------------------------------------------------------------------------------------------------------

CTime TimeOf(const platform::FileTime& time)
{
    return CTime::FromCFAbsoluteTime(static_cast<double>(time.unixSeconds) - kUnixSecondsOf2001 +
                                     static_cast<double>(time.nanoseconds) * 1e-9);
}

/// The file's time for one that is to be set; none when that says nothing new.
std::optional<platform::FileTime> NewTime(const CTime& wanted, const platform::FileTime& present)
{
    if (wanted == CTime() || wanted == TimeOf(present))
        return std::nullopt;
    const double seconds = std::floor(wanted.GetCFAbsoluteTime());
    const double nanoseconds = std::round((wanted.GetCFAbsoluteTime() - seconds) * 1e9);
    constexpr double kMostNanoseconds = 999'999'999;
    return platform::FileTime{static_cast<std::int64_t>(seconds + kUnixSecondsOf2001),
                              static_cast<std::int32_t>(std::fmin(nanoseconds, kMostNanoseconds))};
}

std::string_view LastElement(std::string_view nativePath)
{
    nativePath = nativePath.substr(0, nativePath.find_last_not_of('/') + 1);
    return nativePath.substr(nativePath.find_last_of('/') + 1);
}

CString FullName(const CString& path, const std::string& nativePath)
{
    if (path.GetAt(0) == u'/')
        return path;
    if (nativePath.starts_with('/'))
        return rk::PathText(nativePath);
    const std::string folder = platform::CurrentFolder();
    return rk::PathText(folder.empty() || folder.back() == '/' ? folder + nativePath : folder + '/' + nativePath);
}

}  // namespace

// --- An open file --------------------------------------------------------------------------------------------------

CFile::~CFile()
{
    if (IsOpen())
        (void)platform::CloseFile(m_hFile);
}

CFile::CFile(CFile&& other) noexcept : m_hFile(std::exchange(other.m_hFile, -1)), m_path(std::move(other.m_path))
{}

CFile& CFile::operator=(CFile&& other) noexcept
{
    CFile taken(std::move(other));
    std::swap(m_hFile, taken.m_hFile);
    swap(m_path, taken.m_path);
    return *this;
}

bool CFile::Open(unsigned short const* path, unsigned int flags, CFileException* error)
{
    return Open(CString(path), flags, error);
}

bool CFile::Open(const CString& path, unsigned int flags, CFileException* error)
{
    *this = CFile();
    const std::string nativePath = rk::NativePath(path);
    constexpr unsigned int kKnownFlags = modeReadWrite | shareDenyWrite | shareDenyNone | modeCreate;
    constexpr unsigned int kSharing = shareDenyWrite | shareDenyNone;
    std::error_code failure;
    if ((flags & ~kKnownFlags) != 0 || (flags & kSharing) == kSharing)
        failure = std::make_error_code(std::errc::invalid_argument);
    else
        m_hFile = platform::OpenFile(
            nativePath, (flags & modeReadWrite) != 0 ? platform::Access::ReadWrite : platform::Access::Read,
            (flags & modeCreate) != 0 ? platform::WhenMissing::Create : platform::WhenMissing::Fail,
            (flags & shareDenyWrite) != 0 ? platform::Sharing::DenyWrite : platform::Sharing::Free, failure);
    if (!failure)
        m_path = path;
    else if (error != nullptr)
        *error = CFileException(CauseOf(failure, nativePath), failure.value(), path);
    return !failure;
}

unsigned int CFile::Read(void* buffer, unsigned int byteCount)
{
    std::error_code error;
    const std::size_t count = platform::ReadFile(m_hFile, buffer, byteCount, error);
    ThrowIfSet(error, m_path);
    return static_cast<unsigned int>(count);
}

void CFile::Write(const void* bytes, unsigned int byteCount)
{
    ThrowIfSet(platform::WriteFile(m_hFile, {static_cast<const char*>(bytes), byteCount}), m_path);
}

void CFile::WriteString(const CString& text)
{
    ThrowIfSet(platform::WriteFile(m_hFile, text.ToUtf8()), m_path);
}

unsigned long long CFile::Seek(long long offset, unsigned int from)
{
    std::error_code error = std::make_error_code(std::errc::invalid_argument);
    std::int64_t position = 0;
    if (from <= static_cast<unsigned int>(platform::SeekFrom::End))
        position = platform::SeekFile(m_hFile, offset, static_cast<platform::SeekFrom>(from), error);
    const int cause = CFileException::ErrnoToException(error.value());
    ThrowIfSet(error, cause == CFileException::genericException ? CFileException::badSeek : cause, m_path);
    return static_cast<unsigned long long>(position);
}

unsigned long long CFile::GetPosition() const
{
    std::error_code error;
    const std::int64_t position = platform::SeekFile(m_hFile, 0, platform::SeekFrom::Position, error);
    ThrowIfSet(error, m_path);
    return static_cast<unsigned long long>(position);
}

unsigned long long CFile::GetLength() const
{
    std::error_code error;
    const std::int64_t length = platform::LengthOfFile(m_hFile, error);
    ThrowIfSet(error, m_path);
    return static_cast<unsigned long long>(length);
}

void CFile::Flush()
{
    if (!IsOpen())
        ThrowIfSet(std::make_error_code(std::errc::bad_file_descriptor), m_path);
}

void CFile::Close()
{
    if (IsOpen())
        ThrowIfSet(platform::CloseFile(std::exchange(m_hFile, -1)), m_path);
}

// --- By path -------------------------------------------------------------------------------------------------------

bool CFile::GetStatus(const CString& path, CFileStatus& status)
{
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

void CFile::SetStatus(unsigned short const* path, const CFileStatus& status)
{
    SetStatus(CString(path), status);
}

void CFile::SetStatus(const CString& path, const CFileStatus& status)
{
    const std::string nativePath = rk::NativePath(path);
    platform::FileChanges changes;
    if (const auto present = platform::Inspect(nativePath)) {
        changes.ownerMayWrite = (status.m_attribute & CFileStatus::readOnly) == 0;
        changes.modified = NewTime(status.m_mtime, present->modified);
        changes.accessed = NewTime(status.m_atime, present->accessed);
    }
    ThrowIfSet(platform::Change(nativePath, changes), path, nativePath);
}

void CFile::Remove(const CString& path)
{
    const std::string nativePath = rk::NativePath(path);
    ThrowIfSet(platform::RemoveFile(nativePath), path, nativePath);
}

void CFile::Rename(const CString& oldPath, const CString& newPath)
{
    const std::string from = rk::NativePath(oldPath);
    const std::string to = rk::NativePath(newPath);
    const std::error_code error = platform::MoveTree(from, to);
    const int cause = CauseOf(error, from);
    ThrowIfSet(error, cause == CFileException::fileNotFound ? CauseOf(error, to) : cause, oldPath);
}
