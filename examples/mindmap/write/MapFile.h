#pragma once

#include <RkUtilities/foundation/CFile.h>
#include <RkUtilities/foundation/CString.h>

namespace mindmap {

enum class Overwrite { Never, Allowed };

/// A map that comes to be when it is complete. Until `Commit` nothing else has changed, and nothing ever does when that
/// is never called or fails.
///
/// The bytes go to a hidden file beside it, of a name that nothing has yet, which is removed in the end.
class MapFile {
public:
    /// @throws FileError when a file cannot be made there, or the one that is there may not be replaced.
    MapFile(const CString& path, Overwrite overwrite);
    ~MapFile();
    MapFile(const MapFile&) = delete;
    MapFile& operator=(const MapFile&) = delete;

    /// @throws FileError as `Commit`.
    void Write(const CString& text);
    /// Puts the map on the disk for good, and then in its place. Returns the path that it has now: when nothing may be
    /// overwritten the first free one of "plan.svg", "plan (2).svg", "plan (3).svg" ..., also when others take names
    /// meanwhile. With Overwrite::Allowed the map takes the place and the permissions of the one that is there, or that
    /// a link there leads to.
    CString Commit();

private:
    void Replace() const;
    [[nodiscard]] CString TakeFreeName() const;

    CString m_path;
    CString m_target;  // the path, or what a link there leads to
    CString m_temporaryPath;
    Overwrite m_overwrite;
    CFile m_file;
};

}  // namespace mindmap
