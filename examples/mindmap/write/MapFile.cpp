#include "mindmap/write/MapFile.h"

#include "mindmap/read/FileError.h"

#include <RkUtilities/foundation/CFileException.h>
#include <RkUtilities/foundation/NativePath.h>
#include <RkUtilities/paths/CrkPathUtilities.h>
#include <RkUtilities/paths/SECFileSystem.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace mindmap {

namespace {

/// Whether a device, a pipe or a socket is there, or a link to it.
bool IsSpecial(const CString& path) {
    std::error_code error;
    return std::filesystem::is_other(rk::NativePath(path), error);
}

/// The path itself when nothing has it, else the first free path with a number.
///
/// @throws FileError when there is no free path, or looking for it failed.
CString FreePath(const CString& path) {
    const bool hasFolder = !CrkPathUtilities::PathFromFilename(path).IsEmpty();
    const CString free = CrkPathUtilities::GetUniqueFilename(hasFolder ? path : u"./" + path);
    if (free.IsEmpty())
        throw FileError{path, u"its folder cannot be searched for a free name"};
    if (CrkPathUtilities::FileWithExtensionFromFilename(free).IsEmpty())
        throw FileError{path, u"is taken, and a number cannot go before its extension"};
    return hasFolder ? free : free.Mid(2);
}

}  // namespace

MapFile::MapFile(const CString& path, Overwrite overwrite) : m_path(path), m_overwrite(overwrite) {
    const SECFileSystem files;
    if (files.DirectoryExists(path))
        throw FileError{path, u"is a folder"};
    if (overwrite == Overwrite::Allowed && IsSpecial(path))
        throw FileError{path, u"is a device or a pipe"};
    if (overwrite == Overwrite::Allowed && CrkPathUtilities::IsFileReadOnly(path))
        throw FileError{path, u"is read-only"};
    CFileException failure;
    if (!m_file.OpenNew(path, &failure))
        throw FileError{path, ReasonOf(failure)};
}

void MapFile::Write(const CString& text) {
    Attempt(m_path, [&] { m_file.WriteString(text); });
}

CString MapFile::Commit() {
    if (m_overwrite == Overwrite::Never)
        return TakeFreeName();
    Attempt(m_path, [&] { m_file.CommitOver(m_path); });
    return m_path;
}

CString MapFile::TakeFreeName() {
    constexpr int kMostTries = 1000;  // each failed because another process took the name meanwhile
    for (int i = 0; i < kMostTries; ++i) {
        CString path = FreePath(m_path);
        try {
            m_file.CommitAs(path);
            return path;
        } catch (CFileException* failure) {
            const bool isTaken = failure->m_lOsError == EEXIST;
            const FileError error{path, ReasonOf(*failure)};
            failure->Delete();
            if (!isTaken)
                throw error;
        }
    }
    throw FileError{m_path, u"is taken again and again"};
}

}  // namespace mindmap
