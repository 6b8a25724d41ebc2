#include "tests/support/AtOnce.h"
#include "tests/support/Failure.h"
#include "tests/support/ScopedCurrentFolder.h"
#include "tests/support/Test.h"

namespace {

using P = CrkPathUtilities;

/// A home folder of the test's own, without variables that lead elsewhere.
class ScopedHome : public ScopedFolder {
    ScopedVariable m_home{"HOME", Path().substr(0, Path().size() - 1).c_str()}, m_config{"XDG_CONFIG_HOME", nullptr},
        m_data{"XDG_DATA_HOME", nullptr}, m_caches{"XDG_CACHE_HOME", nullptr};
};

TEST(SpecialFolders, AreThoseOfTheUserAndNeverMade) {
    const ScopedHome home;
    constexpr struct {
        P::ErkSpecialFolder code;
        const char *characters, *folder;
    } kCases[] = {{P::DesktopFolder, "desk", "Desktop"},
                  {P::DocumentsFolder, "docs", "Documents"},
                  {P::DownloadsFolder, "down", "Downloads"},
                  {P::PicturesFolder, "pdoc", "Pictures"},
                  {P::MusicFolder, "\265doc", "Music"},
                  {P::MoviesFolder, "mdoc", "Videos"},
                  {P::PublicFolder, "pubb", "Public"},
                  {P::PreferencesFolder, "pref", ".config"},
                  {P::ApplicationSupportFolder, "asup", ".local/share"},
                  {P::CachesFolder, "cach", ".cache"}};
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.characters);
        std::uint32_t code = 0;
        for (int i = 0; i < 4; ++i)
            code = code << 8 | static_cast<unsigned char>(c.characters[i]);
        EXPECT_EQ(static_cast<std::uint32_t>(c.code), code);
        EXPECT_EQ(P::GetSpecialFolderPath(c.code), u"");
        EXPECT_FALSE(home.Has(c.folder));
        home.MakeFolder(c.folder);
        EXPECT_EQ(P::GetSpecialFolderPath(c.code), home.Text(c.folder));
    }
    EXPECT_EQ(P::GetSpecialFolderPath(0x63757372) + u'/', home.Text());  // "cusr"
    for (const int unknown : {0, -1, INT_MIN, INT_MAX, 0x736B6564 /* "sked" */})
        EXPECT_EQ(P::GetSpecialFolderPath(unknown), u"");
}

