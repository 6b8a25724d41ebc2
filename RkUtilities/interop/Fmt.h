#pragma once

#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/guid/CrkGuid.h"

// Texts and identifiers as arguments of {fmt}, where its headers are installed.
#if __has_include(<fmt/format.h>)

#    include <fmt/format.h>
#    include <string>

/// A text as UTF-8, with the format of a string: `fmt::format("{:>10}", text)`. A lone surrogate becomes U+FFFD.
template <> struct fmt::formatter<CString> : fmt::formatter<std::string> {
    /// Writes the text.
    template <class Context> auto format(const CString& text, Context& context) const {
        return fmt::formatter<std::string>::format(text.ToUtf8(), context);
    }
};

/// The text of `CrkGuid::GuidToString`, with the format of a string.
template <> struct fmt::formatter<CrkGuid> : fmt::formatter<CString> {
    /// Writes the identifier.
    template <class Context> auto format(const CrkGuid& guid, Context& context) const {
        return fmt::formatter<CString>::format(CString(guid), context);
    }
};

#endif
