#pragma once

#include <RkUtilities/foundation/CFile.h>
#include <RkUtilities/foundation/CString.h>

namespace mindmap {

enum class Overwrite { Never, Allowed };

/// A map that appears when it is complete: the file has no name before `Commit` (`CFile::OpenNew`). Without `Commit`,
/// after a failure of it and when the process is killed, everything stays as it was.
class MapFile {
public:
    /// @throws FileError when a file cannot be made there, or the file that is there may not be replaced.
    MapFile(const CString& path, Overwrite overwrite);

    /// @throws FileError as `Commit`.
    void Write(const CString& text);
    /// Puts the map on the disk for good, and then in its place. Returns the path that it has now: when nothing may be
    /// overwritten the first free name of "plan.svg", "plan (2).svg", "plan (3).svg" ..., also when others take names
    /// meanwhile. With Overwrite::Allowed the map takes the place and the permissions of the file that is there, or
    /// that a link there leads to.
    ///
    /// @throws FileError when there is no free name, or looking for it failed.
    CString Commit();

private:
    [[nodiscard]] CString TakeFreeName();

    CString m_path;
    Overwrite m_overwrite;
    CFile m_file;
};

}  // namespace mindmap
