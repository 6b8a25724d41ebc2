#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/CString.h"

#include <string>

/// A writable, zero-terminated UTF-8 copy of a text, for calls that take `char*`; valid as long as the buffer lives.
/// A lone surrogate becomes U+FFFD. A U+0000 inside the text ends it for a callee that reads up to the terminator. The
/// bytes may be changed in place; they may not grow.
///
///     line.Format(u"%s: %d", static_cast<char*>(StUTF8Buffer(name)), count);
class RK_EXPORT StUTF8Buffer {
public:
    explicit StUTF8Buffer(const CString& text) : m_bytes(text.ToUtf8()) {}  ///< Copies the text as UTF-8.

    /// The bytes, to be read or changed in place.
    operator char*() noexcept RK_LIFETIMEBOUND { return m_bytes.data(); }
    operator char const*() const noexcept RK_LIFETIMEBOUND { return m_bytes.c_str(); }  ///< The bytes, to be read.

private:
    std::string m_bytes;
};

/// The UTF-8 bytes of the text, into `bytes`, whose memory is used again; a lone surrogate becomes U+FFFD.
RK_EXPORT void GetStdStringFromCString(const CString& text, std::string& bytes);
