#include "RkUtilities/foundation/CFile.h"
#include "tests/support/ScopedFileSizeLimit.h"
#include "tests/support/ScopedFolder.h"

#include <atomic>
#include <climits>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <sys/stat.h>
#include <thread>

namespace {

namespace fs = std::filesystem;

struct Failure {
    int cause = CFileException::none;
    long osError = 0;
    CString name;
};

/// What a call throws; cause `none` when it throws nothing.
Failure FailureOf(const std::function<void()>& call)
{
    try {
        call();
        return {};
    } catch (CFileException* thrown) {
        const Failure failure{thrown->m_cause, thrown->m_lOsError, thrown->m_strFileName};
        thrown->Delete();
        return failure;
    }
}

struct stat StatusOf(const std::string& path)
{
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return status;
}

unsigned ModeOf(const std::string& path)
{
    return StatusOf(path).st_mode & 07777U;
}

bool SameTime(const timespec& a, const timespec& b)
{
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

CFile Opened(const CString& path, unsigned int flags)
{
    CFile file;
    EXPECT_TRUE(file.Open(path, flags)) << path;
    return file;
}

TEST(File, OpensWhatItCanAndTellsTheCauseOfEveryFailure)
{
    const ScopedFolder folder;
    folder.Write("file", "content");
    folder.MakeFolder("folder");
    folder.Link("ring", "ring");
    ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);

    struct Case {
        std::string name;
        unsigned int flags;
        int cause;
        long osError;
    };
    const Case cases[] = {
        {"file", 0x0000, 0, 0},
        {"file", 0x0020, 0, 0},
        {"file", 0x1042, 0, 0},
        {"new", 0x1042, 0, 0},
        {"missing", 0x0000, 2, ENOENT},
        {"missing/file", 0x0000, 3, ENOENT},
        {"missing/file", 0x1042, 3, ENOENT},  // what the log's writer asks for
        {"missing/file/", 0x0000, 3, ENOENT},
        {"file/below", 0x1042, 3, ENOTDIR},
        {"ring", 0x0000, 3, ELOOP},
        {std::string(256, 'n'), 0x1042, 3, ENAMETOOLONG},
        {std::string("file\0tail", 9), 0x0000, 2, ENOENT},  // would open "file" if it were cut there
        {"folder", 0x0000, 5, EISDIR},
        {"folder", 0x0002, 5, EISDIR},
        {"pipe", 0x0000, 6, ENXIO},  // would wait for a writer
        {"pipe", 0x0002, 6, ENXIO},
        {"file", 0x8000, 1, EINVAL},
        {"file", 0x0060, 1, EINVAL},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const CString path = folder.Text(c.name);
        CFile file;
        CFileException error(99, 99);
        EXPECT_EQ(file.Open(path, c.flags, &error), c.cause == 0);
        EXPECT_EQ(file.IsOpen(), c.cause == 0);
        EXPECT_EQ(error.m_cause, c.cause == 0 ? 99 : c.cause);
        EXPECT_EQ(error.m_lOsError, c.cause == 0 ? 99 : c.osError);
        EXPECT_EQ(error.m_strFileName, c.cause == 0 ? CString() : path);
    }
    EXPECT_FALSE(CFile().Open(CString(), 0));
}

TEST(File, OpenedForAppendingKeepsItsContent)
{
    const ScopedFolder folder;
    const CString path = folder.Write("log", "one");
    CFile file = Opened(path, 0x1042);
    EXPECT_EQ(file.Seek(0, 2), 3U);
    file.WriteString(CString(u"-\u00E9\U0001F600-") + static_cast<unsigned short>(0xD800));
    EXPECT_EQ(file.GetPosition(), file.GetLength());
    file.Flush();
    EXPECT_EQ(folder.Read("log"), "one-\xC3\xA9\xF0\x9F\x98\x80-\xEF\xBF\xBD");

    EXPECT_EQ(file.Seek(1, 0), 1U);
    char bytes[64] = {};
    EXPECT_EQ(file.Read(bytes, 3), 3U);
    EXPECT_EQ(std::string_view(bytes, 3), "ne-");
    EXPECT_EQ(file.Seek(-2, 1), 2U);
    EXPECT_EQ(file.Read(bytes, 64), file.GetLength() - 2);
    EXPECT_EQ(file.Read(bytes, 64), 0U);
    EXPECT_EQ(file.Read(nullptr, 0), 0U);
    file.Close();
    file.Close();
}

TEST(File, SeeksAnywhereButBeforeItsStart)
{
    const ScopedFolder folder;
    CFile file = Opened(folder.Write("file", "1234567890"), 0x0002);
    struct Case {
        long long offset;
        unsigned int from;
        long long position;  // -1: fails
    };
    constexpr Case kCases[] = {
        {0, 2, 10},   {-10, 2, 0}, {5, 0, 5},         {-5, 1, 0},         {100, 0, 100},      {-1, 0, -1},
        {-11, 2, -1}, {0, 3, -1},  {0, UINT_MAX, -1}, {LLONG_MIN, 0, -1}, {LLONG_MAX, 2, -1}, {LLONG_MIN, 1, -1},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.offset << " from " << c.from);
        const unsigned long long before = file.GetPosition();
        unsigned long long position = before;
        const Failure failure = FailureOf([&] { position = file.Seek(c.offset, c.from); });
        EXPECT_EQ(failure.cause, c.position < 0 ? CFileException::badSeek : CFileException::none);
        EXPECT_EQ(position, c.position < 0 ? before : static_cast<unsigned long long>(c.position));
        EXPECT_EQ(file.GetPosition(), position);
    }
}

