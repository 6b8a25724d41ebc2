#include "RkUtilities/paths/CrkPathUtilities.h"
#include "tests/support/Failure.h"
#include "tests/support/ScopedCurrentFolder.h"
#include "tests/support/ScopedFolder.h"
#include "tests/support/ScopedVariable.h"

#include <atomic>
#include <climits>
#include <gtest/gtest.h>
#include <latch>
#include <sys/stat.h>
#include <thread>
#include <vector>

namespace {

using P = CrkPathUtilities;

/// A home folder of the test's own, without variables that lead elsewhere.
class ScopedHome : public ScopedFolder {
public:
    explicit ScopedHome(const char* config = nullptr, const char* data = nullptr)
        : m_home("HOME", Path().substr(0, Path().size() - 1).c_str()), m_config("XDG_CONFIG_HOME", config),
          m_data("XDG_DATA_HOME", data) {}

private:
    ScopedVariable m_home, m_config, m_data, m_caches{"XDG_CACHE_HOME", nullptr};
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
    for (const char* folder : {"Klang", "a\"b$\\", "one", "two", "open", "Music"})
        home.MakeFolder(folder);
    for (const auto& c : kCases) {
        home.Write(".config/user-dirs.dirs", c.line);
        EXPECT_EQ(P::GetSpecialFolderPath(P::MusicFolder), c.folder ? home.Text(c.folder) : CString()) << c.line;
    }

