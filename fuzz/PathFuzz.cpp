// Paths come apart into parts that make them up again, and a relative path leads to its target.
#include "fuzz/Fuzz.h"

namespace {

using P = CrkPathUtilities;

void RequireParts(const CString& path) {
    const CString name = P::FileWithExtensionFromFilename(path);
    const CString base = P::FileWithoutExtensionFromFilename(path), extension = P::GetExtensionFromFileName(path);
    Require(P::PathFromFilename(path) + name == path);
    Require(name.FindOneOf(u"/\\") < 0 && extension.FindOneOf(u"./\\") < 0);
    Require(base == name ? name.ReverseFind(u".") < 0 : base + u'.' + extension == name);
}

void RequireRepairs(const CString& path) {
    CString normal = path;
    P::NormalizePath(&normal);
    CString again = normal;
    P::NormalizePath(&again);
    Require(again == normal && (normal.IsEmpty() || P::FileWithExtensionFromFilename(normal).IsEmpty()));

    CString name = path;
    P::RemoveInvalidCharsFromFilename(name, 0);
    Require(P::DoesFilenameUseOnlyValidCharacters(name) && name.FindOneOf(u"\r\n") < 0);
    CString quoted = path;
    P::QuotePath(quoted);
    Require(P::UnquotePath(quoted) && quoted == path);
    Require(P::HasExtension(P::AddExtension(path, u"map"), u".MAP"));
}

void RequireRelative(const CString& target, const CString& base) {
    const CString relative = P::CalcRelativePathname(target, base);
    Require(relative == u"." || relative.View().starts_with(u"./") || relative.View().starts_with(u".."));
    Require(!relative.View().ends_with(u'/'));
    Require(P::CalcRelativePathname(base + u'/' + relative, target) == u".");
    Require(P::CalcRelativePathname(target, target + u"//.") == u".");
}

}  // namespace

void Try(FuzzedDataProvider& data) {
    const std::string bytes = data.ConsumeRemainingBytesAsString();
    std::u16string units(bytes.size() / 2, u'\0');
    bytes.copy(reinterpret_cast<char*>(units.data()), units.size() * 2);
    for (const CString& text : {CString(units), CString(bytes)}) {
        RequireParts(text);
        RequireRepairs(text);
        const int middle = text.GetLength() / 2;
        RequireRelative(u'/' + text.Left(middle), u'/' + text.Mid(middle));
    }
}
