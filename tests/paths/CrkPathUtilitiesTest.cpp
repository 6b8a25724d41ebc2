#include "tests/support/ScopedCurrentFolder.h"
#include "tests/support/Test.h"

namespace {

namespace fs = std::filesystem;
using P = CrkPathUtilities;

TEST(Paths, ComeApartAtTheLastSeparatorAndTheLastDotAfterIt) {
    // A path; its folder, the same without a drive, its base name and its extension.
    constexpr std::tuple<const char*, const char*, const char*, const char*, const char*> kCases[] = {
        {"", "", "", "", ""},
        {"/maps/plan.old.map", "/maps/", "/maps/", "plan.old", "map"},  // extension taken from the first dot
        {"/maps.v2/plan", "/maps.v2/", "/maps.v2/", "plan", ""},        // dot searched in the whole path
        {"a/b\\c.map", "a/b\\", "a/b\\", "c", "map"},  // one kind of separator preferred to the last of both
        {".cfg", "", "", "", "cfg"},                   // hidden names treated as all base
        {"/a/plan.", "/a/", "/a/", "plan", ""},        // a closing dot kept in the base
        {"C:\\dir\\f.txt", "C:\\dir\\", "\\dir\\", "f", "txt"},
        {"/a:b/c", "/a:b/", "b/", "c", ""},  // only a drive letter's colon counted
    };
    const SECFileSystem files;
    for (const auto& [path, folder, folderWithoutDrive, base, extension] : kCases) {
        SCOPED_TRACE(path);
        EXPECT_EQ(P::PathFromFilename(path), CString(folder));
        EXPECT_EQ(P::FileWithoutExtensionFromFilename(path), CString(base));
        EXPECT_EQ(P::GetExtensionFromFileName(path), CString(extension));
        EXPECT_EQ(files.GetPath(path, 0), CString(folderWithoutDrive));
        EXPECT_EQ(files.GetBaseFileName(path), CString(base));
        EXPECT_EQ(files.GetExtension(path), CString(extension));
    }
}

TEST(Paths, GetAndLoseTheirTrailingSlash) {
    // A path; what it is assured and stripped; by NormalizedPath and by NormalizePath.
    constexpr std::tuple<const char*, const char*, const char*, const char*, const char*> kCases[] = {
        {"", "", "", "", ""},
        {"/", "/", "", "/", "/"},
        {"a//", "a//", "a/", "a//", "a//"},  // all slashes stripped
        {"a\\b\\", "a\\b\\/", "a\\b\\", "a/b/", "a/b/"},
        {"   ", "   /", "   ", "   ", ""},                          // a slash added to nothing
        {" \ta \t", " \ta \t/", " \ta \t", " \ta \t", "\ta \t/"}};  // a tab trimmed
    for (const auto& [path, assured, stripped, normalized, repaired] : kCases) {
        SCOPED_TRACE(path);
        CString withSlash, withoutSlash(path), repairedPath(path);
        P::AssignDirString(path, withSlash);
        P::StripTrailingSlash(&withoutSlash);
        P::NormalizePath(&repairedPath);
        EXPECT_EQ(withSlash, CString(assured));
        EXPECT_EQ(withoutSlash, CString(stripped));
        EXPECT_EQ(repairedPath, CString(repaired));
        EXPECT_EQ(P::NormalizedPath(path, P::KeepTrailingChar), CString(normalized));
    }
    EXPECT_EQ(P::NormalizedPath(u"\\a", P::AssureTrailingChar), u"/a/");
    EXPECT_EQ(P::NormalizedPath(u"a\\b\\", P::StripTrailingChar), u"a/b");
    for (auto* const change :
         {P::AssureTrailingSlash, P::StripTrailingSlash, P::NormalizePath, P::StripLeadingSpace, P::StripTrailingSpace})
        change(nullptr);
}

TEST(Paths, BecomeAbsoluteAndRelativeByTheirText) {
    for (const char* const path : {"/", "", "~/x", "\\x"})
        EXPECT_EQ(P::IsAbsoluteFilename(path), *path == '/') << path;
    using Case = std::tuple<const char*, const char*, const char*>;
    constexpr Case kAppended[] = {{"", "x", "x"}, {"/a/", "/b", "/a//b"}, {"/a", "b", "/a/b"}, {"a\\", "b", "a\\/b"}};
    for (const auto& [first, second, result] : kAppended)
        EXPECT_EQ(P::AppendToPath(first, second), CString(result));

    constexpr Case kAbsolute[] = {{"/x/y", "/base", "/x/y"},        {"y", "/base", "/base/y"},
                                  {"../y", "/base/", "/base/../y"}, {"~/y", "/base", "/base/~/y"},
                                  {"y", "~/base", "~/base/y"},      {"", "/base", "/base/"}};
    for (const auto& [path, base, result] : kAbsolute)
        EXPECT_EQ(P::RelativeToAbsoluteFilename(path, base), CString(result));

    constexpr Case kRelative[] = {{"/a/b/c.txt", "/a/b", "c.txt"},
                                  {"/a/b/c.txt", "/a/b/", "c.txt"},
                                  {"/a/bc/d", "/a/b", "c/d"},  // whole elements only
                                  {"/A/b", "/a", "/A/b"},      // without regard to case
                                  {"/a/b", "/b", "/a/b"},      // found elsewhere than at the start
                                  {"/a/b", "", "/a/b"},        // a slash taken although nothing was cut
                                  {"/a//b", "/a", "/b"},       // more than one slash taken
                                  {"/a", "/a", ""}};
    for (const auto& [path, base, result] : kRelative)
        EXPECT_EQ(P::AbsoluteToRelativeFilename(path, base), CString(result)) << path << ' ' << base;

    EXPECT_EQ(P::GetLowercaseLongPath(u"/A/\u00C4~1.TXT"), u"/a/\u00E4~1.txt");
}

TEST(Paths, StartAtTheCurrentFolder) {
    const ScopedFolder scratch(fs::canonical(fs::temp_directory_path()));
    const CString folder = scratch.MakeFolder("Now \xE9");  // a name that is no UTF-8
    const ScopedCurrentFolder current(scratch.Path("Now \xE9"));
    EXPECT_EQ(P::GetAbsolutePath(u"a/../b/."), folder + u"/a/../b/.");
    EXPECT_EQ(SECFileSystem().GetFullPathName(u"x"), folder + u"/x");
    for (const char* unchanged : {"", "/", "/a/../b", "~", "~/x", "~x"})
        EXPECT_EQ(P::GetAbsolutePath(unchanged), CString(unchanged));
    EXPECT_TRUE(P::AreFilenamesEqual(u"X.map", folder + u"/x.MAP"));
    EXPECT_FALSE(P::AreFilenamesEqual(u"X.map", u"/x.map"));
    EXPECT_EQ(P::CalcRelativePathname(folder, u"maps"), u"..");
    EXPECT_EQ(P::CalcRelativePathname(u"~x/y", u"~x/z"), u"../y");
    fs::remove(scratch.Path("Now \xE9"));
    EXPECT_EQ(P::GetAbsolutePath(u"x"), u"x");
    EXPECT_EQ(P::CalcRelativePathname(u"x", u"/a"), u"");
    EXPECT_EQ(P::CalcRelativePathname(u"/a", u"x"), u"");
}

TEST(Paths, LeadToTheTargetWhateverTheCaseAndTheComposition) {
    constexpr std::tuple<const char16_t*, const char16_t*, const char16_t*> kCases[] = {
        {u"/Users/Me/x", u"/users/me", u"./x"},
        {u"/a/b/./c/../d//e/", u"/a/../a/y/z", u"../../b/d/e"},
        {u"/a/b/..", u"/../a/", u"."},
        {u"/USERS/me/\u00C9t\u00E9/x", u"/users/ME/e\u0301te\u0301", u"./x"},  // composed and not, both cases
        {u"/Stra\u00DFe/x", u"/STRASSE", u"./x"},
        {u"/a\u0301b/x", u"/\u00E1c", u"../a\u0301b/x"},  // a common part that ends inside a character
        {u"/\u0130/x", u"/i", u"../\u0130/x"},
        {u"/a\\b/c", u"/a", u"../a\\b/c"},  // "\" taken for a separator
        {u"", u"/a", u""},
        {u"/a", u"", u""},
        {u"~/x", u"/home", u"./ann/x"}};
    const ScopedVariable home("HOME", "/home/ann");
    for (const auto& [target, base, result] : kCases)
        EXPECT_EQ(P::CalcRelativePathname(target, base), result) << CString(target) << " from " << CString(base);
}

}  // namespace
