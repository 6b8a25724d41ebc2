#pragma once

#include "mindmap/read/Outline.h"

#include <iosfwd>

namespace mindmap {

/// Reads and parses an outline: OPML when its first character is "<", Markdown when its name ends in "md" or "markdown"
/// or it begins like Markdown, otherwise indented text.
///
/// @throws OutlineError also for a file that is missing, cannot be read or has more than kMaximumOutlineBytes.
Outline ReadOutlineFile(const CString& path);
/// The same of a stream, whose content alone tells what it is.
Outline ReadOutlineStream(std::istream& stream);

}  // namespace mindmap
