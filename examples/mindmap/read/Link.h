#pragma once

#include <RkUtilities/foundation/CString.h>

namespace mindmap {

/// A topic's link, taken apart to be shown and followed.
struct Link {
    CString address;     ///< without scheme, parameters and closing "/", percent-encoding read: "example.org/permits"
    CString parameters;  ///< sorted by their names: "lang: nb · post: 7"; "" without parameters
    CString target;      ///< where a click leads, encoded as a URI (RFC 3986); "" when it may not be followed
};

/// Reads a link as it is written in an outline.
///
/// - Web and mail addresses, files and relative links may be followed: "http:", "https:", "mailto:", "file:", what
///   begins with "www." or looks like the address of a mail box, and what has no scheme; nothing else ("javascript:").
/// - Parameters are the pairs "name=value" in the query and in the fragment. A query or fragment that holds anything
///   else stays a part of the address.
/// - Nothing is expanded: an outline must not get at its reader's environment.
Link ReadLink(const CString& written);

}  // namespace mindmap
