#pragma once

#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/foundation/CTime.h"

#include <cstdint>

/// What `CFile::GetStatus` knows of a file or folder, and what `CFile::SetStatus` writes back. `CTime` holds a double,
/// which tells times of our days apart to about a tenth of a microsecond; files keep nanoseconds.
struct CFileStatus {
    /// Bits of `m_attribute`. A folder is `directory`, everything else `archive`.
    enum Attribute : unsigned char {
        readOnly = 0x01,   ///< the owner may not write (the owner's write permission is off, for any caller)
        hidden = 0x02,     ///< the name begins with "."; "." and ".." themselves are not hidden
        directory = 0x10,  ///< a folder
        archive = 0x20,  ///< no folder: an ordinary file, also a pipe, a socket, a device or a link that leads nowhere
    };

    CTime m_ctime;  ///< When the file was made, where the file system knows it; else the oldest of its other times.
    CTime m_mtime;  ///< When the content was last changed.
    CTime m_atime;  ///< When the content was last read, if the file system keeps that.
    /// Bytes; 64 bits, so files above 4 GiB fit. For a folder whatever the file system says.
    std::int64_t m_size = 0;
    unsigned char m_attribute = 0;  ///< Bits of `Attribute`.
    /// The path asked for, behind the current folder's path if it is relative and that folder exists.
    CString m_szFullName;
};
