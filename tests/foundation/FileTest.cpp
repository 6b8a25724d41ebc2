#include "RkUtilities/interop/SystemErrors.h"

#include "tests/support/Failure.h"
#include "tests/support/ScopedCurrentFolder.h"
#include "tests/support/ScopedFileSizeLimit.h"
#include "tests/support/Test.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace {

CFile Opened(const CString& path, unsigned int flags) {
    CFile file;
    EXPECT_TRUE(file.Open(path, flags)) << path;
    return file;
}

std::pair<std::time_t, long> Parts(const timespec& time) { return {time.tv_sec, time.tv_nsec}; }

TEST(File, OpensWhatItCanAndTellsTheCauseOfEveryFailure) {
    const ScopedFolder folder;
    folder.Make({"file=content", "folder/", "ring>ring", "pipe|"});
    const std::string tooLong(256, 'n'), cut("file\0tail", 9);
    const std::tuple<std::string, unsigned, int> cases[] = {
        {"file", 0x1042, 0},         {"new", 0x1020, 0},        {"missing", 0x0000, 2}, {cut, 0x0000, 2},
        {"missing/file", 0x1042, 3}, {"file/below", 0x1042, 3}, {"ring", 0x0000, 3},    {tooLong, 0x1042, 3},
        {"folder", 0x0000, 5},       {"pipe", 0x0002, 6},       {"file", 0x8000, 1},    {"file", 0x0060, 1}};
    for (const auto& [name, flags, cause] : cases) {
        CFile file;
        CFileException error;
        EXPECT_EQ(file.Open(folder.Text(name), flags, &error), cause == 0) << name;
        EXPECT_EQ(file.IsOpen(), cause == 0) << name;
        EXPECT_EQ(error.m_cause, cause) << name;
        EXPECT_EQ(error.m_lOsError != 0, cause != 0) << name;
        EXPECT_EQ(error.m_strFileName, cause == 0 ? CString() : folder.Text(name));
    }
    EXPECT_FALSE(CFile().Open(CString(), 0));
    EXPECT_EQ(CauseOf([&] { CFile(folder.Text("missing"), CFile::modeRead); }), CFileException::fileNotFound);
    try {
        EXPECT_EQ(rk::WithSystemErrors([] { return 7; }), 7);
        rk::WithSystemErrors([&] { CFile::Remove(u"/missing/file"); });
        FAIL();
    } catch (const std::system_error& failure) {
        EXPECT_EQ(failure.code(), std::errc::no_such_file_or_directory);
        EXPECT_TRUE(std::string_view(failure.what()).starts_with("/missing/file: ")) << failure.what();
    }
    EXPECT_EQ(CFileException(CFileException::fileNotFound, ENOENT, CString(u"/a")).GetErrorMessage(),
              u"/a: not found (No such file or directory)");
    EXPECT_EQ(CFileException(99, 0, CString()).GetErrorMessage(), u"failed");
    EXPECT_EQ(CFileException(CFileException::diskFull, 0, CString(u"b")).GetErrorMessage(), u"b: the disk is full");
}

TEST(File, ReadsWritesAndSeeksWhereItStands) {
    const ScopedFolder folder;
    CFile file = Opened(folder.Write("log", "one"), 0x1042);
    EXPECT_EQ(file.Seek(0, 2), 3U);
    file.WriteString(CString(u"-\u00E9\U0001F600-") + static_cast<unsigned short>(0xD800));
    file.Flush();
    EXPECT_EQ(folder.Read("log"), "one-\xC3\xA9\xF0\x9F\x98\x80-\xEF\xBF\xBD");
    // Offset, origin, and the position after it; -1: fails.
    constexpr std::tuple<long long, unsigned, long long> kCases[] = {
        {-14, 2, 0}, {5, 0, 5}, {-4, 1, 1}, {100, 0, 100}, {-1, 0, -1}, {0, 3, -1}, {LLONG_MAX, 2, -1}};
    for (const auto& [offset, from, position] : kCases) {
        const auto after = position < 0 ? file.GetPosition() : static_cast<unsigned long long>(position);
        const int cause = position < 0 ? CFileException::badSeek : CFileException::none;
        EXPECT_EQ(CauseOf([&, o = offset, f = from] { file.Seek(o, f); }), cause) << offset << " from " << from;
        EXPECT_EQ(file.GetPosition(), after) << offset << " from " << from;
    }
    char bytes[64] = {};
    const std::string content(5000, 'c');
    EXPECT_EQ(file.SeekToEnd(), 14U);
    file.Write(std::as_bytes(std::span(content)));
    file.Seek(13, 0);
    EXPECT_EQ(file.Read(bytes, 64), 64U);
    EXPECT_EQ(std::string_view(bytes, 64), "\xBD" + content.substr(0, 63));
    EXPECT_EQ(file.ReadAll(), content.substr(63));
    EXPECT_EQ(file.ReadAll(), "");
    EXPECT_FALSE(CFile(u"/proc/self/status", 0).ReadAll().empty());  // which has no length

    constexpr unsigned long long kBeyondFourGibibytes = 5ULL << 30;
    EXPECT_EQ(file.Seek(kBeyondFourGibibytes, 0), kBeyondFourGibibytes);
    file.Write("end", 3);
    CFileStatus status;
    EXPECT_TRUE(CFile::GetStatus(folder.Text("log"), status));
    EXPECT_EQ(status.m_size, static_cast<std::int64_t>(kBeyondFourGibibytes + 3));
    EXPECT_EQ(file.GetLength(), kBeyondFourGibibytes + 3);
}

