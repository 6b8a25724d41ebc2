#include "RkUtilities/foundation/CFileException.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <iterator>
#include <system_error>
#include <utility>

namespace {

/// A cause in words, and the system's errors with that cause; 0, which is no error, fills the rows up.
struct CauseFacts {
    const char* words;
    std::array<int, 6> osErrors{};
};

/// Indexed by cause.
constexpr CauseFacts kCauses[] = {
    {"no failure"},
    {"failed"},
    {"not found", {ENOENT}},
    {"a folder on the path does not exist", {ENOTDIR, ELOOP, ENAMETOOLONG}},
    {"too many open files", {EMFILE, ENFILE}},
    {"access denied", {EACCES, EPERM, EROFS, EISDIR, EEXIST, ENOTEMPTY}},
    {"not an open file", {EBADF, ENXIO, ENODEV}},
    {"the folder is in use"},
    {"the folder is full", {EMLINK}},
    {"no such position in the file", {ESPIPE, EOVERFLOW}},
    {"the device failed", {EIO}},
    {"in use by another program", {EWOULDBLOCK, ETXTBSY, EBUSY}},
    {"locked by another program", {EDEADLK, ENOLCK}},
    {"the disk is full", {ENOSPC, EDQUOT, EFBIG}},
    {"the file ends too early"},
};
static_assert(std::size(kCauses) == CFileException::endOfFile + 1);

}  // namespace

CFileException::CFileException(int cause, int osError, unsigned short const* fileName)
    : CFileException(cause, osError, CString(fileName)) {}

CFileException::CFileException(int cause, int osError, CString fileName)
    : m_cause(cause), m_lOsError(osError), m_strFileName(std::move(fileName)) {}

CFileException::~CFileException() = default;

CString CFileException::GetErrorMessage() const {
    const bool isNamed = m_cause >= none && m_cause <= endOfFile;
    CString message = m_strFileName.IsEmpty() ? CString() : m_strFileName + u": ";
    message += CString(kCauses[isNamed ? m_cause : genericException].words);
    if (m_lOsError != 0)
        message += u" (" + CString(std::generic_category().message(static_cast<int>(m_lOsError))) + u")";
    return message;
}

int CFileException::ErrnoToException(int osError) noexcept {
    const auto has = [=](const CauseFacts& facts) { return std::ranges::count(facts.osErrors, osError) > 0; };
    const auto* const found = std::ranges::find_if(kCauses, has);
    return found != std::end(kCauses) ? static_cast<int>(found - kCauses) : genericException;
}
