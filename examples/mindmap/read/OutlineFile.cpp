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

/// Puts together what `readPiece` reads, until it reads nothing or the outline is too long.
template <class ReadPiece> std::string ReadAll(ReadPiece readPiece) {
    std::string bytes;
    for (std::size_t count = 1; count > 0 && bytes.size() <= kMaximumOutlineBytes;) {
        const std::size_t size = bytes.size();
        bytes.resize(size + kPieceBytes);
        count = readPiece(bytes.data() + size);
        bytes.resize(size + count);
    }
    return bytes;
}

std::string ReadFile(const CString& path) {
    CFileException failure;
    CFile file;
    if (!file.Open(path, CFile::modeRead | CFile::shareDenyNone, &failure))
        throw FileError{path, ReasonOf(failure)};
    std::string bytes;
    Attempt(path, [&] { bytes = ReadAll([&](char* piece) { return file.Read(piece, kPieceBytes); }); });
    return bytes;
}

bool BeginsLikeXml(std::string_view document) {
    if (document.starts_with("\xFF\xFE") || document.starts_with("\xFE\xFF"))
        return true;  // UTF-16, which no text outline is
    if (document.starts_with("\xEF\xBB\xBF"))
        document.remove_prefix(3);
    const std::size_t first = document.find_first_not_of(" \t\r\n");
    return first != std::string_view::npos && document[first] == '<';
}

Outline Read(const std::string& document, const CString& title, bool isMarkdown) {
    if (document.size() > kMaximumOutlineBytes)
        throw OutlineError{0, u"the outline is longer than 64 MiB"};
    if (BeginsLikeXml(document))
        return ReadOpml(document, title);
    return ReadTextOutline(document, isMarkdown ? TextSyntax::Markdown : GuessTextSyntax(document), title);
}

}  // namespace

Outline ReadOutlineFile(const CString& path) {
    const SECFileSystem files;
    const CString extension = files.GetExtension(path);
    const bool isMarkdown = extension.CompareNoCase(u"md") == 0 || extension.CompareNoCase(u"markdown") == 0;
    std::error_code absent;
    if (std::filesystem::is_other(rk::NativePath(path), absent)) {  // a pipe, which cannot be opened for sharing
        std::ifstream stream(rk::NativePath(path), std::ios::binary);
        return ReadOutlineStream(stream);
    }
    try {
        return Read(ReadFile(path), files.GetBaseFileName(path), isMarkdown);
    } catch (const FileError& error) {
        throw OutlineError{0, error.reason};
    }
}

Outline ReadOutlineStream(std::istream& stream) {
    const std::string bytes = ReadAll([&](char* piece) {
        stream.read(piece, kPieceBytes);
        return static_cast<std::size_t>(stream.gcount());
    });
    if (stream.bad() || (bytes.empty() && !stream.eof()))
        throw OutlineError{0, u"cannot be read"};
    return Read(bytes, u"Outline", /*isMarkdown=*/false);
}

}  // namespace mindmap