TEST(File, IsCutAndLimitedAndEmptied) {
    const ScopedFolder folder;
    const CString path = folder.Write("file", "content");
    CFile file = Opened(path, CFile::modeReadWrite);
    file.Seek(5, 0);
    for (const auto& [length, content] :
         {std::pair(3U, std::string("con")), {6U, std::string("con\0\0\0", 6)}, {0U, ""}}) {
        file.SetLength(length);
        EXPECT_EQ(folder.Read("file"), content);
        EXPECT_EQ(file.GetPosition(), 5U);
    }
    EXPECT_EQ(CauseOf([&] { file.SetLength(ULLONG_MAX); }), CFileException::diskFull);
    {
        const ScopedFileSizeLimit limit(7);  // its signal would end this process
        file.Seek(0, 0);
        EXPECT_EQ(CauseOf([&] { file.WriteString(u"content and more"); }), CFileException::diskFull);
    }
    constexpr unsigned kTruncate = CFile::modeReadWrite | CFile::modeTruncate;
    {
        const CFile reader = Opened(path, CFile::shareDenyWrite);
        EXPECT_FALSE(CFile().Open(path, kTruncate | CFile::shareDenyWrite));
        EXPECT_FALSE(CFile().Open(path, CFile::modeTruncate));  // without writing
        EXPECT_EQ(folder.Read("file"), "content");
    }
    EXPECT_EQ(std::pair(CFile().Open(path, kTruncate), CFile().Open(u"/dev/null", kTruncate)), std::pair(true, true));
    EXPECT_EQ(folder.Read("file"), "");
}

TEST(File, AppearsWhenItIsComplete) {
    const ScopedFolder folder;
    folder.Make({"0640 old=old", "to-old>old", "nowhere>missing", "0400 readonly=ro", "sub/"});
    CFile file;
    const auto write = [&](const CString& text) {
        EXPECT_TRUE(file.OpenNew(folder.Text("new")));
        file.WriteString(text);
    };
    write(u"1");
    EXPECT_EQ(CauseOf([&] { file.CommitAs(folder.Text("old")); }), CFileException::accessDenied);
    EXPECT_EQ(folder.EntryCount(), 5U);  // no part of it has a name
    file.CommitAs(folder.Text("new"));
    EXPECT_FALSE(file.IsOpen());
    write(u"2");
    file.CommitOver(folder.Text("to-old"));
    write(u"3");
    const mode_t before = umask(S_IXUSR);  // a hidden folder needs that permission
    file.CommitOver(folder.Text("readonly"));
    umask(before);
    for (const auto& [name, cause] : {std::pair("nowhere", CFileException::fileNotFound),
                                      {"sub/missing/x", CFileException::badPath},
                                      {"sub", CFileException::accessDenied}}) {
        write(u"4");
        EXPECT_EQ(CauseOf([&, n = name] { file.CommitOver(folder.Text(n)); }), cause) << name;
    }
    for (const char* const content : {"5", "6"})
        CFile::ReplaceFile(folder.Write("temporary", content), folder.Text("free"));
    for (const auto& [from, to] : {std::pair("missing", "free"), {"to-old", "free"}, {"sub", "free"}, {"free", "sub"}})
        EXPECT_NE(CauseOf([&, f = from, t = to] { CFile::ReplaceFile(folder.Text(f), folder.Text(t)); }), 0) << from;
    EXPECT_EQ(folder.Read("new") + folder.Read("old") + folder.Read("readonly") + folder.Read("free"), "1236");
    EXPECT_EQ(std::pair(folder.Mode("old"), folder.Mode("readonly")), std::pair(0640U, 0400U));
    EXPECT_EQ(std::filesystem::read_symlink(folder.Path("to-old")), "old");
    file.CommitAs(folder.Text("last"));  // which the failures left possible
    EXPECT_EQ(folder.Read("last") + std::to_string(folder.EntryCount()), "48");
    EXPECT_EQ(CauseOf([&] { file.CommitAs(folder.Text("x")); }), CFileException::invalidFile);
    EXPECT_EQ(std::pair(file.OpenNew(folder.Text("none/new")), file.OpenNew(u"")), std::pair(false, false));
}

