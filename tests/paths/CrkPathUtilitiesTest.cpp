#include "RkUtilities/paths/CrkPathUtilities.h"

#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/paths/SECFileSystem.h"

#include "tests/support/ScopedCurrentFolder.h"
#include "tests/support/ScopedFolder.h"
#include "tests/support/ScopedVariable.h"

#include <gtest/gtest.h>
#include <random>
#include <sys/stat.h>
#include <thread>
#include <vector>

namespace {

using Paths = CrkPathUtilities;

struct SplitRow {
    const char* path;
    const char* folder;
    const char* base;
    const char* extension;
};
constexpr SplitRow kSplitRows[] = {
    {"", "", "", ""},
    {"/maps/plan.old.map", "/maps/", "plan.old", "map"},  // extension taken from the first dot
    {"/maps.v2/plan", "/maps.v2/", "plan", ""},           // dot searched in the whole path
    {"a/b\\c.map", "a/b\\", "c", "map"},                  // one kind of separator preferred to the last of both
    {"a\\b/c.map", "a\\b/", "c", "map"},
    {".profile", "", "", "profile"},  // hidden names treated as all base
    {"plan.", "", "plan", ""},
    {"/a/b/", "/a/b/", "", ""},
    {"C:\\dir\\f.txt", "C:\\dir\\", "f", "txt"},
};

TEST(Paths, ComeApartAtTheLastSeparatorAndTheLastDotAfterIt)
{
    for (const SplitRow& row : kSplitRows) {
        SCOPED_TRACE(row.path);
        const CString path(row.path);
        EXPECT_EQ(Paths::PathFromFilename(path), CString(row.folder));
        EXPECT_EQ(Paths::FileWithoutExtensionFromFilename(path), CString(row.base));
        EXPECT_EQ(Paths::GetExtensionFromFileName(path), CString(row.extension));
        EXPECT_EQ(Paths::PathFromFilename(path) + Paths::FileWithExtensionFromFilename(path), path);
        EXPECT_EQ(SECFileSystem().GetBaseFileName(path), CString(row.base));
        EXPECT_EQ(SECFileSystem().GetExtension(path), CString(row.extension));
    }
    EXPECT_EQ(SECFileSystem().GetPath(u"C:\\dir\\f.txt", 0), u"\\dir\\");
    EXPECT_EQ(SECFileSystem().GetPath(u"/a:b/c", 0), u"b/");
    EXPECT_EQ(SECFileSystem().GetPath(u"/a:b/c", 1), u"/a:b/");
}

TEST(Paths, GetAndLoseSlashesAndSpaces)
{
    const char* const rows[][5] = {
        // path, strip, assure, keep, normalised in place
        {"a\\b\\", "a/b", "a/b/", "a/b/", "a/b/"},
        {"a\\b", "a/b", "a/b/", "a/b", "a/b/"},
        {"/", "", "/", "/", "/"},
        {"", "", "", "", ""},
        {"a//", "a/", "a//", "a//", "a//"},
        {"   ", "   ", "   /", "   ", ""},
        {"  C\\dir\\sub  ", "  C/dir/sub  ", "  C/dir/sub  /", "  C/dir/sub  ", "C/dir/sub/"},
        {"\t a", "\t a", "\t a/", "\t a", "\t a/"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row[0]);
        CString path(row[0]);
        EXPECT_EQ(Paths::NormalizedPath(path, Paths::StripTrailingChar), CString(row[1]));
        EXPECT_EQ(Paths::NormalizedPath(path, Paths::AssureTrailingChar), CString(row[2]));
        EXPECT_EQ(Paths::NormalizedPath(path, static_cast<Paths::TrailingCharTreatment>(77)), CString(row[3]));
        Paths::NormalizePath(&path);
        EXPECT_EQ(path, CString(row[4]));
        Paths::AssignDirString(path, path);
        EXPECT_EQ(path, CString(row[4]));
    }
    Paths::NormalizePath(nullptr);
    EXPECT_EQ(Paths::AppendToPath(u"", u"x"), u"x");
    EXPECT_EQ(Paths::AppendToPath(u"/a/", u"/b"), u"/a//b");
}

TEST(Paths, BecomeAbsoluteFromTheCurrentFolder)
{
    const ScopedFolder folder;
    const ScopedCurrentFolder current(folder.Path());
    const CString here = rk::PathText(std::filesystem::current_path().native());
    EXPECT_EQ(Paths::GetAbsolutePath(u"../y"), here + u"/../y");
    EXPECT_EQ(Paths::GetAbsolutePath(u"~/x"), u"~/x");
    EXPECT_FALSE(Paths::IsAbsoluteFilename(u"~/x"));
    EXPECT_EQ(Paths::GetAbsolutePath(u""), u"");
    EXPECT_EQ(Paths::RelativeToAbsoluteFilename(u"y", u"base"), here + u"/base/y");
    EXPECT_EQ(Paths::RelativeToAbsoluteFilename(u"/x/y", u"/base"), u"/x/y");
    EXPECT_EQ(Paths::RelativeToAbsoluteFilename(u"../y", u"/base/"), u"/base/../y");
    EXPECT_TRUE(Paths::AreFilenamesEqual(u"/A/b.TXT", u"/a/B.txt"));
    EXPECT_TRUE(Paths::AreFilenamesEqual(u"b", here + u"/B"));
    EXPECT_FALSE(Paths::AreFilenamesEqual(u"/a/b", u"/a/b/"));
    const char* const rows[][3] = {{"/a/b/c.txt", "/a/b", "c.txt"},
                                   {"/a/b/c.txt", "/a/b/", "c.txt"},
                                   {"/a/b/c.txt", "/x", "/a/b/c.txt"},
                                   {"/a/bc/d", "/a/b", "c/d"},
                                   {"/a/b", "/a/b", ""},
                                   {"/a", "", "/a"}};
    for (const auto& row : rows)
        EXPECT_EQ(Paths::AbsoluteToRelativeFilename(row[0], row[1]), CString(row[2])) << row[0];
}

TEST(Paths, LeadFromABaseFolderToATarget)
{
    const ScopedVariable home("HOME", "/home/me");
    const ScopedCurrentFolder current("/usr");
    const char* const rows[][3] = {
        {"/a/b/c/f.txt", "/a/b/d", "../c/f.txt"},
        {"/a/b/f.txt", "/a/b", "./f.txt"},
        {"/a", "/a/b/c", "../.."},
        {"/a/b/", "/a/b", "."},
        {"/Users/Me/x", "/users/me", "./x"},
        {"/", "/", "."},
        {"/a", "/", "./a"},
        {"/", "/a/b", "../.."},
        {"/ab", "/a", "../ab"},
        {"/\xC3\x89t\xC3\xA9/x", "/e\xCC\x81te\xCC\x81", "./x"},  // composed against decomposed, other case
        {"/a//b/./c", "/a/x/../b", "./c"},
        {"lib/x", "/usr", "./lib/x"},
        {"~/x", "/home", "./me/x"},
        {"", "/a", ""},
        {"/a", "", ""},
        {"/a/%20 b", "/a", "./%20 b"}};
    for (const auto& row : rows)
        EXPECT_EQ(Paths::CalcRelativePathname(row[0], row[1]), CString(row[2])) << row[0] << " from " << row[1];
}

TEST(NativePaths, SurviveForEveryNameThatASystemCanHold)
{
    const ScopedVariable home("HOME", "/home/me");
    EXPECT_EQ(rk::NativePath(u"~/x"), "/home/me/x");
    EXPECT_EQ(rk::NativePath(u"~x"), "~x");
    EXPECT_EQ(rk::NativePath(u"/a/~/\xD800"), "/a/~/\xEF\xBF\xBD");
    std::mt19937 random(9);
    const std::string_view likely = "a/\x80\xBF\xC3\xA9\xED\xB2\x80\xF0\x9F\x98\xE2\x82\xAC";
    for (int round = 0; round < 20000; ++round) {
        std::string bytes = "/";
        for (std::size_t left = random() % 12; left > 0; --left)
            bytes += random() % 4 == 0 ? static_cast<char>(1 + random() % 255) : likely[random() % likely.size()];
        ASSERT_EQ(rk::NativePath(rk::PathText(bytes)), bytes) << testing::PrintToString(bytes);
    }
}

TEST(PathsOnDisk, AreComparedByWhatIsOpen)
{
    const ScopedFolder folder;
    const CString file = folder.Write("sub/File.txt");
    const CString link = folder.Link("link", "sub/File.txt");
    const CString sub = folder.Text("sub");
    ASSERT_EQ(mkfifo(folder.Path("fifo").c_str(), 0600), 0);
    EXPECT_TRUE(Paths::ComparePaths(file, link));
    EXPECT_TRUE(Paths::ComparePaths(folder.Text("fifo"), folder.Text("sub/../fifo")));
    EXPECT_FALSE(Paths::ComparePaths(file, folder.Text("missing")));
    EXPECT_FALSE(Paths::ComparePaths(file, folder.Write("other")));
    EXPECT_TRUE(Paths::IsSubFolder(folder.Text(), sub));
    folder.MakeFolder("subway");
    EXPECT_TRUE(Paths::IsSubFolder(sub, folder.Text("subway")));
    EXPECT_FALSE(Paths::IsSubFolder(folder.Text(), file));
}

TEST(PathsOnDisk, ChangeOnlyTheFileTheyAreAskedTo)
{
    const ScopedFolder folder;
    const CString file = folder.Write("file");
    const CString link = folder.Link("link", "file");
    chmod(folder.Path("file").c_str(), 0751);
    EXPECT_FALSE(Paths::MakeFileReadWrite(file));
    EXPECT_FALSE(Paths::MakeFileReadOnly(link));
    EXPECT_FALSE(Paths::IsFileReadOnly(link));
    EXPECT_TRUE(Paths::MakeFileReadOnly(file));
    EXPECT_FALSE(Paths::MakeFileReadOnly(file));
    EXPECT_TRUE(Paths::IsFileReadOnly(file) && Paths::IsFileReadOnly(link));
    struct stat facts {};
    stat(folder.Path("file").c_str(), &facts);
    EXPECT_EQ(facts.st_mode & 07777, 0551U);
    EXPECT_TRUE(Paths::MakeFileReadWrite(file));
    EXPECT_FALSE(Paths::IsFileReadOnly(file));
    for (const CString& missing : {folder.Text("missing"), CString()})
        EXPECT_FALSE(Paths::IsFileReadOnly(missing) || Paths::MakeFileReadOnly(missing) ||
                     Paths::MakeFileReadWrite(missing));
    EXPECT_TRUE(Paths::FileNotDirectoryExists(file));
    EXPECT_FALSE(Paths::FileNotDirectoryExists(folder.Text()) || Paths::FileNotDirectoryExists(folder.Text("missing")));
}

TEST(PathsOnDisk, FoldersAreMadeByManyAtOnce)
{
    const ScopedFolder folder;
    const CString deep = folder.Text("a\\b/c") + u"\\d/";
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] { EXPECT_TRUE(Paths::AssurePathExists(deep)); });
    threads.clear();
    EXPECT_TRUE(folder.Has("a/b/c/d"));
    folder.Write("file");
    EXPECT_FALSE(Paths::AssurePathExists(folder.Text("file/x")));
    EXPECT_FALSE(Paths::AssurePathExists(folder.Text("file")));
}