TEST(SpecialFolders, FollowTheVariablesAndTheSettingsFile) {
    constexpr struct {
        const char *line, *folder;  // in the home folder; null: no such folder
    } kCases[] = {{"XDG_MUSIC_DIR=\"$HOME/Klang\"", "Klang"},
                  {"  XDG_MUSIC_DIR =\t\"$HOME/Klang//\" # mine", "Klang"},
                  {R"(XDG_MUSIC_DIR="$HOME/a\"b\$\\")", R"(a"b$\)"},
                  {"XDG_MUSIC_DIR=\"$HOME/open", "open"},
                  {"XDG_MUSIC_DIR=\"$HOME/one\"\nXDG_MUSIC_DIR=\"$HOME/two\"", "two"},
                  {"XDG_MUSIC_DIR=\"$HOME/\"", nullptr},  // switched off
                  {"XDG_MUSIC_DIR=\"/nowhere/at/all\"", nullptr},
                  {"#XDG_MUSIC_DIR=\"$HOME/Klang\"", "Music"},
                  {"XDG_MUSIC_DIR=$HOME/Klang", "Music"},  // unquoted
                  {"XDG_MUSIC_DIR=\"Klang\"", "Music"},    // relative
                  {"XDG_MUSIC_DIR=\"$HOMER/Klang\"", "Music"},
                  {"XDG_MUSIC_DIRX=\"$HOME/Klang\"", "Music"},
                  {"XDG_MUSIC_DIR", "Music"}};
    const ScopedHome home;
    home.Make({"Klang/", "a\"b$\\/", "one/", "two/", "open/", "Music/"});
    for (const auto& c : kCases) {
        home.Write(".config/user-dirs.dirs", c.line);
        EXPECT_EQ(P::GetSpecialFolderPath(P::MusicFolder), c.folder ? home.Text(c.folder) : CString()) << c.line;
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
        const auto modified = std::filesystem::last_write_time(folder.Path("map"));
        const bool writable = (mode & S_IWUSR) != 0;
        for (const bool first : {true, false})
            EXPECT_EQ(P::MakeFileReadOnly(file), first && writable);
        EXPECT_TRUE(P::IsFileReadOnly(file));
        EXPECT_EQ(folder.Mode("map"), mode & ~static_cast<unsigned>(S_IWUSR));
        for (const bool first : {true, false})
            EXPECT_EQ(P::MakeFileReadWrite(file), first);
        EXPECT_FALSE(P::IsFileReadOnly(file));
        EXPECT_EQ(folder.Mode("map"), mode | S_IWUSR);
        EXPECT_EQ(std::filesystem::last_write_time(folder.Path("map")), modified);
    }
    const CString link = folder.Link("link", "map");  // answers for what it leads to, but changes nothing
    for (const bool isReadOnly : {false, true}) {
        EXPECT_FALSE(isReadOnly ? P::MakeFileReadWrite(link) : P::MakeFileReadOnly(link));
        EXPECT_EQ(P::IsFileReadOnly(link), isReadOnly);
        EXPECT_EQ(P::IsFileReadOnly(file), isReadOnly);
        EXPECT_EQ(P::MakeFileReadOnly(file), !isReadOnly);
    }
    for (const CString& missing : {folder.Text("none"), folder.Link("broken", "none"), CString(), file + u'\0'}) {
        EXPECT_FALSE(P::MakeFileReadOnly(missing));
        EXPECT_FALSE(P::MakeFileReadWrite(missing));
        EXPECT_FALSE(P::IsFileReadOnly(missing + u"/x"));
    }
}

TEST(ReadOnlyFlag, ThrowsWhenTheFileBelongsToSomebodyElse) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can give a file away";
    const ScopedFolder folder;
    const CString file = folder.Write("map");
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
    EXPECT_FALSE(P::IsSubFolder(u"", folder.Text("sub")));
}

TEST(Existence, ComparesWhatTheSystemCallsTheOpenFiles) {
    const ScopedFolder folder;
    folder.Make({"a.map=x", "A.MAP=y", "b.map=x", "link>a.map", "broken>nowhere", "sub/", "pipe|", "gone (deleted)"});
    std::filesystem::create_hard_link(folder.Path("b.map"), folder.Path("hard"));
    const CString a = folder.Text("a.map"), b = folder.Text("b.map");
    const ScopedCurrentFolder current(folder.Path("sub"));
    for (const CString& same : {a, folder.Text("link"), folder.Text("A.MAP"), CString(u"../sub/../a.map")})
        EXPECT_TRUE(P::ComparePaths(a, same)) << same;
    EXPECT_TRUE(P::ComparePaths(folder.Text("sub"), u"."));
    for (const char* itself :
         {"gone (deleted)", "pipe"})  // no process writes into the pipe, and the call does not wait
        EXPECT_TRUE(P::ComparePaths(folder.Text(itself), folder.Text(itself)));
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
    home.Make({"sub/", "tosub>sub"});
    const ScopedCurrentFolder current(home.Path());
    for (const auto& [path, made] :
         {std::pair(CString(u"w\\x\\y\\"), "w/x/y"), {u"tosub/k", "sub/k"}, {u"~\\maps/new", "maps/new"}}) {
        EXPECT_TRUE(P::AssurePathExists(path)) << path;
        EXPECT_TRUE(home.Has(made)) << path;
    }
}

TEST(Existence, IsAssuredForAllWhoAskAtTheSameTime) {
    const ScopedFolder folder;
    for (int round = 0; round < 50; ++round) {
        const CString path = folder.Text("round" + std::to_string(round) + "/a/b/c/d/e/f");
        AtOnce<4>([&] { EXPECT_TRUE(P::AssurePathExists(path)) << round; });
    }
}

}  // namespace