TEST(File, LeavesNothingInItsFolderAndNeighboursAlone) {
    const ScopedFolder folder;
    folder.Make({"here/sub/", "there/sub/"});
    CFile files[2];
    for (const auto& [file, place] : {std::pair(&files[0], "here"), {&files[1], "there"}}) {
        const ScopedCurrentFolder current(folder.Path(place));
        EXPECT_TRUE(file->OpenNew(u"new"));
        EXPECT_EQ(CauseOf([&, f = file] { f->CommitOver(u"sub"); }), CFileException::accessDenied);
    }
    const ScopedCurrentFolder current(folder.Path("there"));
    files[0].Close();
    files[1].CommitAs(u"new");
    EXPECT_EQ(std::to_string(folder.EntryCount("here")) + std::to_string(folder.EntryCount("there")), "12");
    EXPECT_TRUE(files[0].OpenNew(u"own"));
    EXPECT_NE(CauseOf([&] { files[0].CommitOver(u"/proc/version"); }), 0);  // a read-only file of another system
    files[0].CommitAs(u"own");
    EXPECT_EQ(folder.Mode("there/own"), folder.Mode("there/new"));
}

TEST(File, SharesByAgreement) {
    const ScopedFolder folder;
    const CString path = folder.Write("file");
    constexpr std::tuple<unsigned, unsigned, bool> kCases[] = {
        {0x20, 0x20, true}, {0x20, 0x22, false}, {0x22, 0x20, false}, {0x22, 0x40, true}, {0x02, 0x20, true}};
    for (const auto& [before, after, opens] : kCases) {
        SCOPED_TRACE(testing::Message() << std::hex << before << " then " << after);
        CFile first = Opened(path, before);
        CFileException error;
        EXPECT_EQ(CFile().Open(path, after, &error), opens);
        EXPECT_EQ(error.m_cause, opens ? CFileException::none : CFileException::sharingViolation);
        first.Close();
        EXPECT_TRUE(CFile().Open(path, after));
    }
}

TEST(File, ThatIsClosedRefusesEverythingButClosing) {
    const ScopedFolder folder;
    CFile file = Opened(folder.Write("file"), CFile::modeRead);
    EXPECT_EQ(CauseOf([&] { file.Write("x", 1); }), CFileException::invalidFile);  // opened for reading
    const CFile other = std::move(file);
    EXPECT_TRUE(other.IsOpen());
    const std::function<void()> calls[] = {[&] { static_cast<void>(file.ReadAll()); },
                                           [&] { static_cast<void>(file.GetLength()); }, [&] { file.Flush(); }};
    for (const auto& call : calls)
        EXPECT_EQ(CauseOf(call), CFileException::invalidFile) << &call - calls;
    EXPECT_EQ(CauseOf([&] { file.Close(); }), CFileException::none);
}

TEST(FileStatus, KnowsEachKind) {
    const ScopedFolder folder;
    folder.Make({"plain=1234", ".hidden", "0577 readonly", ".config/", "to-folder>.config", "to-readonly>readonly",
                 "nowhere>missing", "pipe|"});
    constexpr std::pair<const char*, unsigned> kCases[] = {
        {"plain", 0x20},     {".hidden", 0x22}, {"readonly", 0x21},    {".config/", 0x12}, {".config/.", 0x10},
        {"to-folder", 0x10}, {"nowhere", 0x20}, {"to-readonly", 0x21}, {"pipe", 0x20}};
    CFileStatus status;
    for (const auto& [name, attribute] : kCases) {
        EXPECT_TRUE(CFile::GetStatus(folder.Text(name), status)) << name;
        EXPECT_EQ(status.m_attribute, attribute) << name;
        EXPECT_EQ(status.m_szFullName, folder.Text(name));
    }
    for (const auto& [current, name, full] :
         {std::tuple(std::string("/"), "proc", CString(u"/proc")), {folder.Path(), "plain", folder.Text("plain")}}) {
        const ScopedCurrentFolder here(current);
        EXPECT_TRUE(CFile::GetStatus(name, status)) << name;
        EXPECT_EQ(status.m_szFullName, full);
    }
    for (const char* missing : {"missing", "missing/file", "plain/", "plain/below"})
        EXPECT_FALSE(CFile::GetStatus(folder.Text(missing), status)) << missing;
    EXPECT_EQ(status.m_size, 4);  // untouched
}

