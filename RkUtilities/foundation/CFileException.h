#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/CException.h"
#include "RkUtilities/foundation/CString.h"

/// Why a file operation failed. Thrown as a pointer, which the catcher disposes of:
///
///     try {
///         CFile::Remove(path);
///     } catch (CFileException* failure) {
///         const int cause = failure->m_cause;
///         failure->Delete();
///     }
///
/// `CFile::Open` throws nothing and fills in the caller's object instead.
class RK_EXPORT RK_DESCRIBED CFileException : public CException {
public:
    /// Values of `m_cause`. The causes in brackets are part of the numbering but are never reported here.
    enum Cause : int {
        none = 0,
        genericException = 1,   ///< a cause without a name here; `m_lOsError` tells it
        fileNotFound = 2,       ///< the folder exists, the name in it does not
        badPath = 3,            ///< a folder on the path is missing or no folder, the path too long or a ring of links
        tooManyOpenFiles = 4,   ///< of this process or of the system
        accessDenied = 5,       ///< permission, a read-only file system, a folder in place of a file, a taken name
        invalidFile = 6,        ///< a closed `CFile`, writing to a `CFile` opened for reading, a pipe or socket
        removeCurrentDir = 7,   ///< (the folder is in use)
        directoryFull = 8,      ///< the folder takes no more entries
        badSeek = 9,            ///< a position before the start of the file or beyond the largest
        hardIO = 10,            ///< the device failed
        sharingViolation = 11,  ///< in use: another `CFile` denies this access (`CFile::shareDenyWrite`), or the system
        lockViolation = 12,     ///< a lock that another program holds is in the way
        diskFull = 13,          ///< no space, or a limit of the user or the process on space or file size
        endOfFile = 14,         ///< (more was expected; a short `Read` is no failure)
    };

    /// `osError` is an error number of the system (`errno`) or 0; a null `fileName` gives "".
    explicit CFileException(int cause = none, int osError = 0, unsigned short const* fileName = nullptr);
    CFileException(int cause, int osError, CString fileName);  ///< An exception with these three facts.
    ~CFileException() override;

    /// The cause that stands for an error number of the system; 0 gives `none`. ENOENT gives `fileNotFound`, which the
    /// members of `CFile`, knowing the path, tell from `badPath`.
    static int ErrnoToException(int osError) noexcept;

    /// What failed and why, in English, for people and logs: the path, the cause in words and the system's reason.
    ///
    ///     /maps/plan.map: not found (No such file or directory)
    ///     /maps: access denied (Is a directory)
    ///
    /// A part that is not known is left out.
    [[nodiscard]] CString GetErrorMessage() const;

    int m_cause;            ///< A value of the causes above.
    long m_lOsError;        ///< The system's error number behind the cause, else 0.
    CString m_strFileName;  ///< The path as the caller gave it.
};
