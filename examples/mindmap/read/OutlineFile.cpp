#include "mindmap/read/OutlineFile.h"

#include "mindmap/read/FileError.h"
#include "mindmap/read/OpmlReader.h"
#include "mindmap/read/TextOutlineReader.h"

#include <RkUtilities/foundation/CFile.h>
#include <RkUtilities/foundation/NativePath.h>
#include <RkUtilities/paths/SECFileSystem.h>

#include <filesystem>
#include <fstream>
#include <istream>
#include <string>
#include <string_view>
#include <system_error>

namespace mindmap {

namespace {

constexpr unsigned int kPieceBytes = 1 << 20;

std::string ReadAll(const CString& path)
{
    CFileException failure;
    CFile file;
    if (!file.Open(path, CFile::modeRead | CFile::shareDenyNone, &failure))
        throw FileError{path, ReasonOf(failure)};
    std::string bytes;
    Attempt(path, [&] {
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

Outline Read(const std::string& document, const CString& title, bool isMarkdown)
{
    if (document.size() > kMaximumOutlineBytes)
        throw OutlineError{0, u"the outline is longer than 64 MiB"};
    if (BeginsLikeXml(document))
        return ReadOpml(document, title);
    return ReadTextOutline(document, isMarkdown ? TextSyntax::Markdown : GuessTextSyntax(document), title);
}

}  // namespace

Outline ReadOutlineFile(const CString& path)
{
    const SECFileSystem files;
    const CString extension = files.GetExtension(path);
    const bool isMarkdown = extension.CompareNoCase(u"md") == 0 || extension.CompareNoCase(u"markdown") == 0;
    std::error_code absent;
    if (std::filesystem::is_other(rk::NativePath(path), absent)) {  // a pipe, which cannot be opened for sharing
        std::ifstream stream(rk::NativePath(path), std::ios::binary);
        return ReadOutlineStream(stream);
    }
    try {
        return Read(ReadAll(path), files.GetBaseFileName(path), isMarkdown);
    } catch (const FileError& error) {
        throw OutlineError{0, error.reason};
    }
}

Outline ReadOutlineStream(std::istream& stream)
{
    std::string bytes;
    while (stream && bytes.size() <= kMaximumOutlineBytes) {
        const std::size_t size = bytes.size();
        bytes.resize(size + kPieceBytes);
        stream.read(bytes.data() + size, kPieceBytes);
        bytes.resize(size + static_cast<std::size_t>(stream.gcount()));
    }
    if (stream.bad() || (bytes.empty() && !stream.eof()))
        throw OutlineError{0, u"cannot be read"};
    return Read(bytes, u"Outline", /*isMarkdown=*/false);
}

}  // namespace mindmap