TEST(FileStatus, WrittenBackKeepsTheTimesAndPermissionsThatDidNotChange) {
    const ScopedFolder folder;
    const CString path = folder.Write("file");
    // Nanoseconds that a double does not hold, far from and near to its zero, before 1970 and after 2106.
    for (const std::time_t seconds :
         std::initializer_list<std::time_t>{-86'401, 1, 978'307'200, 1'700'000'000, 5'000'000'000}) {
        for (const unsigned mode : {0640U, 0777U}) {
            folder.SetMode("file", mode);
            const timespec times[] = {{seconds, 123'456'789}, {seconds + 1, 999'999'999}};
            ASSERT_EQ(utimensat(AT_FDCWD, folder.Path("file").c_str(), times, 0), 0);
            CFileStatus status;
            ASSERT_TRUE(CFile::GetStatus(path, status));
            for (const bool isReadOnly : {true, false}) {
                status.m_attribute = isReadOnly ? 0x21 : 0x20;
                CFile::SetStatus(path.GetUTF16Ptr(), status);
                EXPECT_EQ(folder.Mode("file"), isReadOnly ? mode & ~0200U : mode);
                EXPECT_EQ(Parts(folder.Status("file").st_atim), Parts(times[0]));
                EXPECT_EQ(Parts(folder.Status("file").st_mtim), Parts(times[1]));
            }
        }
    }
    CFileStatus status;
    ASSERT_TRUE(CFile::GetStatus(path, status));
    const auto accessed = Parts(folder.Status("file").st_atim);
    constexpr std::tuple<double, std::time_t, long> kCases[] = {{-0.25, 978'307'199, 750'000'000},
                                                                {4.1, 978'307'204, 100'000'000},
                                                                {-1e-12, 978'307'199, 999'999'999},
                                                                {-978'307'201, -1, 0}};
    for (const auto& [seconds, unixSeconds, nanoseconds] : kCases) {
        status.m_mtime = CTime::FromCFAbsoluteTime(seconds);
        CFile::SetStatus(path, status);
        EXPECT_EQ(Parts(folder.Status("file").st_mtim), std::pair(unixSeconds, nanoseconds));
        EXPECT_EQ(Parts(folder.Status("file").st_atim), accessed);
        ASSERT_TRUE(CFile::GetStatus(path, status));
        EXPECT_NEAR(status.m_mtime.GetCFAbsoluteTime(), seconds, 1e-9);
    }
    CFile::SetStatus(path, CFileStatus());  // null times
    EXPECT_EQ(Parts(folder.Status("file").st_mtim), std::pair(std::time_t{-1}, 0L));
    folder.Link("nowhere", "missing");
    for (const auto& [name, cause] :
         {std::pair("nowhere", CFileException::fileNotFound), {"a/b", CFileException::badPath}})
        EXPECT_EQ(CauseOf([&, n = name] { CFile::SetStatus(folder.Text(n), status); }), cause) << name;
}

TEST(File, IsRemovedAndRenamedByItsOwnName) {
    const ScopedFolder folder;
    folder.Make({"sub/kept=kept", "taken=other", "to-file>sub/kept", "to-folder>sub", "nowhere>missing"});
    const auto removed = [&](const char* name) { return CauseOf([&] { CFile::Remove(folder.Text(name)); }); };
    const auto renamed = [&](const char* from, const char* to) {
        return CauseOf([&] { CFile::Rename(folder.Text(from), folder.Text(to)); });
    };
    for (const char* taken : {"taken", "to-folder", "nowhere", "sub", "sub/kept"})
        EXPECT_EQ(renamed("sub/kept", taken), CFileException::accessDenied) << taken;
    for (const auto& [from, to] : {std::pair("taken", "missing/new"), {"missing/file", "new"}})
        EXPECT_EQ(renamed(from, to), CFileException::badPath) << from << " to " << to;
    for (const char* link : {"to-file", "to-folder", "nowhere"}) {
        EXPECT_EQ(renamed(link, "new"), CFileException::none) << link;
        EXPECT_EQ(removed("new"), CFileException::none) << link;
    }
    EXPECT_EQ(removed("missing"), CFileException::fileNotFound);
    EXPECT_EQ(folder.Read("sub/kept") + folder.Read("taken"), "keptother");
    const ScopedNobody nobody(folder);
    folder.SetMode("sub", 0500);
    EXPECT_EQ(removed("sub/kept"), CFileException::accessDenied);
    EXPECT_EQ(renamed("sub/kept", "new"), CFileException::accessDenied);
    folder.SetMode("sub", 0700);
}

}  // namespace
