#pragma once

#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/guid/CrkGuid.h"

#include <version>

// Texts and identifiers as arguments of std::format, where the standard library has it.
#if defined(__cpp_lib_format)

#    include <format>
#    include <string>

/// A text as UTF-8, with the format of a string: `std::format("{:>10}", text)`. A lone surrogate becomes U+FFFD.
template <> struct std::formatter<CString> : std::formatter<std::string> {
    /// Writes the text.
    template <class Context> auto format(const CString& text, Context& context) const {
        return std::formatter<std::string>::format(text.ToUtf8(), context);
    }
};

/// The text of `CrkGuid::GuidToString`, with the format of a string.
template <> struct std::formatter<CrkGuid> : std::formatter<CString> {
    /// Writes the identifier.
    template <class Context> auto format(const CrkGuid& guid, Context& context) const {
        return std::formatter<CString>::format(CString(guid), context);
    }
};

#endif
