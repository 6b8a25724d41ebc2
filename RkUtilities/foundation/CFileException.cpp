#include "RkUtilities/foundation/CFileException.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <iterator>
#include <system_error>
#include <utility>

namespace {

struct CauseOfError {
    int osError;
    CFileException::Cause cause;
};

constexpr std::array kCauses = {
    CauseOfError{0, CFileException::none},
    CauseOfError{ENOENT, CFileException::fileNotFound},
    CauseOfError{ENOTDIR, CFileException::badPath},
    CauseOfError{ELOOP, CFileException::badPath},
    CauseOfError{ENAMETOOLONG, CFileException::badPath},
    CauseOfError{EMFILE, CFileException::tooManyOpenFiles},
    CauseOfError{ENFILE, CFileException::tooManyOpenFiles},
    CauseOfError{EACCES, CFileException::accessDenied},
    CauseOfError{EPERM, CFileException::accessDenied},
    CauseOfError{EROFS, CFileException::accessDenied},
    CauseOfError{EISDIR, CFileException::accessDenied},
    CauseOfError{EEXIST, CFileException::accessDenied},
    CauseOfError{ENOTEMPTY, CFileException::accessDenied},
    CauseOfError{EBADF, CFileException::invalidFile},
    CauseOfError{ENXIO, CFileException::invalidFile},
    CauseOfError{ENODEV, CFileException::invalidFile},
    CauseOfError{EMLINK, CFileException::directoryFull},
    CauseOfError{ESPIPE, CFileException::badSeek},
    CauseOfError{EOVERFLOW, CFileException::badSeek},
    CauseOfError{EIO, CFileException::hardIO},
    CauseOfError{EWOULDBLOCK, CFileException::sharingViolation},
    CauseOfError{ETXTBSY, CFileException::sharingViolation},
    CauseOfError{EBUSY, CFileException::sharingViolation},
    CauseOfError{EDEADLK, CFileException::lockViolation},
    CauseOfError{ENOLCK, CFileException::lockViolation},
    CauseOfError{ENOSPC, CFileException::diskFull},
    CauseOfError{EDQUOT, CFileException::diskFull},
    CauseOfError{EFBIG, CFileException::diskFull},
};

/// By cause.
constexpr const char* kWords[] = {"no failure",
                                  "failed",
                                  "not found",
                                  "a folder on the path does not exist",
                                  "too many open files",
                                  "access denied",
                                  "not an open file",
                                  "the folder is in use",
                                  "the folder is full",
                                  "no such position in the file",
                                  "the device failed",
                                  "in use by another program",
                                  "locked by another program",
                                  "the disk is full",
                                  "the file ends too early"};
static_assert(std::size(kWords) == CFileException::endOfFile + 1);

}  // namespace

CFileException::CFileException(int cause, int osError, unsigned short const* fileName)
    : CFileException(cause, osError, CString(fileName))
{}

CFileException::CFileException(int cause, int osError, CString fileName)
    : m_cause(cause), m_lOsError(osError), m_strFileName(std::move(fileName))
{}

CFileException::~CFileException() = default;

CString CFileException::GetErrorMessage() const
{
    const bool isKnown = m_cause >= none && m_cause <= endOfFile;
    CString message = m_strFileName.IsEmpty() ? CString() : m_strFileName + u": ";
    message += CString(kWords[isKnown ? m_cause : genericException]);
    if (m_lOsError != 0)
        message += u" (" + CString(std::generic_category().message(static_cast<int>(m_lOsError))) + u")";
    return message;
}

int CFileException::ErrnoToException(int osError) noexcept
{
    const auto* const found =
        std::find_if(kCauses.begin(), kCauses.end(), [=](const CauseOfError& row) { return row.osError == osError; });
    return found != kCauses.end() ? found->cause : genericException;
}