TEST(File, GoesBeyondFourGibibytes)
{
    const ScopedFolder folder;
    const CString path = folder.Text("large");
    constexpr unsigned long long kFar = (5ULL << 30) + 7;
    CFile file = Opened(path, 0x1002);
    EXPECT_EQ(file.Seek(static_cast<long long>(kFar), 0), kFar);
    file.Write("end", 3);
    EXPECT_EQ(file.GetLength(), kFar + 3);
    EXPECT_EQ(file.GetPosition(), kFar + 3);
    CFileStatus status;
    ASSERT_TRUE(CFile::GetStatus(path, status));
    EXPECT_EQ(status.m_size, static_cast<std::int64_t>(kFar + 3));
}

TEST(File, SharesByAgreement)
{
    const ScopedFolder folder;
    const CString path = folder.Write("file");
    struct Case {
        unsigned int first;
        unsigned int second;
        bool opens;
    };
    constexpr Case kCases[] = {
        {0x0020, 0x0020, true}, {0x0020, 0x0022, false}, {0x0022, 0x0020, false}, {0x0022, 0x0022, false},
        {0x0022, 0x0040, true}, {0x0022, 0x0042, true},  {0x0042, 0x0022, true},  {0x0002, 0x0020, true},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(testing::Message() << std::hex << c.first << " then " << c.second);
        CFile first = Opened(path, c.first);
        CFileException error;
        EXPECT_EQ(CFile().Open(path, c.second, &error), c.opens);
        EXPECT_EQ(error.m_cause, c.opens ? CFileException::none : CFileException::sharingViolation);
        first.Close();
        EXPECT_TRUE(CFile().Open(path, c.second));
    }
}

