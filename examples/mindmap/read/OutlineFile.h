#pragma once

#include "mindmap/read/Outline.h"

namespace mindmap {

/// Reads and parses an outline: OPML when its first character is "<", Markdown when its name ends in "md" or "markdown"
/// or it begins like Markdown, otherwise indented text.
///
/// @throws OutlineError also for a file that is missing, cannot be read or has more than kMaximumOutlineBytes.
Outline ReadOutlineFile(const CString& path);

}  // namespace mindmap
