#include "RkUtilities/paths/SECFileSystem.h"
#include "RkUtilities/foundation/CFile.h"
#include "tests/support/ScopedFileSizeLimit.h"
#include "tests/support/ScopedFolder.h"

#include <algorithm>
#include <climits>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <sys/resource.h>
#include <sys/stat.h>
#include <vector>

namespace {

namespace fs = std::filesystem;

unsigned ModeOf(const std::string& path)
{
    struct stat status {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777U;
}

void SetMode(const std::string& path, unsigned mode)
{
    ASSERT_EQ(chmod(path.c_str(), mode), 0) << path;
}

/// A chain of folders that no path and, with the limit below, no set of descriptors reaches, with a file in the last.
const std::string kLevel(200, 'd');
constexpr int kDepth = 150;

void MakeDeep(const ScopedFolder& folder, std::string_view name)
{
    folder.MakeFolder(name);
    int current = open(folder.Path(name).c_str(), O_RDONLY | O_DIRECTORY);
    for (int i = 0; i < kDepth; ++i) {
        ASSERT_EQ(mkdirat(current, kLevel.c_str(), 0700), 0);
        const int next = openat(current, kLevel.c_str(), O_RDONLY | O_DIRECTORY);
        close(current);
        current = next;
    }
    close(openat(current, "file", O_CREAT | O_WRONLY, 0600));
    close(current);
}

int DepthOf(const std::string& path, bool& hasFile)
{
    int depth = -1;
    hasFile = false;
    for (int current = open(path.c_str(), O_RDONLY | O_DIRECTORY); current >= 0; ++depth) {
        hasFile = faccessat(current, "file", F_OK, 0) == 0;
        const int next = openat(current, kLevel.c_str(), O_RDONLY | O_DIRECTORY);
        close(current);
        current = next;
    }
    return depth;
}

/// Every path below a folder with kind, permissions, time and content, so that trees can be compared.
std::vector<std::string> Picture(const std::string& root)
{
    std::vector<std::string> lines;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        struct stat status {};
        EXPECT_EQ(lstat(entry.path().c_str(), &status), 0);
        std::string line = entry.path().lexically_relative(root).string() + " " + std::to_string(status.st_mode) + " " +
                           std::to_string(status.st_mtim.tv_sec) + "." + std::to_string(status.st_mtim.tv_nsec) + " ";
        if (entry.is_symlink())
            line += fs::read_symlink(entry.path()).string();
        else if (entry.is_regular_file())
            line += std::string(std::istreambuf_iterator<char>(std::ifstream(entry.path()).rdbuf()), {});
        lines.push_back(line);
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

// --- Status
// -------------------------------------------------------------------------------------------------------------

TEST(FileSystem, AnswersAboutWhatIsThereAndLeavesTheOutputAloneElse)
{
    const ScopedFolder folder;
    const CString file = folder.Write("file", "12345");
    const CString missing = folder.Text("missing");
    const SECFileSystem files;
    unsigned long long size = 7;
    unsigned char attribute = 7;
    CTime created;
    CTime modified;
    CTime accessed;
    EXPECT_FALSE(files.GetFileSize(missing, size));
    EXPECT_FALSE(files.GetFileAttribute(missing, attribute));
    EXPECT_FALSE(files.GetFileModifyTime(missing, modified));
    EXPECT_EQ(size, 7U);
    EXPECT_EQ(attribute, 7);
    EXPECT_EQ(modified.GetCFAbsoluteTime(), CTime().GetCFAbsoluteTime());
    const timespec times[] = {{978'307'200 + 20, 0}, {978'307'200 + 10, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, folder.Path("file").c_str(), times, 0), 0);
    EXPECT_TRUE(files.GetFileSize(file, size) && files.GetFileAttribute(file, attribute));
    EXPECT_TRUE(files.GetFileCreateTime(file, created) && files.GetFileModifyTime(file, modified) &&
                files.GetFileAccessTime(file, accessed));
    EXPECT_EQ(size, 5U);
    EXPECT_EQ(attribute, 0x20);
    EXPECT_EQ(modified.GetCFAbsoluteTime(), 10.0);
    EXPECT_EQ(accessed.GetCFAbsoluteTime(), 20.0);

    folder.MakeFolder("folder");
    folder.Link("to-folder", "folder");
    folder.Link("nowhere", "missing");
    struct Case {
        const char* name;
        bool exists, isFolder, isEmpty;
    };
    constexpr Case kCases[] = {
        {"", true, true, false},         {"file", true, false, false},    {"folder", true, true, true},
        {"to-folder", true, true, true}, {"nowhere", true, false, false}, {"missing", false, false, false},
        {"file/", false, false, false},  {"folder/.", true, true, true},  {"missing/a", false, false, false},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(files.FileExists(folder.Text(c.name)), c.exists);
        EXPECT_EQ(files.DirectoryExists(folder.Text(c.name)), c.isFolder);
        EXPECT_EQ(files.IsDirectoryEmpty(folder.Text(c.name)), c.isEmpty);
    }
    folder.Write("folder/.hidden");
    EXPECT_FALSE(files.IsDirectoryEmpty(folder.Text("folder")));
    EXPECT_FALSE(files.FileExists(CString()));
    EXPECT_FALSE(files.FileExists(folder.Text(std::string("file\0", 5))));
}

// --- Making, renaming, deleting
// -----------------------------------------------------------------------------------------

TEST(FileSystem, MakesOneFolderOrTheWholeChain)
{
    const ScopedFolder folder;
    folder.Write("file");
    folder.MakeFolder("folder");
    folder.Link("nowhere", "missing");
    struct Case {
        std::string name;
        bool asOne, asChain;
    };
    const Case cases[] = {
        {"new", true, true},
        {"closing/", true, true},
        {"folder/new", true, true},
        {"a/b/c", false, true},
        {"a//b/./c//", false, true},
        {"a/../b", false, true},
        {"folder", false, false},
        {"folder/", false, false},
        {"file", false, false},
        {"file/new", false, false},
        {"nowhere", false, false},
        {"", false, false},
        {"a/\xE9", false, true},  // no UTF-8
        {std::string(255, 'n'), true, true},
        {std::string(256, 'n'), false, false},
        {"a/" + std::string(256, 'n'), false, false},
        {std::string("a\0b", 3), false, false},
    };
    const SECFileSystem files;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const CString path = folder.Text(c.name);
        for (const bool whole : {false, true}) {
            EXPECT_EQ(whole ? files.MakePath(path) : files.MakeDirectory(path), whole ? c.asChain : c.asOne);
            EXPECT_EQ(files.DirectoryExists(path),
                      (whole ? c.asChain : c.asOne) || c.name.empty() || c.name.starts_with("folder"));
            if (whole ? c.asChain : c.asOne) {
                EXPECT_FALSE(whole ? files.MakePath(path) : files.MakeDirectory(path));
                files.DeleteDirectory(path, 0);
            }
        }
        fs::remove_all(folder.Path("a"));
    }
    EXPECT_FALSE(files.MakePath(CString()));
    const ScopedNobody nobody(folder);
    SetMode(folder.Path("folder"), 0500);
    EXPECT_FALSE(files.MakeDirectory(folder.Text("folder/new")));
    EXPECT_FALSE(files.MakePath(folder.Text("folder/new/newer")));
}

TEST(FileSystem, RenamesToAFreeNameAndMovesAcrossFileSystems)
{
    const ScopedFolder folder;
    const CString a = folder.Write("a", "A");
    const CString b = folder.Write("b", "B");
    const CString missing = folder.Text("missing");
    const CString fresh = folder.Text("fresh");
    const SECFileSystem files;
    EXPECT_TRUE(files.RenameFile(missing, missing));
    EXPECT_FALSE(files.RenameFile(missing, fresh));
    EXPECT_FALSE(files.RenameFile(a, b));
    EXPECT_FALSE(files.RenameDirectory(a, b));
    EXPECT_FALSE(files.RenameDirectory(a, a));
    EXPECT_FALSE(files.RenameDirectory(missing, fresh));
    EXPECT_EQ(folder.Read("a") + folder.Read("b"), "AB");
    EXPECT_TRUE(files.RenameFile(a, fresh));
    EXPECT_EQ(folder.Read("fresh"), "A");
    try {
        files.RenameFile(fresh, folder.Text("missing/b"));
        FAIL() << "nothing was thrown";
    } catch (CFileException* failure) {
        EXPECT_EQ(failure->m_cause, CFileException::badPath);
        failure->Delete();
    }

    folder.Write("tree/sub/file", "content");
    folder.Link("tree/link", "sub/file");
    SetMode(folder.Path("tree/sub/file"), 0440);
    EXPECT_FALSE(files.RenameDirectory(folder.Text("tree"), folder.Text("tree/sub/itself")));
    EXPECT_FALSE(files.RenameDirectory(folder.Text("tree"), b));
    const std::vector<std::string> before = Picture(folder.Path("tree"));
    EXPECT_TRUE(files.RenameDirectory(folder.Text("tree"), folder.Text("moved")));
    struct stat here {};
    struct stat memory {};
    if (stat("/dev/shm", &memory) != 0 || stat(folder.Path().c_str(), &here) != 0 || here.st_dev == memory.st_dev)
        GTEST_SKIP() << "no second file system at /dev/shm";
    const ScopedFolder other("/dev/shm");
    EXPECT_TRUE(files.RenameDirectory(folder.Text("moved"), other.Text("tree")));
    EXPECT_FALSE(folder.Has("moved"));
    EXPECT_EQ(Picture(other.Path("tree")), before);
    EXPECT_TRUE(files.RenameFile(fresh, other.Text("fresh")));
    EXPECT_EQ(other.Read("fresh") + folder.Read("fresh"), "A(none)");
    EXPECT_FALSE(files.RenameDirectory(b, other.Text("tree")));
    {
        const ScopedNobody nobody(folder);
        EXPECT_FALSE(files.RenameDirectory(b, other.Text("stopped")));  // the other folder is not nobody's
    }
    folder.Write("large", std::string(100'000, 'x'));
    {
        const ScopedFileSizeLimit limit(50'000);
        EXPECT_FALSE(files.RenameDirectory(folder.Text("large"), other.Text("stopped")));
    }
    EXPECT_EQ(folder.Read("large").size(), 100'000U);
    EXPECT_EQ(other.EntryCount(), 2U);  // nothing half done is left
}

TEST(FileSystem, DeletesFoldersButNeverWhatLinksLeadTo)
{
    const ScopedFolder folder;
    folder.Write("kept/file", "content");
    folder.Write("tree/a/b/file");
    folder.Write("tree/.hidden/readonly");
    SetMode(folder.Path("tree/.hidden/readonly"), 0400);
    folder.Link("tree/to-kept", "../kept");
    folder.Link("tree/a/to-file", folder.Path("kept/file"));
    folder.Link("tree/a/up", "..");
    folder.Link("tree/nowhere", "missing");
    folder.Link("to-kept", "kept");
    folder.Link("to-empty", "empty");
    folder.MakeFolder("empty");
    folder.Write("plain");
    ASSERT_EQ(mkfifo(folder.Path("tree/pipe").c_str(), 0600), 0);
    struct Case {
        const char* name;
        signed char recursive;
        bool deleted;
        const char* gone;
    };
    constexpr Case kCases[] = {
        {"tree", 0, false, "missing"},    {"tree/..", 1, false, "missing"}, {"tree/.", 1, false, "missing"},
        {"plain", 0, false, "missing"},   {"missing", 1, false, "missing"}, {"missing", 0, false, "missing"},
        {"to-kept", 0, false, "missing"}, {"to-kept/", 1, true, "to-kept"}, {"to-empty/", 0, true, "to-empty"},
        {"empty", 0, true, "empty"},      {"tree//", 1, true, "tree"},      {"plain", 1, true, "plain"},
    };
    const SECFileSystem files;
    for (const Case& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.name << " " << int{c.recursive});
        const std::size_t before = folder.EntryCount();
        EXPECT_EQ(files.DeleteDirectory(folder.Text(c.name), c.recursive), c.deleted);
        EXPECT_FALSE(folder.Has(c.gone));
        EXPECT_EQ(folder.EntryCount(), before - (c.deleted ? 1 : 0));
        EXPECT_EQ(folder.Read("kept/file"), "content");
    }
    for (const char16_t* refused : {u"", u"/", u"//", u".", u".."})
        EXPECT_FALSE(files.DeleteDirectory(CString(refused), 1));
    EXPECT_FALSE(files.DeleteFile(folder.Text("kept")));
    EXPECT_TRUE(files.DeleteFile(folder.Text("kept/file")));

    const ScopedNobody nobody(folder);
    folder.MakeFolder("locked/empty");
    folder.Write("forbidden/file");
    SetMode(folder.Path("locked/empty"), 0);
    SetMode(folder.Path("forbidden"), 0500);
    EXPECT_TRUE(files.DeleteDirectory(folder.Text("locked"), 1));
    EXPECT_FALSE(files.DeleteDirectory(folder.Text("forbidden"), 1));
    EXPECT_TRUE(folder.Has("forbidden/file"));
    SetMode(folder.Path("forbidden"), 0700);
}

TEST(FileSystem, ClosesAFileAndSaysWhetherThatWorked)
{
    const ScopedFolder folder;
    CFile file;
    ASSERT_TRUE(file.Open(folder.Write("file"), 0x0002));
    EXPECT_TRUE(SECFileSystem().CloseFile(&file));
    EXPECT_FALSE(file.IsOpen());
    EXPECT_TRUE(SECFileSystem().CloseFile(&file));
}

// --- Comparing and copying
// ----------------------------------------------------------------------------------------------

TEST(FileSystem, ComparesEveryLengthWithEveryBlockSize)
{
    const ScopedFolder folder;
    const SECFileSystem files;
    constexpr unsigned long kBlockSizes[] = {0, 1, 4096, 65536, INT_MAX, ULONG_MAX};
    for (const std::size_t length : {0U, 1U, 4095U, 4096U, 4097U, 65536U, 3'000'000U}) {
        std::string content(length, 'c');
        const CString a = folder.Write("a", content);
        const CString same = folder.Write("same", content);
        const CString longer = folder.Write("longer", content + 'c');
        if (length > 0)
            content.back() = 'd';
        const CString other = folder.Write("other", content);
        for (const unsigned long blockSize : kBlockSizes) {
            SCOPED_TRACE(testing::Message() << length << " bytes in blocks of " << blockSize);
            EXPECT_EQ(files.CompareFiles(a, same, blockSize), 1);
            EXPECT_EQ(files.CompareFiles(a, a, blockSize), 1);
            EXPECT_EQ(files.CompareFiles(a, longer, blockSize), 0);
            EXPECT_EQ(files.CompareFiles(a, other, blockSize), length == 0 ? 1 : 0);
        }
    }
    ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
    folder.MakeFolder("folder");
    folder.Link("to-a", "a");
    EXPECT_EQ(files.CompareFiles(folder.Text("a"), folder.Text("to-a"), 4096), 1);
    for (const char* refused : {"missing", "pipe", "folder"}) {
        EXPECT_EQ(files.CompareFiles(folder.Text(refused), folder.Text("a"), 4096), 0);
        EXPECT_EQ(files.CompareFiles(folder.Text("a"), folder.Text(refused), 4096), 0);
        EXPECT_EQ(files.CompareFiles(folder.Text(refused), folder.Text(refused), 4096), 0);
    }
    CFile writer;
    ASSERT_TRUE(writer.Open(folder.Text("a"), 0x0022));
    EXPECT_EQ(files.CompareFiles(folder.Text("a"), folder.Text("same"), 4096), 0);
}

TEST(FileSystem, EndsTheComparisonOfAFileThatIsShorterThanItSays)
{
    // The kernel's made-up files have one length for all: reading ends long before it.
    const char* const path = "/sys/kernel/uevent_seqnum";
    std::error_code error;
    if (fs::file_size(path, error) < 100 || error)
        GTEST_SKIP() << "no such file here: " << path;
    EXPECT_EQ(SECFileSystem().CompareFiles(CString(path), CString(path), 64), 0);
}

struct CopyCase {
    const char* destination;
    unsigned int flags;
    int result;
    const char* content;  // of the destination afterwards
    unsigned mode;
};

TEST(FileSystem, CopiesAFileByTheFlags)
{
    // "new" is not there, "rw" and "ro" are files, "to-ro" leads to "ro", "nowhere" to nothing, "sub" is a folder.
    constexpr CopyCase kCases[] = {
        {"new", 0x0, 1, "source", 0640},      {"new", 0x1, 1, "source", 0640},   {"new", 0xF, 1, "source", 0640},
        {"rw", 0x0, 1, "source", 0640},       {"rw", 0x1, 1, "old", 0600},       {"rw", 0x2, 1, "source", 0640},
        {"rw", 0x3, 1, "old", 0600},          {"rw", 0x8, 1, "source", 0640},    {"rw", 0x9, 1, "old", 0600},
        {"ro", 0x0, 1, "kept", 0400},         {"ro", 0x1, 1, "kept", 0400},      {"ro", 0x8, 1, "kept", 0400},
        {"ro", 0x2, 1, "source", 0640},       {"ro", 0x3, 1, "source", 0640},    {"ro", 0x4, 1, "source", 0640},
        {"to-ro", 0x0, 1, "kept", 0777},      {"to-ro", 0x2, 1, "source", 0640}, {"nowhere", 0x0, 1, "source", 0640},
        {"nowhere", 0x1, 1, "(none)", 0777},  {"sub", 0x0, 0, "(none)", 0700},   {"sub", 0xF, 0, "(none)", 0700},
        {"missing/new", 0x0, 0, "(none)", 0}, {"rw/new", 0x2, 0, "(none)", 0},
    };
    for (const CopyCase& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.destination << " with " << c.flags);
        const ScopedFolder folder;
        folder.Write("from", "source");
        folder.Write("rw", "old");
        folder.Write("ro", "kept");
        folder.MakeFolder("sub");
        folder.Link("to-ro", "ro");
        folder.Link("nowhere", "nothing");
        SetMode(folder.Path("from"), 0640);
        SetMode(folder.Path("rw"), 0600);
        SetMode(folder.Path("ro"), 0400);
        SetMode(folder.Path("sub"), 0700);
        const std::size_t before = folder.EntryCount() + (std::string_view(c.destination) == "new" ? 1 : 0);
        EXPECT_EQ(SECFileSystem().CopyFile(folder.Text("from"), folder.Text(c.destination), c.flags, nullptr),
                  c.result);
        EXPECT_EQ(folder.Read(c.destination), c.content);
        if (folder.Has(c.destination)) {
            EXPECT_EQ(ModeOf(folder.Path(c.destination)), c.mode);
        }
        EXPECT_EQ(folder.EntryCount(), before);
        if (std::string_view(c.destination) != "ro") {
            EXPECT_EQ(folder.Read("ro"), "kept");
            EXPECT_EQ(ModeOf(folder.Path("ro")), 0400U);  // a link's replacement is none of its target's business
        }
    }
}

TEST(FileSystem, MakesACopyWritableButNotWhatItsLinkLeadsTo)
{
    const ScopedFolder folder;
    const SECFileSystem files;
    const CString from = folder.Write("from", "source");
    const CString link = folder.Link("link", "from");
    SetMode(folder.Path("from"), 0440);
    EXPECT_EQ(files.CopyFile(from, folder.Text("plain"), 0, nullptr), 1);
    EXPECT_EQ(files.CopyFile(from, folder.Text("writable"), 0x8, nullptr), 1);
    EXPECT_EQ(files.CopyFile(link, folder.Text("link copy"), 0x8, nullptr), 1);
    EXPECT_EQ(ModeOf(folder.Path("plain")), 0440U);
    EXPECT_EQ(ModeOf(folder.Path("writable")), 0640U);
    EXPECT_EQ(fs::read_symlink(folder.Path("link copy")), "from");
    EXPECT_EQ(ModeOf(folder.Path("from")), 0440U);
    folder.Write("sub/file");
    EXPECT_EQ(files.CopyFile(folder.Text("sub"), folder.Text("sub copy"), 0x8, nullptr), 0);  // copied, but no file
    EXPECT_TRUE(folder.Has("sub copy/file"));
}

TEST(FileSystem, KeepsTheOldFileWhenTheCopyFails)
{
    const ScopedFolder folder;
    const SECFileSystem files;
    const CString old = folder.Write("old", "old");
    const CString large = folder.Write("large", std::string(200'000, 'x'));
    {
        const ScopedFileSizeLimit limit(100'000);
        EXPECT_EQ(files.CopyFile(large, old, 0, nullptr), 0);
        EXPECT_EQ(files.CopyFile(large, folder.Text("new"), 0, nullptr), 0);
    }
    EXPECT_EQ(files.CopyFile(folder.Text("missing"), old, 0, nullptr), 0);
    EXPECT_EQ(folder.Read("old"), "old");
    EXPECT_EQ(folder.EntryCount(), 2U);
    // Onto itself, plainly and by way of a link to the folder.
    folder.Link("here", ".");
    EXPECT_EQ(files.CopyFile(old, old, 0, nullptr), 1);
    EXPECT_EQ(files.CopyFile(folder.Text("here/old"), old, 0, nullptr), 1);
    EXPECT_EQ(folder.Read("old"), "old");
}

TEST(FileSystem, CopiesHolesAndMadeUpFiles)
{
    const ScopedFolder folder;
    const SECFileSystem files;
    constexpr std::uintmax_t kLength = (5ULL << 30) + 5;
    folder.Write("sparse", "head");
    fs::resize_file(folder.Path("sparse"), kLength - 4);
    std::ofstream(folder.Path("sparse"), std::ios::app) << "tail";
    fs::copy_file("/proc/version", folder.Path("expected"));
    EXPECT_EQ(files.CopyFile(folder.Text("sparse"), folder.Text("copy"), 0, nullptr), 1);
    EXPECT_EQ(fs::file_size(folder.Path("copy")), kLength);
    struct stat status {};
    ASSERT_EQ(stat(folder.Path("copy").c_str(), &status), 0);
    EXPECT_LT(status.st_blocks, 1000);
    std::ifstream copy(folder.Path("copy"));
    copy.seekg(-5, std::ios::end);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(copy), {}), std::string_view("\0tail", 5));
    EXPECT_EQ(files.CopyFile(u"/proc/version", folder.Text("version"), 0, nullptr), 1);
    EXPECT_THAT(folder.Read("version"), testing::StartsWith("Linux version"));
    EXPECT_EQ(files.CopyFile(folder.Text("missing"), folder.Text("none"), 0, nullptr), 0);
}

void WriteTree(const ScopedFolder& folder, const std::string& root)
{
    folder.Write(root + "/file", "content");
    folder.Write(root + "/a/b/deep", "deep");
    folder.Write(root + "/a/readonly", "ro");
    folder.MakeFolder(root + "/empty");
    folder.Link(root + "/to-file", "file");
    folder.Link(root + "/to-a", "a");
    folder.Link(root + "/a/up", "..");
    folder.Link(root + "/nowhere", "missing");
    folder.Write(root + "/line\nbreak \"$HOME\" \\ \xE9\xFF", "odd");
    folder.Write(root + "/" + std::string(255, 'n'), "long");
    ASSERT_EQ(mkfifo(folder.Path(root + "/pipe").c_str(), 0600), 0);
    ASSERT_EQ(mknod(folder.Path(root + "/socket").c_str(), S_IFSOCK | 0600, 0), 0);
    SetMode(folder.Path(root + "/a/readonly"), 0444);
    SetMode(folder.Path(root + "/a/b"), 0555);
}

TEST(FileSystem, CopiesATreeAsItIs)
{
    const ScopedFolder folder;
    const SECFileSystem files;
    WriteTree(folder, "from");
    const ScopedNobody nobody(folder);
    const std::vector<std::string> before = Picture(folder.Path("from"));
    EXPECT_EQ(files.CopyFile(folder.Text("from/"), folder.Text("to/"), 0, nullptr), 1);
    EXPECT_EQ(Picture(folder.Path("to")), before);
    EXPECT_EQ(files.CopyFile(folder.Text("from"), folder.Text("to"), 0xF, nullptr), 0);  // it is there

    // Into itself: everything but the copy.
    EXPECT_EQ(files.CopyFile(folder.Text("to"), folder.Text("to/empty/copy"), 0, nullptr), 1);
    std::vector<std::string> copied = Picture(folder.Path("to/empty/copy"));
    EXPECT_EQ(copied.size(), before.size());
    EXPECT_FALSE(folder.Has("to/empty/copy/empty/copy"));

    // What cannot be read is left out and told.
    folder.Write("locked/1");
    folder.Write("locked/2/file");
    folder.Write("locked/3", "content");
    SetMode(folder.Path("locked/1"), 0);
    SetMode(folder.Path("locked/2"), 0);
    EXPECT_EQ(files.CopyFile(folder.Text("locked"), folder.Text("locked copy"), 0, nullptr), 0);
    EXPECT_EQ(folder.Read("locked copy/3"), "content");
    EXPECT_EQ(folder.EntryCount("locked copy"), 1U);
    for (const char* locked : {"locked/2", "from/a/b", "to/a/b", "to/empty/copy/a/b"})
        SetMode(folder.Path(locked), 0700);
}

TEST(FileSystem, CopiesAndDeletesTreesDeeperThanAnyPath)
{
    const ScopedFolder folder;
    MakeDeep(folder, "deep");
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit few{100, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
    const SECFileSystem files;
    EXPECT_EQ(files.CopyFile(folder.Text("deep"), folder.Text("copy"), 0, nullptr), 1);
    bool hasFile = false;
    EXPECT_EQ(DepthOf(folder.Path("copy"), hasFile), kDepth);
    EXPECT_TRUE(hasFile);
    EXPECT_EQ(files.CopyFiles(folder.Text("deep"), folder.Text("copy"), 0, 0), 1);
    EXPECT_TRUE(files.DeleteDirectory(folder.Text("deep"), 1));
    EXPECT_TRUE(files.DeleteDirectory(folder.Text("copy"), 1));
    EXPECT_EQ(folder.EntryCount(), 0U);
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
}

TEST(FileSystem, CopiesWhatAFolderHoldsIntoAnother)
{
    struct Case {
        unsigned int flags;
        const char* contents;      // of rw, ro, sub/rw, sub/ro, sub/added, new/ro
        unsigned addedMode;        // of sub/added, 0444 in the source
        unsigned newReadOnlyMode;  // of new/ro, 0444 in the source, in a folder that is new
    };
    constexpr Case kCases[] = {
        {0x0, "Sd Sd S S", 0444, 0444}, {0x1, "dd dd S S", 0444, 0444}, {0x2, "SS SS S S", 0444, 0444},
        {0x3, "dS dS S S", 0444, 0444}, {0x8, "Sd Sd S S", 0644, 0444}, {0xA, "SS SS S S", 0644, 0644},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.flags);
        const ScopedFolder folder;
        for (const char* name : {"rw", "ro", "sub/rw", "sub/ro"}) {
            folder.Write(std::string("from/") + name, "S");
            folder.Write(std::string("to/") + name, "d");
            if (std::string_view(name).ends_with("ro"))
                SetMode(folder.Path(std::string("to/") + name), 0444);
        }
        folder.Write("from/sub/added", "S");
        folder.Write("from/new/ro", "S");
        folder.Write("from/clash/file", "S");
        folder.Write("from/folder", "S");
        folder.Write("to/clash", "d");
        SetMode(folder.Path("to/clash"), 0444);
        folder.MakeFolder("to/folder");
        SetMode(folder.Path("from/sub/added"), 0444);
        SetMode(folder.Path("from/new/ro"), 0444);
        EXPECT_EQ(SECFileSystem().CopyFiles(folder.Text("from"), folder.Text("to"), c.flags, 0), 1);
        EXPECT_EQ(folder.Read("to/rw") + folder.Read("to/ro") + ' ' + folder.Read("to/sub/rw") +
                      folder.Read("to/sub/ro") + ' ' + folder.Read("to/sub/added") + ' ' + folder.Read("to/new/ro"),
                  c.contents);
        EXPECT_EQ(ModeOf(folder.Path("to/sub/added")), c.addedMode);
        EXPECT_EQ(ModeOf(folder.Path("to/new/ro")), c.newReadOnlyMode);
        // A read-only file in a folder's place stays or gives way; a folder in a file's place always stays.
        EXPECT_EQ(folder.Read((c.flags & 0x2) != 0 ? "to/clash/file" : "to/clash"), (c.flags & 0x2) != 0 ? "S" : "d");
        EXPECT_EQ(folder.EntryCount("to/folder"), 0U);
    }
}

TEST(FileSystem, EndsCopyingIntoItself)
{
    const SECFileSystem files;
    {
        const ScopedFolder folder;
        WriteTree(folder, "from");
        const std::vector<std::string> before = Picture(folder.Path("from"));
        EXPECT_EQ(files.CopyFiles(folder.Text("from"), folder.Text("from"), 0x2, 0), 1);
        EXPECT_EQ(Picture(folder.Path("from")), before);
        EXPECT_EQ(files.CopyFiles(folder.Text("from"), folder.Text("from/empty"), 0, 0), 1);
        EXPECT_EQ(folder.EntryCount("from/empty"), folder.EntryCount("from") - 1);
        EXPECT_EQ(files.CopyFiles(folder.Text("missing"), folder.Text("from"), 0, 0), 1);
        EXPECT_EQ(files.CopyFiles(folder.Text("from"), folder.Text("missing"), 0, 0), 1);
        EXPECT_FALSE(folder.Has("missing"));
    }
    // Links that lead from the destination back into the source.
    const ScopedFolder folder;
    folder.Write("from/a/b/file", "content");
    folder.MakeFolder("to");
    folder.Link("to/a", "../from/a/b");
    EXPECT_EQ(files.CopyFiles(folder.Text("from"), folder.Text("to"), 0, 0), 1);
    EXPECT_EQ(folder.Read("from/a/b/file"), "content");
    EXPECT_EQ(folder.Read("from/a/b/b/file"), "content");
    EXPECT_FALSE(folder.Has("from/a/b/b/b"));
}

}  // namespace
