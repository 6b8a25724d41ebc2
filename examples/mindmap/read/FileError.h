#pragma once

#include <RkUtilities/foundation/CFileException.h>
#include <RkUtilities/foundation/CString.h>

#include <system_error>

namespace mindmap {

/// Why a file could not be read or written.
struct FileError {
    CString path;
    CString reason;
};

inline CString ReasonOf(const CFileException& failure) {
    return CString(std::generic_category().message(static_cast<int>(failure.m_lOsError)));
}

/// Runs file operations; a failure becomes a FileError.
template <class Work> void Attempt(const CString& path, Work work) {
    try {
        work();
    } catch (CFileException* failure) {
        FileError error{path, ReasonOf(*failure)};
        failure->Delete();
        throw error;
    }
}

}  // namespace mindmap