TEST(File, ReportsAFullDiskAndALimitOnSizes)
{
    CFile full = Opened(u"/dev/full", 0x0002);
    const Failure noSpace = FailureOf([&] { full.WriteString(u"text"); });
    EXPECT_EQ(noSpace.cause, CFileException::diskFull);
    EXPECT_EQ(noSpace.osError, ENOSPC);
    EXPECT_EQ(noSpace.name, u"/dev/full");

    // The limit's signal would end this process.
    const ScopedFolder folder;
    CFile file = Opened(folder.Text("file"), 0x1002);
    {
        const ScopedFileSizeLimit limit(10);
        const Failure tooLong = FailureOf([&] { file.WriteString(u"123456789012345"); });
        EXPECT_EQ(tooLong.cause, CFileException::diskFull);
        EXPECT_EQ(tooLong.osError, EFBIG);
        EXPECT_EQ(FailureOf([&] { file.Write("x", 1); }).cause, CFileException::diskFull);
    }
    file.WriteString(u"!");
    EXPECT_EQ(folder.Read("file"), "1234567890!");
    sigset_t pending;
    ASSERT_EQ(sigpending(&pending), 0);
    EXPECT_EQ(sigismember(&pending, SIGXFSZ), 0);
}

TEST(File, ThatIsClosedRefusesEverythingButClosing)
{
    const ScopedFolder folder;
    const CString path = folder.Write("file", "content");
    CFile file = Opened(path, 0x0002);
    CFile other(std::move(file));
    char byte = 0;
    const std::function<void(CFile&)> calls[] = {
        [&](CFile& f) { f.Read(&byte, 1); },
        [&](CFile& f) { f.Write(&byte, 1); },
        [](CFile& f) { f.WriteString(u"x"); },
        [](CFile& f) { f.Seek(0, 0); },
        [](CFile& f) { (void)f.GetPosition(); },
        [](CFile& f) { (void)f.GetLength(); },
        [](CFile& f) { f.Flush(); },
    };
    for (const auto& call : calls) {
        EXPECT_EQ(FailureOf([&] { call(file); }).cause,
                  CFileException::invalidFile);  // NOLINT(bugprone-use-after-move)
        EXPECT_EQ(FailureOf([&] { call(other); }).cause, CFileException::none);
    }
    EXPECT_EQ(FailureOf([&] { file.Close(); }).cause, CFileException::none);
    CFile readOnly = Opened(path, 0x0000);
    const Failure failure = FailureOf([&] { readOnly.Write("x", 1); });
    EXPECT_EQ(failure.osError, EBADF);
    EXPECT_EQ(failure.name, path);
    file = std::move(readOnly);
    EXPECT_TRUE(file.IsOpen());
}

TEST(File, ReadsOnWhenASignalInterrupts)
{
    // A terminal makes the reader wait; the signal comes while it does.
    const int master = posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_GE(master, 0);
    ASSERT_EQ(grantpt(master), 0);
    ASSERT_EQ(unlockpt(master), 0);
    CFile terminal = Opened(CString(ptsname(master)), 0x0002);
    struct sigaction action {};
    struct sigaction before {};
    static std::atomic<int> interruptions;
    action.sa_handler = [](int) { ++interruptions; };
    ASSERT_EQ(sigaction(SIGUSR1, &action, &before), 0);  // without SA_RESTART
    const pthread_t reader = pthread_self();
    std::thread other([&] {
        for (int i = 0; i < 20; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
            pthread_kill(reader, SIGUSR1);
        }
        EXPECT_EQ(write(master, "line\n", 5), 5);
    });
    char bytes[5] = {};
    EXPECT_EQ(FailureOf([&] { EXPECT_EQ(terminal.Read(bytes, 5), 5U); }).cause, CFileException::none);
    other.join();
    EXPECT_EQ(std::string_view(bytes, 5), "line\n");
    EXPECT_GT(interruptions, 0);
    sigaction(SIGUSR1, &before, nullptr);
    close(master);
}

