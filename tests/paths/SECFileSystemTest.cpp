#include "tests/support/Failure.h"
#include "tests/support/ScopedCurrentFolder.h"
#include "tests/support/ScopedFileSizeLimit.h"
#include "tests/support/Test.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>

namespace {

namespace fs = std::filesystem;

const SECFileSystem files;

void MakeTree(const ScopedFolder& folder, const std::string& root) {
    folder.Make({root + "/file=content", root + "/a/b/deep=deep", "0444 " + root + "/a/readonly=ro",
                 "0555 " + root + "/a/b/", root + "/empty/", root + "/to-file>file", root + "/to-a>a",
                 root + "/a/up>..", root + "/nowhere>missing", root + "/pipe|", root + "/" + std::string(255, 'n')});
    folder.Write(root + "/line\nbreak \"$HOME\" \\ \xE9\xFF", "odd");
    ASSERT_EQ(mknod(folder.Path(root + "/socket").c_str(), S_IFSOCK | 0600, 0), 0);
}

// --- Status, making, renaming, deleting ------------------------------------------------------------------------------

TEST(FileSystem, AnswersAboutWhatIsThereAndLeavesTheOutputAloneElse) {
    const ScopedFolder folder;
    folder.Make({"file=12345", "folder/", "to-folder>folder", "nowhere>missing", "full/.hidden"});
    constexpr std::pair<const char*, const char*> kCases[] = {
        // exists, folder, empty, file
        {"", "ed--"},        {"file", "e--f"},  {"nowhere", "e--f"}, {"to-folder", "ede-"},
        {"missing", "----"}, {"file/", "----"}, {"full", "ed--"}};
    for (const auto& [name, is] : kCases) {
        const CString path = folder.Text(name);
        std::string found = files.FileExists(path) ? "e" : "-";
        found += files.DirectoryExists(path) ? 'd' : '-';
        found += files.IsDirectoryEmpty(path) ? 'e' : '-';
        found += CrkPathUtilities::FileNotDirectoryExists(path) ? 'f' : '-';
        EXPECT_EQ(found, is) << name;
    }
    const timespec times[] = {{978'307'200 + 20, 0}, {978'307'200 + 10, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, folder.Path("file").c_str(), times, 0), 0);
    CTime created, modified, accessed;
    EXPECT_TRUE(files.GetFileCreateTime(folder.Text("file"), created));
    EXPECT_TRUE(files.GetFileModifyTime(folder.Text("file"), modified));
    EXPECT_TRUE(files.GetFileAccessTime(folder.Text("file"), accessed));
    EXPECT_FALSE(files.GetFileModifyTime(folder.Text("missing"), modified));
    EXPECT_GE(created, modified);
    EXPECT_EQ(modified.GetCFAbsoluteTime(), 10);
    EXPECT_EQ(accessed.GetCFAbsoluteTime(), 20);
}

TEST(FileSystem, MakesOneFolderOrTheWholeChain) {
    using Make = bool (*)(const CString& path);
    constexpr Make kMakes[] = {[](const CString& path) { return files.MakeDirectory(path); },
                               [](const CString& path) { return files.MakePath(path); },
                               &CrkPathUtilities::AssurePathExists};
    const std::string longest(255, 'n'), tooLong(256, 'n'), cut("a\0b", 3);
    const std::pair<std::string, const char*> cases[] = {
        {"new", "yyy"},     {"closing/", "yyy"}, {"a/b/c/d/e/f/g/h", "-yy"}, {"a//b/./c//", "-yy"}, {"a/../b", "-yy"},
        {"folder/", "--y"}, {"file", "---"},     {"file/new", "---"},        {longest, "yyy"},      {tooLong, "---"},
        {cut, "---"}};
    for (const auto& [name, gives] : cases) {
        std::string given;
        for (const Make make : kMakes) {
            const ScopedFolder folder;
            folder.Make({"file", "folder/"});
            given += make(folder.Text(name)) ? 'y' : '-';
            EXPECT_EQ(files.DirectoryExists(folder.Text(name)), given.back() == 'y' || name == "folder/") << name;
            EXPECT_FALSE(make(CString()));
        }
        EXPECT_EQ(given, gives) << name;
    }
}

TEST(FileSystem, RenamesToAFreeNameAndMovesAcrossFileSystems) {
    const ScopedFolder folder;
    folder.Make({"a=A", "b=B"});
    MakeTree(folder, "tree");
    folder.SetMode("tree/a/b", 0755);  // else only root may empty it
    const CString a = folder.Text("a"), b = folder.Text("b"), missing = folder.Text("missing");
    EXPECT_TRUE(files.RenameFile(missing, missing));
    for (const auto& [from, to] : {std::pair(missing, folder.Text("new")), {a, b}}) {
        EXPECT_FALSE(files.RenameFile(from, to)) << from;
        EXPECT_FALSE(files.RenameDirectory(from, to)) << from;
    }
    EXPECT_FALSE(files.RenameDirectory(folder.Text("tree"), folder.Text("tree/a/itself")));
    EXPECT_EQ(CauseOf([&] { files.RenameFile(a, folder.Text("missing/b")); }), CFileException::badPath);

    struct stat memory{};
    if (stat("/dev/shm", &memory) != 0 || folder.Status("").st_dev == memory.st_dev)
        GTEST_SKIP() << "no second file system at /dev/shm";
    const ScopedFolder other("/dev/shm");
    const auto before = folder.Picture("tree");
    EXPECT_TRUE(files.RenameDirectory(folder.Text("tree"), other.Text("tree")));
    EXPECT_FALSE(folder.Has("tree"));
    EXPECT_EQ(other.Picture("tree"), before);
    EXPECT_TRUE(files.RenameFile(a, other.Text("a")));
    EXPECT_FALSE(files.RenameDirectory(b, other.Text("a")));
    folder.SetMode("", 0555);
    {
        const ScopedNobody nobody(other);
        EXPECT_FALSE(files.RenameDirectory(b, other.Text("stopped")));  // which no process may take out of its folder
    }
    folder.SetMode("", 0755);
    EXPECT_EQ(folder.Read("b") + other.Read("a"), "BA");
    EXPECT_EQ(other.EntryCount(), 2U);  // nothing half done is left
}

TEST(FileSystem, DeletesFoldersButNeverWhatLinksLeadTo) {
    const ScopedFolder folder;
    MakeTree(folder, "tree");
    folder.SetMode("tree/a/b", 0755);  // else only root may empty it
    folder.Make({"kept/file=content", "tree/to-kept>../kept", "tree/a/to-kept>../../kept", "to-kept>kept",
                 "to-empty>empty", "empty/", "plain"});
    constexpr std::tuple<const char*, signed char, const char*> kCases[] = {
        // What is to be deleted, with all it holds or not, and what is gone afterwards
        {"tree", 0, nullptr},    {"tree/..", 1, nullptr}, {"plain", 0, nullptr},      {"missing", 1, nullptr},
        {"to-kept", 0, nullptr}, {"plain", 1, "plain"},   {"to-kept/", 1, "to-kept"}, {"to-empty/", 0, "to-empty"},
        {"empty", 0, "empty"},   {"tree//", 1, "tree"}};
    for (const auto& [name, recursive, gone] : kCases) {
        SCOPED_TRACE(testing::Message() << name << " " << int{recursive});
        const std::size_t before = folder.EntryCount();
        EXPECT_EQ(files.DeleteDirectory(folder.Text(name), recursive), gone != nullptr);
        EXPECT_EQ(folder.EntryCount(), before - (gone != nullptr ? 1 : 0));
        EXPECT_FALSE(folder.Has(gone != nullptr ? gone : "nothing"));
        EXPECT_EQ(folder.Read("kept/file"), "content");
    }
    for (const char16_t* refused : {u"", u"/", u"//", u".", u".."})
        EXPECT_FALSE(files.DeleteDirectory(CString(refused), 1));
    EXPECT_FALSE(files.DeleteFile(folder.Text("kept")));
    folder.Make({"locked/empty/", "forbidden/file"});
    const ScopedNobody nobody(folder);
    folder.SetMode("locked/empty", 0);
    folder.SetMode("forbidden", 0500);
    EXPECT_TRUE(files.DeleteDirectory(folder.Text("locked"), 1));
    EXPECT_FALSE(files.DeleteDirectory(folder.Text("forbidden"), 1));
    folder.SetMode("forbidden", 0700);
    EXPECT_TRUE(files.DeleteFile(folder.Text("forbidden/file")));
}

// --- Comparing and copying -------------------------------------------------------------------------------------------

TEST(FileSystem, ComparesEveryLengthWithEveryBlockSize) {
    const ScopedFolder folder;
    folder.Make({"folder/", "pipe|", "empty", "to-a>a"});
    const auto compare = [&](const char* first, const char* second, unsigned long blockSize) {
        return files.CompareFiles(folder.Text(first), folder.Text(second), blockSize);
    };
    EXPECT_EQ(compare("empty", "empty", 1), 1);
    for (const std::size_t length : {1U, 262'143U, 262'144U, 3'000'000U}) {
        const std::string content(length, 'c');
        folder.Make({"a=" + content, "longer=" + content + 'c', "other=" + content.substr(1) + 'd'});
        for (const unsigned long blockSize : {0UL, 300'000UL, ULONG_MAX}) {
            SCOPED_TRACE(testing::Message() << length << " bytes in blocks of " << blockSize);
            EXPECT_EQ(compare("a", "to-a", blockSize), 1);
            EXPECT_EQ(compare("a", "longer", blockSize), 0);
            EXPECT_EQ(compare("a", "other", blockSize), 0);
        }
    }
    for (const char* refused : {"missing", "pipe", "folder"})
        EXPECT_EQ(compare(refused, "a", 1) + compare("a", refused, 1) + compare(refused, refused, 1), 0) << refused;
    CFile writer;
    ASSERT_TRUE(writer.Open(folder.Text("a"), 0x0022));
    EXPECT_EQ(compare("a", "a", 1), 0);
    EXPECT_TRUE(files.CloseFile(&writer));
    EXPECT_EQ(compare("a", "a", 1), 1);
    // The kernel's made-up files have one length for all: reading ends long before it.
    EXPECT_EQ(files.CompareFiles(u"/sys/kernel/uevent_seqnum", u"/sys/kernel/uevent_seqnum", 64), 0);
}

TEST(FileSystem, CopiesAFileByTheFlags) {
    // The destination and the flags; the result, and the destination's content and mode afterwards.
    constexpr std::tuple<const char*, unsigned, int, const char*, unsigned> kCases[] = {
        {"new", 0x0, 1, "source", 0440},     {"new", 0x7, 1, "source", 0440},   {"new", 0xF, 1, "source", 0640},
        {"rw", 0x0, 1, "source", 0440},      {"rw", 0x2, 1, "source", 0440},    {"rw", 0x3, 1, "old", 0600},
        {"rw", 0x8, 1, "source", 0640},      {"rw", 0x9, 1, "old", 0600},       {"ro", 0x0, 1, "kept", 0400},
        {"ro", 0x8, 1, "kept", 0400},        {"ro", 0x3, 1, "source", 0440},    {"ro", 0xC, 1, "source", 0640},
        {"to-ro", 0x0, 1, "kept", 0777},     {"to-ro", 0x2, 1, "source", 0440}, {"nowhere", 0x0, 1, "source", 0440},
        {"nowhere", 0x1, 1, "(none)", 0777}, {"sub", 0xF, 0, "(none)", 0700},   {"missing/new", 0x0, 0, "(none)", 0},
        {"ro-sub", 0x8, 1, "(none)", 0500},  {"ro-sub", 0x2, 0, "(none)", 0700}};
    for (const auto& [name, flags, result, content, mode] : kCases) {
        SCOPED_TRACE(testing::Message() << name << " with " << flags);
        const ScopedFolder folder;
        folder.Make({"0440 from=source", "0600 rw=old", "0400 ro=kept", "0700 sub/", "0500 ro-sub/", "to-ro>ro",
                     "nowhere>nothing"});
        const std::size_t before = folder.EntryCount() + (folder.Has(name) || result == 0 ? 0 : 1);
        EXPECT_EQ(files.CopyFile(folder.Text("from"), folder.Text(name), flags, nullptr), result);
        EXPECT_EQ(folder.Read(name), content);
        EXPECT_EQ(folder.Has(name) ? folder.Mode(name) : 0U, mode);
        EXPECT_EQ(folder.EntryCount(), before);
        if (std::string_view(name) == "to-ro") {  // replacing a link leaves what the link leads to
            EXPECT_EQ(std::pair(folder.Read("ro"), folder.Mode("ro")), std::pair(std::string("kept"), 0400U));
        }
    }
}

TEST(FileSystem, CopiesLinksAndKeepsTheOldFileWhenTheCopyFails) {
    const ScopedFolder folder;
    folder.Make(
        {"0440 from=source", "link>from", "sub/file", "old=old", "large=" + std::string(200'000, 'x'), "here>."});
    const CString old = folder.Text("old");
    EXPECT_EQ(files.CopyFile(folder.Text("link"), folder.Text("copy"), 0x8, nullptr), 1);
    EXPECT_EQ(fs::read_symlink(folder.Path("copy")), "from");
    EXPECT_EQ(folder.Mode("from"), 0440U);
    EXPECT_EQ(files.CopyFile(folder.Text("sub"), folder.Text("sub copy"), 0x8, nullptr), 0);  // copied, but no file
    EXPECT_TRUE(folder.Has("sub copy/file"));
    for (const CString& itself : {old, folder.Text("here/old")})
        EXPECT_EQ(files.CopyFile(itself, old, 0, nullptr), 1) << itself;
    const ScopedFileSizeLimit limit(100'000);
    for (const char* const failing : {"large", "missing"})
        EXPECT_EQ(files.CopyFile(folder.Text(failing), old, 0, nullptr), 0) << failing;
    EXPECT_EQ(folder.Read("old"), "old");
    EXPECT_EQ(folder.EntryCount(), 8U);
}

TEST(FileSystem, RemovesWhatAKilledProcessLeft) {
    const ScopedFolder folder;
    // What a killed process had no time to remove, what a living one works in, and what is not ours.
    folder.Make(
        {"from=content", "new/", ".rk-new-0/item=left", ".rk-new-1/item=alive", ".rk-new-2=other", ".rk-new-3>new"});
    for (const char number : std::string("456789"))
        folder.MakeFolder(std::string(".rk-new-") + number);
    const int alive = open(folder.Path(".rk-new-1").c_str(), O_RDONLY);
    EXPECT_EQ(flock(alive, LOCK_EX), 0);
    EXPECT_EQ(files.CopyFile(folder.Text("from"), folder.Text("copy"), 0, nullptr), 1);
    EXPECT_EQ(close(alive), 0);
    EXPECT_FALSE(folder.Has(".rk-new-0"));
    EXPECT_EQ(folder.Read(".rk-new-1/item") + folder.Read(".rk-new-2"), "aliveother");
    EXPECT_EQ(folder.EntryCount(), 6U);
}

TEST(FileSystem, CopiesHolesAndMadeUpFiles) {
    const ScopedFolder folder;
    constexpr std::uintmax_t kLength = (5ULL << 30) + 5;
    folder.Write("sparse", "head");
    fs::resize_file(folder.Path("sparse"), kLength - 4);
    std::ofstream(folder.Path("sparse"), std::ios::app) << "tail";
    EXPECT_EQ(files.CopyFile(folder.Text("sparse"), folder.Text("copy"), 0, nullptr), 1);
    EXPECT_EQ(fs::file_size(folder.Path("copy")), kLength);
    EXPECT_LT(folder.Status("copy").st_blocks, 1000);
    std::string ends(9, 'x');
    std::ifstream(folder.Path("copy")).read(ends.data(), 4).seekg(-5, std::ios::end).read(&ends[4], 5);
    EXPECT_EQ(ends, std::string("head\0tail", 9));
    EXPECT_EQ(files.CopyFile(u"/proc/version", folder.Text("version"), 0, nullptr), 1);
    EXPECT_TRUE(folder.Read("version").starts_with("Linux version"));
}

TEST(FileSystem, CopiesATreeAsItIsAndEndsCopyingIntoItself) {
    const ScopedFolder folder;
    MakeTree(folder, "from");
    folder.Make({"locked/1", "locked/2/file", "locked/3=content"});
    const ScopedNobody nobody(folder);
    const auto before = folder.Picture("from");
    EXPECT_EQ(files.CopyFile(folder.Text("from/"), folder.Text("to/"), 0, nullptr), 1);
    EXPECT_EQ(folder.Picture("to"), before);
    EXPECT_EQ(files.CopyFile(folder.Text("to"), folder.Text("to/empty/copy"), 0, nullptr), 1);
    EXPECT_EQ(folder.Picture("to/empty/copy").size(), before.size());  // all but itself
    for (const auto& [from, to] : {std::pair("from", "from"), {"from", "missing"}, {"missing", "from"}})
        EXPECT_EQ(files.CopyFiles(folder.Text(from), folder.Text(to), 0x2, 0), 1);
    EXPECT_EQ(folder.Picture("from"), before);
    EXPECT_FALSE(folder.Has("missing"));
    EXPECT_EQ(files.CopyFiles(folder.Text("from"), folder.Text("from/empty"), 0, 0), 1);
    EXPECT_EQ(folder.EntryCount("from/empty"), folder.EntryCount("from") - 1);
    // A link that leads from the destination back into the source.
    folder.Make({"source/a/b/file=content", "back/", "back/a>../source/a/b"});
    EXPECT_EQ(files.CopyFiles(folder.Text("source"), folder.Text("back"), 0, 0), 1);
    EXPECT_EQ(folder.Read("source/a/b/file") + folder.Read("source/a/b/b/file"), "contentcontent");
    EXPECT_FALSE(folder.Has("source/a/b/b/b"));
    folder.SetMode("locked/1", 0);
    folder.SetMode("locked/2", 0);
    EXPECT_EQ(files.CopyFile(folder.Text("locked"), folder.Text("copy"), 0, nullptr), 0);
    EXPECT_EQ(folder.Read("copy/3"), "content");
    EXPECT_EQ(folder.EntryCount("copy"), 1U);
    for (const char* locked : {"locked/2", "from/a/b", "from/empty/a/b", "to/a/b", "to/empty/copy/a/b"})
        folder.SetMode(locked, 0700);
}

TEST(FileSystem, CopiesAndDeletesTreesDeeperThanAnyPathWithFewDescriptors) {
    const ScopedFolder folder;
    folder.Make({"deep/"});
    const std::string level(200, 'd');
    constexpr int kDepth = 150;
    const auto descend = [&](const char* name, bool make) {
        const ScopedCurrentFolder here(folder.Path(name));
        int depth = 0;
        while (depth < kDepth && (!make || mkdir(level.c_str(), 0700) == 0) && chdir(level.c_str()) == 0)
            ++depth;
        return depth;
    };
    ASSERT_EQ(descend("deep", true), kDepth);
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit few{100, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
    EXPECT_EQ(files.CopyFile(folder.Text("deep"), folder.Text("copy"), 0, nullptr), 1);
    EXPECT_EQ(descend("copy", false), kDepth);
    EXPECT_EQ(files.CopyFiles(folder.Text("deep"), folder.Text("copy"), 0, 0), 1);
    EXPECT_TRUE(files.DeleteDirectory(folder.Text("deep"), 1));
    EXPECT_TRUE(files.DeleteDirectory(folder.Text("copy"), 1));
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
}

TEST(FileSystem, CopiesWhatAFolderHoldsIntoAnother) {
    // The flags; the contents of rw, ro, sub/rw, sub/ro, sub/added, new/ro afterwards, S is the source's; the mode of
    // sub/added, 0444 in the source.
    constexpr std::tuple<unsigned, const char*, unsigned> kCases[] = {{0x0, "SdSdSS", 0444},
                                                                      {0x1, "ddddSS", 0444},
                                                                      {0x3, "dSdSSS", 0444},
                                                                      {0x8, "SdSdSS", 0644},
                                                                      {0xA, "SSSSSS", 0644}};
    for (const auto& [flags, expected, addedMode] : kCases) {
        SCOPED_TRACE(flags);
        const ScopedFolder folder;
        folder.Make({"from/rw=S", "from/ro=S", "from/sub/rw=S", "from/sub/ro=S", "0444 from/sub/added=S",
                     "0444 from/new/ro=S", "from/clash/file=S", "from/folder=S", "to/rw=d", "0444 to/ro=d",
                     "to/sub/rw=d", "0444 to/sub/ro=d", "0444 to/clash=d", "to/folder/"});
        EXPECT_EQ(files.CopyFiles(folder.Text("from"), folder.Text("to"), flags, 0), 1);
        std::string contents;
        for (const char* name : {"rw", "ro", "sub/rw", "sub/ro", "sub/added", "new/ro"})
            contents += folder.Read(std::string("to/") + name);
        EXPECT_EQ(contents, expected);
        EXPECT_EQ(folder.Mode("to/sub/added"), addedMode);
        EXPECT_EQ(folder.Mode("to/new/ro"), flags == 0xA ? 0644U : 0444U);  // of a folder that is new
        // A read-only file in a folder's place stays or gives way; a folder in a file's place always stays.
        EXPECT_EQ(folder.Read((flags & 0x2) != 0 ? "to/clash/file" : "to/clash"), (flags & 0x2) != 0 ? "S" : "d");
        EXPECT_EQ(folder.EntryCount("to/folder"), 0U);
    }
}

}  // namespace
