#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/CString.h"

#include <string>
#include <string_view>

/// Converts between a path's text and the bytes by which the file system knows it.
/// Bytes are UTF-8, but a name that is no UTF-8 has to survive being listed as text and opened by it again. So each
/// byte that belongs to no well-formed sequence stands in the text as a lone low surrogate, U+DC00 plus the byte
/// (U+DC80 to U+DCFF), and goes back to that byte. Other lone surrogates become U+FFFD.
///
///     bytes                  text                  bytes
///     "r\xC3\xA9sum\xC3\xA9" <-> u"résumé"
///     "old\xE9" (Latin-1)    <-> u"old\xDCE9"      a name that is no UTF-8
///                                u"a\xD800"        ->  "a\xEF\xBF\xBD" (U+FFFD)
///
/// Safe from any thread as long as no other thread changes the environment meanwhile.
namespace rk {

/// The bytes to hand to the file system for a path. "~" and a leading "~/" stand for the user's home folder: $HOME, or
/// what the password database says when that is not set or empty. "~name" is an ordinary name, as is a "~" further on;
/// a file named "~" in the current folder is reached as "./~". A user without any home keeps the "~". A text with
/// U+0000 names no file: its result begins with a zero byte, and every system call refuses it (ENOENT), whatever is
/// appended.
RK_EXPORT std::string NativePath(const CString& path);

/// The text of a path or a name that the file system gave; any bytes are legal.
/// `NativePath` of the result is `nativeBytes` again for every path without a zero byte that does not itself begin with
/// the element "~"; the absolute paths and folder + name of a listing never do.
RK_EXPORT CString PathText(std::string_view nativeBytes);

}  // namespace rk
