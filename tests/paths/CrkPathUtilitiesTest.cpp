#include "tests/support/AtOnce.h"
#include "tests/support/Failure.h"
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
        {u"/USERS/me/e\u0301te\u0301/x", u"/users/ME/\u00C9t\u00E9/y", u"../x"},  // composed and not, both cases
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

// --- On disk ----------------------------------------------------------------------------------------------------

/// A home folder of the test's own, without variables that lead elsewhere.
class ScopedHome : public ScopedFolder {
    ScopedVariable m_home{"HOME", Path().substr(0, Path().size() - 1).c_str()}, m_config{"XDG_CONFIG_HOME", nullptr},
        m_data{"XDG_DATA_HOME", nullptr}, m_caches{"XDG_CACHE_HOME", nullptr};
};

TEST(SpecialFolders, AreThoseOfTheUserAndNeverMade) {
    const ScopedHome home;
    constexpr std::tuple<int, int, const char*> kCases[] = {
        {P::DesktopFolder, 0x6465736B, "Desktop"},  // "desk", and so on
        {P::DocumentsFolder, 0x646F6373, "Documents"}, {P::DownloadsFolder, 0x646F776E, "Downloads"},
        {P::PicturesFolder, 0x70646F63, "Pictures"},   {P::MusicFolder, static_cast<int>(0xB5646F63), "Music"},
        {P::MoviesFolder, 0x6D646F63, "Videos"},       {P::PublicFolder, 0x70756262, "Public"},
        {P::PreferencesFolder, 0x70726566, ".config"}, {P::ApplicationSupportFolder, 0x61737570, ".local/share"},
        {P::CachesFolder, 0x63616368, ".cache"}};
    for (const auto& [named, code, folder] : kCases) {
        EXPECT_EQ(named, code) << folder;
        EXPECT_EQ(P::GetSpecialFolderPath(code), u"");
        EXPECT_FALSE(home.Has(folder));
        home.MakeFolder(folder);
        EXPECT_EQ(P::GetSpecialFolderPath(code), home.Text(folder));
    }
    EXPECT_EQ(P::GetSpecialFolderPath(0x63757372) + u'/', home.Text());  // "cusr"
    EXPECT_EQ(P::GetSpecialFolderPath(0), u"");
}

TEST(SpecialFolders, FollowTheVariablesAndTheSettingsFile) {
    // A line, and the folder in the home folder; null: no such folder.
    constexpr std::pair<const char*, const char*> kCases[] = {
        {"XDG_MUSIC_DIR=\"$HOME/Klang\"", "Klang"},
        {"  XDG_MUSIC_DIR =\t\"$HOME/Klang//\" # mine", "Klang"},
        {R"(XDG_MUSIC_DIR="$HOME/a\"b\$\\")", R"(a"b$\)"},
        {"XDG_MUSIC_DIR=\"$HOME/open", "open"},
        {"XDG_MUSIC_DIR=\"$HOME/one\"\nXDG_MUSIC_DIR=\"$HOME/two\"", "two"},
        {"XDG_MUSIC_DIR=\"$HOME/\"", nullptr},   // switched off
        {"XDG_MUSIC_DIR=$HOME/Klang", "Music"},  // unquoted
        {"XDG_MUSIC_DIR=\"Klang\"", "Music"},    // relative
        {"XDG_MUSIC_DIR=\"$HOMER/Klang\"", "Music"},
        {"XDG_MUSIC_DIRX=\"$HOME/Klang\"", "Music"}};
    const ScopedHome home;
    home.Make({"Klang/", "a\"b$\\/", "one/", "two/", "open/", "Music/"});
    for (const auto& [line, music] : kCases) {
        home.Write(".config/user-dirs.dirs", line);
        EXPECT_EQ(P::GetSpecialFolderPath(P::MusicFolder), music ? home.Text(music) : CString()) << line;
    }

    home.Write("config/user-dirs.dirs", "XDG_DESKTOP_DIR=\"" + home.Path("desk") + "\"");
    home.Make({"desk/", ".local/share/"});
    const ScopedVariable config("XDG_CONFIG_HOME", home.Path("config/").c_str()), data("XDG_DATA_HOME", "relative");
    for (const auto& [code, folder] : {std::pair(P::PreferencesFolder, "config"),
                                       {P::DesktopFolder, "desk"},
                                       {P::ApplicationSupportFolder, ".local/share"}})
        EXPECT_EQ(P::GetSpecialFolderPath(code), home.Text(folder));
}