    const ScopedFolder elsewhere;
    const ScopedHome otherHome((elsewhere.Path("config/")).c_str(), "relative");
    elsewhere.Write("config/user-dirs.dirs", "XDG_DESKTOP_DIR=\"" + elsewhere.Path("desk") + "\"");
    EXPECT_EQ(P::GetSpecialFolderPath(P::PreferencesFolder), elsewhere.Text("config"));
    elsewhere.MakeFolder("desk");
    EXPECT_EQ(P::GetSpecialFolderPath(P::DesktopFolder), elsewhere.Text("desk"));
    otherHome.MakeFolder(".local/share");
    EXPECT_EQ(P::GetSpecialFolderPath(P::ApplicationSupportFolder), otherHome.Text(".local/share"));
}

TEST(ReadOnlyFlag, IsTheOwnersPermissionToWriteAndNothingElse) {
    const ScopedFolder folder;
    const CString file = folder.Write("map", "x");
    const std::string path = folder.Path("map");
    for (const unsigned mode : {0644U, 0600U, 04775U, 0222U, 0000U, 0577U, 0066U}) {
        SCOPED_TRACE(mode);
        ASSERT_EQ(chmod(path.c_str(), mode), 0);
        const auto modified = std::filesystem::last_write_time(path);
        const auto modeIs = [&path](unsigned expected) {
            return static_cast<unsigned>(std::filesystem::status(path).permissions()) == expected;
        };
        const bool writable = (mode & S_IWUSR) != 0;
        EXPECT_EQ(P::IsFileReadOnly(file), !writable);
        EXPECT_EQ(P::MakeFileReadOnly(file), writable);
        EXPECT_FALSE(P::MakeFileReadOnly(file));
        EXPECT_TRUE(P::IsFileReadOnly(file));
        EXPECT_TRUE(modeIs(mode & ~static_cast<unsigned>(S_IWUSR)));
        EXPECT_TRUE(P::MakeFileReadWrite(file));
        EXPECT_FALSE(P::MakeFileReadWrite(file));
        EXPECT_FALSE(P::IsFileReadOnly(file));
        EXPECT_TRUE(modeIs(mode | S_IWUSR));
        EXPECT_EQ(std::filesystem::last_write_time(path), modified);
    }
    const CString link = folder.Link("link", "map");  // answers for what it leads to, but changes nothing
    EXPECT_FALSE(P::MakeFileReadOnly(link));
    EXPECT_FALSE(P::IsFileReadOnly(file));
    EXPECT_TRUE(P::MakeFileReadOnly(file));
    EXPECT_FALSE(P::MakeFileReadWrite(link));
    EXPECT_TRUE(P::IsFileReadOnly(link));
    EXPECT_TRUE(P::IsFileReadOnly(file));
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
    ASSERT_EQ(seteuid(0), 0);
    ASSERT_EQ(chown(folder.Path("map").c_str(), 0, 0), 0);
    ASSERT_EQ(seteuid(65534), 0);
    const Failure failure = FailureOf([&] { P::MakeFileReadOnly(file); });
    EXPECT_EQ(failure.cause, CFileException::accessDenied);
    EXPECT_EQ(failure.name, file);
}

TEST(Existence, OfBothMakesASubFolderOfWhatBeginsAlike) {
    const ScopedFolder folder;
    const CString file = folder.Write("file"), sub = folder.MakeFolder("sub");
    const CString within = folder.MakeFolder("sub/x"), likewise = folder.MakeFolder("subway");
    EXPECT_TRUE(P::IsSubFolder(sub, sub));
    EXPECT_TRUE(P::IsSubFolder(sub, within));
    EXPECT_TRUE(P::IsSubFolder(sub, likewise));
    EXPECT_FALSE(P::IsSubFolder(within, sub));
    EXPECT_FALSE(P::IsSubFolder(sub, sub + u"/none"));
    EXPECT_FALSE(P::IsSubFolder(file, file));
    EXPECT_FALSE(P::IsSubFolder(u"", sub));
}

TEST(Existence, ComparesWhatTheSystemCallsTheOpenFiles) {
    const ScopedFolder folder;
    const CString a = folder.Write("a.map", "x"), upper = folder.Write("A.MAP", "y"), b = folder.Write("b.map", "x");
    const CString link = folder.Link("link", "a.map"), sub = folder.MakeFolder("sub"), pipe = folder.Text("pipe");
    ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
    std::filesystem::create_hard_link(folder.Path("b.map"), folder.Path("hard"));
    const CString deleted = folder.Write("gone (deleted)");
    const ScopedCurrentFolder current(folder.Path("sub"));
    for (const CString& same : {a, link, upper, CString(u"../sub/../a.map")})
        EXPECT_TRUE(P::ComparePaths(a, same)) << same;
    EXPECT_TRUE(P::ComparePaths(sub, u"."));
    EXPECT_TRUE(P::ComparePaths(deleted, deleted));
    EXPECT_TRUE(P::ComparePaths(pipe, pipe));  // no process writes into it, and the call does not wait
    EXPECT_FALSE(P::ComparePaths(a, b));
    EXPECT_FALSE(P::ComparePaths(b, folder.Text("hard")));
    for (const CString& none : {folder.Text("none"), folder.Link("broken", "nowhere"), CString(), a + u'\0'})
        EXPECT_FALSE(P::ComparePaths(none, none)) << none;
    std::filesystem::permissions(folder.Path("a.map"), std::filesystem::perms::owner_write);
    const ScopedNobody nobody(folder);
    EXPECT_FALSE(P::ComparePaths(a, link));
}

TEST(Existence, IsAssuredForAFolderAndAllThatLeadToIt) {
    const ScopedHome home;
    home.Make({"file", "broken>nowhere", "sub/", "tosub>sub"});
    const ScopedCurrentFolder current(home.Path());
    const std::pair<CString, const char*> assured[] = {{u"a/b/c", "a/b/c"},     {u"a/b/c", "a/b/c"},
                                                       {u"w\\x\\y\\", "w/x/y"}, {home.Text("d/e/"), "d/e"},
                                                       {u"tosub/k", "sub/k"},   {u"~\\maps/new", "maps/new"}};
    for (const auto& [path, made] : assured) {
        EXPECT_TRUE(P::AssurePathExists(path)) << path;
        EXPECT_TRUE(home.Has(made)) << path;
    }
    for (const CString& path : {home.Text(std::string(256, 'n') + "/x"), home.Text("file"), home.Text("file/x/y"),
                                home.Text("broken"), CString(), home.Text("cut") + u'\0'})
        EXPECT_FALSE(P::AssurePathExists(path)) << path;
    EXPECT_EQ(home.Read("file"), "");
    EXPECT_FALSE(home.Has("cut"));
}

TEST(Existence, IsAssuredForAllWhoAskAtTheSameTime) {
    const ScopedFolder folder;
    for (int round = 0; round < 50; ++round) {
        const CString path = folder.Text("round" + std::to_string(round) + "/a/b/c/d/e/f");
        std::atomic<int> failures = 0;
        std::latch start(4);
        std::vector<std::jthread> threads(4);
        for (std::jthread& thread : threads)
            thread = std::jthread([&] {
                start.arrive_and_wait();
                failures += P::AssurePathExists(path) ? 0 : 1;
            });
        threads.clear();
        ASSERT_EQ(failures, 0) << round;
    }
}

}  // namespace
