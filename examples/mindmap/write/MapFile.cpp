#include "mindmap/write/MapFile.h"

#include "mindmap/read/FileError.h"

#include <RkUtilities/foundation/CFileException.h>
#include <RkUtilities/foundation/CFileStatus.h>
#include <RkUtilities/foundation/NativePath.h>
#include <RkUtilities/guid/CrkGuid.h>
#include <RkUtilities/paths/CrkPathUtilities.h>
#include <RkUtilities/paths/SECFileSystem.h>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace mindmap {

namespace {

CString WithoutLinks(const CString& path)
{
    std::error_code error;
    const std::filesystem::path target = std::filesystem::canonical(rk::NativePath(path), error);
    return error ? path : rk::PathText(target.string());
}

/// Something is there that is no map and no link to one: a device, a pipe, a socket.
bool IsSpecial(const CString& path)
{
    std::error_code error;
    return std::filesystem::is_other(rk::NativePath(path), error);
}

/// Waits until the bytes of a file would survive a power cut: its name must not become the map's before.
void PutOnDisk(const CString& path)
{
    const int descriptor = ::open(rk::NativePath(path).c_str(), O_RDONLY | O_CLOEXEC);
    const bool isDone = descriptor >= 0 && ::fsync(descriptor) == 0;
    const std::error_code error(errno, std::generic_category());
    if (descriptor >= 0)
        ::close(descriptor);
    if (!isDone)
        throw FileError{path, CString(error.message())};
}

/// The path itself when nothing has it, else the first free one with a number.
CString FreePath(const CString& path)
{
    const bool hasFolder = !CrkPathUtilities::PathFromFilename(path).IsEmpty();
    const CString free = CrkPathUtilities::GetUniqueFilename(hasFolder ? path : u"./" + path);
    if (CrkPathUtilities::FileWithExtensionFromFilename(free).IsEmpty())
        throw FileError{path, u"is taken, and a number cannot go before its extension"};
    return hasFolder ? free : free.Mid(2);
}

/// False when something has the new name.
bool RenameUnlessTaken(const CString& from, const CString& to)
{
    try {
        CFile::Rename(from, to);
        return true;
    } catch (CFileException* failure) {
        const bool isTaken = failure->m_lOsError == EEXIST;
        const FileError error{to, ReasonOf(*failure)};
        failure->Delete();
        if (!isTaken)
            throw error;
        return false;
    }
}

}  // namespace

MapFile::MapFile(const CString& path, Overwrite overwrite)
    : m_path(path), m_target(overwrite == Overwrite::Allowed ? WithoutLinks(path) : path), m_overwrite(overwrite)
{
    const SECFileSystem files;
    if (files.DirectoryExists(path))
        throw FileError{path, u"is a folder"};
    if (overwrite == Overwrite::Allowed && IsSpecial(m_target))
        throw FileError{path, u"is a device or a pipe"};
    if (overwrite == Overwrite::Allowed && CrkPathUtilities::IsFileReadOnly(m_target))
        throw FileError{path, u"is read-only"};
    m_temporaryPath = CrkPathUtilities::PathFromFilename(m_target) + u"." + static_cast<CString>(CrkGuid()) + u".tmp";
    CFileException failure;
    if (!m_file.Open(m_temporaryPath, CFile::modeReadWrite | CFile::modeCreate, &failure))
        throw FileError{path, ReasonOf(failure)};
}

MapFile::~MapFile()
{
    const SECFileSystem files;
    files.CloseFile(&m_file);
    files.DeleteFile(m_temporaryPath);
}

void MapFile::Write(const CString& text)
{
    Attempt(m_path, [&] { m_file.WriteString(text); });
}

CString MapFile::Commit()
{
    Attempt(m_path, [&] { m_file.Close(); });
    PutOnDisk(m_temporaryPath);
    if (m_overwrite == Overwrite::Never)
        return TakeFreeName();
    Replace();
    return m_path;
}

void MapFile::Replace() const
{
    const std::string from = rk::NativePath(m_temporaryPath);
    const std::string to = rk::NativePath(m_target);
    std::error_code error;
    const std::filesystem::file_status before = std::filesystem::status(to, error);
    if (std::filesystem::exists(before))
        std::filesystem::permissions(from, before.permissions(), error);
    std::filesystem::rename(from, to, error);
    if (error)
        throw FileError{m_path, CString(error.message())};
}

CString MapFile::TakeFreeName() const
{
    constexpr int kMostTries = 1000;  // each means that somebody took the name at that very moment
    for (int i = 0; i < kMostTries; ++i) {
        CString path = FreePath(m_path);
        if (RenameUnlessTaken(m_temporaryPath, path))
            return path;
    }
    throw FileError{m_path, u"is taken again and again"};
}

}  // namespace mindmap