TEST(FileStatus, KnowsEachKind)
{
    const ScopedFolder folder;
    folder.Write("plain", "1234");
    folder.Write(".hidden");
    folder.Write("readonly");
    folder.Write("sub/inside");
    folder.MakeFolder(".config");
    folder.Link("to-folder", "sub");
    folder.Link("to-readonly", "readonly");
    folder.Link("nowhere", "missing");
    folder.Link("ring", "ring");
    ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
    ASSERT_EQ(chmod(folder.Path("readonly").c_str(), 0577), 0);
    struct Case {
        const char* name;
        unsigned attribute;
    };
    constexpr Case kCases[] = {
        {"plain", 0x20},       {".hidden", 0x22},  {"readonly", 0x21}, {"sub", 0x10},
        {"sub/", 0x10},        {".config/", 0x12}, {"sub/.", 0x10},    {"to-folder", 0x10},
        {"to-readonly", 0x21}, {"nowhere", 0x20},  {"ring", 0x20},     {"pipe", 0x20},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.name);
        CFileStatus status;
        EXPECT_TRUE(CFile::GetStatus(folder.Text(c.name), status));
        EXPECT_EQ(status.m_attribute, c.attribute);
        EXPECT_EQ(status.m_szFullName, folder.Text(c.name));
    }
    for (const char* missing : {"missing", "missing/file", "plain/", "plain/below"}) {
        CFileStatus status;
        status.m_size = 77;
        EXPECT_FALSE(CFile::GetStatus(folder.Text(missing), status)) << missing;
        EXPECT_EQ(status.m_size, 77);
    }
    const fs::path before = fs::current_path();
    fs::current_path(folder.Path());
    CFileStatus status;
    EXPECT_TRUE(CFile::GetStatus(u"plain", status));
    EXPECT_EQ(status.m_szFullName, folder.Text("plain"));
    EXPECT_EQ(status.m_size, 4);
    fs::current_path(before);
}