TEST(ReadOnlyFlag, IsTheOwnersPermissionToWriteAndNothingElse) {
    const ScopedFolder folder;
    const CString file = folder.Write("map", "x");
    for (const unsigned mode : {0644U, 0600U, 04775U, 0222U, 0000U, 0577U, 0066U}) {
        SCOPED_TRACE(mode);
        folder.SetMode("map", mode);
        const auto modified = fs::last_write_time(folder.Path("map"));
        const bool writable = (mode & S_IWUSR) != 0;
        for (const bool first : {true, false})
            EXPECT_EQ(P::MakeFileReadOnly(file), first && writable);
        EXPECT_TRUE(P::IsFileReadOnly(file));
        EXPECT_EQ(folder.Mode("map"), mode & ~static_cast<unsigned>(S_IWUSR));
        for (const bool first : {true, false})
            EXPECT_EQ(P::MakeFileReadWrite(file), first);
        EXPECT_FALSE(P::IsFileReadOnly(file));
        EXPECT_EQ(folder.Mode("map"), mode | S_IWUSR);
        EXPECT_EQ(fs::last_write_time(folder.Path("map")), modified);
    }
    const CString link = folder.Link("link", "map");  // answers for what it leads to, but changes nothing
    EXPECT_FALSE(P::MakeFileReadOnly(link));
    EXPECT_FALSE(P::IsFileReadOnly(link));
    EXPECT_TRUE(P::MakeFileReadOnly(file));
    EXPECT_FALSE(P::MakeFileReadWrite(link));
    EXPECT_TRUE(P::IsFileReadOnly(link));
    for (const CString& missing : {folder.Text("none"), folder.Link("broken", "none"), file + u'\0'})
        EXPECT_EQ(std::tuple(missing, P::IsFileReadOnly(missing), P::MakeFileReadOnly(missing),
                             P::MakeFileReadWrite(missing)),
                  std::tuple(missing, false, false, false));
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can give a file away";
    EXPECT_TRUE(P::MakeFileReadWrite(file));
    const ScopedNobody nobody(folder);
    ASSERT_EQ(seteuid(0) + chown(folder.Path("map").c_str(), 0, 0) + seteuid(65534), 0);
    const Failure failure = FailureOf([&] { P::MakeFileReadOnly(file); });
    EXPECT_EQ(failure.cause, CFileException::accessDenied);
    EXPECT_EQ(failure.name, file);
}

TEST(Existence, OfBothMakesASubFolderOfWhatBeginsAlike) {
    const ScopedFolder folder;
    folder.Make({"file", "sub/x/", "subway/"});
    constexpr std::tuple<const char*, const char*, bool> kCases[] = {
        {"sub", "sub", true},       {"sub", "sub/x", true},  {"sub", "subway", true}, {"sub/x", "sub", false},
        {"sub", "sub/none", false}, {"file", "file", false}, {"none", "sub", false}};
    for (const auto& [path, below, is] : kCases)
        EXPECT_EQ(P::IsSubFolder(folder.Text(path), folder.Text(below)), is) << path << ' ' << below;
}

TEST(Existence, ComparesWhatTheSystemCallsTheOpenFiles) {
    const ScopedFolder folder;
    folder.Make({"a.map=x", "A.MAP=y", "b.map=x", "link>a.map", "broken>nowhere", "sub/", "pipe|", "gone (deleted)"});
    fs::create_hard_link(folder.Path("b.map"), folder.Path("hard"));
    const CString a = folder.Text("a.map"), b = folder.Text("b.map");
    const ScopedCurrentFolder current(folder.Path("sub"));
    for (const CString& same : {a, folder.Text("link"), folder.Text("A.MAP"), CString(u"../sub/../a.map")})
        EXPECT_TRUE(P::ComparePaths(a, same)) << same;
    EXPECT_TRUE(P::ComparePaths(folder.Text("sub"), u"."));
    for (const char* itself : {"gone (deleted)", "pipe"})  // without a writer, and the call does not wait
        EXPECT_TRUE(P::ComparePaths(folder.Text(itself), folder.Text(itself))) << itself;
    EXPECT_FALSE(P::ComparePaths(a, b));
    EXPECT_FALSE(P::ComparePaths(b, folder.Text("hard")));
    for (const CString& none : {folder.Text("none"), folder.Text("broken"), CString(), a + u'\0'})
        EXPECT_FALSE(P::ComparePaths(none, none)) << none;
    folder.SetMode("a.map", 0200);
    const ScopedNobody nobody(folder);
    EXPECT_FALSE(P::ComparePaths(a, folder.Text("link")));
}

TEST(Existence, IsAssuredAlsoBelowTheHomeFolderAndByBackslashes) {
    const ScopedHome home;
    const ScopedCurrentFolder current(home.Path());
    EXPECT_TRUE(P::AssurePathExists(u"w\\x\\y\\"));
    EXPECT_TRUE(P::AssurePathExists(u"~\\maps/new"));
    for (const char* const made : {"w/x/y", "maps/new"})
        EXPECT_TRUE(home.Has(made)) << made;
}

TEST(Existence, IsAssuredForAllWhoAskAtTheSameTime) {
    const ScopedFolder folder;
    for (int round = 0; round < 50; ++round) {
        const CString path = folder.Text("round" + std::to_string(round) + "/a/b/c/d/e/f");
        AtOnce<4>([&] { EXPECT_TRUE(P::AssurePathExists(path)) << round; });
    }
}

}  // namespace
