#include "mindmap/read/OutlineFile.h"

#include "mindmap/read/FileError.h"
#include "mindmap/read/OpmlReader.h"
#include "mindmap/read/TextOutlineReader.h"

#include <RkUtilities/foundation/CFile.h>
#include <RkUtilities/paths/SECFileSystem.h>

#include <string>
#include <string_view>

namespace mindmap {

namespace {

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

}  // namespace mindmap
