#include "mindmap/Files.h"

#include "mindmap/OpmlReader.h"
#include "mindmap/TextOutlineReader.h"

#include <RkUtilities/foundation/CFileException.h>
#include <RkUtilities/foundation/CFileStatus.h>
#include <RkUtilities/guid/CrkGuid.h>
#include <RkUtilities/paths/SECFileSystem.h>

#include <system_error>

namespace mindmap {

namespace {

CString ReasonOf(const CFileException& failure)
{
    return CString(std::generic_category().message(static_cast<int>(failure.m_lOsError)));
}

/// Runs file operations; a failure becomes a FileError.
template <class Work>
void Attempt(const CString& path, Work work)
{
    try {
        work();
    } catch (CFileException* failure) {
        FileError error{path, ReasonOf(*failure)};
        failure->Delete();
        throw error;
    }
}

std::string ReadAll(const CString& path)
{
    CFileException failure;
    CFile file;
    if (!file.Open(path, CFile::modeRead | CFile::shareDenyNone, &failure))
        throw FileError{path, ReasonOf(failure)};
    std::string bytes;
    Attempt(path, [&] {
        constexpr unsigned int kPieceBytes = 1 << 20;
        unsigned int count = 0;
        do {
            const std::size_t size = bytes.size();
            bytes.resize(size + kPieceBytes);
            count = file.Read(bytes.data() + size, kPieceBytes);
            bytes.resize(size + count);
        } while (count > 0 && bytes.size() <= kMaximumOutlineBytes);
    });
    return bytes;
}

bool BeginsLikeXml(std::string_view document)
{
    if (document.starts_with("\xFF\xFE") || document.starts_with("\xFE\xFF"))
        return true;  // UTF-16, which no text outline is
    if (document.starts_with("\xEF\xBB\xBF"))
        document.remove_prefix(3);
    const std::size_t first = document.find_first_not_of(" \t\r\n");
    return first != std::string_view::npos && document[first] == '<';
}

}  // namespace

Outline ReadOutlineFile(const CString& path)
{
    std::string document;
    try {
        document = ReadAll(path);
    } catch (const FileError& error) {
        throw OutlineError{0, error.reason};
    }
    if (document.size() > kMaximumOutlineBytes)
        throw OutlineError{0, u"the outline is longer than 64 MiB"};
    const SECFileSystem files;
    const CString title = files.GetBaseFileName(path);
    if (BeginsLikeXml(document))
        return ReadOpml(document, title);
    const CString extension = files.GetExtension(path);
    const bool isMarkdown = extension.CompareNoCase(u"md") == 0 || extension.CompareNoCase(u"markdown") == 0;
    return ReadTextOutline(document, isMarkdown ? TextSyntax::Markdown : GuessTextSyntax(document), title);
}

ReplacementFile::ReplacementFile(const CString& path)
    : m_path(path), m_temporaryPath(path + u"." + static_cast<CString>(CrkGuid()) + u".tmp")
{
    const SECFileSystem files;
    unsigned char attribute = 0;
    if (files.DirectoryExists(path))
        throw FileError{path, u"is a folder"};
    if (files.GetFileAttribute(path, attribute) && (attribute & CFileStatus::readOnly) != 0)
        throw FileError{path, u"is read-only"};
    CFileException failure;
    if (!m_file.Open(m_temporaryPath, CFile::modeReadWrite | CFile::modeCreate, &failure))
        throw FileError{path, ReasonOf(failure)};
}

ReplacementFile::~ReplacementFile()
{
    const SECFileSystem files;
    files.CloseFile(&m_file);
    files.DeleteFile(m_temporaryPath);
}

void ReplacementFile::Write(const CString& text)
{
    Attempt(m_path, [&] { m_file.WriteString(text); });
}

void ReplacementFile::Commit()
{
    Attempt(m_path, [&] {
        m_file.Close();
        const SECFileSystem files;
        // Renaming never replaces a file; copying does, as soon as the copy is complete.
        if (!files.RenameFile(m_temporaryPath, m_path) && files.CopyFile(m_temporaryPath, m_path, 0, nullptr) == 0)
            throw FileError{m_path, u"could not be replaced"};
    });
}

}  // namespace mindmap