TEST(PathsOnDisk, SpecialFoldersAreTheUsersWhereTheyExist)
{
    const ScopedFolder home;
    const ScopedVariable variables[] = {{"HOME", home.Path("me").c_str()},
                                        {"XDG_CONFIG_HOME", nullptr},
                                        {"XDG_DATA_HOME", "relative"},
                                        {"XDG_CACHE_HOME", home.Path("caches").c_str()}};
    EXPECT_EQ(Paths::GetSpecialFolderPath(Paths::HomeFolder), u"");
    home.Write("me/.config/user-dirs.dirs",
               "# a comment\nXDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\nXDG_MUSIC_DIR=\"$HOME/\"\n");
    for (const char* name : {"me/Schreibtisch", "me/Documents", "me/Music", "me/.local/share", "caches"})
        home.MakeFolder(name);
    const std::pair<int, CString> rows[] = {{Paths::HomeFolder, home.Text("me")},
                                            {Paths::DesktopFolder, home.Text("me/Schreibtisch")},
                                            {Paths::DocumentsFolder, home.Text("me/Documents")},
                                            {Paths::MusicFolder, u""},  // switched off
                                            {Paths::PicturesFolder, u""},
                                            {Paths::PreferencesFolder, home.Text("me/.config")},
                                            {Paths::ApplicationSupportFolder, home.Text("me/.local/share")},
                                            {Paths::CachesFolder, home.Text("caches")},
                                            {0, u""},
                                            {-1, u""}};
    for (const auto& [code, path] : rows)
        EXPECT_EQ(Paths::GetSpecialFolderPath(code), path) << std::hex << code;
}

}  // namespace