TEST(FileStatus, WrittenBackMovesNoTimeAndKeepsTheOtherPermissions)
{
    const ScopedFolder folder;
    const CString path = folder.Write("file");
    const std::string native = folder.Path("file");
    // Nanoseconds, centuries and signs that a double does not hold.
    for (const std::time_t seconds :
         {std::time_t{1}, std::time_t{1'700'000'000}, std::time_t{5'000'000'000}, std::time_t{-86'401}}) {
        for (const unsigned mode : {0640U, 0200U, 0777U}) {
            ASSERT_EQ(chmod(native.c_str(), mode), 0);
            const timespec times[] = {{seconds, 123'456'789}, {seconds + 1, 999'999'999}};
            ASSERT_EQ(utimensat(AT_FDCWD, native.c_str(), times, 0), 0);
            const struct stat before = StatusOf(native);
            CFileStatus status;
            ASSERT_TRUE(CFile::GetStatus(path, status));
            EXPECT_EQ(status.m_attribute, 0x20);
            for (const unsigned char attribute : std::initializer_list<unsigned char>{0x21, 0x20, 0x01, 0xFE}) {
                status.m_attribute = attribute;
                CFile::SetStatus(path.GetUTF16Ptr(), status);
                EXPECT_EQ(ModeOf(native), (attribute & 1) != 0 ? mode & ~0200U : mode);
                EXPECT_TRUE(SameTime(StatusOf(native).st_mtim, before.st_mtim));
                EXPECT_TRUE(SameTime(StatusOf(native).st_atim, before.st_atim));
            }
        }
    }
}

TEST(FileStatus, SetsTheTimesThatChanged)
{
    const ScopedFolder folder;
    const CString path = folder.Write("file");
    CFileStatus status;
    ASSERT_TRUE(CFile::GetStatus(path, status));
    const timespec accessed = StatusOf(folder.Path("file")).st_atim;
    struct Case {
        double seconds;
        std::time_t unixSeconds;
        long nanoseconds;
    };
    constexpr Case kCases[] = {
        {0, 978'307'200, 0}, {0.5, 978'307'200, 500'000'000}, {-0.25, 978'307'199, 750'000'000}, {-978'307'201, -1, 0}};
    for (const Case& c : kCases) {
        status.m_mtime = CTime::FromCFAbsoluteTime(c.seconds);
        CFile::SetStatus(path, status);
        EXPECT_EQ(StatusOf(folder.Path("file")).st_mtim.tv_sec, c.unixSeconds);
        EXPECT_EQ(StatusOf(folder.Path("file")).st_mtim.tv_nsec, c.nanoseconds);
        EXPECT_TRUE(SameTime(StatusOf(folder.Path("file")).st_atim, accessed));
        CFileStatus read;
        ASSERT_TRUE(CFile::GetStatus(path, read));
        EXPECT_EQ(read.m_mtime.GetCFAbsoluteTime(), c.seconds);
    }
    const struct stat before = StatusOf(folder.Path("file"));
    CFile::SetStatus(path, CFileStatus());  // null times
    EXPECT_TRUE(SameTime(StatusOf(folder.Path("file")).st_mtim, before.st_mtim));
    folder.Link("nowhere", "missing");
    EXPECT_EQ(FailureOf([&] { CFile::SetStatus(folder.Text("missing"), status); }).cause, CFileException::fileNotFound);
    EXPECT_EQ(FailureOf([&] { CFile::SetStatus(folder.Text("nowhere"), status); }).cause, CFileException::fileNotFound);
    EXPECT_EQ(FailureOf([&] { CFile::SetStatus(folder.Text("a/b"), status); }).cause, CFileException::badPath);
}

TEST(File, IsRemovedByItsOwnNameOnly)
{
    const ScopedFolder folder;
    folder.Write("sub/kept", "content");
    folder.Link("to-file", "sub/kept");
    folder.Link("to-folder", "sub");
    folder.Link("nowhere", "missing");
    for (const char* name : {"to-file", "to-folder", "nowhere"}) {
        EXPECT_EQ(FailureOf([&] { CFile::Remove(folder.Text(name)); }).cause, CFileException::none) << name;
        EXPECT_FALSE(folder.Has(name));
    }
    EXPECT_EQ(folder.Read("sub/kept"), "content");
    EXPECT_EQ(FailureOf([&] { CFile::Remove(folder.Text("sub")); }).cause, CFileException::accessDenied);
    EXPECT_EQ(FailureOf([&] { CFile::Remove(folder.Text("missing")); }).cause, CFileException::fileNotFound);
    EXPECT_EQ(FailureOf([&] { CFile::Remove(folder.Text("missing/a")); }).cause, CFileException::badPath);
    const ScopedNobody nobody(folder);
    ASSERT_EQ(chmod(folder.Path("sub").c_str(), 0500), 0);
    EXPECT_EQ(FailureOf([&] { CFile::Remove(folder.Text("sub/kept")); }).cause, CFileException::accessDenied);
    ASSERT_EQ(chmod(folder.Path("sub").c_str(), 0700), 0);
}

TEST(File, IsRenamedToAFreeNameOnly)
{
    const ScopedFolder folder;
    folder.Write("file", "content");
    folder.Write("taken", "other");
    folder.MakeFolder("folder");
    folder.Link("nowhere", "missing");
    const auto renamed = [&](const char* from, const char* to) {
        return FailureOf([&] { CFile::Rename(folder.Text(from), folder.Text(to)); }).cause;
    };
    for (const char* taken : {"taken", "folder", "nowhere", "file"})
        EXPECT_EQ(renamed("file", taken), CFileException::accessDenied) << taken;
    EXPECT_EQ(renamed("missing", "new"), CFileException::fileNotFound);
    EXPECT_EQ(renamed("file", "missing/new"), CFileException::badPath);
    EXPECT_EQ(renamed("missing/file", "new"), CFileException::badPath);
    EXPECT_EQ(renamed("file", "taken/new"), CFileException::badPath);
    EXPECT_EQ(folder.Read("file") + folder.Read("taken"), "contentother");
    EXPECT_EQ(renamed("file", "new"), CFileException::none);
    EXPECT_EQ(renamed("folder", "new folder"), CFileException::none);
    EXPECT_EQ(renamed("nowhere", "elsewhere"), CFileException::none);
    EXPECT_EQ(folder.Read("new"), "content");
    EXPECT_TRUE(folder.Has("elsewhere"));
}

}  // namespace
