#pragma once

#include "mindmap/Outline.h"

#include <RkUtilities/foundation/CFile.h>

#include <string>

namespace mindmap {

/// Reads and parses an outline: OPML when its first character is "<", Markdown when its name ends in "md" or "markdown"
/// or it begins like Markdown, otherwise indented text.
///
/// @throws OutlineError also for a file that is missing, cannot be read or has more than kMaximumOutlineBytes.
Outline ReadOutlineFile(const CString& path);

/// A file that takes another one's place when it is complete. Until `Commit` the other one stays as it was, and it
/// stays for good when that is never called or fails.
///
/// The bytes go to a file beside it, of a name that nothing has yet, which is removed in the end.
class ReplacementFile {
public:
    /// @throws FileError when a file cannot be made there, or the one that is there may not be replaced.
    explicit ReplacementFile(const CString& path);
    ~ReplacementFile();
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    /// @throws FileError as `Commit`.
    void Write(const CString& text);
    void Commit();

private:
    CString m_path;
    CString m_temporaryPath;
    CFile m_file;
};

/// Why a file could not be written.
struct FileError {
    CString path;
    CString reason;
};

}  // namespace mindmap
