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
    EXPECT_FALSE(P::MakeFileReadOnly(link));
    EXPECT_FALSE(P::IsFileReadOnly(link));
    EXPECT_TRUE(P::MakeFileReadOnly(file));
    EXPECT_FALSE(P::MakeFileReadWrite(link));
    EXPECT_TRUE(P::IsFileReadOnly(link));
    for (const CString& missing : {folder.Text("none"), folder.Link("broken", "none"), file + u'\0'})
        EXPECT_FALSE(P::MakeFileReadOnly(missing) || P::MakeFileReadWrite(missing)) << missing;
    EXPECT_FALSE(P::IsFileReadOnly(folder.Text("none")));
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
    for (const auto& [path, made] : {std::pair(CString(u"w\\x\\y\\"), "w/x/y"), {u"~\\maps/new", "maps/new"}}) {
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
